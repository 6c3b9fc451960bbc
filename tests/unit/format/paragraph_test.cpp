// Paragraphs and vertical lists on a display-less context with a test font:
// every character 10 wide, 12 high, 4 deep, and a blank 10 wide, so widths
// are worked by hand (S = 10, a letter = 10). The worked breaking cases with
// real fonts are in tests/x/line_breaking_test.cpp.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "errors/parse_errors.h"
#include "format/break_nodes.h"
#include "format/context.h"
#include "format/document_node.h"
#include "format/glue_node.h"
#include "format/layout_dump.h"
#include "format/leaf_nodes.h"
#include "format/line_node.h"
#include "format/paragraph_node.h"
#include "format/tex_mode.h"
#include "format/vertical_list_node.h"
#include "support/test_context.h"
#include "support/tex_parse.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

namespace {
using Rows = std::vector<std::string>;

Rows Split(const CString& text) {
  Rows rows;
  std::string row;
  for (char c : std::string(text.c_str())) {
    if (c == '\n') {
      rows.push_back(row);
      row.clear();
    } else {
      row += c;
    }
  }
  return rows;
}

// Rows of one kind ("E" or "L") only.
Rows Only(const Rows& rows, char kind) {
  Rows out;
  for (const std::string& row : rows)
    if (!row.empty() && row[0] == kind) out.push_back(row);
  return out;
}

class Paragraphs : public ztest::TexParseTest {
 protected:
  void SetUp() override {
    TexParseTest::SetUp();
    m_SavedFont = TExtendedFont::fg_pCurrent;
    TExtendedFont::fg_pCurrent = &m_Font;
    m_nSavedParSkip = TFmtContext::fg_nParSkip;
    TFmtContext::fg_nParSkip = 12;
    g_CurrentTexMode = 3;
    m_Context.Set_DocumentNode(&m_Document);
  }
  void TearDown() override {
    TExtendedFont::fg_pCurrent = m_SavedFont;
    TFmtContext::fg_nParSkip = m_nSavedParSkip;
    TexParseTest::TearDown();
  }

  std::unique_ptr<TFmtVerticalListNode> Body(const std::string& text) {
    auto body = std::make_unique<TFmtVerticalListNode>(TFmtVerticalListNode::k_RefTop);
    body->Set_IsDocumentBody(1);
    body->Build(ztest::ParseDocument(text).release());
    return body;
  }
  // Composes as the view does: everything the first time, then a width change.
  Rows Compose(TFmtVerticalListNode* body, int width, KCompositionStatus status = k_WidthChanged) {
    m_Document.Set_CompositionStatus(k_Composed);
    m_Document.Set_CompositionStatus(status);
    m_Context.m_nLeftMargin = 0;
    m_Context.m_nRightMargin = width;
    m_Context.m_nJustification = 1;
    body->m_Position = CPoint(0, 0);
    body->Compose(m_Context);
    m_Document.Set_CompositionStatus(k_Composed);
    CString out;
    DumpLayout(body, width, out);
    return Split(out);
  }
  Rows Lines(const std::string& text, int width) {
    auto body = Body(text);
    return Only(Compose(body.get(), width, k_ComposeEverything), 'L');
  }

  ztest::TTestFont m_Font{12, 4, 10};
  TExtendedFont* m_SavedFont = nullptr;
  int m_nSavedParSkip = 0;
  ztest::TTestContext m_Context;
  TFmtDocumentNode m_Document;
};

// One letter per element class, the paragraph's text in brackets.
std::string Shape(const TFmtVerticalListNode* body) {
  std::string out;
  for (CObject* o : body->Get_Children()) {
    auto* node = static_cast<TFmtNode*>(o);
    if (!out.empty()) out += ' ';
    if (TFmtParagraphNode* paragraph = node->IsParagraphNode()) {
      out += "P[";
      for (CObject* c : paragraph->Get_Children()) {
        auto* child = static_cast<TFmtNode*>(c);
        if (child->IsControlSequence(TGlobalString::g_pBEGINGROUP)) out += '{';
        else if (child->IsControlSequence(TGlobalString::g_pENDGROUP)) out += '}';
        else if (const char* name = child->ContainsControlSequence()) out += std::string("\\") + name;
        else {
          CString text;
          child->SimplyStringify(text);
          out += text.c_str();
        }
      }
      out += ']';
    } else if (node->IsGlueNode()) {
      out += 'V';
    } else if (const char* name = node->ContainsControlSequence()) {
      out += std::string("\\") + name;
    } else {
      out += LayoutClassName(node).c_str();
    }
  }
  return out;
}
}  // namespace

TEST_F(Paragraphs, BuildMakesParagraphsOfTextAndKeepsVerticalElementsApart) {
  const struct {
    const char* text;
    const char* shape;
  } cases[] = {
      {"aa\\par\\par bb", "P[aa] P[bb]"},                 // an empty holder is deleted
      {"\\par\\par", ""},
      {"aa\n\nbb", "P[aa ] P[bb]"},                       // a blank line is \par; a trailing blank stays
      {"aa\\endgraf bb", "P[aa] P[bb]"},
      {"aa\\vskip 2pt bb", "P[aa] V P[bb]"},               // vertical glue stands alone
      {"{aa bb}", "P[{aa bb}]"},                          // a top-level group becomes markers
      {"aa{\\par bb}cc", "P[aa{] P[bb}cc]"},              // ... through which paragraphs build
      {"aa\\begin{center}bb\\end{center}cc", "P[aa\\begincenter] P[bb\\endcenter] P[cc]"},
      {"\\label{x}aa", "\\label P[aa]"},                  // goes anywhere: alone before text
      {"aa\\label{x}", "P[aa\\label]"},                   // ... and into running text
      {"aa\\noindent bb", "P[aa] P[\\noindentbb]"},       // a starter opens a paragraph
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Shape(Body(c.text).get()), c.shape);
  }
}

TEST_F(Paragraphs, BuildFlattensDeepGroupsWithoutRecursion) {
  // 100,000 nested groups made in code: the parser would stop far earlier.
  auto* outer = new TFmtGroupNode;
  TFmtGroupNode* inner = outer;
  for (int i = 0; i < 100000; ++i) {
    auto* next = new TFmtGroupNode;
    inner->AddTailSimple(next);
    inner = next;
  }
  inner->AddTailSimple(new TFmtSequenceNode("x"));
  auto* source = new TFmtCompoundNode;
  source->AddTailSimple(outer);
  TFmtVerticalListNode body;
  body.Build(source);
  ASSERT_EQ(body.GetCount(), 1);
  auto* paragraph = body.GetHead()->IsParagraphNode();
  ASSERT_NE(paragraph, nullptr);
  EXPECT_EQ(paragraph->GetCount(), 2 * 100001 + 1);
  const Rows rows = Compose(&body, 100, k_ComposeEverything);
  EXPECT_EQ(Only(rows, 'L'), Rows{"L 0.0 end 200003 10 12 4 0 |x|"});
}

TEST_F(Paragraphs, HardBreaksMakeLinesAndTwoInARowAnEmptyOneWithNoStrut) {
  // Lines "aa" (12 high by the strut, 4 deep), "" and "bb"; gap 0 with this font.
  EXPECT_EQ(Lines("aa\\\\\\\\bb", 200), (Rows{"L 0.0 hard 1 20 12 4 4 |aa|", "L 0.1 hard 2 0 0 0 12 ||",
                                            "L 0.2 end 4 20 12 4 0 |bb|"}));
  auto body = Body("aa\\\\\\\\bb");
  Compose(body.get(), 200, k_ComposeEverything);
  // Height of the first line; depth down to the bottom of the last: 4 + 0 + (12 + 4).
  const TFmtExtent& e = *body->GetHead()->m_pExtent;
  EXPECT_EQ(e.m_nHeight, 12);
  EXPECT_EQ(e.m_nDepth, 20);
}

TEST_F(Paragraphs, FirstFitWithBlanksCountedTwiceAfterAnOverflowingBlank) {
  // a = 30, S = 10. At R = 3a+2S = 110 the last blank overflows into the
  // break (child 5) and the last word starts at 2S.
  EXPECT_EQ(Lines("aaa aaa aaa aaa", 110), (Rows{"L 0.0 soft 5 110 12 4 16 |aaa aaa aaa|", "L 0.1 end 7 30 12 4 0 |aaa|"}));
  // At R-1 the fourth word breaks: the blank before it ends line one, counted.
  EXPECT_EQ(Lines("aaa aaa aaa aaa", 109),
            (Rows{"L 0.0 soft 4 80 12 4 16 |aaa aaa |", "L 0.1 end 8 70 12 4 0 |aaa aaa|"}));
  // S <= a-b < 2S <= a with b = 20 and R = 2a+S = 70: the second line holds
  // one word, because the overflowing blank counted twice.
  EXPECT_EQ(Lines("aaa aaa aaa aa", 70), (Rows{"L 0.0 soft 3 70 12 4 16 |aaa aaa|", "L 0.1 soft 6 40 12 4 16 |aaa |",
                                               "L 0.2 end 8 20 12 4 0 |aa|"}));
}

TEST_F(Paragraphs, AWordWiderThanTheLineStandsAloneWithNoEmptyLine) {
  EXPECT_EQ(Lines("abcdefghij", 50), Rows{"L 0.0 end 1 100 12 4 0 |abcdefghij|"});
  EXPECT_EQ(Lines("ab abcdefghij ab", 50),
            (Rows{"L 0.0 soft 2 30 12 4 16 |ab |", "L 0.1 soft 4 100 12 4 16 |abcdefghij|", "L 0.2 end 6 20 12 4 0 |ab|"}));
}

TEST_F(Paragraphs, QuotesTravelWithTheirWord) {
  // ``b'' may not be parted from b: the break before ``b'' goes before the blank's word.
  const Rows lines = Lines("aa ``bb''", 50);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_NE(lines[0].find("|aa |"), std::string::npos);
  EXPECT_NE(lines[1].find("|\"bb\"|"), std::string::npos);
}

TEST_F(Paragraphs, CentringSharesFreeSpaceFirstFillTakingTheOddUnit) {
  // w = 20 + 10 + 20 = 50; at 101 the free 51 gives 26 then 25.
  EXPECT_EQ(Lines("aa bb\\centering", 101), Rows{"L 0.0 end 6 101 12 4 0 |[fill 26]aa bb[fill 25]|"});
  // Flush right: one fill at the head of each line, after each break.
  EXPECT_EQ(Lines("aa bb\\raggedleft", 101), Rows{"L 0.0 end 5 101 12 4 0 |[fill 51]aa bb|"});
  // The first declaration rules the whole paragraph, text before it too.
  EXPECT_EQ(Lines("aa\\raggedleft{} bb\\centering", 101), Rows{"L 0.0 end 8 101 12 4 0 |[fill 51]aa bb|"});
  // Centred lines: fill before and after each break. The blank before the
  // overflowing word stays on line one, 40 wide: free 5 gives 3 and 2.
  EXPECT_EQ(Lines("aaa aaa\\centering", 45),
            (Rows{"L 0.0 soft 4 45 12 4 16 |[fill 3]aaa [fill 2]|", "L 0.1 end 9 45 12 4 0 |[fill 8]aaa[fill 7]|"}));
}

TEST_F(Paragraphs, UserFillIsResetAndOnlyTheHighestOrderShares) {
  auto body = Body("aa\\hfill bb");
  EXPECT_EQ(Only(Compose(body.get(), 100, k_ComposeEverything), 'L'), Rows{"L 0.0 end 3 100 12 4 0 |aa[fill 60]bb|"});
  EXPECT_EQ(Only(Compose(body.get(), 80), 'L'), Rows{"L 0.0 end 3 80 12 4 0 |aa[fill 40]bb|"});
  EXPECT_EQ(Only(Compose(body.get(), 100), 'L'), Rows{"L 0.0 end 3 100 12 4 0 |aa[fill 60]bb|"});
  // Two \hfil and one \hfill: the \hfill takes all; 7 among three \hfil: 3, 2, 2.
  EXPECT_EQ(Lines("a\\hfil b\\hfill c\\hfil d", 100), Rows{"L 0.0 end 7 100 12 4 0 |a[fill 0]b[fill 60]c[fill 0]d|"});
  EXPECT_EQ(Lines("a\\hfil b\\hfil c\\hfil", 37), Rows{"L 0.0 end 6 37 12 4 0 |a[fill 3]b[fill 2]c[fill 2]|"});
  // No free space: fills stay at 0. A fill past the margin is a place to
  // break like any other, and goes to the next line.
  EXPECT_EQ(Lines("aaaa\\hfil", 40), Rows{"L 0.0 end 2 40 12 4 0 |aaaa[fill 0]|"});
  EXPECT_EQ(Lines("aaaa\\hfil", 30), (Rows{"L 0.0 soft 1 40 12 4 16 |aaaa|", "L 0.1 end 3 30 12 4 0 |[fill 30]|"}));
}

TEST_F(Paragraphs, APreambleOfInvisibleCommandsTakesNoRoom) {
  TFmtNode::InitializeDrawProperties();
  auto body = Body("\\documentclass{article} \\usepackage{amsmath}\n\nbb");
  const Rows elements = Only(Compose(body.get(), 200, k_ComposeEverything), 'E');
  ASSERT_EQ(elements.size(), 2u);
  // Blanks and commands of no size: no line, no strut, and the text below
  // stands at the top with no skip above it.
  EXPECT_EQ(elements[0], "E 0 TFmtParagraphNode 0 0 0 0");
  EXPECT_EQ(elements[1], "E 1 TFmtParagraphNode -12 12 4 20");
}

TEST_F(Paragraphs, ListsStackWithNoSkipAboveTheFirstElementWithSize) {
  auto body = Body("\\vskip 0pt aa\\par\\par bb");
  const Rows elements = Only(Compose(body.get(), 200, k_ComposeEverything), 'E');
  // y1 = -h1 = -12; y2 = y1 - d1 - h2 - 12 = -40. The skip of no size first
  // does not count as the top element.
  ASSERT_EQ(elements.size(), 3u);
  EXPECT_EQ(elements[1], "E 1 TFmtParagraphNode -12 12 4 20");
  EXPECT_EQ(elements[2], "E 2 TFmtParagraphNode -40 12 4 20");
  EXPECT_EQ(body->m_pExtent->m_nDepth, 12 + 4 + 12 + 12 + 4);  // the last element of a body has no after-skip
  EXPECT_EQ(body->GetIndexFromLogicalY(-41), 2);
  EXPECT_EQ(body->GetIndexFromLogicalY(-1000), 0);  // below everything
}

TEST_F(Paragraphs, ParboxWidthsAlignmentsAndBadOptions) {
  auto parbox = [&](const std::string& text) {
    auto root = ztest::ParseDocument(text);
    TFmtNode* head = root->GetHead();
    EXPECT_NE(head, nullptr);
    return std::unique_ptr<TFmtNode>(head ? root->RemoveHead() : nullptr);
  };
  // An empty box: no extent, and one program fill when centred.
  std::unique_ptr<TFmtNode> empty = parbox("\\parbox{5cm}{}");
  m_Context.m_nJustification = 3;
  empty->Compose(m_Context);
  EXPECT_EQ(empty->m_pExtent->Sum(), 0);
  EXPECT_EQ(empty->IsParagraphNode()->GetCount(), 1);
  EXPECT_EQ(empty->IsParagraphNode()->GetTail()->IsHorizontalFillGlue(), 1);
  m_Context.m_nJustification = 1;
  // 20pt = 40 units: "aaa bbb ccc" breaks into "aaa ", "bbb ", "ccc" (12 + 4
  // each, advances 16): height 12, depth 4 + 16 + 16 = 36. Top: baseline at
  // the first line; bottom: at the last (shift 36 - 4); centre: half of 48.
  const struct {
    const char* text;
    int height, depth, shift;
  } boxes[] = {
      {"\\parbox[t]{20pt}{aaa bbb ccc}", 12, 36, 0},
      {"\\parbox[b]{20pt}{aaa bbb ccc}", 44, 4, 32},
      {"\\parbox{20pt}{aaa bbb ccc}", 24, 24, 12},
  };
  for (const auto& b : boxes) {
    SCOPED_TRACE(b.text);
    std::unique_ptr<TFmtNode> box = parbox(b.text);
    box->Compose(m_Context);
    EXPECT_EQ(box->m_pExtent->m_nHeight, b.height);
    EXPECT_EQ(box->m_pExtent->m_nDepth, b.depth);
    EXPECT_EQ(box->m_pExtent->m_nWidth, 40);  // raised to the given width
    EXPECT_EQ(box->IsParagraphNode()->Get_VerticalShift(), b.shift);
    EXPECT_FALSE(box->GoesOnVerticalList());
  }
  // 0pt is no width at all: the box goes on the vertical list.
  EXPECT_TRUE(parbox("\\parbox{0pt}{aa}")->GoesOnVerticalList());
  // A bad option is reported once and the centre stays; the text after it is kept.
  std::unique_ptr<TFmtNode> bad = parbox("\\parbox[x]{2cm}{a}");
  EXPECT_EQ(bad->IsParagraphNode()->Get_Alignment(), TFmtParagraphNode::k_AlignCentre);
  EXPECT_EQ(Errors(), std::vector<std::string>{"#25056"});
  CZrError::ClearParseErrors();
  auto minipage = Body("\\begin{minipage}[q]{2cm}a\\end{minipage}z");
  EXPECT_EQ(Errors(), std::vector<std::string>{"#25070"});
  EXPECT_EQ(Shape(minipage.get()), "P[az]");  // a minipage stays in the line
}

TEST_F(Paragraphs, DegenerateWidthsFinishInOnePass) {
  // Right of the margin below the left: every allowed break is taken, once.
  const Rows expected{"L 0.0 soft 1 20 12 4 16 |aa|", "L 0.1 soft 3 20 12 4 16 |bb|", "L 0.2 end 5 20 12 4 0 |cc|"};
  EXPECT_EQ(Lines("aa bb cc", -50), expected);
  EXPECT_EQ(Lines("aa bb cc", 0), expected);
  std::unique_ptr<TFmtCompoundNode> root = ztest::ParseDocument("\\parbox{-20pt}{aa bb cc}");
  TFmtParagraphNode* box = root->GetHead()->IsParagraphNode();
  ASSERT_NE(box, nullptr);
  box->Compose(m_Context);
  CString out;
  DumpLines(0, box, out);
  EXPECT_EQ(Split(out), expected);
}

TEST_F(Paragraphs, ReflowAtW1W2W1GivesTheSameRowsAndTheSameUserNodes) {
  const std::string text =
      "Some words here and there, then a \\hfill and more words to fill a few lines of text\\\\"
      "after a hard break {grouped words} and \\parbox{40pt}{inner box text} and ``quoted words'' end.\n\n"
      "Second paragraph centred\\centering with words enough for three lines at the narrow width.";
  auto body = Body(text);
  const std::string printed = ztest::PrintTexOf(body.get());
  auto countUserNodes = [](TFmtVerticalListNode* list) {
    int n = 0;
    std::function<void(TFmtNode*)> walk;
    for (CObject* o : list->Get_Children()) {
      TFmtCompoundNode* paragraph = static_cast<TFmtNode*>(o)->IsCompoundNode();
      if (!paragraph) continue;
      for (CObject* c : paragraph->Get_Children()) {
        auto* child = static_cast<TFmtNode*>(c);
        TFmtLineBreakNode* lineBreak = child->IsLineBreakNode();
        const TFmtGlueNode* glue = child->IsGlueNode();
        if (lineBreak && !lineBreak->Get_Hard()) n += lineBreak->Get_TextTail().GetCount();
        else if (!(glue && !glue->Get_UserSupplied())) ++n;
      }
    }
    return n;
  };
  const int users = countUserNodes(body.get());
  const Rows wide = Compose(body.get(), 400, k_ComposeEverything);
  const Rows narrow = Compose(body.get(), 150);
  EXPECT_EQ(countUserNodes(body.get()), users);
  const Rows wideAgain = Compose(body.get(), 400);
  EXPECT_NE(Only(wide, 'L').size(), Only(narrow, 'L').size());
  EXPECT_EQ(wideAgain, wide);
  EXPECT_EQ(countUserNodes(body.get()), users);
  // Printed after a reflow, the source comes back (soft breaks as blanks,
  // program fill as nothing), and reads back to the tree that the print
  // before any reflow reads back to.
  const std::string reprinted = ztest::PrintTexOf(body.get());
  EXPECT_EQ(ztest::SquashBlanks(reprinted), ztest::SquashBlanks(printed));
  auto reread = Body(reprinted);
  auto readBefore = Body(printed);
  EXPECT_EQ(Shape(reread.get()), Shape(readBefore.get()));
  EXPECT_EQ(Compose(reread.get(), 150, k_ComposeEverything), Compose(readBefore.get(), 150, k_ComposeEverything));
}

TEST_F(Paragraphs, LongParagraphsAndDeepBoxesCostNoStackPerChild) {
  std::string words;
  for (int i = 0; i < 100000; ++i) words += "ab ";
  auto body = Body(words);
  const Rows lines = Only(Compose(body.get(), 600, k_ComposeEverything), 'L');
  // 20 words of 30 (with blank) per 600: 10,000 lines... each line "ab " x 20
  // less the blank that overflows into the break.
  EXPECT_EQ(lines.size(), 100000u / 20u);
  // 500 nested boxes, built in code (the parser stops nesting earlier).
  TFmtNode* inner = new TFmtSequenceNode("x");
  for (int i = 0; i < 500; ++i) {
    auto* box = new TFmtParagraphNode(TFmtParagraphNode::k_AlignTop, new TFmtUnitNode(100, 1, k_UnitPt));
    box->AddTailSimple(inner);
    inner = box;
  }
  std::unique_ptr<TFmtNode> outer(inner);
  outer->Compose(m_Context);
  EXPECT_EQ(outer->m_pExtent->m_nWidth, 200);
  EXPECT_EQ(outer->m_pExtent->m_nHeight, 12);
}

TEST_F(Paragraphs, VerbatimLinesAreExactlyTheFontsAscentAndDescent) {
  auto body = Body("\\begin{verbatim}\nab cd\n\\end{verbatim}\n\\includeverbatim{no-such-file.txt}\\includeverbatim{}");
  ASSERT_EQ(body->GetCount(), 3);
  auto* verbatim = body->GetHead()->IsVerticalListNode();
  ASSERT_NE(verbatim, nullptr);
  Compose(body.get(), 200, k_ComposeEverything);
  bool sawText = false;
  for (CObject* o : verbatim->Get_Children()) {
    auto* line = static_cast<TFmtNode*>(o);
    CString text;
    line->SimplyStringify(text);
    if (std::string(text.c_str()).find("ab cd") == std::string::npos) continue;
    sawText = true;
    EXPECT_EQ(line->m_pExtent->m_nHeight, 12);
    EXPECT_EQ(line->m_pExtent->m_nDepth, 4);
  }
  EXPECT_TRUE(sawText);
  CString message;
  body->GetTail()->SimplyStringify(message);
  EXPECT_EQ(std::string(message.c_str()), "Could not identify file name in \\includeverbatim.\r\n");
  // A local file that is not there is said so in the text; the parse goes on.
  CString missing;
  body->GetNth(2)->SimplyStringify(missing);
  EXPECT_EQ(std::string(missing.c_str()).rfind("Could not locate input document ", 0), 0u) << missing.c_str();
}

TEST(CompositionStatus, PendingValuesMergeAndComposedOrEverythingAlwaysTakes) {
  const struct {
    KCompositionStatus present, asked, result;
  } cases[] = {
      {k_LinksChanged, k_WidthChanged, k_ComposeEverything}, {k_WidthChanged, k_LinksChanged, k_ComposeEverything},
      {k_ComposeEverything, k_WidthChanged, k_ComposeEverything}, {k_WidthChanged, k_WidthChanged, k_WidthChanged},
      {k_Composed, k_WidthChanged, k_WidthChanged},              {k_ComposeEverything, k_Composed, k_Composed},
      {k_LinksChanged, k_Composed, k_Composed},                  {k_LinksChanged, k_ComposeEverything, k_ComposeEverything},
  };
  for (const auto& c : cases) {
    TFmtDocumentNode document;
    EXPECT_EQ(document.Get_CompositionStatus(), k_ComposeEverything);  // a new document composes all
    document.Set_CompositionStatus(k_Composed);
    document.Set_CompositionStatus(c.present);
    document.Set_CompositionStatus(c.asked);
    EXPECT_EQ(document.Get_CompositionStatus(), c.result) << c.present << " then " << c.asked;
  }
}

TEST_F(Paragraphs, DrawPlacesEachLineAnAdvanceBelowTheLast) {
  auto body = Body("aaa aaa\\par bb");
  Compose(body.get(), 40, k_ComposeEverything);
  m_Context.m_bForceDraw = 1;
  m_Context.m_nLeftMargin = 0;
  m_Context.m_nRightMargin = 40;
  body->Draw(m_Context);
  // Lines "aaa " and "aaa" of the first paragraph: baselines -12 and -28.
  TFmtParagraphNode* first = body->GetHead()->IsParagraphNode();
  ASSERT_EQ(first->GetCount(), 4);
  EXPECT_EQ(first->GetNth(1)->m_Position, CPoint(0, -12));
  EXPECT_EQ(first->GetNth(2)->m_Position, CPoint(30, -12));
  EXPECT_EQ(first->GetNth(4)->m_Position, CPoint(0, -28));
  // The second paragraph: below the first's depth (4 + 16 + 4 = 24 down from
  // -12 ... -28 - 4), its own height and the paragraph skip: -28 - 4 - 12 - 12.
  EXPECT_EQ(body->GetTail()->m_Position.y, -56);
  EXPECT_EQ(std::string(m_Context.m_Text), "aaaaaabb");
}

TEST_F(Paragraphs, BoxesOfVerticalListsTakeTheirReferencePoint) {
  // Two paragraphs inside: 12 + 4, the skip 12, 12 + 4: 44 below the top.
  const struct {
    const char* text;
    int height, depth;
  } boxes[] = {
      {"\\vtop{aa\\par bb}", 0, 44},  // the top is the baseline
      {"\\vbox{aa\\par bb}", 40, 4},  // the last baseline is
  };
  for (const auto& b : boxes) {
    SCOPED_TRACE(b.text);
    std::unique_ptr<TFmtCompoundNode> root = ztest::ParseDocument(b.text);
    ASSERT_EQ(root->GetCount(), 1);
    TFmtNode* box = root->GetHead();
    ASSERT_NE(box->IsVerticalListNode(), nullptr);
    m_Context.m_nLeftMargin = 0;
    m_Context.m_nRightMargin = 200;
    box->Compose(m_Context);
    EXPECT_EQ(box->m_pExtent->m_nHeight, b.height);
    EXPECT_EQ(box->m_pExtent->m_nDepth, b.depth);
    EXPECT_EQ(box->m_pExtent->m_nWidth, 20);
  }
  // A minipage is as wide as it says, whatever it holds.
  auto body = Body("\\begin{minipage}[t]{50pt}aa\\end{minipage}");
  Compose(body.get(), 400, k_ComposeEverything);
  TFmtParagraphNode* paragraph = body->GetHead()->IsParagraphNode();
  ASSERT_NE(paragraph, nullptr);
  EXPECT_EQ(paragraph->GetHead()->m_pExtent->m_nWidth, 100);
  EXPECT_EQ(ztest::SquashBlanks(ztest::PrintTexOf(paragraph->GetHead())),
            "\\begin{minipage}[t]{50pt} \\par aa \\end{minipage}");
}
