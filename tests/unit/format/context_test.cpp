#include <gtest/gtest.h>

#include "format/context.h"


#include <memory>
#include <random>
#include <vector>

#include "device/font_family.h"
#include "format/node.h"
#include "support/test_context.h"
#include "symbols/string_pool.h"

using ztest::TTestContext;
using ztest::TTestFamily;

namespace {
// The class-wide font, style and colour state is shared by all contexts:
// each test starts from normal size, display style and no fonts, and leaves
// it so.
class ContextTest : public ::testing::Test {
 protected:
  void SetUp() override { Clear(); }
  void TearDown() override { Clear(); }
  static void Clear() {
    TFontFamily::fg_pCurrent = nullptr;
    TFontFamily::fg_pRoman = nullptr;
    TExtendedFont::fg_pCurrent = nullptr;
    TFontFamily_PI::fg_CurrentFontSize = 5;
    TFontFamily_PI::fg_StyleBaseFontSize = 5;
    TFmtContext::fg_CurrentStyle = k_StyleDisplay;
    TFmtContext::fg_CurrentColor = CColorRef();
  }
};

// Every value that a balanced walk must give back.
struct TObservable {
  int left, right, enumeration, itemize, listType, counter, style, size, base, caseValue, justification, opaque,
      forced;
  CColorRef color, textColor;
  TFontFamily* family;
  bool operator==(const TObservable&) const = default;
};

TObservable Observe(TTestContext& c) {
  return {c.m_nLeftMargin, c.m_nRightMargin, c.m_nEnumerationDepth, c.m_nItemizeDepth, c.ListType(),
          c.ListCounter(), TFmtContext::fg_CurrentStyle, TFontFamily_PI::fg_CurrentFontSize,
          TFontFamily_PI::fg_StyleBaseFontSize, c.m_nCase, c.m_nJustification, c.m_bOpaqueObjects, c.m_bColorForced,
          TFmtContext::fg_CurrentColor, c.m_TextColor, TFontFamily::fg_pCurrent};
}
}  // namespace

TEST_F(ContextTest, InitialValues) {
  TTestContext c;
  EXPECT_EQ(c.Get_DocumentNode(), nullptr);
  EXPECT_EQ(c.m_bForceDraw, 0);
  EXPECT_EQ(c.m_bMathSpacing, 1);
  EXPECT_EQ(c.m_nScriptDepth + c.m_bColorForced + c.m_bOpaqueObjects + c.m_nCase, 0);
  EXPECT_EQ(c.m_nJustification, 1);  // ragged right
  EXPECT_EQ(c.m_nEnumerationDepth + c.m_nFootnoteCounter + c.m_nItemizeDepth, 0);
  EXPECT_EQ(c.m_pLabelSite, nullptr);
  EXPECT_EQ(c.Get_ParentNodeOnVerticalList(), nullptr);
  EXPECT_EQ(c.Get_CaptionRequestor(), nullptr);
  EXPECT_EQ(c.GetCurrentPrintPage(), 0);
  EXPECT_EQ(c.GetMaximumPrintPage(), 0);

  EXPECT_EQ(TFmtContext::fg_nUnitsPerPoint, 2);
  EXPECT_EQ(TFmtContext::fg_nColors, 6);
  EXPECT_EQ(TFmtContext::fg_bAllowUseOfColor, 1);
  EXPECT_EQ(TFmtContext::fg_bCenterDisplayMathExpressions, 1);
  EXPECT_EQ(TFmtContext::fg_AboveRuleGapMultiplier, 4);
  EXPECT_EQ(TFmtContext::fg_BelowRuleGapMultiplier, 5);
  EXPECT_EQ(TFmtContext::fg_nMathFontPointSize, 13);
  EXPECT_EQ(TFmtContext::fg_nRmFontPointSize, 13);
  EXPECT_EQ(TFmtContext::fg_nSfFontPointSize, 12);
  EXPECT_EQ(TFmtContext::fg_nTtFontPointSize, 13);
  EXPECT_EQ(TFmtContext::CanDecreaseAFontSize(), 1);

  const TFmtPrintParameters& p = TFmtContext::fg_PrintParameters;
  EXPECT_EQ(p.m_Units, "in");
  EXPECT_DOUBLE_EQ(p.m_fMarginLeft + p.m_fMarginRight + p.m_fMarginTop + p.m_fMarginBottom, 3.0);
  EXPECT_DOUBLE_EQ(p.m_fPageHeight, 11.0);
  EXPECT_DOUBLE_EQ(p.m_fPageWidth, 8.5);
  EXPECT_EQ(p.m_nOption3 + p.m_nOption4, 2);
  EXPECT_EQ(p.m_nOption1 + p.m_nOption2 + p.m_nOption5, 0);

  // Empty list stack answers.
  EXPECT_EQ(c.ListType(), -2);
  EXPECT_EQ(c.ListCounter(), 0);
  EXPECT_EQ(c.ListLabelWidth(), 0);
  EXPECT_EQ(c.ListLabelSep(), 0);
  EXPECT_EQ(c.ListDefaultLabel(), nullptr);
  EXPECT_EQ(c.IncrementListCounter(), 0);
  EXPECT_EQ(c.ListCounter(), 0);
  EXPECT_EQ(c.IncrementFootnoteCounter(), 1);
  EXPECT_EQ(c.IncrementFootnoteCounter(), 2);
}

TEST_F(ContextTest, SmallerFontsNeedASizeAboveEight) {
  const int saved[4] = {TFmtContext::fg_nMathFontPointSize, TFmtContext::fg_nRmFontPointSize,
                        TFmtContext::fg_nSfFontPointSize, TFmtContext::fg_nTtFontPointSize};
  TFmtContext::Set_MathFontPointSize(8);
  TFmtContext::Set_RmFontPointSize(8);
  TFmtContext::Set_SfFontPointSize(7);
  TFmtContext::Set_TtFontPointSize(8);
  EXPECT_EQ(TFmtContext::CanDecreaseAFontSize(), 0);
  TFmtContext::Set_SfFontPointSize(9);
  EXPECT_EQ(TFmtContext::CanDecreaseAFontSize(), 1);
  TFmtContext::Set_MathFontPointSize(saved[0]);
  TFmtContext::Set_RmFontPointSize(saved[1]);
  TFmtContext::Set_SfFontPointSize(saved[2]);
  TFmtContext::Set_TtFontPointSize(saved[3]);
}

TEST_F(ContextTest, CopiesClearDocumentCaseAndCaptionAndTakeNoStacks) {
  TTestContext a;
  auto* document = reinterpret_cast<TFmtDocumentNode*>(&a);  // only stored, never followed
  auto* figure = reinterpret_cast<TFmtFigureNode*>(&a);
  TFmtNode site, parent;
  a.Set_DocumentNode(document);
  a.Set_CaptionRequestor(figure);
  a.m_nCase = 2;
  a.m_bForceDraw = 1;
  a.m_bMathSpacing = 0;
  a.m_nScriptDepth = 2;
  a.m_nJustification = 3;
  a.m_nFootnoteCounter = 4;
  a.m_nTop = -30;
  a.SetMostRecentLabelSite(&site);
  a.SetParentNodeOnVerticalList(&parent);
  a.PushListType(2, 1, 2, 3, 4, nullptr);
  a.PushGroupState();
  a.PushAndSetStyle(k_StyleText);
  a.PushOnNodePath(&site);

  TTestContext b(a);
  EXPECT_EQ(b.Get_DocumentNode(), nullptr);
  EXPECT_EQ(b.Get_CaptionRequestor(), nullptr);
  EXPECT_EQ(b.m_nCase, 0);
  EXPECT_EQ(b.m_bForceDraw, 1);
  EXPECT_EQ(b.m_bMathSpacing, 0);
  EXPECT_EQ(b.m_nScriptDepth, 2);
  EXPECT_EQ(b.m_nJustification, 3);
  EXPECT_EQ(b.m_nFootnoteCounter, 4);
  EXPECT_EQ(b.m_nTop, -30);
  EXPECT_EQ(b.m_nItemizeDepth, 1);
  EXPECT_EQ(b.m_nLeftMargin, 6);
  EXPECT_EQ(b.m_nRightMargin, -4);
  EXPECT_EQ(b.m_pLabelSite, &site);
  EXPECT_EQ(b.Get_ParentNodeOnVerticalList(), &parent);
  EXPECT_TRUE(b.m_ListEnvironments.IsEmpty());
  EXPECT_TRUE(b.m_GroupStates.IsEmpty());
  EXPECT_TRUE(b.m_Styles.IsEmpty());
  EXPECT_TRUE(b.m_NodePath.IsEmpty());
  EXPECT_EQ(b.ListType(), -2);  // margins came along, the list did not

  // Assignment: the same fields; the target keeps its own stacks.
  TTestContext c;
  c.PushListType(0, 0, 0, 0, 0, nullptr);
  c.m_nCase = 1;
  c = a;
  EXPECT_EQ(c.Get_DocumentNode(), nullptr);
  EXPECT_EQ(c.Get_CaptionRequestor(), nullptr);
  EXPECT_EQ(c.m_nCase, 0);
  EXPECT_EQ(c.m_nItemizeDepth, 1);
  EXPECT_EQ(c.ListType(), 0);  // its own entry, not a's
  EXPECT_EQ(c.m_GroupStates.GetCount(), 0);
  a.PopStyle();
  a.PopGroupState();
}

TEST_F(ContextTest, ListPushAndPopRules) {
  TTestContext c;
  c.m_nLeftMargin = 100;
  c.m_nRightMargin = 900;
  TFmtNode label;
  label.m_nHashCode = 5;
  c.PushListType(0, 10, 20, 30, 40, &label);
  EXPECT_EQ(c.m_nEnumerationDepth, 1);
  EXPECT_EQ(c.m_nLeftMargin, 160);  // + 10 + 20 + 30
  EXPECT_EQ(c.m_nRightMargin, 860);
  EXPECT_EQ(c.ListType(), 0);
  EXPECT_EQ(c.ListLabelSep(), 10);
  EXPECT_EQ(c.ListLabelWidth(), 20);
  ASSERT_NE(c.ListDefaultLabel(), nullptr);
  EXPECT_NE(c.ListDefaultLabel(), &label);  // an owned copy
  EXPECT_EQ(c.ListCounter(), 1);
  EXPECT_EQ(c.IncrementListCounter(), 1);
  EXPECT_EQ(c.IncrementListCounter(), 2);
  EXPECT_EQ(c.ListCounter(), 3);

  c.PushListType(2, 1, 1, 1, 1, nullptr);
  EXPECT_EQ(c.m_nItemizeDepth, 1);
  c.PushListType(5, 0, 0, 7, 0, nullptr);  // another kind: no depth changes
  EXPECT_EQ(c.m_nEnumerationDepth + c.m_nItemizeDepth, 2);
  EXPECT_EQ(c.ListCounter(), 1);  // the inner list counts on its own

  // A mismatched end is reported, and the open list is popped all the same,
  // undone by its own values (type 5), not by the type asked for.
  EXPECT_EQ(c.PopListType(2, 1), 60003u);
  EXPECT_EQ(c.m_nItemizeDepth, 1);
  EXPECT_EQ(c.m_nLeftMargin, 163);
  EXPECT_EQ(c.PopListType(-1, 1), 0u);  // -1 matches any list
  EXPECT_EQ(c.m_nItemizeDepth, 0);
  EXPECT_EQ(c.PopListType(2, 0), 0u);   // no checking: no report
  EXPECT_EQ(c.m_nEnumerationDepth, 0);
  EXPECT_EQ(c.m_nLeftMargin, 100);
  EXPECT_EQ(c.m_nRightMargin, 900);

  // Empty: 60004 only when checking, and nothing changes.
  EXPECT_EQ(c.PopListType(0, 1), 60004u);
  EXPECT_EQ(c.PopListType(0, 0), 0u);
  EXPECT_EQ(c.m_nEnumerationDepth, 0);
  EXPECT_EQ(c.m_nLeftMargin, 100);
  EXPECT_EQ(c.ListType(), -2);

  // Hostile sizes saturate instead of wrapping.
  c.PushListType(1, 2000000000, 2000000000, 0, 2000000000, nullptr);
  EXPECT_EQ(c.m_nLeftMargin, 2147483647);
  EXPECT_EQ(c.m_nRightMargin, 900 - 2000000000);
  c.PushListType(1, 0, 0, 0, 2000000000, nullptr);
  EXPECT_EQ(c.m_nRightMargin, -2147483647 - 1);
}

TEST_F(ContextTest, GroupStatesRestoreTheScopedState) {
  TTestContext c;
  TTestFamily roman(1), bold(2);
  TFontFamily::fg_pCurrent = &roman;
  TFmtContext::fg_CurrentColor = CColorRef(0, 0, 0, "black");
  c.m_TextColor = CColorRef(0, 0, 0, "black");
  const TObservable before = Observe(c);

  c.PushGroupState();
  c.m_nCase = 3;
  c.m_nJustification = 2;
  c.m_bOpaqueObjects = 1;
  c.m_bColorForced = 1;
  TFmtContext::fg_CurrentColor = CColorRef(255, 0, 0, "red");
  c.SetTextColor(TFmtContext::fg_CurrentColor);
  TFontFamily_PI::fg_CurrentFontSize = 9;
  TFontFamily_PI::fg_StyleBaseFontSize = 9;
  bold.MakeCurrentAndSelect(c);
  c.PopGroupState();

  EXPECT_EQ(Observe(c), before);
  // The restored family was selected at the restored size (font 5 of roman).
  EXPECT_EQ(TExtendedFont::fg_pCurrent, &roman.m_Fonts[5]);

  // Popping an empty stack changes nothing, and selects or colours nothing.
  const int selections = c.m_nFontSelections;
  c.m_TextColor = CColorRef(1, 1, 1);
  c.PopGroupState();
  c.PopStyle();
  EXPECT_EQ(c.m_nFontSelections, selections);
  EXPECT_EQ(c.m_TextColor, CColorRef(1, 1, 1));
  EXPECT_EQ(TFmtContext::fg_CurrentColor, CColorRef(0, 0, 0, "black"));
}

TEST_F(ContextTest, StylesSetSizesRelativeToTheBase) {
  TTestContext c;
  TTestFamily roman(1);
  TFontFamily::fg_pCurrent = &roman;
  const int selections = c.m_nFontSelections;
  c.SetStyle(k_StyleDisplay);  // already current: nothing, not even a selection
  EXPECT_EQ(c.m_nFontSelections, selections);

  c.PushAndSetStyle(k_StyleScript);
  EXPECT_EQ(TFmtContext::fg_CurrentStyle, k_StyleScript);
  EXPECT_EQ(TFontFamily_PI::fg_CurrentFontSize, 2);  // normal base: size 2 itself
  EXPECT_EQ(TExtendedFont::fg_pCurrent, &roman.m_Fonts[2]);
  c.PushAndSetStyle(k_StyleScriptScript);
  EXPECT_EQ(TFontFamily_PI::fg_CurrentFontSize, 0);
  c.PopStyle();
  EXPECT_EQ(TFmtContext::fg_CurrentStyle, k_StyleScript);
  EXPECT_EQ(TFontFamily_PI::fg_CurrentFontSize, 2);
  c.PopStyle();
  EXPECT_EQ(TFmtContext::fg_CurrentStyle, k_StyleDisplay);
  EXPECT_EQ(TFontFamily_PI::fg_CurrentFontSize, 5);
  EXPECT_EQ(TExtendedFont::fg_pCurrent, &roman.m_Fonts[5]);

  // Under \tiny (base 1) a script maps to 0.85 x 0.7, not above 0.7: size 1;
  // text style maps to the base.
  TFontFamily_PI::fg_StyleBaseFontSize = 1;
  c.SetStyle(k_StyleScript);
  EXPECT_EQ(TFontFamily_PI::fg_CurrentFontSize, 1);
  c.SetStyle(k_StyleText);
  EXPECT_EQ(TFontFamily_PI::fg_CurrentFontSize, 1);
}

TEST_F(ContextTest, SpacesComeFromTheRomanQuad) {
  TTestContext c;
  EXPECT_EQ(c.ThinSpaceWidth(), 0);  // no fonts yet
  TTestFamily roman(3);  // at size 5 every character is 3 x 6 = 18 wide
  TFontFamily::fg_pRoman = &roman;
  EXPECT_EQ(c.ThinSpaceWidth(), 2);    // 18 / 8
  EXPECT_EQ(c.MediumSpaceWidth(), 4);  // 18 / 4
  EXPECT_EQ(c.ThickSpaceWidth(), 9);   // 18 / 2
  EXPECT_EQ(c.TabbingSep(), 9);
}

TEST_F(ContextTest, CaseCountersAndTheVerticalListParent) {
  TTestContext c;
  int allocated = 7;
  const char* text = "MiXed 1";
  EXPECT_EQ(c.Case(text, allocated), text);
  EXPECT_EQ(allocated, 0);
  EXPECT_EQ(c.Case('q'), 'q');
  c.m_nCase = 1;
  std::unique_ptr<const char[]> lower(c.Case(text, allocated));
  EXPECT_EQ(allocated, 1);
  EXPECT_STREQ(lower.get(), "mixed 1");
  EXPECT_EQ(c.Case('Q'), 'q');
  for (int mode : {2, 3}) {
    c.m_nCase = mode;
    std::unique_ptr<const char[]> upper(c.Case(text, allocated));
    EXPECT_STREQ(upper.get(), "MIXED 1");
    EXPECT_EQ(c.Case('q'), 'Q');
  }

  TStringPool::InitializeGlobal();
  c.UseCounter(TStringPool::g_pGlobal->Put("enumiii"));
  EXPECT_EQ(c.m_nEnumerationDepth, 3);
  c.UseCounter(TStringPool::g_pGlobal->Put("enumi"));
  EXPECT_EQ(c.m_nEnumerationDepth, 1);
  char spelled[] = "enumiv";  // the right letters, but not the interned name
  c.UseCounter(spelled);
  c.UseCounter(TStringPool::g_pGlobal->Put("enumv"));
  c.UseCounter(nullptr);
  EXPECT_EQ(c.m_nEnumerationDepth, 1);

  TFmtNode a, b;
  c.SetParentNodeOnVerticalList(&a);
  c.SetParentNodeOnVerticalList(&b);  // the outermost stays
  EXPECT_EQ(c.Get_ParentNodeOnVerticalList(), &a);
  c.SetParentNodeOnVerticalList(nullptr);
  EXPECT_EQ(c.Get_ParentNodeOnVerticalList(), nullptr);
  c.SetParentNodeOnVerticalList(&b);
  EXPECT_EQ(c.Get_ParentNodeOnVerticalList(), &b);

  c.PushOnNodePath(&a);
  c.PushOnNodePath(&b);
  std::unique_ptr<CNodePath> copy(c.CopyNodePath());
  c.PopOffNodePath();
  EXPECT_EQ(c.m_NodePath.GetTailNode(), &a);
  EXPECT_EQ(copy->GetTailNode(), &b);  // the copy is its own
  c.ClearNodePath();
  c.PopOffNodePath();  // on an empty path: nothing
  EXPECT_TRUE(c.m_NodePath.IsEmpty());
}

TEST_F(ContextTest, SnapshotsRestoreListsGroupsAndNumbers) {
  TTestContext c;
  c.RestoreState(nullptr);  // nothing happens
  TFmtContext::fg_CurrentColor = CColorRef(0, 0, 255);
  c.PushListType(0, 5, 5, 5, 5, nullptr);
  c.IncrementListCounter();  // counter now 2
  c.PushGroupState();
  TFmtContext::fg_CurrentColor = CColorRef(0, 255, 0);
  c.SetTextColor(TFmtContext::fg_CurrentColor);
  c.m_nCase = 2;
  c.m_nFootnoteCounter = 3;
  c.m_nTop = -70;
  const TObservable atSnapshot = Observe(c);
  std::unique_ptr<TFmtSnapShot> snapshot(c.SaveState());
  EXPECT_EQ(c.m_GroupStates.GetCount(), 1);  // SaveState pushes and pops its own
  ASSERT_EQ(snapshot->m_GroupStates.GetCount(), 2);
  EXPECT_EQ(snapshot->m_nTop, -70);

  // Move on, then come back.
  c.PushListType(2, 1, 1, 1, 1, nullptr);
  c.PushGroupState();
  TFmtContext::fg_CurrentColor = CColorRef(255, 0, 0);
  c.m_nCase = 0;
  c.m_nFootnoteCounter = 9;
  c.m_nTop = -500;
  c.RestoreState(snapshot.get());
  EXPECT_EQ(Observe(c), atSnapshot);
  EXPECT_EQ(c.ListCounter(), 2);
  EXPECT_EQ(c.m_nFootnoteCounter, 3);
  EXPECT_EQ(c.m_nTop, -70);
  EXPECT_EQ(c.m_GroupStates.GetCount(), 1);  // the state itself is not left on the stack
  // The one group saved before the snapshot still brings back blue.
  c.PopGroupState();
  EXPECT_EQ(TFmtContext::fg_CurrentColor, CColorRef(0, 0, 255));
  EXPECT_EQ(c.m_nCase, 0);
  // The snapshot's own lists are untouched and can serve again.
  EXPECT_EQ(snapshot->m_GroupStates.GetCount(), 2);

  c.Reset();
  EXPECT_TRUE(c.m_ListEnvironments.IsEmpty());
  EXPECT_EQ(c.m_nEnumerationDepth, 0);
  EXPECT_EQ(c.m_nLeftMargin, 15);  // Reset does not undo the margins
  c.PushListType(2, 1, 1, 1, 1, nullptr);
  c.m_nTop = 4;
  c.BringToDefaultState();
  EXPECT_EQ(c.m_nLeftMargin, 0);
  EXPECT_EQ(c.m_nTop, 0);
  EXPECT_EQ(c.ListType(), -2);
}

// Any balanced sequence of list, group and style pushes and pops, with state
// changed in between, gives back at each pop what its push saw.
TEST_F(ContextTest, BalancedWalksRestoreEverything) {
  TTestFamily roman(1), italic(5);
  for (unsigned seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    TTestContext c;
    TFontFamily::fg_pCurrent = &roman;
    TFontFamily_PI::fg_CurrentFontSize = 5;
    TFontFamily_PI::fg_StyleBaseFontSize = 5;
    TFmtContext::fg_CurrentStyle = k_StyleDisplay;
    c.m_nLeftMargin = pick(1000);
    c.m_nRightMargin = 5000 + pick(1000);
    // The GC's colour and the current colour agree at the start, as the
    // device makes them agree when a view is prepared.
    TFmtContext::fg_CurrentColor = CColorRef(0, 0, 0, "black");
    c.m_TextColor = TFmtContext::fg_CurrentColor;
    const TObservable start = Observe(c);
    std::vector<std::pair<int, TObservable>> open;  // kind, state at the push
    const CColorRef colors[] = {{255, 0, 0}, {0, 128, 0, "green"}, {1, 2, 3}};
    // 40 random steps, then every open scope is closed.
    for (int step = 0; step < 40 || !open.empty(); ++step) {
      if (!open.empty() && (pick(3) == 0 || step >= 40)) {
        const auto [kind, saved] = open.back();
        open.pop_back();
        if (kind == 0) {
          EXPECT_EQ(c.PopListType(c.ListType(), 1), 0u);
          // A list restores its margins and depth, not the group state.
          const TObservable now = Observe(c);
          EXPECT_EQ(now.left, saved.left);
          EXPECT_EQ(now.right, saved.right);
          EXPECT_EQ(now.enumeration, saved.enumeration);
          EXPECT_EQ(now.itemize, saved.itemize);
          EXPECT_EQ(now.listType, saved.listType);
        } else if (kind == 1) {
          c.PopGroupState();
          const TObservable now = Observe(c);
          // Lists opened and closed inside leave margins as they were.
          EXPECT_EQ(now, saved);
        } else {
          c.PopStyle();
          EXPECT_EQ(TFmtContext::fg_CurrentStyle, saved.style);
          EXPECT_EQ(TFontFamily_PI::fg_CurrentFontSize, saved.size);
        }
        continue;
      }
      switch (pick(6)) {
        case 0: {
          // Lists and styles nest inside a group here, never across one,
          // as the walk of a well-formed tree does.
          open.push_back({0, Observe(c)});
          c.PushListType(pick(4), pick(50), pick(50), pick(100), pick(100), nullptr);
          break;
        }
        case 1:
          open.push_back({1, Observe(c)});
          c.PushGroupState();
          break;
        case 2:
          open.push_back({2, Observe(c)});
          c.PushAndSetStyle(1 + pick(4));
          break;
        case 3: {
          const CColorRef& color = colors[pick(3)];
          TFmtContext::fg_CurrentColor = color;
          c.SetTextColor(color);
          c.m_bColorForced = pick(2);
          break;
        }
        case 4:
          c.m_nCase = pick(4);
          c.m_nJustification = 1 + pick(3);
          c.m_bOpaqueObjects = pick(2);
          break;
        default:
          (pick(2) ? italic : roman).MakeCurrentAndSelect(c);
          TFontFamily_PI::fg_CurrentFontSize = pick(11);
          TFontFamily_PI::fg_StyleBaseFontSize = pick(11);
          break;
      }
    }
    ASSERT_TRUE(open.empty());
    // Whatever ran in between, the margins, depths and list stack are back.
    const TObservable end = Observe(c);
    EXPECT_EQ(end.left, start.left);
    EXPECT_EQ(end.right, start.right);
    EXPECT_EQ(end.enumeration + end.itemize, 0);
    EXPECT_EQ(end.listType, -2);
  }
}
