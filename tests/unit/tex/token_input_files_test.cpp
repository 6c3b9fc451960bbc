// \input and its kin: the spellings of the name, files beside the document,
// a missing local file, a file that cannot be delivered yet, and the bounds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "errors/parse_errors.h"
#include "support/paths.h"
#include "support/tex_tokens.h"
#include "symbols/global_strings.h"
#include "tex/input_file_loader.h"
#include "tex/token_source.h"

using Strings = std::vector<std::string>;

namespace {
class TokenInputFiles : public ztest::TokenSourceTest {
 protected:
  void SetUp() override {
    ztest::TokenSourceTest::SetUp();
    m_Dir = ztest::MakeTempDir("input");
    ASSERT_FALSE(m_Dir.empty());
    ASSERT_TRUE(ztest::WriteFile(m_Dir + "/x.tex", "X\n"));
    ASSERT_TRUE(ztest::WriteFile(m_Dir + "/x.y", "Y\n"));
    ASSERT_TRUE(ztest::WriteFile(m_Dir + "/empty.tex", ""));
    ASSERT_TRUE(ztest::WriteFile(m_Dir + "/self.tex", "s\\input self\n"));
    m_Loader.Set_CurrentUrl(("file:" + m_Dir + "/main.tex").c_str());
    CInputFileLoader::Set_Global(&m_Loader);
  }
  void TearDown() override {
    for (const char* name : {"x.tex", "x.y", "empty.tex", "self.tex"}) std::remove((m_Dir + "/" + name).c_str());
    std::remove(m_Dir.c_str());
    ztest::TokenSourceTest::TearDown();
  }
  // Expanded, as \input is expanded.
  static Strings Read(const char* text) { return ztest::Tokens(text, 1); }

  std::string m_Dir;
  CLocalInputFileLoader m_Loader;
};
}  // namespace

TEST_F(TokenInputFiles, SpellingsOfTheName) {
  EXPECT_EQ(Read("\\input x after"), (Strings{"X", " ", "after"}));
  EXPECT_EQ(Read("\\input{x}after"), (Strings{"X", " ", "after"}));
  EXPECT_EQ(Read("\\input { x }"), (Strings{"X", " "}));  // blanks in braces don't count
  EXPECT_EQ(Read("\\input{x.y}"), (Strings{"Y", " "}));
  EXPECT_EQ(Read("\\input x.y more"), (Strings{"Y", " ", "more"}));
  EXPECT_EQ(Read("\\include{x}\\inputonce{x}"), (Strings{"X", " ", "X", " "}));
  // Unexpanded, \input is a token like any other.
  EXPECT_EQ(ztest::Tokens("\\input x", 0), (Strings{"\\input", "x"}));
}

TEST_F(TokenInputFiles, TheRestOfTheLineComesAfterTheFile) {
  // The character that ended the name was already read; it belongs behind the file.
  EXPECT_EQ(Read("{\\input x.y}z"), (Strings{"{", "Y", " ", "}", "z"}));
}

TEST_F(TokenInputFiles, NamesResolveAgainstTheCurrentUrl) {
  ASSERT_TRUE(ztest::WriteFile(m_Dir + "/../zephrin-input-sibling.tex", "S\n"));
  EXPECT_EQ(Read("\\input{../zephrin-input-sibling}"), (Strings{"S", " "}));
  std::remove((m_Dir + "/../zephrin-input-sibling.tex").c_str());

  TTexTokenSource source("main", "\\input x ");
  std::unique_ptr<TTexToken> token(source.NextToken(0, 1));
  EXPECT_EQ(source.GetSourceName(), "file:" + m_Dir + "/x.tex");  // the included text is named by its URL
  EXPECT_TRUE(TStringPool::g_pGlobal->GetBoolean(source.GetSourceName(), TGlobalString::g_pinput));
}

TEST_F(TokenInputFiles, AMissingLocalFileBecomesAMessageInTheText) {
  TTexTokenSource source("main", "\\input{nothere}after");
  Strings tokens;
  std::string sourceWhileReading;
  while (TTexToken* token = source.NextToken(0, 1)) {
    if (tokens.empty()) sourceWhileReading = source.GetSourceName();
    tokens.push_back(ztest::DescribeToken(token));
    delete token;
  }
  const std::string url = "file:" + m_Dir + "/nothere.tex";
  EXPECT_EQ(sourceWhileReading, url);
  Strings expected{"\\centerline", "{", "\\fbox", "{", "\\color", "{", "red", "}", "Could", " ", "not", " ",
                   "locate", " ", "input", " ", "document", " ", "\\verb", "{", url, "}", ".", "}", "}", "after"};
  EXPECT_EQ(tokens, expected);
}

TEST_F(TokenInputFiles, AFileThatCannotBeDeliveredStopsTheParse) {
  // A remote document: the local loader cannot fetch what it names.
  m_Loader.Set_CurrentUrl("http://host/docs/main.tex");
  TTexTokenSource source("main", "a \\input{x} b");
  std::unique_ptr<TTexToken> a(source.NextToken(0, 1));
  EXPECT_EQ(ztest::DescribeToken(a.get()), "a");
  EXPECT_THROW(ztest::ReadAll(source, 1), CInputFileException);
  // So does a local file with nothing in it: only a text counts as delivered.
  m_Loader.Set_CurrentUrl(("file:" + m_Dir + "/main.tex").c_str());
  EXPECT_THROW(Read("\\input{empty}"), CInputFileException);
}

TEST_F(TokenInputFiles, ADocumentParseStopsAtTheWaitAsAtTheEndOfInput) {
  m_Loader.Set_CurrentUrl("http://host/docs/main.tex");
  TTexTokenSource source("main", "a \\input{x} b {c}");
  source.Set_StopAtMissingFile(1);
  std::unique_ptr<TTexToken> a(source.NextToken(0, 1));
  EXPECT_EQ(ztest::DescribeToken(a.get()), "a");
  EXPECT_FALSE(source.Get_WaitingForFile());
  // The blank before \input, then nothing: what follows the wait is not read,
  // put back or not, until the file has come and the document loads again.
  EXPECT_EQ(ztest::ReadAll(source, 1), Strings{" "});
  EXPECT_TRUE(source.Get_WaitingForFile());
  source.PutBack(new TTexCharacterToken('z'));
  EXPECT_EQ(source.NextToken(0, 1), nullptr);
}

TEST_F(TokenInputFiles, OnceSkipsAFileAlreadyIn) {
  TTexTokenSource source("main", "");
  CString name = "x.tex";
  source.InsertNamedInputFile(1, name);
  EXPECT_EQ(name, ("file:" + m_Dir + "/x.tex").c_str());  // the name becomes the merged URL
  CString again = "x.tex";
  source.InsertNamedInputFile(1, again);
  EXPECT_EQ(ztest::ReadAll(source, 1), (Strings{"X", " "}));
  CString third = "x.tex";
  source.InsertNamedInputFile(0, third);  // without the flag it is read again
  EXPECT_EQ(ztest::ReadAll(source, 1), (Strings{"X", " "}));
}

TEST_F(TokenInputFiles, AFileThatIncludesItselfStops) {
  Strings tokens = Read("\\input self\nend");
  // The document and the files inside one another reach the bound together.
  EXPECT_EQ(static_cast<int>(std::count(tokens.begin(), tokens.end(), "s")), TTexTokenSource::fg_nMaxInputDepth);
  EXPECT_EQ(tokens.back(), "end");
  EXPECT_EQ(SavedErrorMessages(), (Strings{"NO STRING"}));
}

TEST_F(TokenInputFiles, TheLocalLoaderReadsPathsAndFileUrls) {
  CString text;
  EXPECT_EQ(m_Loader.LoadStringFromUrl((m_Dir + "/x.y").c_str(), text, 1, nullptr), 1);
  EXPECT_EQ(text, "Y\n");
  EXPECT_EQ(m_Loader.LoadStringFromUrl(("file:" + m_Dir + "/x.tex").c_str(), text, 1, nullptr), 1);
  EXPECT_EQ(text, "X\n");
  EXPECT_EQ(m_Loader.LoadStringFromUrl(("file:" + m_Dir + "/none.tex").c_str(), text, 1, nullptr), 0);
  EXPECT_EQ(m_Loader.LoadStringFromUrl("http://host/x.tex", text, 1, nullptr), 0);
  EXPECT_EQ(CLocalInputFileLoader::FileUrlFromPath("/a/b.tex"), "file:/a/b.tex");
}
