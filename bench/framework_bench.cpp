// Framework plumbing on the paths every parser walks: building strings
// character by character and walking object lists by position.
#include <benchmark/benchmark.h>

#include "framework/collections.h"
#include "framework/cstring.h"

#include <vector>

static void BM_CStringAppendChars(benchmark::State& state) {
  for (auto _ : state) {
    CString s;
    for (int i = 0; i < state.range(0); ++i) s += static_cast<char>('a' + i % 26);
    benchmark::DoNotOptimize(s.GetLength());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_CStringAppendChars)->Arg(64)->Arg(4096);

static void BM_CObListWalk(benchmark::State& state) {
  CObList list;
  std::vector<CObject> objects(static_cast<size_t>(state.range(0)));
  for (auto& o : objects) list.AddTail(&o);
  for (auto _ : state) {
    long count = 0;
    for (auto p = list.GetHeadPosition(); p != list.GetEnd();) count += list.GetNext(p) != nullptr;
    benchmark::DoNotOptimize(count);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_CObListWalk)->Arg(1000);
