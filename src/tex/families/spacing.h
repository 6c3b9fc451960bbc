// The spacing commands: skips, fills, kerns and the named spaces. Each makes
// a TFmtGlueNode; the glue class composes and prints them.
#pragma once

#include <span>

#include "symbols/properties.h"

struct TSpacingEntry {
  const char* name;
  TTexParserFunction parser;
};

// The one table of the family, for the registration and its test.
std::span<const TSpacingEntry> SpacingTable();
// Puts _PARSER_TEX on every name of the table.
void RegisterSpacing();
