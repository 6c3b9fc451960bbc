// zephrin-inspect relsize SIZE BASE: the size that SIZE (meant for normal
// text) becomes when the style's base size is BASE.
#include <cstdio>

#include "device/font_family_pi.h"
#include "examine_x.h"
#include "verbs.h"

int InspectVerb_relsize(int argc, char** argv) {
  int size = 0, base = 0;
  if (argc != 2 || !ParseInspectInt(argv[0], &size) || !ParseInspectInt(argv[1], &base)) {
    std::fprintf(stderr, "usage: zephrin-inspect relsize SIZE BASE\n");
    return 2;
  }
  TFontFamily_PI::fg_StyleBaseFontSize = base;
  std::printf("%d\n", TFontFamily_PI::GetSizeRelativeToBase(size));
  return 0;
}
