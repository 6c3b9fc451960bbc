// Expansion: \begin/\end joining, macros and their arguments, the nesting
// limit, \csname, and the argument readers parsers use.
#include <gtest/gtest.h>

#include <memory>

#include "symbols/string_pool.h"
#include "tex/macro_property.h"
#include "support/tex_tokens.h"
#include "tex/token_source.h"

using ztest::DefineMacro;
using ztest::Tokens;
using Strings = std::vector<std::string>;

namespace {
class TokenExpansion : public ztest::TokenSourceTest {};
}  // namespace

TEST_F(TokenExpansion, BeginAndEndJoinWithAndWithoutExpansion) {
  for (int expand : {0, 1}) {
    SCOPED_TRACE(expand);
    EXPECT_EQ(Tokens("\\begin{itemize}", expand), (Strings{"\\beginitemize"}));
    // Blanks after the joined \begin are skipped, after \end they count.
    EXPECT_EQ(Tokens("\\begin {center} x\\end{center} y", expand), (Strings{"\\begincenter", "x", "\\endcenter", " ", "y"}));
    EXPECT_EQ(Tokens("\\begin{my env}", expand), (Strings{"\\beginmy env"}));
    EXPECT_EQ(Tokens("\\begin{a{b}\\c}", expand), (Strings{"\\begina{b}\\c"}));
    EXPECT_EQ(Tokens("\\begin xy", expand), (Strings{"\\beginx", "y"}));  // a word gives its first letter
    EXPECT_EQ(Tokens("\\begin", expand), (Strings{"\\begin"}));        // nothing to join
    EXPECT_EQ(Tokens("\\begin{abc", expand), (Strings{"\\beginabc"}));  // the group closes itself
  }
}

TEST_F(TokenExpansion, AnEnvironmentIsAPairOfMacros) {
  DefineMacro("beginbox", 0, "[");
  DefineMacro("endbox", 0, "]");
  EXPECT_EQ(Tokens("\\begin{box}x\\end{box}", 1), (Strings{"[", "x", "]"}));
  EXPECT_EQ(Tokens("\\begin{box}x\\end{box}", 0), (Strings{"\\beginbox", "x", "\\endbox"}));
}

TEST_F(TokenExpansion, MacroBodiesAreReplayedWithTheirArguments) {
  DefineMacro("greet", 1, "Hi #1!");
  EXPECT_EQ(Tokens("\\greet{Bob} x", 1), (Strings{"Hi", " ", "Bob", "!", " ", "x"}));
  EXPECT_EQ(Tokens("\\greet{Bob} x", 0), (Strings{"\\greet", "{", "Bob", "}", " ", "x"}));

  DefineMacro("pair", 2, "<#1|#2>");
  EXPECT_EQ(Tokens("\\pair ab", 1), (Strings{"<", "a", "|", "b", ">"}));  // a word splits into letters
  EXPECT_EQ(Tokens("\\pair{xy} z", 1), (Strings{"<", "xy", "|", "z", ">"}));
  EXPECT_EQ(Tokens("\\pair{{x}}\\relax", 1), (Strings{"<", "{", "x", "}", "|", "\\relax", ">"}));
  EXPECT_EQ(Tokens("\\pair{x}", 1), (Strings{"<", "x", "|", ">"}));  // a missing argument is empty

  // A macro of no arguments skips the blanks after its use.
  DefineMacro("TeX", 0, "T");
  EXPECT_EQ(Tokens("\\TeX\\TeX  is", 1), (Strings{"T", "T", "is"}));
}

TEST_F(TokenExpansion, ArgumentsBelongToTheMacroThatNamesThem) {
  DefineMacro("outer", 1, "[\\inner{#1}]");
  DefineMacro("inner", 1, "(#1)");
  EXPECT_EQ(Tokens("\\outer{z}", 1), (Strings{"[", "(", "z", ")", "]"}));
  // "#1" handed on is replaced before the inner macro reads: a word then gives its first letter.
  DefineMacro("hand", 1, "\\inner#1");
  EXPECT_EQ(Tokens("\\hand{xy}", 1), (Strings{"(", "x", ")", "y"}));
  // A macro that hands its own argument to itself.
  DefineMacro("same", 1, "(#1\\same{#1})");
  Strings expected;
  for (int i = 0; i < TTexTokenSource::fg_nMaxActiveExpansions; ++i) expected.insert(expected.end(), {"(", "a"});
  expected.insert(expected.end(), {"\\same", "{", "a", "}"});
  for (int i = 0; i < TTexTokenSource::fg_nMaxActiveExpansions; ++i) expected.push_back(")");
  EXPECT_EQ(Tokens("\\same{a}", 1), expected);
  // A macro at the end of a body reads its argument from behind the body.
  DefineMacro("wrap", 1, "#1\\tail");
  DefineMacro("tail", 1, "<#1>");
  EXPECT_EQ(Tokens("\\wrap{a}{b}c", 1), (Strings{"a", "<", "b", ">", "c"}));
}

TEST_F(TokenExpansion, AnArgumentNamingItsOwnMacroMeansNothing) {
  // \inner's body holds \self and a "#1" of \self, as a definition made inside
  // one of \self would: read as \self's argument, it would stand for itself.
  DefineMacro("self", 1, "[#1]");
  const char* self = TStringPool::g_pGlobal->Put("self");
  auto* body = new CObList;
  body->AddTail(new TTexControlSequenceToken(self));
  body->AddTail(new TTexMacroArgToken(1, self));
  TMacroProperty::PutDefinition(TStringPool::g_pGlobal->Put("inner"), 0, body);
  EXPECT_EQ(Tokens("\\inner x", 1), (Strings{"[", "x", "]"}));
}

TEST_F(TokenExpansion, TheBodyIsBorrowedNotConsumed) {
  TMacroProperty* greet = DefineMacro("greet", 1, "Hi #1");
  CString before;
  int column = 0;
  greet->PrintTex(before, column);
  EXPECT_EQ(Tokens("\\greet{A}\\greet{B}", 1), (Strings{"Hi", " ", "A", "Hi", " ", "B"}));
  CString after;
  column = 0;
  greet->PrintTex(after, column);
  EXPECT_EQ(before, after);
  EXPECT_EQ(before, "Hi #1");
  EXPECT_EQ(greet->Get_ActiveCount(), 0);
}

TEST_F(TokenExpansion, RunawayRecursionStopsWithErrorAndGoesOn) {
  TMacroProperty* loop = DefineMacro("loop", 0, "x\\loop");
  Strings tokens = Tokens("\\loop after", 1);
  // Eleven open expansions, then the twelfth use stands unexpanded.
  Strings expected(11, "x");
  expected.push_back("\\loop");
  expected.push_back("after");
  EXPECT_EQ(tokens, expected);
  EXPECT_EQ(SavedErrorMessages(), (Strings{"NO STRING"}));  // 60002 has no text
  EXPECT_EQ(loop->Get_ActiveCount(), 0);                     // every body's end was read
}

TEST_F(TokenExpansion, CsnameBuildsANameWithItsBlanks) {
  EXPECT_EQ(Tokens("\\csname foo bar\\endcsname"), (Strings{"\\foo bar"}));
  EXPECT_EQ(Tokens("\\csname   foo\\endcsname  x"), (Strings{"\\foo", "x"}));
  EXPECT_EQ(Tokens("\\csname a\\relax b\\endcsname"), (Strings{"\\a\\relax b"}));
  EXPECT_EQ(Tokens("\\csname ab"), (Strings{"\\ab"}));  // the input ended: a name from what was read
  DefineMacro("foo bar", 0, "Z");
  EXPECT_EQ(Tokens("\\csname foo bar\\endcsname", 1), (Strings{"Z"}));
}

TEST_F(TokenExpansion, CsnameStandsWhileAMacroIsBeingDefined) {
  TTexTokenSource source("test", "\\csname x\\endcsname");
  source.PushDefiningMacroName(TStringPool::g_pGlobal->Put("m"));
  EXPECT_EQ(ztest::ReadAll(source, 0), (Strings{"\\csname", "x", "\\endcsname"}));
}

TEST_F(TokenExpansion, MacroBodiesAreReadUnexpandedWithTheirBlanks) {
  DefineMacro("m", 0, "M");
  TTexTokenSource source("test", "{a  b\\m  \\iftrue c\\fi{d}} rest");
  auto* list = new CObList;
  source.PushDefiningMacroName(TStringPool::g_pGlobal->Put("def"));
  source.NextTokenList(list);
  TMacroProperty body(0, list);
  CString text;
  int column = 0;
  body.PrintTex(text, column);
  // Blanks after a control word are dropped as in a file, all others kept; no
  // macro, conditional or \begin is resolved.
  EXPECT_EQ(text, "a  b\\m \\iftrue c\\fi {d}");
  // The state on entry (the start of a line) comes back: the blank is skipped.
  EXPECT_EQ(ztest::ReadAll(source, 0), (Strings{"rest"}));
}

TEST_F(TokenExpansion, RawArgumentsAndNumbers) {
  {
    // Every blank counts, the first one too, unless the reader was skipping blanks.
    TTexTokenSource source("test", "{ a b }\\x{ c}");
    EXPECT_EQ(source.GetRawArgument(), TStringPool::g_pGlobal->Put(" a b "));
    std::unique_ptr<TTexToken> x(source.NextToken(0, 0));
    EXPECT_EQ(source.GetRawArgument(), TStringPool::g_pGlobal->Put("c"));
  }
  {
    TTexTokenSource source("test", "-2.5 -x 7 .5");
    CString number;
    source.NextGeneralNumber(number);
    EXPECT_EQ(number, "-2.5");
    source.NextGeneralNumber(number);
    EXPECT_EQ(number, "0");  // the sign is lost with what wasn't a number
    std::unique_ptr<TTexToken> x(source.NextToken(1, 1));
    EXPECT_EQ(ztest::DescribeToken(x.get()), "x");
    source.NextPositiveInteger(number);
    EXPECT_EQ(number, "7");
    source.NextGeneralNumber(number);
    EXPECT_EQ(number, ".5");
    source.NextPositiveInteger(number);
    EXPECT_EQ(number, "0");  // the end of input
  }
}

TEST_F(TokenExpansion, OptionalSingleDigit) {
  TTexTokenSource source("test", "[3]x [x] [4 y");
  EXPECT_EQ(source.NextOptionalSingleDigit(), 3);
  EXPECT_EQ(source.NextOptionalSingleDigit(), -1);  // no bracket: the token stays
  std::unique_ptr<TTexToken> x(source.NextToken(1, 0));
  EXPECT_EQ(ztest::DescribeToken(x.get()), "x");
  EXPECT_EQ(source.NextOptionalSingleDigit(), -1);
  std::unique_ptr<TTexToken> x2(source.NextToken(1, 0));
  EXPECT_EQ(ztest::DescribeToken(x2.get()), "x");  // what stood in place of the digit goes back
  std::unique_ptr<TTexToken> close(source.NextToken(1, 0));
  EXPECT_EQ(ztest::DescribeToken(close.get()), "]");
  EXPECT_EQ(source.NextOptionalSingleDigit(), 4);   // the digit stands without its "]"
  std::unique_ptr<TTexToken> y(source.NextToken(1, 0));
  EXPECT_EQ(ztest::DescribeToken(y.get()), "y");
  EXPECT_EQ(SavedErrorMessages(),
            (Strings{"Missing single digit when when parsing optional argument, possibly in a macro or environment "
                     "definition.",
                     "Missing close brace when parsing optional argument for a single digit, possibly in a macro or "
                     "environment definition."}));
}

TEST_F(TokenExpansion, MacroDefinitionsShareTheirBody) {
  auto* list = new CObList;
  list->AddTail(new TTexCharacterToken('a'));
  TMacroProperty original(1, list);
  {
    TMacroProperty copy(original);
    EXPECT_EQ(copy.Get_Body(), original.Get_Body());
    EXPECT_EQ(original.Get_Body()->Get_ReferenceCount(), 2);
    TMacroProperty other(0, nullptr);
    other = original;
    EXPECT_EQ(original.Get_Body()->Get_ReferenceCount(), 3);
    EXPECT_EQ(other.Get_ArgumentCount(), 1);
  }
  EXPECT_EQ(original.Get_Body()->Get_ReferenceCount(), 1);
  // A stored definition ends in a mark that points at the stored property.
  TMacroProperty* stored = TMacroProperty::PutDefinition(TStringPool::g_pGlobal->Put("m"), 12, nullptr);
  EXPECT_EQ(stored->Get_ArgumentCount(), 9);
  EXPECT_EQ(TMacroProperty::Get_Macro(TStringPool::g_pGlobal->Put("m")), stored);
  ASSERT_EQ(stored->Get_Tokens()->GetCount(), 1);
  EXPECT_EQ(static_cast<TTexToken*>(stored->Get_Tokens()->GetHead())->IsTexMacroProperty(), stored);
}
