// CWnd: the X handles of one window, and the repaint requests that go to its
// drawing widget. Only this layer and the drawing device touch X handles.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#include "framework/objects.h"

struct CRect;

class CWnd {
 public:
  CWnd() = default;
  CWnd(const CWnd&) = default;
  CWnd& operator=(const CWnd&) = default;
  virtual ~CWnd() = default;

  // Slot order: OnEraseBkgnd, OnUpdate.
  virtual int OnEraseBkgnd() { return 0; }
  virtual void OnUpdate(CWnd* /*sender*/, long /*hint*/, CObject* /*hintObject*/) {}

  // Stores every handle; the two resolutions come from the screen record
  // (pixels per inch of its millimetre size; 0 when the server reports 0 mm).
  void SetInfo(Widget shell, Widget drawWidget, Widget mainWidget, Widget vScroll, Widget hScroll,
               Window drawWindow, Window browserWindow, int x, int y, int width, int height, Display* display,
               GC gc, Visual* visual, int screen, int depth, int colors, int zero, Colormap* colormap);

  // The private colormap when one was set, else the screen's default.
  Colormap GetColormap() const {
    if (m_bPrivateColormap) return m_PrivateColormap;
    return m_pDisplay ? DefaultColormap(m_pDisplay, m_nScreen) : 0;
  }
  void SetColormap(Colormap colormap) {
    m_PrivateColormap = colormap;
    m_bPrivateColormap = 1;
  }

  // A repaint request as a sent Expose (count 0). The event mask repeats the
  // event's type number (12): that is what the drawing widget's handler is
  // registered for, so the request reaches it and not the toolkit's expose
  // path. With erase 1 the window is cleared first.
  void Invalidate(int erase = 1);
  void InvalidateRect(const CRect* rect, int erase = 1);
  // The last window below the root on the way up from `window`.
  Window GetTopWindow(Window window) const;
  void SetFocus() {}

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

 private:
  void SendExpose(int x, int y, int width, int height);
};
