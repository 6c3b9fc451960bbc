// zephrin-inspect fontname TEMPLATE DECIPOINTS XRES YRES: the X font name a
// family builds from the template at that size and resolution.
#include <cstdio>
#include <vector>

#include "device/font_family.h"
#include "examine_x.h"
#include "verbs.h"

int InspectVerb_fontname(int argc, char** argv) {
  int values[3];
  if (argc != 4 || !ParseInspectInt(argv[1], &values[0]) || !ParseInspectInt(argv[2], &values[1]) ||
      !ParseInspectInt(argv[3], &values[2])) {
    std::fprintf(stderr, "usage: zephrin-inspect fontname TEMPLATE DECIPOINTS XRES YRES\n");
    return 2;
  }
  // Room for the whole template and the three numbers, whatever its length.
  std::vector<char> name(std::char_traits<char>::length(argv[0]) + 64);
  CreateFontNameAtSize(values[0], values[1], values[2], argv[0], name.data(), name.size());
  std::printf("%s\n", name.data());
  return 0;
}
