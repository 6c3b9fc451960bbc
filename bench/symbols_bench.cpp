// Name lookups on the loaded vocabulary: the paths every token and every
// Compose of a control sequence walk.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "symbols/global_strings.h"

namespace {
TStringPool& Vocabulary() {
  TStringPool::InitializeGlobal();
  TGlobalString::Initialize();
  TGlobalString::InitializeAlwaysDrawProperties();
  TGlobalString::InitializeVerticalListProperties();
  TGlobalString::InitializeSymbolFonts();
  return *TStringPool::g_pGlobal;
}

// Every distinct loaded name, as text copies (what a scanner holds) or as
// canonical pointers (what code holds).
std::vector<std::string> LoadedTexts() {
  std::vector<std::string> texts;
  for (const auto& row : TGlobalString::SymbolFontTable()) texts.emplace_back(row.name);
  for (const auto& row : TGlobalString::StringTable()) texts.emplace_back(row.text);
  for (const auto& row : TGlobalString::ColorTable()) texts.emplace_back(row.key);
  return texts;
}
std::vector<const char*> LoadedCanonical(TStringPool& pool) {
  std::vector<const char*> names;
  for (const std::string& text : LoadedTexts()) names.push_back(pool.Put(text.c_str()));
  return names;
}
}  // namespace

// A lookup by text: hash, bucket, strcmp. The copies are not canonical, so the
// memo never answers.
static void BM_GetByText(benchmark::State& state) {
  TStringPool& pool = Vocabulary();
  std::vector<std::string> texts = LoadedTexts();
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(pool.Get(texts[i].c_str()));
    if (++i == texts.size()) i = 0;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetByText);

// The same canonical pointer again: the memo answers with one comparison.
static void BM_GetCanonicalMemoHit(benchmark::State& state) {
  TStringPool& pool = Vocabulary();
  const char* name = pool.Put("mho");
  for (auto _ : state) {
    benchmark::DoNotOptimize(name);
    benchmark::DoNotOptimize(pool.Get(name));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetCanonicalMemoHit);

// A different canonical pointer each time: hash and bucket, but the match is
// by address before any strcmp.
static void BM_GetCanonicalMemoMiss(benchmark::State& state) {
  TStringPool& pool = Vocabulary();
  std::vector<const char*> names = LoadedCanonical(pool);
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(pool.Get(names[i]));
    if (++i == names.size()) i = 0;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetCanonicalMemoMiss);

// What Compose does: several properties of one name in a row (memo hits).
static void BM_GetPropertySameName(benchmark::State& state) {
  TStringPool& pool = Vocabulary();
  const char* name = pool.Put("bmod");
  const char* keys[] = {TGlobalString::g_pTEXFONTINDEX, TGlobalString::g_pLOGLIKE, TGlobalString::g_pBINARYOP,
                        TGlobalString::g_pRELATION};
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(pool.Get(name, keys[i]));
    i = (i + 1) & 3;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetPropertySameName);

// _TEXFONTINDEX across the whole loaded vocabulary by canonical pointer.
static void BM_GetPropertyAcrossVocabulary(benchmark::State& state) {
  TStringPool& pool = Vocabulary();
  std::vector<const char*> names = LoadedCanonical(pool);
  const char* key = TGlobalString::g_pTEXFONTINDEX;
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(pool.Get(names[i], key));
    if (++i == names.size()) i = 0;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetPropertyAcrossVocabulary);
