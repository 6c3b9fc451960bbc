#include "framework/wnd.h"

#include "framework/geometry.h"

void CWnd::SetInfo(Widget shell, Widget drawWidget, Widget mainWidget, Widget vScroll, Widget hScroll,
                   Window drawWindow, Window browserWindow, int x, int y, int width, int height,
                   Display* display, GC gc, Visual* visual, int screen, int depth, int colors, int zero,
                   Colormap* colormap) {
  m_Shell = shell;
  m_DrawWidget = drawWidget;
  m_MainWidget = mainWidget;
  m_VScroll = vScroll;
  m_HScroll = hScroll;
  m_DrawWindow = drawWindow;
  m_BrowserWindow = browserWindow;
  m_x = x;
  m_y = y;
  m_nWidth = width;
  m_nHeight = height;
  m_pDisplay = display;
  m_GC = gc;
  m_pVisual = visual;
  m_nScreen = screen;
  m_nDepth = depth;
  m_nColors = colors;
  m_nZero = zero;
  m_pColormap = colormap;
  m_dDpiX = m_dDpiY = 0;
  if (!display || screen < 0 || screen >= ScreenCount(display)) return;
  const Screen* record = ScreenOfDisplay(display, screen);
  if (record->mwidth > 0) m_dDpiX = record->width / (record->mwidth / 25.4);
  if (record->mheight > 0) m_dDpiY = record->height / (record->mheight / 25.4);
}

void CWnd::SendExpose(int x, int y, int width, int height) {
  if (!m_pDisplay || !m_DrawWindow) return;
  XEvent event{};
  event.xexpose.type = Expose;
  event.xexpose.send_event = True;
  event.xexpose.display = m_pDisplay;
  event.xexpose.window = m_DrawWindow;
  event.xexpose.x = x;
  event.xexpose.y = y;
  event.xexpose.width = width;
  event.xexpose.height = height;
  event.xexpose.count = 0;
  XSendEvent(m_pDisplay, m_DrawWindow, True, ButtonPressMask | ButtonReleaseMask, &event);
}

void CWnd::Invalidate(int erase) {
  if (erase == 1) {
    OnEraseBkgnd();
    if (m_pDisplay && m_DrawWindow) XClearWindow(m_pDisplay, m_DrawWindow);
  }
  SendExpose(m_x, m_y, m_nWidth, m_nHeight);
}

void CWnd::InvalidateRect(const CRect* rect, int erase) {
  if (!rect) {
    Invalidate(erase);
    return;
  }
  int width = rect->right - rect->left, height = rect->bottom - rect->top;
  // X takes 16-bit unsigned sizes; a negative or huge one would wrap.
  if (width < 0) width = 0;
  if (height < 0) height = 0;
  if (width > 65535) width = 65535;
  if (height > 65535) height = 65535;
  if (erase == 1) {
    OnEraseBkgnd();
    // A zero size would clear to the window's edge: nothing to clear then.
    if (m_pDisplay && m_DrawWindow && width > 0 && height > 0)
      XClearArea(m_pDisplay, m_DrawWindow, rect->left, rect->top, width, height, False);
  }
  SendExpose(rect->left, rect->top, width, height);
}

Window CWnd::GetTopWindow(Window window) const {
  if (!m_pDisplay || !window) return window;
  Window current = window;
  for (;;) {
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    if (!XQueryTree(m_pDisplay, current, &root, &parent, &children, &count)) return current;
    if (children) XFree(children);
    if (!parent || parent == root) return current;
    current = parent;
  }
}
