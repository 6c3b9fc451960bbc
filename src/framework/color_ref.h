// CColorRef: a colour as asked for (red, green, blue and an optional X name)
// and as placed in the colormap (the pixel that goes to the server).
#pragma once

#include <X11/Xlib.h>

#include <cstdint>

#include "framework/cstring.h"

class CWnd;

// The XColor shape without Xlib's padding: pixel, 16-bit components, flags.
struct TColorValue {
  uint32_t pixel = 0;
  uint16_t red = 0;
  uint16_t green = 0;
  uint16_t blue = 0;
  uint8_t flags = 0;
  bool operator==(const TColorValue&) const = default;
};

class CColorRef {
 public:
  CColorRef() = default;
  // Components 0..255 as written in the colour tables; kept as 16-bit X values.
  CColorRef(unsigned short red, unsigned short green, unsigned short blue, const char* name = nullptr);
  explicit CColorRef(const char* name);

  // Names, when both are set, decide without regard to case; otherwise all six
  // components (asked and placed) must agree.
  bool operator==(const CColorRef& other) const;
  bool operator!=(const CColorRef& other) const { return !(*this == other); }
  // Exclusive or of every component, for drawing in xor mode; unnamed and unallocated.
  CColorRef operator^(const CColorRef& other) const;

  // Places the colour in the colormap (by name first, else by numbers), falling
  // back on the nearest colour read at start-up when the map is full.
  void Allocate(Display* display, Colormap colormap, int black);
  // Once per object: a second call leaves the pixel as it was.
  void Allocate(CWnd* window, int black);

  int m_bAllocated = 0;
  CString m_Name;
  TColorValue m_Asked;
  TColorValue m_Placed;

  unsigned long Pixel() const { return m_Placed.pixel; }
  // 0..255 views of the colour asked for.
  int Red() const { return m_Asked.red >> 8; }
  int Green() const { return m_Asked.green >> 8; }
  int Blue() const { return m_Asked.blue >> 8; }

  // Allocations are remembered per display, colormap and colour (names per
  // display and colormap): a colour asked for again costs no round trip.
  // Forget them when a colormap's cells change behind our back.
  static void ForgetAllocations();
};

// The components of `color->pixel` as the screen shows them: from the
// visual's masks on TrueColor and DirectColor, else from the colormap read at
// start-up. Pixel and flags stay.
void LookUpPixelComponents(const Visual* visual, TColorValue* color);
