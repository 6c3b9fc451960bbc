// The first document on screen, on a ten-page article (bench/data/article10.tex).
//
// BM_StreamToFirstPaint, in this process: the host's objects set up as its
// start-up does (resources, colours, its fonts on the server's path, the
// profile store, the application), an instance made and its widgets built
// by the host's own New and SetWindow handlers; timed from the StreamAsFile
// handler to the end of the first complete paint: the paint-done event that
// the view sends after its drawing, then XSync. No tick runs here: end to
// end adds the tick's 0-50 ms. Goal: under 50 ms.
//
// BM_HostRss, end to end: a host started through the test shim with a
// window set and no document (bare), then the same host with the article
// loaded and painted, then with a second instance of it. Counters in MiB:
// bare, with the article, the growth (goal: at most 10), the second
// article's increment (the article's own share; goal: under 2.5).
//
// BM_LargeFile, end to end: a 50 MB file as lines of words (0) and as one
// line without a blank (1): StreamAsFile to the first paint, and the host's
// peak memory. No goal but a bound: the tests use a smaller file. The text
// case takes some 4 GiB; --benchmark_filter='First|Rss' leaves it out.
//
// Run under an X server with the build's installation tree:
//   ZEPHRIN_BUILD_DIR=build tests/run-with-xvfb build/bench/view_bench
#include <benchmark/benchmark.h>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <Xm/Xm.h>
#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "errors/parse_errors.h"
#include "format/document_node.h"
#include "host/link_records.h"
#include "host/np_doc.h"
#include "host/np_view.h"
#include "host/np_zephrin_app.h"
#include "host/resource.h"
#include "host/zephrin_stat.h"
#include "host/zr_server.h"
#include "support/host_shim.h"
#include "support/link_shim.h"
#include "support/paths.h"

namespace fs = std::filesystem;

namespace {
using Clock = std::chrono::steady_clock;

constexpr int kWidth = 800, kHeight = 600;

std::string ArticlePath() { return std::string(ZEPHRIN_SOURCE_DIR) + "/bench/data/article10.tex"; }

double Ms(Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

bool HaveX() { return std::getenv("DISPLAY") && std::getenv("ZEPHRIN_HOME"); }

// ---- in process --------------------------------------------------------------------

// A listening socket standing for the shim's data port: the host's status
// texts go there, as they would to the browser.
struct TDataPort {
  int fd = -1;
  int port = 0;
  TDataPort() {
    fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
    socklen_t length = sizeof address;
    getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
    port = ntohs(address.sin_port);
    listen(fd, 64);
  }
  // The texts of the status records waiting on the port.
  std::vector<std::string> Drain() {
    std::vector<std::string> texts;
    for (;;) {
      pollfd p{fd, POLLIN, 0};
      if (poll(&p, 1, 0) <= 0) return texts;
      int client = accept(fd, nullptr, nullptr);
      if (client < 0) return texts;
      std::string bytes;
      char buffer[2048];
      for (ssize_t n; (n = read(client, buffer, sizeof buffer)) > 0;) bytes.append(buffer, static_cast<size_t>(n));
      close(client);
      texts.push_back(ztest::RecordText(bytes));
    }
  }
};

void ShutDown() { std::exit(0); }

struct THost {
  XtAppContext app = nullptr;
  Display* display = nullptr;
  ZRServer* server = nullptr;
  Window browser = 0;
  Atom paintDone = 0;
  TDataPort data;
  int32_t nextId = 1;
  double coldMs = 0;  // the process's first load: fonts and parser tables
  long ink = 0;       // black pixels after that load's paint
};

// What zephrin's start-up does, less the splash and the report, and without
// the application context in the resources: StartAppTimer then does
// nothing and no tick runs.
THost* Host() {
  static THost* host = []() -> THost* {
    if (!HaveX()) return nullptr;
    auto* h = new THost;
    std::string home = ztest::ScratchDir("view-bench-home");
    fs::create_directories(fs::path(home) / ".zephrin" / "Cache");
    ztest::WriteFile(home + "/.zephrin/Cache/registry", "");
    setenv("HOME", home.c_str(), 1);

    h->server = new ZRServer;
    h->server->SetEnv(getppid(), 0);
    Resource* resource = Resource::GetResourceObject();
    resource->SetResources(h->server, nullptr);
    static char name[] = "zephrin";
    static char* argv[] = {name, nullptr};
    int argc = 1;
    Widget shell = XtVaAppInitialize(&h->app, "Zephrin", nullptr, 0, &argc, argv, nullptr, XmNwidth, 10,
                                     XmNheight, 10, XmNmappedWhenManaged, False, nullptr);
    h->display = XtDisplay(shell);
    Display* display = h->display;
    const int screen = DefaultScreen(display);
    h->server->SetGUI(&h->app, shell, display, screen, DefaultVisual(display, screen), DefaultDepth(display, screen),
                      255, 0, DefaultColormap(display, screen));
    resource->SetColors();
    XtRealizeWidget(shell);
    ZephrinStat::GetZephrinStatObject()->Initialize(shell, ShutDown);
    CZrError::Set_DialogParent(shell);
    XSetErrorHandler(&ZRServer::XErrorHandler);
    if (h->server->LoadFonts() != 7 || resource->SetRegistry() != 13) return nullptr;
    h->server->InitializeNetwork();
    CNpZephrinApp::GetPlugInDllObject()->InitInstance();

    // The browser's window; the paint-done event comes back to its creator.
    h->browser = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, kWidth, kHeight, 0, 0,
                                     WhitePixel(display, screen));
    XMapWindow(display, h->browser);
    h->paintDone = XInternAtom(display, zlink::kPaintDoneAtom, False);
    XSync(display, False);
    return h;
  }();
  return host;
}

void Dispatch(THost* h, const std::string& record) { h->server->Dispatch(record.data(), static_cast<int>(record.size())); }

// Every event that is queued or arrives within a few milliseconds.
void Pump(THost* h) {
  XSync(h->display, False);
  for (int idle = 0; idle < 3;) {
    if (XtAppPending(h->app) & XtIMXEvent) {
      XtAppProcessEvent(h->app, XtIMXEvent);
      idle = 0;
    } else {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      XSync(h->display, False);
      ++idle;
    }
  }
}

// A fresh instance with its widgets in the browser's window, as the New and
// SetWindow records make it; its id.
int32_t MakeInstance(THost* h) {
  const int32_t id = h->nextId++;
  std::string record = ztest::LinkShim::New(id);
  zlink::TNewMessage message;
  std::memcpy(&message, record.data(), sizeof message);
  message.dataAddress.sin_family = AF_INET;
  message.dataAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  message.dataAddress.sin_port = htons(static_cast<uint16_t>(h->data.port));
  message.controlAddress = message.dataAddress;
  Dispatch(h, std::string(reinterpret_cast<const char*>(&message), sizeof message));
  Dispatch(h, ztest::LinkShim::SetWindow(id, h->browser, kWidth, kHeight));
  Pump(h);
  h->data.Drain();
  return id;
}

// From the StreamAsFile record to the paint-done event and an XSync; false
// when the paint has not come within 10 s.
bool StreamAndPaint(THost* h, int32_t id, const std::string& path, double* ms) {
  const std::string record = ztest::LinkShim::StreamAsFile(id, "file:" + path, path);
  const auto start = Clock::now();
  Dispatch(h, record);
  const auto limit = start + std::chrono::seconds(10);
  for (;;) {
    if (!(XtAppPending(h->app) & XtIMXEvent)) {
      if (Clock::now() > limit) return false;
      pollfd p{ConnectionNumber(h->display), POLLIN, 0};
      poll(&p, 1, 5);
      continue;
    }
    XEvent event;
    XtAppNextEvent(h->app, &event);
    if (event.type == ClientMessage && event.xclient.window == h->browser &&
        event.xclient.message_type == h->paintDone && event.xclient.data.l[0] == id)
      break;
    XtDispatchEvent(&event);
  }
  XSync(h->display, False);
  *ms = Ms(Clock::now() - start);
  return true;
}

// Black pixels in the browser's window (the host's widgets in it): the
// text's ink, which neither the paper nor the grey bars have.
long InkPixels(THost* h) {
  XImage* image = XGetImage(h->display, h->browser, 0, 0, kWidth, kHeight, AllPlanes, ZPixmap);
  if (!image) return 0;
  const unsigned long black = BlackPixel(h->display, DefaultScreen(h->display));
  long ink = 0;
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) ink += XGetPixel(image, x, y) == black;
  XDestroyImage(image);
  return ink;
}

CZephrinPlugInDoc* DocumentOf(THost* h, int32_t id) {
  DNode* node = h->server->GetDocumentList().Find(id);
  return node ? node->GetDocument()->GetDocument() : nullptr;
}

void Destroy(THost* h, int32_t id) {
  Dispatch(h, ztest::LinkShim::Header(zlink::kDestroy, id));
  Pump(h);
  h->data.Drain();
}

void BM_StreamToFirstPaint(benchmark::State& state) {
  THost* h = Host();
  if (!h) {
    state.SkipWithError("run under tests/run-with-xvfb with ZEPHRIN_BUILD_DIR set");
    return;
  }
  const std::string path = ArticlePath();
  if (!fs::exists(path)) {
    state.SkipWithError("no bench/data/article10.tex");
    return;
  }
  // The process's first load also reads the fonts' metrics from the server
  // and builds the parser's tables: measured once, reported apart.
  if (h->coldMs == 0) {
    int32_t id = MakeInstance(h);
    if (!StreamAndPaint(h, id, path, &h->coldMs)) {
      state.SkipWithError("the first paint did not come");
      return;
    }
    // What is timed is a real paint: the window shows text.
    h->ink = InkPixels(h);
    if (h->ink < 1000) {
      state.SkipWithError("the window shows no text after the paint");
      return;
    }
    Destroy(h, id);
  }
  int height = 0;
  for (auto _ : state) {
    int32_t id = MakeInstance(h);
    double ms = 0;
    if (!StreamAndPaint(h, id, path, &ms)) {
      state.SkipWithError("the first paint did not come");
      return;
    }
    state.SetIterationTime(ms / 1000.0);
    // The rest of the load's events (its own repaint of the window).
    Pump(h);
    // The load really happened: its two status texts went out.
    std::vector<std::string> status = h->data.Drain();
    if (status.size() != 2 || status[1] != " ") {
      state.SkipWithError("the load did not send its status texts");
      return;
    }
    if (CZephrinPlugInDoc* document = DocumentOf(h, id)) {
      Dimension drawHeight = 0;
      if (CZephrinPlugInView* view = document->Get_Window())
        XtVaGetValues(view->m_DrawWidget, XmNheight, &drawHeight, nullptr);
      height = drawHeight;
    }
    Destroy(h, id);
  }
  state.counters["cold_first_ms"] = h->coldMs;
  state.counters["ink_px"] = static_cast<double>(h->ink);
  state.counters["document_px"] = height;
  state.counters["article_bytes"] = static_cast<double>(fs::file_size(path));
}
BENCHMARK(BM_StreamToFirstPaint)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(30);

// ---- the host's memory -------------------------------------------------------------

// A field of /proc/<pid>/status in MiB; -1 when it cannot be read.
double StatusMiB(pid_t pid, const std::string& field) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/status");
  for (std::string line; std::getline(in, line);)
    if (line.rfind(field + ":", 0) == 0) return std::atof(line.c_str() + field.size() + 1) / 1024.0;
  return -1;
}

bool WaitFor(const std::function<bool()>& condition, int timeoutMs) {
  const auto end = Clock::now() + std::chrono::milliseconds(timeoutMs);
  while (Clock::now() < end) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return condition();
}

struct TBrowser {
  Display* display = nullptr;
  Atom paintDone = 0;
  TBrowser() {
    display = XOpenDisplay(nullptr);
    if (display) paintDone = XInternAtom(display, zlink::kPaintDoneAtom, False);
  }
  ~TBrowser() {
    if (display) XCloseDisplay(display);
  }
  Window MakeWindow() {
    Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, kWidth, kHeight, 0, 0,
                                        WhitePixel(display, DefaultScreen(display)));
    XMapWindow(display, window);
    XSync(display, False);
    return window;
  }
  bool HasChild(Window window) {
    Window root, parent, *children = nullptr;
    unsigned count = 0;
    XQueryTree(display, window, &root, &parent, &children, &count);
    if (children) XFree(children);
    return count > 0;
  }
  // The paint-done event, or false after the time or when the host has
  // ended.
  bool WaitPaint(Window window, int timeoutMs, ztest::HostShim& host) {
    bool painted = false;
    WaitFor(
        [&] {
          XEvent event;
          while (XCheckTypedWindowEvent(display, window, ClientMessage, &event))
            if (event.xclient.message_type == paintDone) painted = true;
          return painted || host.WaitExit(0) != -1;
        },
        timeoutMs);
    return painted;
  }
};

// The host settles for a few ticks before its memory is read.
void Settle() { std::this_thread::sleep_for(std::chrono::milliseconds(300)); }

// A started host with instance 1 in a window of its own and no document,
// settled; 0 (and the benchmark skipped) when that fails.
Window BareInstance(TBrowser& browser, ztest::LinkShim& shim, benchmark::State& state) {
  if (!browser.display || !shim.Start()) {
    state.SkipWithError("the host did not start");
    return 0;
  }
  Window window = browser.MakeWindow();
  shim.Send(shim.NewHere(1));
  shim.Send(ztest::LinkShim::SetWindow(1, window, kWidth, kHeight));
  if (!WaitFor([&] { return browser.HasChild(window); }, 10000)) {
    state.SkipWithError("no widgets in the browser's window");
    return 0;
  }
  Settle();
  return window;
}

void BM_HostRss(benchmark::State& state) {
  if (!HaveX()) {
    state.SkipWithError("run under tests/run-with-xvfb with ZEPHRIN_BUILD_DIR set");
    return;
  }
  const std::string path = ArticlePath();
  double bare = 0, with = 0, second = 0, peak = 0;
  TBrowser browser;
  for (auto _ : state) {
    ztest::LinkShim shim;
    const Window first = BareInstance(browser, shim, state);
    if (!first) return;
    const pid_t pid = shim.Host().HostPid();
    const double bareMiB = StatusMiB(pid, "VmRSS");

    const auto start = Clock::now();
    shim.Send(ztest::LinkShim::StreamAsFile(1, "file:" + path, path));
    if (!browser.WaitPaint(first, 20000, shim.Host()) || shim.ReadStatus() != "zephrin reading file:" + path + " ..." ||
        shim.ReadStatus() != " ") {
      state.SkipWithError("the article was not loaded and painted");
      return;
    }
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    Settle();
    const double withMiB = StatusMiB(pid, "VmRSS");

    Window other = browser.MakeWindow();
    shim.Send(shim.NewHere(2));
    shim.Send(ztest::LinkShim::SetWindow(2, other, kWidth, kHeight));
    shim.Send(ztest::LinkShim::StreamAsFile(2, "file:" + path, path));
    if (!browser.WaitPaint(other, 20000, shim.Host())) {
      state.SkipWithError("the second article was not painted");
      return;
    }
    Settle();
    const double secondMiB = StatusMiB(pid, "VmRSS");
    peak += StatusMiB(pid, "VmHWM");
    bare += bareMiB;
    with += withMiB;
    second += secondMiB - withMiB;
  }
  const double n = static_cast<double>(state.iterations());
  state.counters["bare_MiB"] = bare / n;
  state.counters["with_article_MiB"] = with / n;
  state.counters["growth_MiB"] = (with - bare) / n;
  state.counters["second_article_MiB"] = second / n;
  state.counters["peak_MiB"] = peak / n;
}
// The iteration's time is end to end: StreamAsFile sent to the paint-done
// event received, the tick included.
BENCHMARK(BM_HostRss)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

// ---- a 50 MB file --------------------------------------------------------------------

// 50 MB of text: lines of words in paragraphs of ten lines (Arg 0), or a
// single line without a blank (Arg 1).
std::string LargeFile(int oneLine) {
  static const std::string dir = ztest::ScratchDir("view-bench-large");
  const std::string path = dir + (oneLine ? "/line.tex" : "/text.tex");
  if (fs::exists(path)) return path;
  constexpr size_t kBytes = 50u << 20;
  std::string text;
  text.reserve(kBytes + 100);
  if (oneLine) {
    static const char letters[] = "abcdefghijklmnopqrstuvwxyz";
    for (size_t i = 0; text.size() < kBytes; ++i) text += letters[(i * 7) % 26];
  } else {
    static const char* const words[] = {"the", "front", "between", "wet", "and", "dry", "pores", "moves",
                                        "down", "through", "a", "thin", "layer", "as", "liquid", "leaves"};
    for (size_t line = 0; text.size() < kBytes; ++line) {
      for (size_t w = 0; w < 12; ++w) {
        text += words[(line * 5 + w * 3) % 16];
        text += ' ';
      }
      text += line % 10 == 9 ? "\n\n" : "\n";
    }
  }
  text.resize(kBytes);
  ztest::WriteFile(path, text);
  return path;
}

// End to end, one host per iteration: StreamAsFile to the first paint, and
// the host's peak memory (VmHWM) then.
void BM_LargeFile(benchmark::State& state) {
  if (!HaveX()) {
    state.SkipWithError("run under tests/run-with-xvfb with ZEPHRIN_BUILD_DIR set");
    return;
  }
  const std::string path = LargeFile(static_cast<int>(state.range(0)));
  double bare = 0, peak = 0, after = 0;
  TBrowser browser;
  for (auto _ : state) {
    ztest::LinkShim shim;
    const Window window = BareInstance(browser, shim, state);
    if (!window) return;
    const pid_t pid = shim.Host().HostPid();
    bare += StatusMiB(pid, "VmRSS");
    const auto start = Clock::now();
    shim.Send(ztest::LinkShim::StreamAsFile(1, "file:" + path, path));
    if (!browser.WaitPaint(window, 600000, shim.Host())) {
      state.SkipWithError("no paint within ten minutes, or the host ended");
      return;
    }
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    Settle();
    peak += StatusMiB(pid, "VmHWM");
    after += StatusMiB(pid, "VmRSS");
    if (shim.Host().WaitExit(0) != -1) {
      state.SkipWithError("the host ended");
      return;
    }
  }
  const double n = static_cast<double>(state.iterations());
  state.counters["bare_MiB"] = bare / n;
  state.counters["peak_MiB"] = peak / n;
  state.counters["after_MiB"] = after / n;
}
BENCHMARK(BM_LargeFile)->Arg(0)->Arg(1)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
}  // namespace
