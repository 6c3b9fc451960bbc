// A word longer than any X request can carry: a file of one line without a
// blank makes one. It is drawn as far as the screen reaches, with no error
// on the connection.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <unistd.h>

#include <string>

#include "device/context_xwin.h"
#include "format/context.h"
#include "framework/wnd.h"
#include "support/x_app.h"

namespace {
int fg_nErrors = 0;
int CountError(Display*, XErrorEvent*) {
  ++fg_nErrors;
  return 0;
}
}  // namespace

TEST(DeviceLongText, AWordOfAMillionCharactersDrawsItsVisibleStartWithoutAnXError) {
  ztest::XApp* x = ztest::SharedXApp();
  ASSERT_NE(x, nullptr);
  Display* display = x->display;
  const int screen = DefaultScreen(display);
  const int width = 200, height = 40;
  XSetWindowAttributes attributes{};
  attributes.override_redirect = True;
  attributes.background_pixel = WhitePixel(display, screen);
  Window drawWindow = XCreateWindow(display, RootWindow(display, screen), 0, 0, width, height, 0, CopyFromParent,
                                    InputOutput, CopyFromParent, CWOverrideRedirect | CWBackPixel, &attributes);
  XMapWindow(display, drawWindow);
  XGCValues values{};
  values.foreground = BlackPixel(display, screen);
  values.background = WhitePixel(display, screen);
  GC gc = XCreateGC(display, drawWindow, GCForeground | GCBackground, &values);
  XSync(display, False);

  CWnd window;
  window.SetInfo(nullptr, nullptr, nullptr, nullptr, nullptr, drawWindow, 0, 0, 0, width, height, display, gc,
                 DefaultVisual(display, screen), screen, DefaultDepth(display, screen), 255, 0, nullptr);
  TFmtContext_XWin context;
  context.Set_Window(&window);
  // 254 mm (720 points) shown on as many pixels as it has logical units:
  // one unit is one pixel, and the baseline is at device row 30.
  const int units = TFmtContext::fg_nUnitsPerPoint * 720;
  context.SetDisplayRatios(units, units, 254, 254);

  fg_nErrors = 0;
  XErrorHandler old = XSetErrorHandler(CountError);
  const std::string word(1000000, 'H');
  EXPECT_TRUE(context.TextOut(0, -30, word.c_str(), static_cast<int>(word.size())));
  XSync(display, False);
  XSetErrorHandler(old);
  EXPECT_EQ(fg_nErrors, 0);

  // The letters reach both edges of the window.
  XImage* image = XGetImage(display, drawWindow, 0, 0, width, height, AllPlanes, ZPixmap);
  ASSERT_NE(image, nullptr);
  bool left = false, right = false;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      if (XGetPixel(image, x, y) != BlackPixel(display, screen)) continue;
      left = left || x < width / 4;
      right = right || x >= width * 3 / 4;
    }
  XDestroyImage(image);
  EXPECT_TRUE(left);
  EXPECT_TRUE(right);
  XFreeGC(display, gc);
  XDestroyWindow(display, drawWindow);
  XSync(display, False);
}
