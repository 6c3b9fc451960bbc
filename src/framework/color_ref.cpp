#include "framework/color_ref.h"

#include <strings.h>

#include <bit>
#include <map>
#include <string>
#include <tuple>

#include "framework/display_hooks.h"
#include "framework/wnd.h"
#include "host/resource.h"

namespace {
// 0..255 to X's 16-bit scale: 255 becomes 0xffff.
uint16_t Widen(unsigned short component) {
  unsigned value = component > 255 ? 255 : component;
  return static_cast<uint16_t>(value * 257);
}

struct TPlacedColor {
  uint32_t pixel;
  uint16_t red, green, blue;
};
using TAllocationKey = std::tuple<Display*, Colormap, uint16_t, uint16_t, uint16_t>;
using TNameKey = std::tuple<Display*, Colormap, std::string>;
std::map<TAllocationKey, TPlacedColor>& Allocations() {
  static std::map<TAllocationKey, TPlacedColor> allocations;
  return allocations;
}
// A name the server did not know is remembered too (found false).
struct TNamedComponents {
  bool found;
  uint16_t red, green, blue;
};
std::map<TNameKey, TNamedComponents>& Names() {
  static std::map<TNameKey, TNamedComponents> names;
  return names;
}

void ForgetDisplay(Display* display) {
  std::erase_if(Allocations(), [display](const auto& entry) { return std::get<0>(entry.first) == display; });
  std::erase_if(Names(), [display](const auto& entry) { return std::get<0>(entry.first) == display; });
}

uint16_t FromMask(unsigned long pixel, unsigned long mask) {
  if (!mask) return 0;
  int shift = std::countr_zero(mask);
  unsigned long top = mask >> shift;
  unsigned long value = (pixel & mask) >> shift;
  return static_cast<uint16_t>(value * 65535UL / top);
}
}  // namespace

void CColorRef::ForgetAllocations() {
  Allocations().clear();
  Names().clear();
}

void LookUpPixelComponents(const Visual* visual, TColorValue* color) {
  if (visual && (visual->c_class == TrueColor || visual->c_class == DirectColor)) {
    color->red = FromMask(color->pixel, visual->red_mask);
    color->green = FromMask(color->pixel, visual->green_mask);
    color->blue = FromMask(color->pixel, visual->blue_mask);
    return;
  }
  Resource::GetResourceObject()->GetColorInColormap(color);
}

CColorRef::CColorRef(unsigned short red, unsigned short green, unsigned short blue, const char* name)
    : m_Name(name) {
  m_Asked.red = Widen(red);
  m_Asked.green = Widen(green);
  m_Asked.blue = Widen(blue);
  m_Asked.flags = DoRed | DoGreen | DoBlue;
  m_Placed = m_Asked;
}

CColorRef::CColorRef(const char* name) : m_Name(name) {
  m_Asked.flags = DoRed | DoGreen | DoBlue;
  m_Placed = m_Asked;
}

bool CColorRef::operator==(const CColorRef& other) const {
  if (!m_Name.IsEmpty() && !other.m_Name.IsEmpty()) return strcasecmp(m_Name, other.m_Name) == 0;
  return m_Asked.red == other.m_Asked.red && m_Asked.green == other.m_Asked.green &&
         m_Asked.blue == other.m_Asked.blue && m_Placed.red == other.m_Placed.red &&
         m_Placed.green == other.m_Placed.green && m_Placed.blue == other.m_Placed.blue;
}

CColorRef CColorRef::operator^(const CColorRef& other) const {
  CColorRef result;
  result.m_Asked.red = m_Asked.red ^ other.m_Asked.red;
  result.m_Asked.green = m_Asked.green ^ other.m_Asked.green;
  result.m_Asked.blue = m_Asked.blue ^ other.m_Asked.blue;
  result.m_Placed.red = m_Placed.red ^ other.m_Placed.red;
  result.m_Placed.green = m_Placed.green ^ other.m_Placed.green;
  result.m_Placed.blue = m_Placed.blue ^ other.m_Placed.blue;
  return result;
}

void CColorRef::Allocate(Display* display, Colormap colormap, int black) {
  if (!display) return;
  int screen = DefaultScreen(display);
  if (DefaultDepth(display, screen) == 1) {
    m_Asked.pixel = black ? BlackPixel(display, screen) : WhitePixel(display, screen);
    // Drawing takes the placed pixel: it must be the same one.
    m_Placed.pixel = m_Asked.pixel;
    return;
  }
  CallWhenDisplayCloses(display, ForgetDisplay);
  XColor placed{};
  placed.red = m_Placed.red;
  placed.green = m_Placed.green;
  placed.blue = m_Placed.blue;
  placed.flags = DoRed | DoGreen | DoBlue;
  if (!m_Name.IsEmpty()) {
    std::string lowered = m_Name.str();
    for (char& ch : lowered) ch = static_cast<char>(tolower(static_cast<unsigned char>(ch)));
    TNameKey key{display, colormap, lowered};
    auto known = Names().find(key);
    if (known == Names().end()) {
      XColor exact{}, onScreen{};
      TNamedComponents found{false, 0, 0, 0};
      if (XLookupColor(display, colormap, m_Name, &exact, &onScreen))
        found = {true, exact.red, exact.green, exact.blue};
      known = Names().emplace(key, found).first;
    }
    if (known->second.found) {
      placed.red = known->second.red;
      placed.green = known->second.green;
      placed.blue = known->second.blue;
    }
  }
  TAllocationKey key{display, colormap, placed.red, placed.green, placed.blue};
  auto done = Allocations().find(key);
  if (done != Allocations().end()) {
    m_Placed.pixel = done->second.pixel;
    m_Placed.red = done->second.red;
    m_Placed.green = done->second.green;
    m_Placed.blue = done->second.blue;
    return;
  }
  if (XAllocColor(display, colormap, &placed)) {
    m_Placed.pixel = static_cast<uint32_t>(placed.pixel);
    m_Placed.red = placed.red;
    m_Placed.green = placed.green;
    m_Placed.blue = placed.blue;
    Resource::GetResourceObject()->SetColorInMaps(m_Placed);
    Allocations()[key] = {m_Placed.pixel, m_Placed.red, m_Placed.green, m_Placed.blue};
  } else {
    // A full colormap: the cell read at start-up nearest to what was asked.
    Resource::GetResourceObject()->FindColorMatch(m_Asked, &m_Placed);
  }
}

void CColorRef::Allocate(CWnd* window, int black) {
  if (m_bAllocated) return;
  if (window)
    Allocate(window->m_pDisplay, window->GetColormap(), black);
  else
    m_Asked.pixel = 0;
  m_bAllocated = 1;
}
