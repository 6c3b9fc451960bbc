// The drawing device on a real server: runs of coloured text, each after a
// change of text colour to a fresh colour object, and cached text measuring.
// Run under an X server:
//   ZEPHRIN_BUILD_DIR=build tests/run-with-xvfb build/bench/device_bench
#include <benchmark/benchmark.h>

#include <X11/Xlib.h>
#include <unistd.h>

#include <cstdlib>

#include "device/context_xwin.h"
#include "framework/wnd.h"
#include "host/resource.h"
#include "host/zr_server.h"

namespace {
struct TBenchWindow {
  Display* display = nullptr;
  Window window = 0;
  GC gc = nullptr;
  CWnd wnd;
  TFmtContext_XWin context;
};

// One 1280x1024 window for the whole run, with the host's colours read.
TBenchWindow* SharedWindow() {
  static TBenchWindow* shared = []() -> TBenchWindow* {
    if (!std::getenv("DISPLAY")) return nullptr;
    auto* w = new TBenchWindow;
    w->display = XOpenDisplay(nullptr);
    if (!w->display) return nullptr;
    Display* display = w->display;
    int screen = DefaultScreen(display);
    static ZRServer server;
    setenv("HOME", "/tmp", 0);
    server.SetEnv(getpid(), 1);
    server.SetGUI(nullptr, nullptr, display, screen, DefaultVisual(display, screen), DefaultDepth(display, screen),
                  255, 0, DefaultColormap(display, screen));
    Resource::GetResourceObject()->SetResources(&server, nullptr);
    Resource::GetResourceObject()->SetColors();
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.background_pixel = WhitePixel(display, screen);
    w->window = XCreateWindow(display, RootWindow(display, screen), 0, 0, 1280, 1024, 0, CopyFromParent, InputOutput,
                              CopyFromParent, CWOverrideRedirect | CWBackPixel, &attributes);
    XSelectInput(display, w->window, ExposureMask);
    XMapWindow(display, w->window);
    XEvent event;
    XWindowEvent(display, w->window, ExposureMask, &event);
    w->gc = XCreateGC(display, w->window, 0, nullptr);
    w->wnd.SetInfo(nullptr, nullptr, nullptr, nullptr, nullptr, w->window, 0, 0, 0, 1280, 1024, display, w->gc,
                   DefaultVisual(display, screen), screen, DefaultDepth(display, screen), 255, 0, nullptr);
    w->context.Set_Window(&w->wnd);
    return w;
  }();
  return shared;
}

// 10,000 runs of 10 characters, each after SetTextColor of a new colour
// object: eight colours in turn, four of them by name. One XSync at the end,
// so the time includes the server's drawing.
void BM_ColouredTextRuns(benchmark::State& state) {
  TBenchWindow* w = SharedWindow();
  if (!w) {
    state.SkipWithError("needs an X server: run under tests/run-with-xvfb");
    return;
  }
  struct TColor {
    unsigned short r, g, b;
    const char* name;
  };
  static const TColor colors[8] = {{0, 0, 0, nullptr},     {255, 0, 0, "red"},  {0, 128, 0, nullptr},
                                   {0, 0, 255, "blue"},    {0, 128, 128, nullptr}, {160, 32, 240, "purple1"},
                                   {142, 35, 107, nullptr}, {255, 165, 0, "orange"}};
  for (auto _ : state) {
    for (int i = 0; i < 10000; ++i) {
      const TColor& c = colors[i % 8];
      w->context.SetTextColor(CColorRef(c.r, c.g, c.b, c.name));
      // Rows of 20 runs down the window in logical units.
      w->context.TextOut((i % 20) * 90, -20 - (i / 20 % 70) * 20, "abcdefghij", 10);
    }
    XSync(w->display, False);
  }
  state.SetItemsProcessed(state.iterations() * 10000);
}
BENCHMARK(BM_ColouredTextRuns)->Unit(benchmark::kMillisecond);

void BM_CachedTextExtent(benchmark::State& state) {
  TBenchWindow* w = SharedWindow();
  if (!w) {
    state.SkipWithError("needs an X server: run under tests/run-with-xvfb");
    return;
  }
  w->context.GetTextExtent("M", 1);  // the first call asks the server
  for (auto _ : state) benchmark::DoNotOptimize(w->context.GetTextExtent("abcdefghij", 10));
}
BENCHMARK(BM_CachedTextExtent);
}  // namespace
