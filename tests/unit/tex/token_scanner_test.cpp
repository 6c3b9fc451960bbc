// The scanner's rules: character classes fixed in the scanner, whole words
// and numbers, ligatures, blanks and paragraph ends, control sequences,
// \verb, tabbing and verbatim.
#include <gtest/gtest.h>

#include <memory>

#include "support/tex_tokens.h"
#include "tex/token_source.h"

using ztest::Tokens;
using Strings = std::vector<std::string>;

namespace {
class TokenScanner : public ztest::TokenSourceTest {
 protected:
  static Strings MathTokens(const char* text) {
    TTexTokenSource source("test", text);
    source.Set_MathMode(1);
    return ztest::ReadAll(source, 0);
  }
  static Strings TabbingTokens(const char* text) {
    TTexTokenSource source("test", text);
    source.Set_Tabbing(1);
    return ztest::ReadAll(source, 0);
  }
};
}  // namespace

TEST_F(TokenScanner, LigaturesInText) {
  EXPECT_EQ(Tokens("a--b"), (Strings{"a", "\\--", "b"}));
  EXPECT_EQ(Tokens("a---b"), (Strings{"a", "\\---", "b"}));
  EXPECT_EQ(Tokens("a----b"), (Strings{"a", "\\---", "-", "b"}));  // an em dash, then a hyphen
  EXPECT_EQ(Tokens("a-b"), (Strings{"a", "-", "b"}));
  EXPECT_EQ(Tokens("``q''"), (Strings{"\\``", "q", "\\''"}));
  EXPECT_EQ(Tokens("`q'"), (Strings{"`", "q", "'"}));
  EXPECT_EQ(Tokens("!`?`!?"), (Strings{"\\_INVERTED_EP", "\\_INVERTED_QM", "!", "?"}));
  EXPECT_EQ(Tokens("$$x$"), (Strings{"$$", "x", "$"}));
  EXPECT_EQ(Tokens("-"), (Strings{"-"}));  // a dash at the end of input
}

TEST_F(TokenScanner, LigaturesInMath) {
  // In math every "-" is a minus of its own; quotes and dollars are as in text.
  EXPECT_EQ(MathTokens("a--b"), (Strings{"a", "-", "-", "b"}));
  EXPECT_EQ(MathTokens("a---b"), (Strings{"a", "-", "-", "-", "b"}));
  EXPECT_EQ(MathTokens("f''"), (Strings{"f", "\\''"}));
  EXPECT_EQ(MathTokens("$$"), (Strings{"$$"}));
}

TEST_F(TokenScanner, WordsAndNumbersComeWhole) {
  EXPECT_EQ(Tokens("abc12 x"), (Strings{"abc12", " ", "x"}));
  EXPECT_EQ(MathTokens("x2y"), (Strings{"x", "2", "y"}));  // math splits letters from digits
  EXPECT_EQ(MathTokens("xy23"), (Strings{"xy", "23"}));
  EXPECT_EQ(Tokens("3.14. ... ."), (Strings{"3.14.", " ", "...", " ", "."}));
  EXPECT_EQ(Tokens("7a"), (Strings{"7", "a"}));
  // Bytes above 127 are ordinary characters, one token each.
  EXPECT_EQ(Tokens("caf\xc3\xa9"), (Strings{"caf", "\xc3", "\xa9"}));
  // Braces and the other specials are plain characters: their meaning is the parser's.
  EXPECT_EQ(Tokens("{&^_~}"), (Strings{"{", "&", "^", "_", "~", "}"}));
}

TEST_F(TokenScanner, ParagraphEndsAndBlanks) {
  EXPECT_EQ(Tokens("word\n\nword"), (Strings{"word", " ", "\\par", "word"}));
  // A line that ends in a blank leaves the scanner skipping: the empty line is no paragraph end.
  EXPECT_EQ(Tokens("word \n\nword"), (Strings{"word", " ", "word"}));
  EXPECT_EQ(Tokens("a  \t b"), (Strings{"a", " ", "b"}));
  EXPECT_EQ(Tokens("a\n   b"), (Strings{"a", " ", "b"}));  // indentation at a line start is dropped
  // A comment takes its line end and leaves the state as it was.
  EXPECT_EQ(Tokens("a%note\nb"), (Strings{"a", "b"}));
  EXPECT_EQ(Tokens("a%note\n\nb"), (Strings{"a", " ", "b"}));
  EXPECT_EQ(Tokens("a%no line end"), (Strings{"a"}));
  // Blanks after a control word are skipped; after a control blank they count.
  EXPECT_EQ(Tokens("\\relax  x"), (Strings{"\\relax", "x"}));
  EXPECT_EQ(Tokens("\\  x"), (Strings{"\\ ", " ", "x"}));
  EXPECT_EQ(Tokens("a\\\nb"), (Strings{"a", "\\ ", "b"}));  // backslash and line end: a control blank
}

TEST_F(TokenScanner, ObeyLinesMakesLineEndsTokens) {
  TTexTokenSource source("test", "a\nb \n\nc");
  EXPECT_EQ(source.ObeyLines(1), 0);
  EXPECT_EQ(ztest::ReadAll(source, 0), (Strings{"a", "\n", "b", " ", "\n", "\n", "c"}));
}

TEST_F(TokenScanner, ControlSymbolsAndStarredNames) {
  EXPECT_EQ(Tokens("\\section*{x}"), (Strings{"\\section*", "{", "x", "}"}));
  EXPECT_EQ(Tokens("\\make@title\\@x"), (Strings{"\\make@title", "\\@", "x"}));
  EXPECT_EQ(Tokens("\\{\\}\\\\\\.\\^\\~\\\""),
            (Strings{"\\_LBRACE", "\\_RBRACE", "\\newline", "\\dot", "\\hat", "\\tilde", "\\\""}));
  EXPECT_EQ(Tokens("\\'e\\=o\\`a"), (Strings{"\\_ACUTE", "e", "\\_OVERBARACCENT", "o", "\\_GRAVE", "a"}));
  EXPECT_EQ(Tokens("\\,x"), (Strings{"\\,", "x"}));
  EXPECT_EQ(Tokens("x\\"), (Strings{"x", "\\ "}));  // a backslash at the end of input is a control blank
}

TEST_F(TokenScanner, TabbingControlCharacters) {
  EXPECT_EQ(TabbingTokens("\\'e\\=o\\`a"), (Strings{"\\'", "e", "\\=", "o", "\\`", "a"}));
  EXPECT_EQ(TabbingTokens("\\a'e\\a`e\\a=x"), (Strings{"\\_ACUTE", "e", "\\_GRAVE", "e", "\\a", "=", "x"}));
  EXPECT_EQ(Tokens("\\a'"), (Strings{"\\a", "'"}));  // outside tabbing \a is a name like any other
  EXPECT_EQ(TabbingTokens("\\a"), (Strings{"\\a"}));
}

TEST_F(TokenScanner, VerbReadsAsOneArgumentCommand) {
  EXPECT_EQ(Tokens("\\verb|a b|c"), (Strings{"\\verb", "{", "a b", "}", "c"}));
  EXPECT_EQ(Tokens("\\verb+%\\x+"), (Strings{"\\verb", "{", "%\\x", "}"}));
  // An unclosed \verb ends at its line end, which stays in the input.
  EXPECT_EQ(Tokens("\\verb+x\ny"), (Strings{"\\verb", "{", "x", "}", " ", "y"}));
  EXPECT_EQ(Tokens("\\verb"), (Strings{"\\verb", "{", "}"}));
  // The starred form is another name and gets no such treatment.
  EXPECT_EQ(Tokens("\\verb*|x|"), (Strings{"\\verb*", "|", "x", "|"}));
}

TEST_F(TokenScanner, SharpSigns) {
  EXPECT_EQ(Tokens("##"), (Strings{"#"}));
  EXPECT_EQ(Tokens("#x#"), (Strings{"#", "x", "#"}));
  TTexTokenSource source("test", "#3");
  std::unique_ptr<TTexToken> token(source.NextToken(0, 0));
  ASSERT_TRUE(token && token->IsTexMacroArg());
  EXPECT_EQ(token->IsTexMacroArg()->GetArgumentNumber(), 3);
  EXPECT_EQ(token->IsTexMacroArg()->GetMacroName(), nullptr);  // outside any definition
}

TEST_F(TokenScanner, VerbatimLines) {
  TTexTokenSource source("test", "\\begin{verbatim}  \n  a  b  \n\n x\\end{verbatim}\\end{verbatim}after");
  std::unique_ptr<TTexToken> begin(source.NextToken(0, 0));
  EXPECT_EQ(ztest::DescribeToken(begin.get()), "\\beginverbatim");
  source.StartVerbatimMode();
  Strings lines;
  for (;;) {
    std::unique_ptr<TTexToken> line(source.NextToken(0, 0));
    ASSERT_TRUE(line);
    lines.push_back(ztest::DescribeToken(line.get()));
    if (lines.back() == "\\end{verbatim}") break;
  }
  source.StopVerbatimMode();
  // Leading blanks are kept, trailing ones dropped, an empty line is one blank,
  // and text before the end mark on its line is a line of its own.
  EXPECT_EQ(lines, (Strings{"  a  b", " ", " x", "\\end{verbatim}"}));
  EXPECT_EQ(ztest::ReadAll(source, 0), (Strings{"\\endverbatim", "after"}));
}

TEST_F(TokenScanner, VerbatimEndsWithTheInput) {
  TTexTokenSource source("test", "a\nb");
  source.StartVerbatimMode();
  EXPECT_EQ(ztest::ReadAll(source, 0), (Strings{"a", "b"}));
}

TEST_F(TokenScanner, SourceNameAndLine) {
  TTexTokenSource source("file.tex", "ab\ncd\nx");
  std::unique_ptr<TTexToken> first(source.NextToken(0, 0));
  EXPECT_EQ(source.GetSourceName(), std::string("file.tex"));
  // The word's end was seen by reading the line end, which went back: still line 1.
  EXPECT_EQ(source.GetLineNumber(), 1);
  std::unique_ptr<TTexToken> blank(source.NextToken(0, 0));
  EXPECT_EQ(source.GetLineNumber(), 2);
  ztest::ReadAll(source, 0);
  EXPECT_EQ(source.GetLineNumber(), 0x7FFFFFFF);  // the end of input
}
