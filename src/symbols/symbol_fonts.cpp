// The glyph of every symbol name, from the symbol table (symbol_table.tsv),
// which the build compiles in so that the process needs no data file.
#include "symbols/global_strings.h"

namespace {
constexpr TSymbolFontRow fg_SymbolFontRows[] = {
#include "symbols/symbol_table.inc"
};
}  // namespace

std::span<const TSymbolFontRow> TGlobalString::SymbolFontTable() { return fg_SymbolFontRows; }

// Rows in order: a later row for a name replaces the earlier one, and a row
// of code 0 takes the glyph away, so that composites such as "A and AA are
// built from their parts rather than drawn as one glyph.
void TGlobalString::InitializeTexSymbolFonts() {
  Initialize();
  for (const TSymbolFontRow& row : fg_SymbolFontRows) {
    if (row.code == 0)
      TStringPool::g_pGlobal->Remove(row.name, g_pTEXFONTINDEX);
    else
      PutTexFontPropertyX(row.name, row.tag, row.code, row.greek);
  }
}
