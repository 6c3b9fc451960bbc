// How long the host takes to start: from the shim starting the process to
// the start-up report, and to its first tick (which ends it here, since its
// parent is gone by then). The first tick comes after the deliberate one
// second that keeps the splash readable. Run under an X server with the
// build's installation tree:
//   ZEPHRIN_BUILD_DIR=build tests/run-with-xvfb build/bench/host_startup_bench
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/host_shim.h"
#include "support/paths.h"

namespace fs = std::filesystem;

namespace {
using Clock = std::chrono::steady_clock;

std::string Home() {
  static std::string home = [] {
    fs::path dir = ztest::ScratchDir("bench-home");
    fs::create_directories(dir / ".zephrin" / "Cache");
    ztest::WriteFile((dir / ".zephrin" / "Cache" / "registry").string(), "");
    return dir.string();
  }();
  return home;
}

double Ms(Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

void BM_ExecToReport(benchmark::State& state) {
  if (!std::getenv("DISPLAY") || !std::getenv("ZEPHRIN_HOME")) {
    state.SkipWithError("run under tests/run-with-xvfb with ZEPHRIN_BUILD_DIR set");
    return;
  }
  for (auto _ : state) {
    ztest::HostShim shim;
    shim.SetEnv("HOME", Home());
    auto start = Clock::now();
    std::string bytes;
    if (!shim.Start() || !shim.ReadReport(&bytes) || ztest::HostShim::Decode(bytes).ready != 1) {
      state.SkipWithError("the host did not report ready");
      return;
    }
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    shim.KillHost();
  }
}
BENCHMARK(BM_ExecToReport)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

void BM_ExecToFirstTick(benchmark::State& state) {
  if (!std::getenv("DISPLAY") || !std::getenv("ZEPHRIN_HOME")) {
    state.SkipWithError("run under tests/run-with-xvfb with ZEPHRIN_BUILD_DIR set");
    return;
  }
  double report = 0, tick = 0;
  for (auto _ : state) {
    ztest::HostShim shim;
    shim.SetEnv("HOME", Home());
    auto start = Clock::now();
    std::string bytes;
    if (!shim.Start() || !shim.ReadReport(&bytes)) {
      state.SkipWithError("no report");
      return;
    }
    auto reported = Clock::now();
    // With its parent gone, the host's first tick ends it.
    shim.KillParent();
    if (shim.WaitExit(5000) != 0) {
      state.SkipWithError("the host did not end at its first tick");
      return;
    }
    auto ended = Clock::now();
    report += Ms(reported - start);
    tick += Ms(ended - start);
    state.SetIterationTime(std::chrono::duration<double>(ended - start).count());
  }
  state.counters["report_ms"] = report / state.iterations();
  state.counters["first_tick_ms"] = tick / state.iterations();
  state.counters["first_tick_less_sleep_ms"] = tick / state.iterations() - 1000.0;
}
BENCHMARK(BM_ExecToFirstTick)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
}  // namespace
