#include "tex/families/parser_tables.h"

#include <iterator>
#include <vector>

#include "format/break_nodes.h"
#include "format/line_node.h"
#include "format/paragraph_node.h"
#include "format/vertical_list_node.h"
#include "math/math_node.h"
#include "math/over_node.h"
#include "math/scripted_node.h"
#include "symbols/global_strings.h"
#include "tex/families/spacing.h"

namespace {
// The spacing family keeps a table of its own shape; seen here as ours.
std::span<const TCsParserEntry> SpacingParsers() {
  static std::vector<TCsParserEntry> rows;
  if (rows.empty())
    for (const TSpacingEntry& entry : SpacingTable()) rows.push_back({entry.name, entry.parser});
  return rows;
}
}  // namespace

void RegisterParsers(std::span<const TCsParserEntry> table) {
  for (const TCsParserEntry& entry : table) PutTexParserProperty(entry.name, entry.parser);
}

std::span<const TCsParserTable> AllParserTables() {
  static const TCsParserTable tables[] = {
      {"spacing", SpacingParsers()},
      {"line breaks", TFmtLineBreakNode::ParserTable()},
      {"paragraphs", TFmtParagraphNode::ParserTable()},
      {"vertical lists", TFmtVerticalListNode::ParserTable()},
      {"lines", TFmtLineNode::ParserTable()},
      {"display math", TFmtDisplayMathNode::ParserTable()},
      {"fractions", TFmtOverNode::ParserTable()},
      {"scripts", TFmtScriptedNode::ParserTable()},
      {"text commands", TextCommandParserTable()},
      {"arity", ArityParserTable()},
  };
  return tables;
}
