#include "framework/color_ref.h"

#include <strings.h>

#include "framework/wnd.h"
#include "host/resource.h"

namespace {
// 0..255 to X's 16-bit scale: 255 becomes 0xffff.
uint16_t Widen(unsigned short component) {
  unsigned value = component > 255 ? 255 : component;
  return static_cast<uint16_t>(value * 257);
}
}  // namespace

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
    return;
  }
  XColor placed{};
  placed.red = m_Placed.red;
  placed.green = m_Placed.green;
  placed.blue = m_Placed.blue;
  placed.flags = DoRed | DoGreen | DoBlue;
  if (!m_Name.IsEmpty()) {
    XColor exact{}, onScreen{};
    if (XLookupColor(display, colormap, m_Name, &exact, &onScreen)) {
      placed.red = exact.red;
      placed.green = exact.green;
      placed.blue = exact.blue;
    }
  }
  if (XAllocColor(display, colormap, &placed)) {
    m_Placed.pixel = static_cast<uint32_t>(placed.pixel);
    m_Placed.red = placed.red;
    m_Placed.green = placed.green;
    m_Placed.blue = placed.blue;
    Resource::GetResourceObject()->SetColorInMaps(m_Placed);
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
