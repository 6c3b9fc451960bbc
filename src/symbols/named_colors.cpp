// The named colours. Keys are case-sensitive pool names (Red finds nothing).
#include "symbols/global_strings.h"

namespace {
// white is 252, not 255; green is the web table's dark green and lime the
// pure one; silver and gray share numbers but not X names. All on purpose.
constexpr TNamedColor fg_NamedColors[] = {
    // key        red  green blue  X name
    {"black",     0,   0,    0,    "black"},
    {"blue",      0,   0,    255,  "blue"},
    {"cyan",      0,   255,  255,  "cyan"},
    {"darkgray",  169, 169,  169,  "dark grey"},
    {"gray",      190, 190,  190,  "grey"},
    {"darkgreen", 0,   64,   0,    "dark green"},
    {"green",     0,   128,  0,    "green"},
    {"lightgray", 211, 211,  211,  "light grey"},
    {"magenta",   255, 0,    255,  "magenta"},
    {"red",       255, 0,    0,    "red"},
    {"white",     252, 252,  252,  "white"},
    {"yellow",    255, 255,  0,    "yellow"},
    {"maroon",    142, 35,   107,  "DarkRed"},
    {"olive",     79,  79,   47,   "dark olive green"},
    {"navy",      35,  35,   142,  "navy"},
    {"purple",    160, 32,   240,  "purple1"},
    {"teal",      0,   139,  139,  "dark cyan"},
    {"silver",    190, 190,  190,  "gray"},
    {"lime",      0,   255,  0,    "green"},
    {"fuchsia",   255, 0,    255,  "magenta"},
    {"aqua",      0,   255,  255,  "cyan"},
};
}  // namespace

std::span<const TNamedColor> TGlobalString::ColorTable() { return fg_NamedColors; }

void TGlobalString::InitColors() {
  for (const TNamedColor& row : fg_NamedColors)
    PutColorProperty(row.key, CColorRef(row.red, row.green, row.blue, row.xName));
}
