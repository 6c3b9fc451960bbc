// Character metrics and stretched fonts on a real server with the
// installation's fonts. Run under an X server:
//   ZEPHRIN_BUILD_DIR=build tests/run-with-xvfb build/bench/font_family_bench
// Warm measures should cost a few nanoseconds and no request; finding a
// stretched size already made (among 100) well under a microsecond.
#include <benchmark/benchmark.h>

#include <X11/Xlib.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "device/context_xwin.h"
#include "device/font_family.h"
#include "framework/wnd.h"
#include "host/resource.h"
#include "host/zr_server.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

namespace {
struct TBenchFonts {
  Display* display = nullptr;
  CWnd wnd;
  TFmtContext_XWin context;
};

TBenchFonts* SharedFonts() {
  static TBenchFonts* shared = []() -> TBenchFonts* {
    const char* home = std::getenv("ZEPHRIN_HOME");
    if (!std::getenv("DISPLAY") || !home) return nullptr;
    auto* f = new TBenchFonts;
    f->display = XOpenDisplay(nullptr);
    if (!f->display) return nullptr;
    Display* display = f->display;
    const int screen = DefaultScreen(display);
    int count = 0;
    char** old = XGetFontPath(display, &count);
    std::vector<char*> path(old, old + count);
    std::string fonts = std::string(home) + "/Fonts/";
    path.push_back(fonts.data());
    XSetFontPath(display, path.data(), static_cast<int>(path.size()));
    if (old) XFreeFontPath(old);
    static ZRServer server;
    setenv("HOME", "/tmp", 0);
    server.SetEnv(getpid(), 1);
    server.SetGUI(nullptr, nullptr, display, screen, DefaultVisual(display, screen), DefaultDepth(display, screen),
                  255, 0, DefaultColormap(display, screen));
    Resource::GetResourceObject()->SetResources(&server, nullptr);
    TFmtContext_XWin::InitializeResources();
    TStringPool::InitializeGlobal();
    TGlobalString::Initialize();
    TGlobalString::InitializeSymbolFonts();
    Window window = XCreateSimpleWindow(display, RootWindow(display, screen), 0, 0, 100, 100, 0, 0, 0);
    GC gc = XCreateGC(display, window, 0, nullptr);
    f->wnd.SetInfo(nullptr, nullptr, nullptr, nullptr, nullptr, window, 0, 0, 0, 100, 100, display, gc,
                   DefaultVisual(display, screen), screen, DefaultDepth(display, screen), 255, 0, nullptr);
    f->context.Set_Window(&f->wnd);
    TFontFamily::PrepareAllFonts(&f->wnd);
    return f;
  }();
  return shared;
}

// A megabyte of text: every byte value, in a scrambled order.
const std::string& Text() {
  static const std::string text = [] {
    std::string t(1 << 20, ' ');
    unsigned x = 12345;
    for (char& c : t) {
      x = x * 1103515245u + 12345u;
      c = static_cast<char>(x >> 16);
    }
    return t;
  }();
  return text;
}

// Width, height and depth of each character of the text, alternately in
// the roman and the math italic, after one warming pass. Fails when any
// request reaches the server while timing.
void BM_WarmCharacterMetrics(benchmark::State& state) {
  TBenchFonts* f = SharedFonts();
  if (!f) {
    state.SkipWithError("needs an X server and ZEPHRIN_HOME: run under tests/run-with-xvfb");
    return;
  }
  TExtendedFont_PI* fonts[2] = {TFontFamily::fg_pRoman->GetFontAtCurrentSize(f->context),
                                TFontFamily::fg_pMathItalic->GetFontAtCurrentSize(f->context)};
  const std::string& text = Text();
  for (int c = 0; c < 256; ++c)
    for (TExtendedFont_PI* font : fonts) {
      font->CharacterWidth(c, f->context);
      font->CharacterHeight(c, f->context);
      font->CharacterDepth(c, f->context);
    }
  XSync(f->display, False);
  const unsigned long request = XNextRequest(f->display);
  for (auto _ : state) {
    long sum = 0;
    for (size_t i = 0; i < text.size(); ++i) {
      TExtendedFont_PI* font = fonts[i & 1];
      const int c = text[i];  // negative above 127, as a signed char
      sum += font->CharacterWidth(c, f->context);
      sum += font->CharacterHeight(c, f->context);
      sum += font->CharacterDepth(c, f->context);
    }
    benchmark::DoNotOptimize(sum);
  }
  if (XNextRequest(f->display) != request) state.SkipWithError("a warm measure asked the server");
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(text.size()) * 3);
}
BENCHMARK(BM_WarmCharacterMetrics)->Unit(benchmark::kMillisecond);

// A stretched size already made, found among 100 in the family's list: the
// last one made is first in the list, so ask for the oldest.
void BM_StretchedFontHit(benchmark::State& state) {
  TBenchFonts* f = SharedFonts();
  if (!f) {
    state.SkipWithError("needs an X server and ZEPHRIN_HOME: run under tests/run-with-xvfb");
    return;
  }
  TFontFamily* family = TFontFamily::fg_pMathExtension1;
  const int m = TFontFamily::MinusHeight(f->context);
  // Heights 10 points apart give 100 distinct sizes.
  for (int i = 0; i < 100; ++i) family->CreateFontForCharacter(104, m + 20 + 10 * i, 0, f->context, 0);
  if (family->Get_StretchedFontCount() != 100) state.SkipWithError("expected 100 stretched sizes");
  for (auto _ : state)
    benchmark::DoNotOptimize(family->CreateFontForCharacter(104, m + 20, 0, f->context, 0));
}
BENCHMARK(BM_StretchedFontHit);

// A size not made yet: the name, the server's font and the metrics. The
// sizes are new on every iteration.
void BM_StretchedFontNewSize(benchmark::State& state) {
  TBenchFonts* f = SharedFonts();
  if (!f) {
    state.SkipWithError("needs an X server and ZEPHRIN_HOME: run under tests/run-with-xvfb");
    return;
  }
  TFontFamily* family = TFontFamily::fg_pMathExtension2;
  const int m = TFontFamily::MinusHeight(f->context);
  int height = m + 20;
  for (auto _ : state) {
    benchmark::DoNotOptimize(family->CreateFontForCharacter(104, height, 0, f->context, 0));
    ++height;  // one point more: a new size each time
  }
}
BENCHMARK(BM_StretchedFontNewSize)->Unit(benchmark::kMicrosecond)->Iterations(100);
}  // namespace
