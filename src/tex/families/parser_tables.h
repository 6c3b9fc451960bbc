// Control-sequence parsers registered by name: one table per family, loaded
// into the global pool by TFmtNode::InitializeTexParser.
#pragma once

#include <span>

#include "symbols/properties.h"

struct TCsParserEntry {
  const char* name;
  TTexParserFunction parser;
};

// A family's table and the name tools and tests know it by.
struct TCsParserTable {
  const char* family;
  std::span<const TCsParserEntry> entries;
};

// Puts _PARSER_TEX on every name of the table.
void RegisterParsers(std::span<const TCsParserEntry> table);

// Every table, in the order of loading: the node classes' own first, the
// generic readers' last, so that a generic row never hides a class's parser.
std::span<const TCsParserTable> AllParserTables();

// The generic node by arity, for families that share them.
TFmtNode* ParseTex_1_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_2_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_3_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_4_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_1_RAWARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_1_INTARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_1_INTPARMARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_1_OPTARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_1_ARG_1_OPTARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_1_OPTARG_1_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_1_OPTARG_2_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source);
TFmtNode* ParseTex_1_MEASURE_1_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source);

// The tables of the families (defined beside their parsers).
std::span<const TCsParserEntry> ArityParserTable();
std::span<const TCsParserEntry> TextCommandParserTable();
