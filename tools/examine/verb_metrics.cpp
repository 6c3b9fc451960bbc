// zephrin-inspect metrics TAG SIZE CODE...: the font a family makes at a
// named size, its metrics and those of each code, in logical units.
// TAG "editbox": the name of the input fields' font.
#include <cstdio>
#include <cstring>

#include "device/font_family.h"
#include "examine_x.h"
#include "verbs.h"

int InspectVerb_metrics(int argc, char** argv) {
  const bool editBox = argc >= 1 && std::strcmp(argv[0], "editbox") == 0;
  int tag = 0, size = 0;
  bool good = editBox ? argc == 1 : argc >= 2 && ParseInspectInt(argv[0], &tag) && ParseInspectInt(argv[1], &size);
  for (int i = 2; good && i < argc; ++i) {
    int code = 0;
    good = ParseInspectInt(argv[i], &code);
  }
  if (!good) {
    std::fprintf(stderr, "usage: zephrin-inspect metrics TAG SIZE CODE... | metrics editbox\n");
    return 2;
  }
  TInspectX x;
  if (!OpenInspectX(&x, "metrics")) return 1;
  TFontFamily::PrepareAllFonts(&x.window);
  if (editBox) {
    std::printf("font %s\n", TFontFamily::CreateFontForEditBox(x.context)->Get_FaceName());
    return 0;
  }
  TFontFamily* family = TFontFamily::GetFontFamilyFromTag(tag);
  if (!family) {
    std::fprintf(stderr, "zephrin-inspect metrics: no family has tag %d\n", tag);
    return 2;
  }
  TFontFamily_PI::fg_CurrentFontSize = size;
  TExtendedFont* font = family->CreateFontAtSize(x.context, size);
  TFmtContext& c = x.context;
  std::printf("font %s\n", font->Get_Name());
  std::printf("ascent %d descent %d height %d leading %d\n", font->Ascent(c), font->Descent(c), font->Height(c),
              font->ExternalLeading(c));
  for (int i = 2; i < argc; ++i) {
    int code = 0;
    ParseInspectInt(argv[i], &code);
    std::printf("%d width %d height %d depth %d\n", code, font->CharacterWidth(code, c),
                font->CharacterHeight(code, c), font->CharacterDepth(code, c));
  }
  return 0;
}
