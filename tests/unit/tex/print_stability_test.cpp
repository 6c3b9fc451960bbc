// Printing is stable: a document printed, parsed and printed again gives the
// first print back, up to runs of blanks. The forms that do drift are listed
// below the corpus, each with the reason.
#include <gtest/gtest.h>

#include <string>

#include "support/tex_parse.h"

using ztest::PrintTexOf;
using ztest::SquashBlanks;

namespace {
class PrintStability : public ztest::TexParseTest {};

const char* const fg_Corpus[] = {
    "Plain prose, with punctuation; and a number 3.14 here.\n\nA second paragraph.",
    "``Quoted'' text -- with dashes --- and `single' quotes, !` and ?`.",
    "Inline $x^2_3 + y_{ij}^{k+1} = \\alpha\\beta$ math and \\(a-b\\) too.",
    "$\\sum_{i=1}^n i = {n(n+1) \\over 2}$ $\\int_0^1 f(x)\\,dx$",
    "$a \\atop b$ and ${n \\choose k}$ and $\\frac ab + \\dfrac{1}{2} + \\tfrac{x}{y}$",
    "$\\cfrac[l]{1}{2+x} \\cfrac[r]{1}{x} \\cfrac{a}{b} \\zig{a}{b} \\zag ab$",
    "$x'' + y' = z^{\\prime}$ and $:=$ and $a:b$",
    "\\fbox{boxed} \\colorbox{red}{text} \\fcolorbox{a}{b}{c} \\mathchoice abcd",
    "\\caption[short]{A long caption} \\usepackage[opt]{pkg} \\documentclass{article}",
    "\\section*{Unknown} \\zork{arg} \\csname 1a\\endcsname",
    "\\looseness=3 \\widowpenalty 100 \\clubpenalty=-5",
    "\\label{eq:1} \\cite[p.~3]{key} \\nocite{all} \\bibitem{k} \\bibitem[X]{y}",
    "\\hat{x} \\'e \\`a \\\"o \\tilde n \\H{o}",
    "{\\bf bold {nested {deeper}}} and {} empty",
    "\\item first \\item[label] second",
    "\\verb|a b{c| and \\verb+x|y+",
    "$\\mbox{text $m$ more} x \\text{t}$ \\ensuremath{y}",
    "\\overset a \\to b and $\\underset{x}\\to{y}$",
    "\\{ braces \\} and \\% percent \\& amp \\# hash \\$ dollar",
    "a}b stray and \\newline next",
    "$x^2^3$ and $^2$ and $_1x$",
    "\\mathbf{v} \\mathrm{d} \\operatorname{rank} \\overline{z} \\underbrace{a+b}",
    "\\rgb{1}{2}{3} \\setstyle{a}{b} \\let\\p=\\q \\windowTitle{T}",
};

TEST_F(PrintStability, PrintParsePrintIsAFixedPoint) {
  for (const char* document : fg_Corpus) {
    SCOPED_TRACE(document);
    const std::string first = PrintTexOf(document);
    const std::string second = PrintTexOf(first);
    EXPECT_EQ(SquashBlanks(second), SquashBlanks(first));
  }
}

// Forms that the printing rules make drift, each checked to drift the way
// the rule says, so that a change to them is seen:
// - a script outside math is shown wrapped in \color{red}, and the print of
//   that is again a script outside math, wrapped once more;
// - \begin{displaymath} closes with "%\end{displaymath}", a comment, so the
//   reprinted display is no longer closed;
// - \today prints without its date, which is the day's, not the source's.
TEST_F(PrintStability, FormsThatDrift) {
  const std::string script = PrintTexOf("x^2");
  EXPECT_EQ(SquashBlanks(script), "x^{\\color{red}2}");
  EXPECT_NE(SquashBlanks(PrintTexOf(script)), SquashBlanks(script));

  const std::string display = PrintTexOf("\\begin{displaymath}x\\end{displaymath}y");
  EXPECT_EQ(display, "%\n\\begin{displaymath}\nx\n%\\end{displaymath}\ny");
  EXPECT_NE(SquashBlanks(PrintTexOf(display)), SquashBlanks(display));

  for (const char* text : {"$$x$$ y", "\\[x\\] y"}) {
    const std::string first = PrintTexOf(text);
    EXPECT_EQ(SquashBlanks(PrintTexOf(first)), SquashBlanks(first.substr(0, first.size() - 1) + " \\par y"));
  }
  EXPECT_EQ(SquashBlanks(PrintTexOf(PrintTexOf("\\\"{ab}"))), "\\csname \"a\\endcsname b");
  EXPECT_EQ(PrintTexOf(PrintTexOf("\\symbol{65}")), "\\symbol6 5 ");

  EXPECT_EQ(PrintTexOf("\\today"), "\\today ");
}
}  // namespace
