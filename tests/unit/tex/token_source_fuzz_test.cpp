// Bad input never hangs or crashes the token source: random and truncated
// documents, read the way parsers read, must come to an end within a number
// of reads in proportion to their length, and report what they report.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "errors/parse_errors.h"
#include "support/paths.h"
#include "support/tex_tokens.h"
#include "tex/input_file_loader.h"
#include "tex/macro_property.h"
#include "tex/token_source.h"

namespace {
const char* const fg_Fragments[] = {
    "\\", "{", "}", "{", "}", "\\iftrue ", "\\iffalse ", "\\else ", "\\fi ", "\\or ", "\\ifcase ", "\\ifmmode ",
    "\\newif", "\\iffoo ", "\\footrue ", "\\csname ", "\\endcsname ", "\\begin{", "\\begin", "\\end{", "\\end",
    "box}", "\\verb|", "\\verb", "|", "\\input{g}", "\\input f ", "\\input{nothere}", "\\input{http://h/x}",
    "\\input", "#", "##", "#1", "#0", "$", "$$", "-", "--", "---", "`", "'", "``", "''", "!`", "?`", "%", "\n",
    "\n\n", " ", "\t", "\r", "a", "word", "x2", "1.5", "3", ".", "...", "\\loop ", "\\pair ", "\\wrap ",
    "\\tail ", "\\a'", "\\\\", "\\'", "\\=", "\\ ", "[", "]", "[3]", "\xff", "\x80", "\\section*", "\\par ",
};

class TokenSourceFuzz : public ztest::TokenSourceTest {
 protected:
  void SetUp() override {
    ztest::TokenSourceTest::SetUp();
    CZrError::Set_ReportParseErrors(kReportAtEnd);
    m_Dir = ztest::MakeTempDir("fuzz");
    ASSERT_TRUE(ztest::WriteFile(m_Dir + "/g.tex", "G\n"));
    ASSERT_TRUE(ztest::WriteFile(m_Dir + "/f.tex", "F\\input f\n"));  // includes itself
    m_Loader.Set_CurrentUrl(("file:" + m_Dir + "/main.tex").c_str());
    CInputFileLoader::Set_Global(&m_Loader);
    ztest::DefineMacro("loop", 0, "x\\loop");
    ztest::DefineMacro("pair", 2, "<#1|#2>");
    ztest::DefineMacro("wrap", 1, "#1\\tail");
    ztest::DefineMacro("tail", 1, "\\iftrue<#1>");
    ztest::DefineMacro("beginbox", 1, "[#1\\csname");
  }
  void TearDown() override {
    std::remove((m_Dir + "/g.tex").c_str());
    std::remove((m_Dir + "/f.tex").c_str());
    std::remove(m_Dir.c_str());
    ztest::TokenSourceTest::TearDown();
  }

  // Reads input to its end with a random mix of the reads that parsers make.
  // Returns false if it did not end within the bound.
  bool ReadToEnd(const std::string& input, std::mt19937& random) {
    FILE* file = input.empty() ? nullptr : fmemopen(const_cast<char*>(input.data()), input.size(), "r");
    std::unique_ptr<TTexTokenSource> source;
    if (file)
      source = std::make_unique<TTexTokenSource>("fuzz", file);
    else
      source = std::make_unique<TTexTokenSource>("fuzz", input.c_str());
    source->Set_MathMode(random() % 4 == 0);
    source->Set_Tabbing(random() % 8 == 0);
    source->ObeyLines(random() % 8 == 0);
    const int expand = random() % 4 != 0;
    const long bound = 64L * static_cast<long>(input.size()) + 10000;
    try {
      for (long step = 0; step < bound; ++step) {
        switch (random() % 16) {
          case 0:
            delete source->NextTokenStream();
            break;
          case 1:
            source->GetRawArgument();
            break;
          case 2: {
            CString number;
            source->NextGeneralNumber(number);
            break;
          }
          case 3:
            source->NextOptionalSingleDigit();
            break;
          case 4: {
            auto* list = new CObList;
            source->NextTokenList(list);
            TMacroProperty body(0, list);  // deletes what the list got
            break;
          }
          case 5:
            if (random() % 8 == 0) {
              source->StartVerbatimMode();
              for (int i = 0; i < 3; ++i) delete source->NextToken(0, 0);
              source->StopVerbatimMode();
            }
            break;
          default: {
            TTexToken* token = source->NextToken(random() % 2, expand);
            if (!token) return true;
            if (random() % 16 == 0)
              source->PutBack(token);  // a parser that looked ahead
            else
              delete token;
          }
        }
      }
    } catch (CInputFileException&) {
      return true;  // a remote \input: the parse stops to wait, as designed
    }
    return false;
  }

  std::string RandomDocument(std::mt19937& random, int fragments) {
    std::string text;
    const size_t count = sizeof fg_Fragments / sizeof fg_Fragments[0];
    for (int i = 0; i < fragments; ++i) {
      if (random() % 32 == 0)
        text += std::string(1, '\0');
      else
        text += fg_Fragments[random() % count];
    }
    return text;
  }

  std::string m_Dir;
  CLocalInputFileLoader m_Loader;
};

// A document that uses every construct, cut at every length.
const char fg_Seed[] =
    "\\newif\\ifdraft\\drafttrue % switches\n"
    "\\begin{box}{T} Text--with---dashes, ``quotes'' and !`inverted?` $x^2_{i}$ $$\\sum_{n=1}^\\infty$$\n"
    "\\ifdraft draft\\else final\\fi \\ifcase 2 a\\or b\\or c\\else d\\fi \\csname sec tion\\endcsname\n\n"
    "\\pair{first}{second} \\wrap{w}{t} \\verb|raw \\text| \\section*{Star} 3.14 ... ## #1\n"
    "\\input{g} \\input g.tex \\loop \\begin{itemize}\\item x\\end{itemize} \\'e \\a'x \\\\ \\{ \\}\n";
}  // namespace

TEST_F(TokenSourceFuzz, RandomAndTruncatedInputsEndAndReport) {
  std::mt19937 random(20261123);
  int ended = 0, total = 0;
  const std::string seed = fg_Seed;
  for (size_t length = 0; length <= seed.size(); ++length) {
    ++total;
    ended += ReadToEnd(seed.substr(0, length), random);
    CZrError::ClearParseErrors();
  }
  for (int i = 0; i < 2500; ++i) {
    ++total;
    ended += ReadToEnd(RandomDocument(random, static_cast<int>(random() % 60)), random);
    CZrError::ClearParseErrors();
  }
  EXPECT_EQ(ended, total);

  // The runaway constructs report rather than fail: a file that includes
  // itself and a macro that calls itself, one report each.
  ztest::Tokens("\\input f \\loop", 1);
  EXPECT_EQ(CZrError::Get_SavedErrors().GetCount(), 2);
  CZrError::ClearParseErrors();
}

TEST_F(TokenSourceFuzz, MegabyteLinesEnd) {
  std::mt19937 random(7);
  const size_t megabyte = 1 << 20;
  auto repeat = [&](const std::string& prefix, const std::string& unit) {
    std::string text = prefix;
    while (text.size() < megabyte) text += unit;
    return text;
  };
  std::string mixed;
  while (mixed.size() < megabyte) {
    std::string piece = RandomDocument(random, 1);
    // One line, and no remote \input, which would stop the read at once.
    if (piece.find('\n') == std::string::npos && piece.find("http") == std::string::npos) mixed += piece;
  }
  const std::string inputs[] = {
      repeat("", "a"),                 // one word
      repeat("\\begin", "{"),          // a raw argument that never closes
      repeat("", "\\iftrue a"),        // conditionals that never close
      repeat("", "\\"),                // control symbols
      repeat("\\verb|", "x"),          // an unclosed \verb
      repeat("", "\\csname "),         // names inside names
      repeat("", "\\pair{"),           // macro arguments that never close
      mixed,
  };
  for (const std::string& input : inputs) {
    SCOPED_TRACE(input.substr(0, 16));
    EXPECT_TRUE(ReadToEnd(input, random));
    CZrError::ClearParseErrors();
  }
  // What a few megabytes of tokens may cost, with room for the sanitizer's quarantine.
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  EXPECT_LT(usage.ru_maxrss, 1536L * 1024);  // kilobytes
}
