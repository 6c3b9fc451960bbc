// Conditionals are evaluated at every read, expanded or not: every form the
// dialect knows, \newif switches, nesting, and what stays an ordinary token.
#include <gtest/gtest.h>

#include <string>

#include "support/tex_tokens.h"
#include "tex/token_source.h"

using ztest::Tokens;
using Strings = std::vector<std::string>;

namespace {
class TokenConditionals : public ztest::TokenSourceTest {};
}  // namespace

TEST_F(TokenConditionals, EveryFormChoosesItsBranch) {
  const struct {
    const char* text;
    Strings expected;
  } cases[] = {
      {"\\iffalse a\\else b\\fi", {"b"}},
      {"\\iftrue a\\else b\\fi", {"a"}},
      {"\\ifzephrin a\\else b\\fi", {"a"}},
      {"\\ifmmode a\\else b\\fi", {"b"}},
      {"\\iffalse a\\fi", {}},
      {"\\ifcase 1 a\\or b\\or c\\else d\\fi", {"b"}},
      {"\\ifcase 0 a\\or b\\else d\\fi", {"a"}},
      {"\\ifcase 7 a\\or b\\else d\\fi", {"d"}},
      {"\\ifcase 7 a\\or b\\fi", {}},
      {"\\ifcase 12 a\\or b\\else d\\fi", {"d"}},  // a number, not a digit
      // The number is read expanded and may come out of a conditional itself.
      {"\\ifcase\\iftrue 2\\fi a\\or b\\or c\\fi", {"c"}},
  };
  for (int expand : {0, 1}) {
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(c.text) + (expand ? " expanded" : ""));
      EXPECT_EQ(Tokens(c.text, expand), c.expected);
    }
  }
}

TEST_F(TokenConditionals, IfmmodeFollowsTheMathFlag) {
  TTexTokenSource source("test", "\\ifmmode a\\else b\\fi");
  source.Set_MathMode(1);
  EXPECT_EQ(ztest::ReadAll(source, 0), (Strings{"a"}));
}

TEST_F(TokenConditionals, NestedConditionalsResolveInsideTheirBranch) {
  // An inner \fi never closes the outer conditional, in a branch taken or not.
  EXPECT_EQ(Tokens("\\iffalse \\iftrue a\\else b\\fi c\\else d\\fi"), (Strings{"d"}));
  EXPECT_EQ(Tokens("\\iftrue x\\iffalse a\\fi\\else d\\fi"), (Strings{"x"}));
  // The inner branch is replayed in the outer one: the scanner is then inside
  // a line, and the blank behind the inner \fi counts.
  EXPECT_EQ(Tokens("\\iftrue \\iffalse a\\else b\\fi c\\else d\\fi"), (Strings{"b", " ", "c"}));
}

TEST_F(TokenConditionals, BranchesAreGatheredUnexpandedAndExpandedOnReplay) {
  ztest::DefineMacro("m", 0, "M");
  EXPECT_EQ(Tokens("\\iftrue\\m\\fi", 1), (Strings{"M"}));
  EXPECT_EQ(Tokens("\\iftrue\\m\\fi", 0), (Strings{"\\m"}));
  ztest::DefineMacro("yes", 0, "\\iftrue");
  // A conditional that a macro makes is not seen until the macro is expanded.
  EXPECT_EQ(Tokens("\\yes a\\else b\\fi", 0), (Strings{"\\yes", "a", "\\else", "b", "\\fi"}));
}

TEST_F(TokenConditionals, NewifMakesASwitchAndAConditional) {
  EXPECT_EQ(Tokens("\\newif\\iffoo\\iffoo a\\else b\\fi"), (Strings{"b"}));  // new switches start false
  EXPECT_EQ(Tokens("\\footrue\\iffoo a\\else b\\fi"), (Strings{"a"}));       // and last beyond the document
  EXPECT_EQ(Tokens("\\foofalse\\iffoo a\\else b\\fi"), (Strings{"b"}));
  EXPECT_EQ(Tokens("\\newif\\ifbar\\bartrue\\iffoo a\\else b\\fi\\ifbar c\\fi", 1), (Strings{"b", "c"}));
  // \newif before anything but an "if" name is skipped; what follows stands.
  EXPECT_EQ(Tokens("\\newif x"), (Strings{"x"}));
  EXPECT_EQ(Tokens("\\newif\\relax"), (Strings{"\\relax"}));
}

TEST_F(TokenConditionals, OtherIfNamesAndAStrayFiAreOrdinaryTokens) {
  // \if and \ifx are not evaluated by this dialect; a \fi without its \if is an unknown command.
  EXPECT_EQ(Tokens("\\if ab\\fi"), (Strings{"\\if", "ab", "\\fi"}));
  EXPECT_EQ(Tokens("\\ifx ab\\else c\\fi", 1), (Strings{"\\ifx", "ab", "\\else", "c", "\\fi"}));
  EXPECT_EQ(Tokens("a\\fi b\\or c\\else"), (Strings{"a", "\\fi", "b", "\\or", "c", "\\else"}));
}

TEST_F(TokenConditionals, TheEndOfInputDeliversTheBranchAsGathered) {
  EXPECT_EQ(Tokens("\\iftrue a b"), (Strings{"a", " ", "b"}));
  EXPECT_EQ(Tokens("\\iffalse a b"), (Strings{}));
  EXPECT_EQ(Tokens("\\iffalse a\\else b"), (Strings{"b"}));
  EXPECT_EQ(Tokens("\\ifcase"), (Strings{}));
}

TEST_F(TokenConditionals, RunawayNestingIsReportedAndDropped) {
  const int extra = 5;
  std::string text;
  for (int i = 0; i < TTexTokenSource::fg_nMaxNesting + extra; ++i) text += "\\iftrue ";
  text += "x";
  for (int i = 0; i < TTexTokenSource::fg_nMaxNesting + extra; ++i) text += "\\fi";
  // The conditionals past the limit are dropped with a report each; their
  // \fi are left over and stand as ordinary tokens.
  Strings expected{"x"};
  for (int i = 0; i < extra; ++i) expected.push_back("\\fi");
  EXPECT_EQ(Tokens(text.c_str()), expected);
  EXPECT_EQ(SavedErrorMessages(), Strings(extra, "NO STRING"));
}
