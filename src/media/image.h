// Image: a decoded picture kept in the display's pixel format, one byte a
// pixel of colour-table values, so that a redraw is one XPutImage.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdint>
#include <vector>

class CWnd;

class Image {
 public:
  enum KColorUsage { k_Usage_SharedColorMap = 0, k_Usage_SharedAllocColorMap = 1, k_Usage_RWAllocColorMap = 2 };
  static constexpr int kColorTableSize = 256;

  struct TScaledColor {
    uint16_t red, green, blue;
    unsigned long pixel;
  };

  Image() = default;
  Image(Widget widget, GC gc, Display* display, Visual* visual, int screen, int depth, int colorCount,
        unsigned long* colormap, int startPixel, int numColors);
  virtual ~Image();
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  void SetState(Widget widget, GC gc, Display* display, Visual* visual, int screen, int depth, int colorCount,
                unsigned long* colormap, int startPixel, int numColors);
  virtual bool LoadImage(const char* name) = 0;

  void Draw(int x, int y);
  void Draw(CWnd* window, int x, int y);

  unsigned long* GetColorMap() const { return m_pColorMap; }
  unsigned long dwGetWidth() const { return static_cast<unsigned long>(m_nWidth); }
  unsigned long dwGetHeight() const { return static_cast<unsigned long>(m_nHeight); }
  // Both answer the start pixel: the number of colours has no accessor.
  int GetNumColors() const { return m_nStartPixel; }
  int GetStartPixel() const { return m_nStartPixel; }
  const unsigned char* GetData() const { return m_pData; }
  XImage* GetXImage() const { return m_pXImage; }

  void CreateScaledColorMapping();
  // Channels 0..255; the nearest colour-table entry's pixel.
  unsigned long FindColorMatch(unsigned short red, unsigned short green, unsigned short blue);

 protected:
  bool GetFromCache(unsigned short red, unsigned short green, unsigned short blue, unsigned long* pixel) const;
  void PutInCache(unsigned short red, unsigned short green, unsigned short blue, unsigned long pixel);
  // Fills m_Colors: the display's cells on a colormapped visual, a 3-3-2
  // colour cube in the visual's pixel format on a true-colour one.
  void QueryColorTable(int count);
  bool IsDeepVisual() const;
  // The XImage over the picture: directly over m_pData on an 8-bit screen,
  // over a copy widened to the screen's pixel size otherwise.
  bool MakeXImage();

  XImage* m_pXImage = nullptr;  // owned
  unsigned long* m_pColorMap = nullptr;
  XColor m_Colors[kColorTableSize] = {};
  TScaledColor m_ScaledColors[kColorTableSize] = {};
  std::vector<TScaledColor> m_ColorCache;
  int m_nWidth = 0;
  int m_nHeight = 0;
  unsigned char* m_pData = nullptr;  // owned, malloc'ed: one byte a pixel
  int m_nDataSize = 0;
  unsigned long m_Pixels[kColorTableSize] = {};
  unsigned long m_pPlaneMask = 0;
  Widget m_Widget = nullptr;
  GC m_GC = nullptr;
  Display* m_pDisplay = nullptr;
  Visual* m_pVisual = nullptr;
  int m_nDepth = 0;
  int m_nScreen = 0;
  KColorUsage m_nUsage = k_Usage_SharedColorMap;
  int m_nStartPixel = 0;
  int m_nNumColors = 0;
  char* m_pWideData = nullptr;  // owned: the picture at the screen's pixel size, deep visuals only
};
