#include "examine_x.h"

#include <Xm/Xm.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>

#include "host/resource.h"

bool ParseInspectInt(const char* text, int* value) {
  if (!text || !*text) return false;
  const char* p = text;
  const bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  if (!*p) return false;
  long long result = 0;
  for (; *p; ++p) {
    if (*p < '0' || *p > '9') return false;
    result = std::min<long long>(result * 10 + (*p - '0'), 1LL << 40);
  }
  *value = static_cast<int>(std::clamp<long long>(negative ? -result : result, INT_MIN, INT_MAX));
  return true;
}

bool OpenInspectX(TInspectX* x, const char* verb) {
  int argc = 1;
  static char name[] = "zephrin-inspect";
  static char* argv[] = {name, nullptr};
  XtToolkitInitialize();
  x->app = XtCreateApplicationContext();
  x->display = XtOpenDisplay(x->app, nullptr, name, "ZephrinInspect", nullptr, 0, &argc, argv);
  if (!x->display) {
    std::fprintf(stderr, "zephrin-inspect %s: cannot open the display\n", verb);
    return false;
  }
  x->shell = XtVaAppCreateShell(name, "ZephrinInspect", applicationShellWidgetClass, x->display, XmNwidth, 100,
                                XmNheight, 100, nullptr);
  Display* display = x->display;
  const int screen = DefaultScreen(display);
  x->server.SetEnv(getpid(), 1);
  x->server.SetGUI(&x->app, x->shell, display, screen, DefaultVisual(display, screen), DefaultDepth(display, screen),
                   255, 0, DefaultColormap(display, screen));
  Resource* resource = Resource::GetResourceObject();
  resource->SetResources(&x->server, &x->app);
  TFmtContext_XWin::InitializeResources();
  // The profile store's font path, templates and sizes, when it is there.
  if (resource->SetRegistry() == 13) TFmtContext_XWin::ReadRegistryValues();
  resource->SetColors();
  XSetErrorHandler(&ZRServer::XErrorHandler);
  x->server.LoadFonts();

  static Colormap colormap;
  colormap = DefaultColormap(display, screen);
  Window drawWindow = XCreateSimpleWindow(display, RootWindow(display, screen), 0, 0, 100, 100, 0,
                                          BlackPixel(display, screen), WhitePixel(display, screen));
  GC gc = XCreateGC(display, drawWindow, 0, nullptr);
  x->window.SetInfo(x->shell, nullptr, nullptr, nullptr, nullptr, drawWindow, 0, 0, 0, 100, 100, display, gc,
                    DefaultVisual(display, screen), screen, DefaultDepth(display, screen), 255, 0, &colormap);
  x->context.Set_Window(&x->window);
  return true;
}
