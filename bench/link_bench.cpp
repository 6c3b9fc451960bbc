// The link's cost per record, and the viewer's start.
//
// BM_ReadAndDispatch: what the host adds per record on top of its 50 ms
// tick: a loopback connection, NSServer::Read and the handler (New and
// Destroy of an instance, in process, without X).
// BM_RecordsThroughTheHost: GetDocument round trips through a real host:
// records handled per second at the design's pace of one per tick.
// BM_ViewerStartToFirstWindow: zephrin-view from exec to its window on the
// screen.
// The last two need an X server and the installation:
//   ZEPHRIN_BUILD_DIR=build tests/run-with-xvfb build/bench/link_bench
#include <benchmark/benchmark.h>

#include <arpa/inet.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <X11/Xlib.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include "host/link_records.h"
#include "host/zr_server.h"
#include "support/link_shim.h"
#include "support/paths.h"
#include "support/x_windows.h"

namespace fs = std::filesystem;

namespace {
using Clock = std::chrono::steady_clock;

bool HaveX() { return std::getenv("DISPLAY") && std::getenv("ZEPHRIN_HOME"); }

void BM_ReadAndDispatch(benchmark::State& state) {
  static ZRServer* server = [] {
    auto* s = new ZRServer;
    s->InitializeNetwork();
    return s;
  }();
  std::string newRecord = ztest::LinkShim::New(1, "x");
  std::string destroy = ztest::LinkShim::Header(zlink::kDestroy, 1);
  sockaddr_in to = server->GetListenAddress();
  char buffer[zlink::kReadCapacity];
  for (auto _ : state) {
    for (const std::string* record : {&newRecord, &destroy}) {
      int out = socket(AF_INET, SOCK_STREAM, 0);
      connect(out, reinterpret_cast<sockaddr*>(&to), sizeof to);
      ssize_t written = write(out, record->data(), record->size());
      benchmark::DoNotOptimize(written);
      close(out);
      int in = accept(server->GetListenSocket(), nullptr, nullptr);
      int length = server->Read(in, buffer, sizeof buffer);
      close(in);
      server->Dispatch(buffer, length);
    }
  }
  state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_ReadAndDispatch)->Unit(benchmark::kMicrosecond);

void BM_RecordsThroughTheHost(benchmark::State& state) {
  if (!HaveX()) {
    state.SkipWithError("run under tests/run-with-xvfb with ZEPHRIN_BUILD_DIR set");
    return;
  }
  ztest::LinkShim shim;
  if (!shim.Start()) {
    state.SkipWithError("the host did not report ready");
    return;
  }
  shim.Send(shim.NewHere(1));
  shim.ReadControl(1500);  // past the host's one-second pause
  const int kRecords = 40;
  for (auto _ : state) {
    auto start = Clock::now();
    for (int i = 0; i < kRecords; ++i) shim.Send(ztest::LinkShim::Header(zlink::kGetDocument, 1));
    int replies = 0;
    while (replies < kRecords && !shim.ReadControl(5000).empty()) ++replies;
    if (replies != kRecords) {
      state.SkipWithError("replies were lost");
      return;
    }
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
  }
  state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(BM_RecordsThroughTheHost)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_ViewerStartToFirstWindow(benchmark::State& state) {
  if (!HaveX()) {
    state.SkipWithError("run under tests/run-with-xvfb with ZEPHRIN_BUILD_DIR set");
    return;
  }
  std::string home = ztest::ScratchDir("bench-home");
  fs::create_directories(fs::path(home) / ".zephrin" / "Cache");
  ztest::WriteFile(home + "/.zephrin/Cache/registry", "");
  std::string doc = ztest::ScratchDir("bench-doc") + "/bench.tex";
  ztest::WriteFile(doc, "text\n");
  std::string viewer = ztest::BuildPath("zephrin-view");
  Display* display = XOpenDisplay(nullptr);
  for (auto _ : state) {
    auto start = Clock::now();
    pid_t pid = fork();
    if (pid == 0) {
      setenv("HOME", home.c_str(), 1);
      execl(viewer.c_str(), viewer.c_str(), doc.c_str(), static_cast<char*>(nullptr));
      _exit(127);
    }
    Window window = ztest::FindWindowByTitle(display, "zephrin-view: bench.tex", 10000);
    double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
    if (!window) {
      state.SkipWithError("no viewer window");
      break;
    }
    state.SetIterationTime(seconds);
  }
  XCloseDisplay(display);
}
BENCHMARK(BM_ViewerStartToFirstWindow)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
}  // namespace
