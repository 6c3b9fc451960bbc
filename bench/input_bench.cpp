// Reading a 10 MB file through the input stack against plain fgetc on the
// same file: the stack must cost no more than the C library's own reader.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tex/input_stream.h"

namespace {
const std::string& BigFile() {
  static const std::string path = [] {
    std::string p = "/tmp/zephrin-input-bench.tex";
    FILE* f = std::fopen(p.c_str(), "w");
    const char* line = "The quick brown fox $x^2 + y_1$ jumps over \\emph{the} lazy dog.\r\n";
    size_t written = 0;
    while (written < 10u * 1024 * 1024) written += std::fputs(line, f) >= 0 ? std::strlen(line) : 0;
    std::fclose(f);
    return p;
  }();
  return path;
}
}  // namespace

static void BM_InputStackRead(benchmark::State& state) {
  size_t bytes = 0;
  for (auto _ : state) {
    TInputStack stack;
    stack.InsertStream(new TFileInputStream(std::fopen(BigFile().c_str(), "r"), "big"));
    char c;
    long sum = 0;
    while (stack.GetCharacter(c)) sum += c;
    benchmark::DoNotOptimize(sum);
    bytes += static_cast<size_t>(stack.GetCharacterCount());
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes));
}
BENCHMARK(BM_InputStackRead)->Unit(benchmark::kMillisecond);

static void BM_FgetcRead(benchmark::State& state) {
  size_t bytes = 0;
  for (auto _ : state) {
    FILE* f = std::fopen(BigFile().c_str(), "r");
    long sum = 0;
    int c;
    while ((c = std::fgetc(f)) != EOF) {
      if (c != '\r') sum += c, ++bytes;
    }
    std::fclose(f);
    benchmark::DoNotOptimize(sum);
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes));
}
BENCHMARK(BM_FgetcRead)->Unit(benchmark::kMillisecond);
