// zephrin-inspect stretch TAG CODE [HEIGHT DEPTH EXTRA]...: the minus height
// (the math axis) at normal size, the font a family makes for the character
// at each required extent, and how many fonts the run loaded.
#include <cstdio>

#include "device/font_family.h"
#include "examine_x.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "verbs.h"

int InspectVerb_stretch(int argc, char** argv) {
  int tag = 0, code = 0;
  bool good = argc >= 2 && (argc - 2) % 3 == 0 && ParseInspectInt(argv[0], &tag) && ParseInspectInt(argv[1], &code);
  for (int i = 2; good && i < argc; ++i) {
    int value = 0;
    good = ParseInspectInt(argv[i], &value);
  }
  if (!good) {
    std::fprintf(stderr, "usage: zephrin-inspect stretch TAG CODE [HEIGHT DEPTH EXTRA]...\n");
    return 2;
  }
  // The minus sign's glyph comes from the symbol table.
  TStringPool::InitializeGlobal();
  TGlobalString::Initialize();
  TGlobalString::InitializeSymbolFonts();
  TInspectX x;
  if (!OpenInspectX(&x, "stretch")) return 1;
  TFontFamily::PrepareAllFonts(&x.window);
  TFontFamily* family = TFontFamily::GetFontFamilyFromTag(tag);
  if (!family) {
    std::fprintf(stderr, "zephrin-inspect stretch: no family has tag %d\n", tag);
    return 2;
  }
  std::printf("minus %d\n", TFontFamily::MinusHeight(x.context));
  for (int i = 2; i + 2 < argc; i += 3) {
    int height = 0, depth = 0, extra = 0;
    ParseInspectInt(argv[i], &height);
    ParseInspectInt(argv[i + 1], &depth);
    ParseInspectInt(argv[i + 2], &extra);
    auto* font = static_cast<TExtendedFont*>(family->CreateFontForCharacter(code, height, depth, x.context, extra));
    std::printf("font %s\n", font->Get_Name());
  }
  std::printf("loaded %d\n", TExtendedFont::fg_nLoaded);
  return 0;
}
