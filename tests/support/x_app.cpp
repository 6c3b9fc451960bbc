#include <gtest/gtest.h>

#include "support/x_app.h"

#include <Xm/Xm.h>

#include <cstdlib>
#include <string>

#include <unistd.h>

#include "framework/wnd.h"
#include "host/resource.h"
#include "host/zr_server.h"
#include "support/x_windows.h"

namespace ztest {
XApp* SharedXApp() {
  static XApp* app = [] () -> XApp* {
    if (!std::getenv("DISPLAY")) return nullptr;
    auto* made = new XApp{};
    int argc = 1;
    static char name[] = "zephrin-test";
    static char* argv[] = {name, nullptr};
    made->shell = XtVaAppInitialize(&made->app, "Zephrin", nullptr, 0, &argc, argv, nullptr, XmNwidth, 100,
                                    XmNheight, 100, nullptr);
    XtRealizeWidget(made->shell);
    made->display = XtDisplay(made->shell);
    return made;
  }();
  EXPECT_NE(app, nullptr) << "no DISPLAY: run under tests/run-with-xvfb";
  return app;
}

void PumpXEvents() {
  XApp* x = SharedXApp();
  if (!x) return;
  XSync(x->display, False);
  while (XtAppPending(x->app)) XtAppProcessEvent(x->app, XtIMAll);
}

bool UseInstalledFonts(Display* display) {
  const char* home = std::getenv("ZEPHRIN_HOME");
  EXPECT_TRUE(home && *home) << "needs the build's installation (ZEPHRIN_HOME)";
  if (!home || !*home || !display) return false;
  AppendFontDirectory(display, std::string(home) + "/Fonts/");
  return true;
}

void CreateDrawWindow(XApp* x, int width, int height, Window* window, GC* gc, CWnd* wnd) {
  Display* display = x->display;
  const int screen = DefaultScreen(display);
  *window = XCreateSimpleWindow(display, RootWindow(display, screen), 0, 0, width, height, 0,
                                BlackPixel(display, screen), WhitePixel(display, screen));
  *gc = XCreateGC(display, *window, 0, nullptr);
  wnd->SetInfo(x->shell, nullptr, nullptr, nullptr, nullptr, *window, 0, 0, 0, width, height, display, *gc,
               DefaultVisual(display, screen), screen, DefaultDepth(display, screen), 255, 0, nullptr);
}

void DestroyDrawWindow(Display* display, Window window, GC gc) {
  if (!display) return;
  if (gc) XFreeGC(display, gc);
  if (window) XDestroyWindow(display, window);
}

void SetUpHostResources(ZRServer& server, XApp* x) {
  Display* display = x->display;
  const int screen = DefaultScreen(display);
  server.SetEnv(getpid(), 1);
  server.SetGUI(&x->app, x->shell, display, screen, DefaultVisual(display, screen), DefaultDepth(display, screen),
                255, 0, DefaultColormap(display, screen));
  Resource::GetResourceObject()->SetResources(&server, &x->app);
}
}  // namespace ztest
