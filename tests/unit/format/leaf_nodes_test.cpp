// The leaves: which token makes which node, how each prints back, and how
// an unknown command is measured and drawn.
#include <gtest/gtest.h>

#include <memory>

#include "format/leaf_nodes.h"
#include "format/tex_mode.h"
#include "support/test_context.h"
#include "support/tex_parse.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

using ztest::ParseDocument;
using ztest::PrintTexOf;
using ztest::SquashBlanks;
using ztest::TreeOf;

namespace {
class LeafNodes : public ztest::TexParseTest {};

TEST_F(LeafNodes, WordsAndNumbersAreSequencesSingleLettersAreCharacters) {
  EXPECT_EQ(TreeOf("ab,3.14;x7"),
            "TFmtCompoundNode\n"
            "  TFmtSequenceNode \"ab\"\n"
            "  TFmtCharacterNode \",\"\n"
            "  TFmtSequenceNode \"3.14\"\n"
            "  TFmtCharacterNode \";\"\n"
            "  TFmtSequenceNode \"x7\"\n");  // letters and digits make one word outside math
  EXPECT_EQ(TreeOf("x"), "TFmtCompoundNode\n  TFmtCharacterNode \"x\"\n");
}

TEST_F(LeafNodes, LigaturesAndQuotesPrintThroughTheirRows) {
  const auto doc = ParseDocument("``a''--b---c`d'");
  ASSERT_EQ(doc->GetCount(), 10);
  EXPECT_TRUE(doc->GetNth(1)->IsControlSequence(TGlobalString::g_pOPENDOUBLEQUOTE));
  EXPECT_TRUE(doc->GetNth(3)->IsControlSequence(TGlobalString::g_pCLOSEDOUBLEQUOTE));
  EXPECT_TRUE(doc->GetNth(4)->IsControlSequence(TGlobalString::g_pENDASH));
  EXPECT_TRUE(doc->GetNth(6)->IsControlSequence(TGlobalString::g_pEMDASH));
  EXPECT_TRUE(doc->GetNth(8)->IsControlSequence(TGlobalString::g_plq));
  EXPECT_TRUE(doc->GetNth(10)->IsControlSequence(TGlobalString::g_prq));
  EXPECT_EQ(PrintTexOf(doc.get()), "``a''--b---c`d'");
}

TEST_F(LeafNodes, DoubleQuoteInMathIsTwoPrimes) {
  const auto doc = ParseDocument("$x''$");
  ASSERT_EQ(doc->GetCount(), 1);
  auto* math = doc->GetNth(1)->IsCompoundNode();
  ASSERT_NE(math, nullptr);
  const char* prime = TStringPool::g_pGlobal->Put("prime");
  ASSERT_EQ(math->GetCount(), 3);
  EXPECT_TRUE(math->GetNth(2)->IsControlSequence(prime));
  EXPECT_TRUE(math->GetNth(3)->IsControlSequence(prime));
  // A single quote in math is one prime; in text a closing quote.
  EXPECT_EQ(SquashBlanks(PrintTexOf("$y'$ z'")), "$y\\prime $ z'");
}

TEST_F(LeafNodes, SignsInMathBecomeOperatorSymbols) {
  const auto doc = ParseDocument("$a+b=c-d$ a+b");
  auto* math = doc->GetNth(1)->IsCompoundNode();
  ASSERT_EQ(math->GetCount(), 7);
  EXPECT_TRUE(math->GetNth(2)->IsControlSequence(TGlobalString::g_pPLUS));
  EXPECT_TRUE(math->GetNth(4)->IsControlSequence(TGlobalString::g_pEQUALS));
  EXPECT_TRUE(math->GetNth(6)->IsControlSequence(TGlobalString::g_pMINUS));
  EXPECT_TRUE(doc->GetTail()->IsSequenceNode() || doc->GetTail()->IsCharacterNode());
  EXPECT_EQ(SquashBlanks(PrintTexOf(doc.get())), "$a+b=c-d$ a+b");
}

TEST_F(LeafNodes, ColonEqualsInMathIsOneRelation) {
  const auto doc = ParseDocument("$a:=b$");
  auto* math = doc->GetNth(1)->IsCompoundNode();
  ASSERT_EQ(math->GetCount(), 3);
  auto* relation = math->GetNth(2)->IsGenericArgumentedNode();
  ASSERT_NE(relation, nullptr);
  EXPECT_STREQ(relation->Get_Name(), "mathrel");
}

TEST_F(LeafNodes, ControlSequenceNamesPrintByTheirFirstCharacter) {
  // A letter first: a blank after the name, so that text cannot join it.
  EXPECT_EQ(PrintTexOf("\\alpha x"), "\\alpha x");
  EXPECT_EQ(PrintTexOf("\\section*"), "\\section* ");
  // Anything else goes through \csname, which reads back to the same name.
  EXPECT_EQ(PrintTexOf("\\csname 1a\\endcsname"), "\\csname 1a\\endcsname ");
  EXPECT_EQ(PrintTexOf("\\{\\}"), "\\{\\}");
  CString out;
  int column = 5;
  TFmtControlSequenceNode(TGlobalString::g_pnewline).PrintTex(out, column);
  EXPECT_STREQ(out, "\\newline\n");
  EXPECT_EQ(column, 0);
  TFmtControlSequenceNode(TGlobalString::g_pSECRETSTRUT).PrintTex(out, column);
  EXPECT_STREQ(out, "\\newline\n");
}

TEST_F(LeafNodes, ControlCharactersOpenMathOrStand) {
  EXPECT_EQ(TreeOf("\\(x\\)\\%"),
            "TFmtCompoundNode\n"
            "  TFmtMathNode\n"
            "    TFmtCharacterNode \"x\"\n"
            "  TFmtControlCharacterNode \"\\\\%\"\n");
  EXPECT_EQ(TreeOf("\\[x\\]"),
            "TFmtCompoundNode\n"
            "  TFmtDisplayMathNode type 4\n"
            "    TFmtCharacterNode \"x\"\n");
  EXPECT_EQ(PrintTexOf("$$x$$"), "%\n$$\nx\n$$\n");
}

// A context that remembers the text colour of each run it was asked to write.
class TColorRecordingContext : public ztest::TTestContext {
 public:
  int TextOut(int x, int y, const char* text, int length) override {
    m_Colors.push_back(m_TextColor);
    return TTestContext::TextOut(x, y, text, length);
  }
  std::vector<CColorRef> m_Colors;
};

class LeafCompose : public ztest::TexParseTest {
 protected:
  void SetUp() override {
    TexParseTest::SetUp();
    m_SavedFont = TExtendedFont::fg_pCurrent;
    TExtendedFont::fg_pCurrent = &m_Font;
    g_CurrentTexMode = 3;
    m_Context.m_bForceDraw = 1;
  }
  void TearDown() override {
    TExtendedFont::fg_pCurrent = m_SavedFont;
    g_CurrentTexMode = 3;
    TexParseTest::TearDown();
  }
  ztest::TTestFont m_Font{12, 4, 7};
  TExtendedFont* m_SavedFont = nullptr;
  TColorRecordingContext m_Context;
};

TEST_F(LeafCompose, UnknownCommandIsItsNameWithBackslashInRed) {
  TFmtControlSequenceNode zork(TStringPool::g_pGlobal->Put("zork"));
  const TFmtExtent* e = zork.Compose(m_Context);
  // The test device makes every character 10 wide: "\zork" is 5 of them.
  EXPECT_EQ(e->m_nWidth, 50);
  EXPECT_EQ(e->m_nHeight, 12);  // the current font's ascent and descent
  EXPECT_EQ(e->m_nDepth, 4);
  zork.Draw(m_Context);
  EXPECT_EQ(m_Context.m_Text, "\\zork");
  ASSERT_EQ(m_Context.m_Colors.size(), 1u);
  EXPECT_EQ(m_Context.m_Colors[0], CColorRef(255, 0, 0, "red"));
  EXPECT_EQ(m_Context.m_TextColor, CColorRef(0, 0, 0, "black"));  // put back
}

TEST_F(LeafCompose, LogLikeNamesAreUnknownOutsideMath) {
  TFmtControlSequenceNode sine(TStringPool::g_pGlobal->Put("sin"));
  EXPECT_EQ(sine.Compose(m_Context)->m_nWidth, 40);  // "\sin"
  g_CurrentTexMode = 4;
  // In math the name is set as text, plus a thick space (none without fonts).
  EXPECT_EQ(sine.Compose(m_Context)->m_nWidth, 30);
  sine.Draw(m_Context);
  EXPECT_EQ(m_Context.m_Text, "sin");
  ASSERT_EQ(m_Context.m_Colors.size(), 1u);
  EXPECT_NE(m_Context.m_Colors[0], CColorRef(255, 0, 0, "red"));
}

TEST_F(LeafCompose, DiscretionaryHyphenHasNoWidthItalicCorrectionOnePoint) {
  EXPECT_EQ(TFmtControlCharacterNode('-').Compose(m_Context)->m_nWidth, 0);
  EXPECT_EQ(TFmtControlCharacterNode('@').Compose(m_Context)->m_nWidth, 0);
  EXPECT_EQ(TFmtControlCharacterNode('/').Compose(m_Context)->m_nWidth, TFmtContext::fg_nUnitsPerPoint);
  EXPECT_EQ(TFmtControlCharacterNode('%').Compose(m_Context)->m_nWidth, 7);
}

TEST_F(LeafCompose, AWordIsMeasuredAsOneRun) {
  TFmtSequenceNode word("abc");
  const TFmtExtent* e = word.Compose(m_Context);
  EXPECT_EQ(e->m_nWidth, 30);   // the device's extent of the whole run
  EXPECT_EQ(e->m_nHeight, 12);  // the characters' own heights
  EXPECT_EQ(e->m_nDepth, 4);
}
}  // namespace
