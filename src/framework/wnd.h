// CWnd: the X handles of one window. Only the handles and the colormap choice
// are here so far; drawing, invalidation and the rest come with the views.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>


class CWnd {
 public:
  virtual ~CWnd() = default;

  // The private colormap when one was set, else the screen's default.
  Colormap GetColormap() const {
    if (m_bPrivateColormap) return m_PrivateColormap;
    return m_pDisplay ? DefaultColormap(m_pDisplay, m_nScreen) : 0;
  }
  void SetColormap(Colormap colormap) {
    m_PrivateColormap = colormap;
    m_bPrivateColormap = 1;
  }

  Widget m_Shell = nullptr;
  Widget m_DrawWidget = nullptr;
  Widget m_MainWidget = nullptr;
  Widget m_VScroll = nullptr;
  Widget m_HScroll = nullptr;
  Window m_DrawWindow = 0;
  Window m_BrowserWindow = 0;
  int m_x = 0, m_y = 0, m_nWidth = 0, m_nHeight = 0;
  Display* m_pDisplay = nullptr;
  GC m_GC = nullptr;
  Visual* m_pVisual = nullptr;
  int m_nScreen = 0;
  int m_nDepth = 0;
  double m_dDpiX = 0, m_dDpiY = 0;
  int m_nColors = 0;
  int m_nZero = 0;
  Colormap* m_pColormap = nullptr;
  XFontStruct* m_pFontMetrics = nullptr;  // borrowed: the font selected last
  Colormap m_PrivateColormap = 0;
  int m_bPrivateColormap = 0;
};
