// Glue: kinds and their sizes, the fill rules, the share-out of free space,
// printing, and the spacing commands through their registered parsers.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "device/font_family.h"
#include "format/context.h"
#include "format/glue_node.h"
#include "support/test_context.h"
#include "support/tex_tokens.h"
#include "symbols/global_strings.h"
#include "tex/families/spacing.h"
#include "tex/token_source.h"

using ztest::TTestContext;
using ztest::TTestFamily;
using ztest::TTestFont;

namespace {

class GlueTest : public ztest::TokenSourceTest {
 protected:
  void SetUp() override {
    TokenSourceTest::SetUp();
    RegisterSpacing();
    Clear();
  }
  void TearDown() override {
    Clear();
    TokenSourceTest::TearDown();
  }
  static void Clear() {
    TExtendedFont::fg_pCurrent = nullptr;
    TFontFamily::fg_pRoman = nullptr;
    TFontFamily_PI::fg_CurrentFontSize = 5;
  }

  // The first control sequence of text, read by its registered parser.
  static std::unique_ptr<TFmtGlueNode> ParseCommand(const char* text, std::string* rest = nullptr) {
    TTexTokenSource source("test", text);
    std::unique_ptr<TTexToken> token(source.NextToken(1, 1));
    EXPECT_TRUE(token && token->GetControlSequence()) << text;
    if (!token || !token->GetControlSequence()) return nullptr;
    TFunctionProperty* parser =
        TStringPool::g_pGlobal->GetFunction(token->GetControlSequence(), TGlobalString::g_pPARSER_TEX);
    EXPECT_TRUE(parser) << text;
    if (!parser) return nullptr;
    TFmtNode* node = parser->Get_TexParser()(nullptr, source);
    if (rest) {
      std::unique_ptr<TTexToken> next(source.NextToken(1, 1));
      *rest = next ? ztest::DescribeToken(next.get()) : "";
    }
    EXPECT_TRUE(node && node->IsGlueNode()) << text;
    return std::unique_ptr<TFmtGlueNode>(node ? node->IsGlueNode() : nullptr);
  }
  static std::string Print(const TFmtNode& node) {
    CString out;
    int column = 0;
    node.PrintTex(out, column);
    // The column counts every unit name as two columns, "\hsize" too.
    const std::string text = out.c_str();
    int hsizes = 0;
    for (size_t at = text.find("\\hsize"); at != std::string::npos; at = text.find("\\hsize", at + 1)) ++hsizes;
    EXPECT_EQ(column, out.GetLength() - 4 * hsizes) << text;
    return text;
  }
  static std::unique_ptr<TFmtGlueNode> Kind(int kind) {
    auto glue = std::make_unique<TFmtGlueNode>(1, 1);
    glue->Set_Kind(kind);
    return glue;
  }

  TTestContext m_Context;  // a quad of 10: every text extent is 10 a character
};

TEST_F(GlueTest, RegistrationTableHasEachNameOnceAndEveryNameParses) {
  const std::vector<std::string> expected = {
      "hspace", "hspace*", "vspace",  "vspace*",      "hskip",       "hglue",         "vskip",
      "vglue",  "hfil",    "hfill",   "hfilll",       "vfil",        "vfill",         "vfilll",
      "hss",    "vss",     "kern",    "enskip",       "enspace",     "negthinspace",  "negmedspace",
      "negthickspace",     "qquad",   "quad",         "space",       "medspace",      "thickspace",
      "thinspace"};
  std::set<std::string> seen;
  for (const TSpacingEntry& entry : SpacingTable()) {
    EXPECT_TRUE(seen.insert(entry.name).second) << entry.name << " twice";
    ASSERT_NE(entry.parser, nullptr) << entry.name;
    TFunctionProperty* parser = TStringPool::g_pGlobal->GetFunction(entry.name, TGlobalString::g_pPARSER_TEX);
    ASSERT_TRUE(parser) << entry.name;
    EXPECT_EQ(parser->Get_TexParser(), entry.parser) << entry.name;
    // With four braced arguments after it, and with nothing after it.
    for (const char* after : {"{1pt}{2pt}{3pt}{4pt}", ""}) {
      const std::string text = std::string("\\") + entry.name + after;
      auto glue = ParseCommand(text.c_str());
      ASSERT_TRUE(glue) << text;
      TFmtGlueNode copy(*glue);
      EXPECT_EQ(Print(copy), Print(*glue)) << text;
    }
  }
  EXPECT_EQ(seen, std::set<std::string>(expected.begin(), expected.end()));
}

TEST_F(GlueTest, EquivalentSpellingsBuildOneGlue) {
  const std::vector<std::vector<const char*>> groups = {
      {"\\hspace{1in}", "\\hspace*{1in}", "\\hskip 1in", "\\hglue1in", "\\hskip{1in}"},
      {"\\vspace{2pt plus 1fil}", "\\vskip 2pt plus 1fil", "\\vglue 2pt plus1fil"},
      {"\\hfil", "\\hskip 0pt plus 1fil", "\\hspace{0pt plus 1fil}"},
      {"\\hfill", "\\hspace{\\fill}", "\\hskip 1fill", "\\hskip 0pt plus 1fill"},
      {"\\hss", "\\hskip 0pt plus 1filll minus 1filll", "\\hskip 0pt minus 1filll plus 1filll"},
      {"\\kern 3pt", "\\kern{3pt}", "\\kern3pt"},
  };
  for (const auto& group : groups) {
    const std::string first = Print(*ParseCommand(group[0]));
    for (const char* text : group) {
      SCOPED_TRACE(text);
      auto glue = ParseCommand(text);
      ASSERT_TRUE(glue);
      EXPECT_EQ(Print(*glue), first);
      // Printing and reading back gives the same glue again.
      auto again = ParseCommand(first.c_str());
      ASSERT_TRUE(again);
      EXPECT_EQ(Print(*again), first);
    }
  }
  EXPECT_EQ(Print(*ParseCommand("\\hspace{1in}")), "\\hskip 1in ");
  EXPECT_EQ(Print(*ParseCommand("\\vss")), "\\vss ");
  EXPECT_EQ(Print(*ParseCommand("\\hskip 1in plus 2pt minus 1pt")), "\\hskip 1in plus 2pt minus 1pt ");
  EXPECT_EQ(Print(*ParseCommand("\\hskip 1in plus -2pt")), "\\hskip 1in ");  // negative stretch is not printed
}

TEST_F(GlueTest, ParsersTakeOnlyTheirArgument) {
  std::string rest;
  ParseCommand("\\hfil x", &rest);
  EXPECT_EQ(rest, "x");
  ParseCommand("\\quad x", &rest);
  EXPECT_EQ(rest, "x");
  ParseCommand("\\hspace{1cm}x", &rest);
  EXPECT_EQ(rest, "x");
  ParseCommand("\\hskip 1cm plus 2pt x", &rest);
  EXPECT_EQ(rest, "x");
  ParseCommand("\\hskip 3 plus 1fil minus 2pt y", &rest);  // a bare number leaves "plus" to the glue
  EXPECT_EQ(rest, "y");
  // The same glue value read by the glue node itself, as style parameters read it: kind 20.
  TTexTokenSource source("test", "1cm plus 1fil z");
  TFmtGlueNode glue(1, 1);
  EXPECT_EQ(glue.ParseTex(source), &glue);
  EXPECT_EQ(glue.Get_Kind(), k_GlueParsed);
  EXPECT_EQ(Print(glue), "1cm plus 1fil ");
}

TEST_F(GlueTest, FillRulesNeedKindZeroAndExactlyOneUnitOfStretch) {
  EXPECT_TRUE(ParseCommand("\\hfil")->IsFil());
  EXPECT_TRUE(ParseCommand("\\hspace{\\fill}")->IsFill());
  EXPECT_FALSE(ParseCommand("\\hspace{\\fill}")->Get_NormalSpace());  // the normal space stays unset
  EXPECT_TRUE(ParseCommand("\\vfilll")->IsFilll());
  EXPECT_TRUE(ParseCommand("\\hfil")->IsHorizontalFillGlue());
  EXPECT_FALSE(ParseCommand("\\vfil")->IsHorizontalFillGlue());
  EXPECT_FALSE(ParseCommand("\\hss")->IsFilll());  // its shrink is set
  EXPECT_TRUE(ParseCommand("\\hss")->IsSs());
  EXPECT_FALSE(ParseCommand("\\hskip 1pt plus 1fil")->IsFil());   // a normal space
  EXPECT_FALSE(ParseCommand("\\hskip 0pt plus 2fil")->IsFil());   // two units
  EXPECT_FALSE(ParseCommand("\\hskip 0pt plus 1fil minus 1pt")->IsFil());
  EXPECT_TRUE(ParseCommand("\\hskip 0pt plus 1fil minus 0pt")->IsFil());
  auto tied = GlueTest::Kind(k_GlueTie);
  tied->SetStretchability(new TFmtUnitNode(1, 1, k_UnitFil));
  EXPECT_FALSE(tied->IsFil());  // kind 19, not 0
  std::unique_ptr<TFmtGlueNode> program(TFmtGlueNode::New_hfilll());
  EXPECT_TRUE(program->IsFilll());
  EXPECT_FALSE(program->Get_UserSupplied());
}

TEST_F(GlueTest, SpacesFromCharactersAndTheirKinds) {
  const struct {
    char c;
    int kind;
    const char* printed;
  } controls[] = {{'!', 7, "\\!"}, {',', 9, "\\,"}, {':', 4, "\\medspace "}, {'>', 4, "\\medspace "},
                  {';', 8, "\\;"}, {' ', 1, "\\ "}, {'x', 0, "\\hskip 0pt "}};
  for (const auto& c : controls) {
    std::unique_ptr<TFmtGlueNode> glue(TFmtGlueNode::GlueFromControlCharacter(c.c));
    EXPECT_EQ(glue->Get_Kind(), c.kind) << c.c;
    EXPECT_EQ(Print(*glue), c.printed) << c.c;
    EXPECT_TRUE(glue->Get_UserSupplied() && glue->Get_Horizontal());
  }
  std::unique_ptr<TFmtGlueNode> blank(TFmtGlueNode::GlueFromTextSpace(' '));
  std::unique_ptr<TFmtGlueNode> tie(TFmtGlueNode::GlueFromTextSpace('~'));
  EXPECT_EQ(blank->Get_Kind(), 17);
  EXPECT_EQ(tie->Get_Kind(), 19);
  EXPECT_EQ(Print(*blank), " ");
  EXPECT_EQ(Print(*tie), "~");
  // Only a blank in text is white space; a tie breaks neither before nor after.
  EXPECT_TRUE(blank->IsWhiteSpace());
  EXPECT_FALSE(tie->IsWhiteSpace());
  EXPECT_TRUE(tie->DontBreakBefore() && tie->DontBreakAfter());
  EXPECT_FALSE(blank->DontBreakBefore() || blank->DontBreakAfter());
}

TEST_F(GlueTest, ComposeGivesEachKindItsSize) {
  TTestFamily roman(8);  // "M" at the current size is 48 wide: thin 6, medium 12, thick 24
  TFontFamily::fg_pRoman = &roman;
  TTestFont font(8, 3, 5);  // a blank is 5 wide
  TExtendedFont::fg_pCurrent = &font;
  const struct {
    const char* text;
    int width;
  } cases[] = {
      {"\\quad", 10},         {"\\qquad", 20},   {"\\enskip", 5},       {"\\enspace", 5},
      {"\\space", 5},         {"\\thinspace", 6}, {"\\negthinspace", -6}, {"\\medspace", 12},
      {"\\negmedspace", -12}, {"\\thickspace", 24}, {"\\negthickspace", -24}, {"\\kern 1in", 144},
      {"\\hskip 2pt plus 1fil", 4}, {"\\hfil", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    auto glue = ParseCommand(c.text);
    ASSERT_TRUE(glue);
    EXPECT_EQ(glue->Compose(m_Context)->m_nWidth, c.width);
  }
  std::unique_ptr<TFmtGlueNode> blank(TFmtGlueNode::GlueFromTextSpace(' '));
  EXPECT_EQ(blank->Compose(m_Context)->m_nWidth, 5);
  // Vertical glue is a height.
  auto skip = ParseCommand("\\vskip 1in");
  const TFmtExtent* extent = skip->Compose(m_Context);
  EXPECT_EQ(extent->m_nHeight, 144);
  EXPECT_EQ(extent->m_nWidth, 0);
  EXPECT_TRUE(skip->GoesOnVerticalList());
  // A named space drops an actual space that layout set; kind 0 keeps it until reset.
  auto quad = ParseCommand("\\quad");
  quad->SetActualSpace(new TFmtUnitNode(99, 1, k_UnitNone));
  EXPECT_EQ(quad->Compose(m_Context)->m_nWidth, 10);
  auto fil = ParseCommand("\\hfil");
  fil->SetActualSpace(new TFmtUnitNode(99, 1, k_UnitNone));
  EXPECT_EQ(fil->Compose(m_Context)->m_nWidth, 99);
  fil->ResetFmtExtentForReflowables();
  EXPECT_EQ(fil->Compose(m_Context)->m_nWidth, 0);
}

class ShareOut : public GlueTest {
 protected:
  // Parses each command, shares available among them, and answers the widths.
  std::vector<int> Share(const std::vector<const char*>& commands, int available) {
    m_Nodes.clear();
    CObList list;
    for (const char* command : commands) {
      m_Nodes.push_back(ParseCommand(command));
      m_Nodes.back()->Compose(m_Context);
      list.AddTail(m_Nodes.back().get());
    }
    ExpandInfinitelyStretchableGlue(&list, available, m_Context);
    std::vector<int> widths;
    for (auto& node : m_Nodes) widths.push_back(node->m_pExtent->m_nWidth);
    return widths;
  }
  std::vector<std::unique_ptr<TFmtGlueNode>> m_Nodes;
};

TEST_F(ShareOut, OnlyTheHighestOrderSharesAndTheFirstGetTheRemainder) {
  EXPECT_EQ(Share({"\\hfil", "\\hfil", "\\hfil"}, 7), (std::vector<int>{3, 2, 2}));
  EXPECT_EQ(Share({"\\hfil", "\\hfill", "\\hfil"}, 7), (std::vector<int>{0, 7, 0}));
  EXPECT_EQ(Share({"\\hfil", "\\hfil", "\\hfill"}, 7), (std::vector<int>{0, 0, 7}));
  EXPECT_EQ(Share({"\\hfilll", "\\hfill", "\\hfilll"}, 9), (std::vector<int>{5, 0, 4}));
  EXPECT_EQ(Share({"\\hfil", "\\hfil"}, 1), (std::vector<int>{1, 0}));  // q 0, r 1: the first only
  // Glue that is not fill, and vertical fill, take nothing.
  EXPECT_EQ(Share({"\\hskip 2pt", "\\hfil", "\\vfil", "\\hss"}, 6), (std::vector<int>{4, 6, 0, 0}));
  // Nothing to share, or no room: the normal sizes stand.
  EXPECT_EQ(Share({"\\hfil", "\\hfil"}, 0), (std::vector<int>{0, 0}));
  EXPECT_EQ(Share({"\\hfil"}, -5), (std::vector<int>{0}));
  ExpandInfinitelyStretchableGlue(nullptr, 10, m_Context);
  CObList empty;
  ExpandInfinitelyStretchableGlue(&empty, 10, m_Context);
}

TEST_F(ShareOut, TheShareIsAddedToTheNormalSpace) {
  // A zero normal space in another unit still counts as fil glue; the share
  // is added to it in logical units.
  auto glue = ParseCommand("\\hfil");
  glue->SetNormalSpace(new TFmtUnitNode(0, 5, k_UnitPt));  // zero, so still fil
  CObList list;
  list.AddTail(glue.get());
  ExpandInfinitelyStretchableGlue(&list, 8, m_Context);
  EXPECT_EQ(glue->m_pExtent->m_nWidth, 8);
  ASSERT_TRUE(glue->Get_ActualSpace());
  EXPECT_EQ(glue->Get_ActualSpace()->GetInternalValue(m_Context), 8);
}

}  // namespace

namespace {

TEST_F(GlueTest, BadInputKeepsAWholeGlueAndEnds) {
  TTestFamily roman(8);
  TFontFamily::fg_pRoman = &roman;
  const char* inputs[] = {
      "\\hskip",
      "\\hskip -",
      "\\hspace{",
      "\\hspace{}",
      "\\hskip 1pt plus",
      "\\hskip 1pt plus minus",
      "\\kern{-.}",
      "\\kern ..5pt",
      "\\hskip 1pt plus 1pt minus 1pt plus 1pt",
      "\\hskip 99999999999999999999.99999999999999sp plus 2147483647cc minus -2147483648in",
      "\\vskip 2147483647\\hsize",
      "\\hspace{--3pt}",
      "\\hskip true",
      "\\hskip 1 true true pt",
  };
  for (const char* text : inputs) {
    SCOPED_TRACE(text);
    auto glue = ParseCommand(text);
    ASSERT_TRUE(glue);
    glue->Compose(m_Context);
    const std::string printed = Print(*glue);
    auto again = ParseCommand(printed.c_str());
    ASSERT_TRUE(again);
    EXPECT_EQ(Print(*again), printed);  // what is printed reads back as itself
    CObList list;
    list.AddTail(glue.get());
    list.AddTail(again.get());
    ExpandInfinitelyStretchableGlue(&list, std::numeric_limits<int>::max(), m_Context);
  }
  EXPECT_EQ(Print(*ParseCommand("\\hskip 1pt plus")), "\\hskip 1pt ");
  // Points only mark the decimals: 5/10, Gcd 5, so 1/2 pt.
  EXPECT_EQ(Print(*ParseCommand("\\kern ..5pt")), "\\kern 0.500000pt ");
}

}  // namespace
