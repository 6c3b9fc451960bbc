#include "media/image.h"

#include <cstdlib>
#include <cstring>

#include "framework/wnd.h"

namespace {
// Places a 0..255 channel into a visual's mask.
unsigned long Place(unsigned value, unsigned long mask) {
  if (!mask) return 0;
  int shift = 0;
  while (!((mask >> shift) & 1)) ++shift;
  int bits = 0;
  while ((mask >> (shift + bits)) & 1) ++bits;
  unsigned long scaled = bits >= 8 ? static_cast<unsigned long>(value) << (bits - 8) : value >> (8 - bits);
  return (scaled << shift) & mask;
}
unsigned Distance(unsigned a, unsigned b) { return a > b ? a - b : b - a; }
}  // namespace

Image::Image(Widget widget, GC gc, Display* display, Visual* visual, int screen, int depth, int colorCount,
             unsigned long* colormap, int startPixel, int numColors) {
  SetState(widget, gc, display, visual, screen, depth, colorCount, colormap, startPixel, numColors);
}

Image::~Image() {
  if (m_pXImage) {
    // The pixel bytes are ours, not the XImage's.
    m_pXImage->data = nullptr;
    XDestroyImage(m_pXImage);
  }
  std::free(m_pData);
  std::free(m_pWideData);
}

void Image::SetState(Widget widget, GC gc, Display* display, Visual* visual, int screen, int depth, int,
                     unsigned long* colormap, int startPixel, int numColors) {
  m_Widget = widget;
  m_GC = gc;
  m_pDisplay = display;
  m_pVisual = visual;
  m_nScreen = screen;
  m_nDepth = depth;
  m_pColorMap = colormap;
  m_nStartPixel = startPixel < 0 ? 0 : (startPixel > kColorTableSize - 1 ? kColorTableSize - 1 : startPixel);
  m_nNumColors = numColors < 1 ? 1 : numColors;
  if (m_nStartPixel + m_nNumColors > kColorTableSize) m_nNumColors = kColorTableSize - m_nStartPixel;
}

bool Image::IsDeepVisual() const {
  if (!m_pVisual) return m_nDepth > 8;
  return m_pVisual->c_class == TrueColor || m_pVisual->c_class == DirectColor || m_nDepth > 8;
}

void Image::QueryColorTable(int count) {
  for (int i = 0; i < kColorTableSize; ++i) {
    m_Colors[i] = XColor{};
    m_Colors[i].pixel = static_cast<unsigned long>(i);
    m_Colors[i].flags = DoRed | DoGreen | DoBlue;
  }
  if (IsDeepVisual()) {
    // No colormap to share: quantise to a 3-3-2 cube instead, whose entries
    // carry the visual's own pixel values.
    for (int i = 0; i < kColorTableSize; ++i) {
      unsigned r = ((i >> 5) & 7) * 255 / 7, g = ((i >> 2) & 7) * 255 / 7, b = (i & 3) * 255 / 3;
      m_Colors[i].red = static_cast<unsigned short>(r * 257);
      m_Colors[i].green = static_cast<unsigned short>(g * 257);
      m_Colors[i].blue = static_cast<unsigned short>(b * 257);
      m_Colors[i].pixel = m_pVisual ? Place(r, m_pVisual->red_mask) | Place(g, m_pVisual->green_mask) |
                                          Place(b, m_pVisual->blue_mask)
                                    : static_cast<unsigned long>(i);
    }
    return;
  }
  if (m_pVisual && count > m_pVisual->map_entries) count = m_pVisual->map_entries;
  if (m_pDisplay && m_pColorMap && count > 0) XQueryColors(m_pDisplay, *m_pColorMap, m_Colors, count);
}

void Image::CreateScaledColorMapping() {
  for (int i = 0; i < kColorTableSize; ++i) {
    m_ScaledColors[i].red = static_cast<uint16_t>((m_Colors[i].red << 8) / 65536.0);
    m_ScaledColors[i].green = static_cast<uint16_t>((m_Colors[i].green << 8) / 65536.0);
    m_ScaledColors[i].blue = static_cast<uint16_t>((m_Colors[i].blue << 8) / 65536.0);
    m_ScaledColors[i].pixel = m_Colors[i].pixel;
  }
}

bool Image::GetFromCache(unsigned short red, unsigned short green, unsigned short blue,
                         unsigned long* pixel) const {
  for (const TScaledColor& c : m_ColorCache)
    if (c.red == red && c.green == green && c.blue == blue) {
      *pixel = c.pixel;
      return true;
    }
  return false;
}

void Image::PutInCache(unsigned short red, unsigned short green, unsigned short blue, unsigned long pixel) {
  m_ColorCache.push_back({red, green, blue, pixel});
}

unsigned long Image::FindColorMatch(unsigned short red, unsigned short green, unsigned short blue) {
  unsigned long pixel = 0;
  if (GetFromCache(red, green, blue, &pixel)) return pixel;
  int best = 0;
  unsigned bestDistance = ~0u;
  for (int i = 0; i < kColorTableSize; ++i) {
    unsigned d = Distance(red, m_ScaledColors[i].red) + Distance(green, m_ScaledColors[i].green) +
                 Distance(blue, m_ScaledColors[i].blue);
    if (d < bestDistance) {
      bestDistance = d;
      best = i;
    }
  }
  pixel = m_ScaledColors[best].pixel;
  PutInCache(red, green, blue, pixel);
  return pixel;
}

bool Image::MakeXImage() {
  if (!m_pDisplay || !m_pVisual || !m_pData || m_nWidth <= 0 || m_nHeight <= 0) return false;
  if (!IsDeepVisual() && m_nDepth == 8) {
    m_pXImage = XCreateImage(m_pDisplay, m_pVisual, m_nDepth, ZPixmap, 0, reinterpret_cast<char*>(m_pData),
                             m_nWidth, m_nHeight, 8, 0);
    return m_pXImage != nullptr;
  }
  m_pXImage = XCreateImage(m_pDisplay, m_pVisual, m_nDepth, ZPixmap, 0, nullptr, m_nWidth, m_nHeight,
                           m_nDepth > 16 ? 32 : (m_nDepth > 8 ? 16 : 8), 0);
  if (!m_pXImage) return false;
  m_pWideData = static_cast<char*>(std::calloc(static_cast<size_t>(m_pXImage->bytes_per_line), m_nHeight));
  if (!m_pWideData) return false;
  m_pXImage->data = m_pWideData;
  for (int y = 0; y < m_nHeight; ++y)
    for (int x = 0; x < m_nWidth; ++x)
      XPutPixel(m_pXImage, x, y, m_Colors[m_pData[static_cast<size_t>(y) * m_nWidth + x]].pixel);
  return true;
}

void Image::Draw(int x, int y) {
  if (!m_pXImage || !m_Widget || !XtWindow(m_Widget)) return;
  XPutImage(m_pDisplay, XtWindow(m_Widget), m_GC, m_pXImage, 0, 0, x, y, m_nWidth, m_nHeight);
}

void Image::Draw(CWnd* window, int x, int y) {
  if (!m_pXImage || !window || !window->m_DrawWindow) return;
  XPutImage(window->m_pDisplay, window->m_DrawWindow, window->m_GC, m_pXImage, 0, 0, x, y, m_nWidth, m_nHeight);
}
