#include "tex/families/parser_tables.h"

#include <iterator>

#include "math/math_node.h"
#include "math/over_node.h"
#include "math/scripted_node.h"
#include "symbols/global_strings.h"

void RegisterParsers(std::span<const TCsParserEntry> table) {
  for (const TCsParserEntry& entry : table) PutTexParserProperty(entry.name, entry.parser);
}

std::span<const TCsParserTable> AllParserTables() {
  static const TCsParserTable tables[] = {
      {"display math", TFmtDisplayMathNode::ParserTable()},
      {"fractions", TFmtOverNode::ParserTable()},
      {"scripts", TFmtScriptedNode::ParserTable()},
      {"text commands", TextCommandParserTable()},
      {"arity", ArityParserTable()},
  };
  return tables;
}
