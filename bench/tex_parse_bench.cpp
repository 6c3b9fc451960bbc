// Parsing a 4 MB document into a format tree and printing it back: prose,
// inline and displayed math, commands with arguments and dimensions. Reports
// bytes per second, and the tree's size as nodes per kilobyte of source.
#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <string>

#include "format/compound_node.h"
#include "symbols/string_pool.h"
#include "tex/token_source.h"

namespace {
const char* const fg_Words[] = {
    "the",      "of",       "and",      "a",        "we",        "is",       "that",     "space",   "function",
    "bounded",  "operator", "theorem",  "follows",  "therefore", "consider", "sequence", "compact", "subset",
    "estimate", "constant", "every",    "measure",  "integral",  "lemma",    "proof",    "linear",  "norm",
};
const char* const fg_Inline[] = {
    "$x \\in R^n$",          "$\\|f\\|_{2} \\le C \\|g\\|$", "$|x_i - y_i| < \\varepsilon$", "$f\\colon X \\to Y$",
    "$\\alpha_{k+1} = \\frac{1}{2}\\alpha_k$", "$n \\ge 2$", "$x'' + y' = 0$", "${n \\choose k}$",
};
const char* const fg_Display[] = {
    "$$\\int_0^1 |f(t)|^2\\,dt \\le \\sum_{k=1}^{n} \\frac{1}{k^2}$$",
    "\\[ \\|Tx\\| \\le \\|T\\|\\,\\|x\\|, \\qquad x \\in R^{2n+1} \\]",
    "\\begin{displaymath} a \\over b+c \\end{displaymath}",
};
const char* const fg_Commands[] = {
    "\\fbox{boxed text}", "\\colorbox{red}{note}", "\\caption[short]{A caption}", "\\label{eq:1}",
    "\\cite[p.~2]{key}",  "\\hat{x}",              "\\mbox{in text}",             "\\looseness=-1",
    "\\hskip 3.5pt",      "\\vspace{2.54cm}",      "\\raise 1.5pt\\hbox{up}",     "\\kern 0.5em",
};

std::string MakeDocument(size_t bytes) {
  std::mt19937 random(2026);
  auto pick = [&](auto& table) { return table[random() % (sizeof table / sizeof table[0])]; };
  std::string text;
  int section = 0;
  while (text.size() < bytes) {
    text += "\\section{Part " + std::to_string(++section) + "}\n\n";
    for (int paragraph = 0; paragraph < 4; ++paragraph) {
      for (int w = 0; w < 80; ++w) {
        text += pick(fg_Words);
        const unsigned r = random() % 16;
        if (r == 0) text += std::string(" ") + pick(fg_Inline);
        else if (r == 1) text += std::string(" ") + pick(fg_Commands);
        text += random() % 10 == 0 ? ", " : " ";
      }
      text += ".\n";
      if (paragraph % 2 == 1) text += std::string(pick(fg_Display)) + "\n";
      text += "\n";
    }
  }
  return text;
}

size_t CountNodes(const TFmtNode* root) {
  size_t count = 0;
  const_cast<TFmtNode*>(root)->ApplyRecursively(+[](TFmtNode*, void* n) { ++*static_cast<size_t*>(n); }, &count);
  return count;
}

std::unique_ptr<TFmtCompoundNode> Parse(const std::string& text) {
  auto root = std::make_unique<TFmtCompoundNode>();
  TTexTokenSource source("bench", text.c_str());
  TFmtNode* result = root->ParseTex(source);
  if (result != root.get()) root.reset(TFmtCompoundNode::CompoundIt(result));
  return root;
}

const std::string& Document() {
  static const std::string document = MakeDocument(4 << 20);
  return document;
}

void BM_ParseDocument(benchmark::State& state) {
  TFmtNode::InitializeTexParser();
  const std::string& text = Document();
  const size_t nodes = CountNodes(Parse(text).get());
  for (auto _ : state) {
    auto root = Parse(text);
    benchmark::DoNotOptimize(root.get());
    // Freeing the tree is not parsing; it is measured on its own below.
    state.PauseTiming();
    root.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
  state.counters["nodes_per_KB"] = static_cast<double>(nodes) * 1024.0 / static_cast<double>(text.size());
}
BENCHMARK(BM_ParseDocument)->Unit(benchmark::kMillisecond);

void BM_PrintDocument(benchmark::State& state) {
  TFmtNode::InitializeTexParser();
  const std::string& text = Document();
  auto root = Parse(text);
  for (auto _ : state) {
    CString out;
    int column = 0;
    root->PrintTex(out, column);
    benchmark::DoNotOptimize(out.c_str());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_PrintDocument)->Unit(benchmark::kMillisecond);

void BM_DeleteTree(benchmark::State& state) {
  TFmtNode::InitializeTexParser();
  const std::string& text = Document();
  for (auto _ : state) {
    state.PauseTiming();
    auto root = Parse(text);
    state.ResumeTiming();
    root.reset();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_DeleteTree)->Unit(benchmark::kMillisecond);
}  // namespace
