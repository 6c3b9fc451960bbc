// Tokenising a few megabytes of LaTeX prose and mathematics, as a parse reads
// it: unexpanded (the scanner and conditionals), and expanded with a handful
// of the macros a paper defines. The math flag follows the dollar signs, as
// the math parsers would set it.
#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "symbols/global_strings.h"
#include "tex/macro_property.h"
#include "tex/token_source.h"

namespace {
const char* const fg_Words[] = {
    "the",      "of",        "and",      "a",         "we",        "is",         "that",      "space",
    "function", "bounded",   "operator", "theorem",   "follows",   "therefore",  "consider",  "sequence",
    "converges", "uniformly", "compact",  "subset",    "Hilbert",   "estimate",   "constant",  "every",
    "there",    "exists",    "such",     "measure",   "integral",  "inequality", "lemma",     "proof",
    "Banach",   "linear",    "norm",     "dimension", "finite",    "for",        "all",       "in",
    "by",       "with",      "which",    "this",      "section",   "result",     "above",     "below",
};
const char* const fg_InlineMath[] = {
    "$x \\in \\R^n$",
    "$\\norm{f}_{L^2} \\le C \\norm{g}_{H^1}$",
    "$\\abs{x_i - y_i} < \\varepsilon$",
    "$f\\colon X \\to Y$",
    "$\\alpha_{k+1} = \\frac{1}{2}\\alpha_k$",
    "$n \\ge 2$",
    "$\\vect{v} = (v_1, \\ldots, v_n)$",
};
const char* const fg_DisplayMath[] = {
    "$$\\int_0^1 \\abs{f(t)}^2\\,dt \\le \\sum_{k=1}^{\\infty} \\frac{1}{k^2} = \\frac{\\pi^2}{6}$$",
    "\\begin{equation}\n  \\norm{T x} \\le \\norm{T}\\,\\norm{x}, \\qquad x \\in \\R^{2n+1}\n\\end{equation}",
    "$$\\lim_{n\\to\\infty} \\left( 1 + \\frac{x}{n} \\right)^n = e^x$$",
};

// A paper of about `bytes` bytes: sections, paragraphs of sentences with
// inline math, displays, theorems, comments and a conditional.
std::string MakePaper(size_t bytes) {
  std::mt19937 random(1998);
  auto pick = [&](auto& table) { return table[random() % (sizeof table / sizeof table[0])]; };
  std::string text = "% generated for the token source benchmark\n\\newif\\ifdraft\n";
  int section = 0;
  while (text.size() < bytes) {
    text += "\\section{Section " + std::to_string(++section) + ": " + pick(fg_Words) + " " + pick(fg_Words) + "}\n\n";
    for (int paragraph = 0; paragraph < 5; ++paragraph) {
      for (int sentence = 0; sentence < 6; ++sentence) {
        int length = 8 + static_cast<int>(random() % 12);
        for (int w = 0; w < length; ++w) {
          std::string word = pick(fg_Words);
          if (w == 0) word[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(word[0])));
          text += word;
          if (random() % 9 == 0) text += std::string(" ") + pick(fg_InlineMath);
          if (random() % 17 == 0) text += " (see~\\cite{ref" + std::to_string(random() % 40) + "})";
          text += w + 1 < length ? (random() % 11 == 0 ? ", " : " ") : "";
        }
        text += random() % 7 == 0 ? "---indeed, \\emph{" + std::string(pick(fg_Words)) + "}. " : ". ";
        if (sentence % 3 == 2) text += "\n";
      }
      text += "\n";
      if (random() % 3 == 0) text += std::string(pick(fg_DisplayMath)) + "\n";
      if (random() % 4 == 0)
        text += "\\begin{theorem} Every bounded sequence in $\\R^n$ has a convergent subsequence.\\end{theorem}\n";
      if (random() % 5 == 0) text += "\\ifdraft\\textbf{Check this.}\\fi % a note to ourselves\n";
      text += "\n";
    }
  }
  return text;
}

const std::string& Paper() {
  static const std::string paper = MakePaper(4u << 20);
  return paper;
}

void DefineMacro(const char* name, int arguments, const char* body) {
  const char* canonical = TStringPool::g_pGlobal->Put(name);
  std::string text = std::string("{") + body + "}";
  TTexTokenSource source("definition", text.c_str());
  auto* list = new CObList;
  source.PushDefiningMacroName(canonical);
  source.NextTokenList(list);
  source.PopDefiningMacroName();
  TMacroProperty::PutDefinition(canonical, arguments, list);
}

void DefinePaperMacros() {
  DefineMacro("R", 0, "\\mathbb{R}");
  DefineMacro("norm", 1, "\\left\\|#1\\right\\|");
  DefineMacro("abs", 1, "\\left|#1\\right|");
  DefineMacro("vect", 1, "\\mathbf{#1}");
  DefineMacro("begintheorem", 0, "\\par\\noindent\\textbf{Theorem.}\\begingroup\\it");
  DefineMacro("endtheorem", 0, "\\endgroup\\par");
}

void Tokenise(benchmark::State& state, int expand) {
  TStringPool::InitializeGlobal();
  const std::string& paper = Paper();
  TTexTokenSource::Init();
  if (expand) DefinePaperMacros();
  long tokens = 0;
  for (auto _ : state) {
    TTexTokenSource source("paper", paper.c_str());
    while (TTexToken* token = source.NextToken(0, expand)) {
      if (token->IsCharacter('$') || token->IsSequence(TGlobalString::g_pDISPLAYMATH))
        source.Set_MathMode(!source.Get_MathMode());
      ++tokens;
      delete token;
    }
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * paper.size()));
  state.counters["tokens"] = benchmark::Counter(static_cast<double>(tokens), benchmark::Counter::kIsRate);
}
}  // namespace

static void BM_TokeniseUnexpanded(benchmark::State& state) { Tokenise(state, 0); }
BENCHMARK(BM_TokeniseUnexpanded)->Unit(benchmark::kMillisecond);

static void BM_TokeniseExpanded(benchmark::State& state) { Tokenise(state, 1); }
BENCHMARK(BM_TokeniseExpanded)->Unit(benchmark::kMillisecond);
