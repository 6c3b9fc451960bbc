// zephrin-inspect colors [R G B [NAME]]: the 28 named colours as placed at
// start-up (ID PIXEL R G B, 16-bit components as placed), or the one colour
// given (components 0..255, an optional X name) as Allocate places it.
#include <algorithm>
#include <cstdio>

#include "framework/color_ref.h"
#include "host/resource.h"
#include "examine_x.h"
#include "verbs.h"

int InspectVerb_colors(int argc, char** argv) {
  int rgb[3] = {0, 0, 0};
  bool good = argc == 0 || argc == 3 || argc == 4;
  for (int i = 0; good && i < 3 && i < argc; ++i) good = ParseInspectInt(argv[i], &rgb[i]);
  if (!good) {
    std::fprintf(stderr, "usage: zephrin-inspect colors [R G B [NAME]]\n");
    return 2;
  }
  TInspectX x;
  if (!OpenInspectX(&x, "colors")) return 1;
  Resource* resource = Resource::GetResourceObject();
  auto print = [](const CColorRef& color) {
    std::printf("0x%06lx %u %u %u\n", color.Pixel(), color.m_Placed.red, color.m_Placed.green, color.m_Placed.blue);
  };
  if (argc == 0) {
    for (unsigned id = Resource::kFirstColorId; id < Resource::kFirstColorId + Resource::kNamedColors; ++id) {
      std::printf("%u ", id);
      print(*resource->GetColorResource(id));
    }
    return 0;
  }
  auto component = [](int v) { return static_cast<unsigned short>(std::clamp(v, 0, 255)); };
  CColorRef color(component(rgb[0]), component(rgb[1]), component(rgb[2]), argc == 4 ? argv[3] : nullptr);
  color.Allocate(x.display, DefaultColormap(x.display, DefaultScreen(x.display)), 1);
  print(color);
  return 0;
}
