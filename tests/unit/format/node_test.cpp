#include <gtest/gtest.h>

#include "format/node.h"


#include <memory>
#include <vector>

#include "format/context.h"
#include "support/test_context.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

using ztest::TTestContext;

namespace {
// Saves and restores the class-wide colours and flags these tests change.
class NodeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < TFmtContext::fg_nColors; ++i) {
      m_Fore[i] = TFmtContext::fg_ColorForeground[i];
      m_Back[i] = TFmtContext::fg_ColorBackground[i];
    }
    m_Current = TFmtContext::fg_CurrentColor;
    m_bColorize = TFmtContext::fg_bDoColorizeExpressions;
  }
  void TearDown() override {
    for (int i = 0; i < TFmtContext::fg_nColors; ++i) {
      TFmtContext::fg_ColorForeground[i] = m_Fore[i];
      TFmtContext::fg_ColorBackground[i] = m_Back[i];
    }
    TFmtContext::fg_CurrentColor = m_Current;
    TFmtContext::fg_bDoColorizeExpressions = m_bColorize;
    TFmtNode::fg_pCompoundView = nullptr;
    TFmtNode::fg_pBoundedNode = nullptr;
  }
  CColorRef m_Fore[TFmtContext::fg_nColors], m_Back[TFmtContext::fg_nColors], m_Current;
  int m_bColorize = 0;
};

TFmtNode* MakeNode(int x, int y, int height, int depth, int width) {
  auto* node = new TFmtNode;
  node->m_Position = CPoint(x, y);
  node->m_pExtent->Reset(height, depth, width);
  return node;
}

// Stand-ins for the kinds that the base's rules skip or treat apart. The
// typed pointer is only ever compared with null, never followed.
class TObjectLike : public TFmtNode {
 public:
  TFmtObjectNode* IsObjectNode() const override { return reinterpret_cast<TFmtObjectNode*>(const_cast<TObjectLike*>(this)); }
};
class TGlueLike : public TFmtNode {
 public:
  TFmtGlueNode* IsGlueNode() const override { return reinterpret_cast<TFmtGlueNode*>(const_cast<TGlueLike*>(this)); }
};
}  // namespace

TEST_F(NodeTest, BaseAnswersOfTheVirtualTable) {
  TFmtNode node;
  node.m_Position = CPoint(7, -9);
  EXPECT_EQ(node.m_pExtent->Sum(), 0);
  EXPECT_EQ(node.CaretPosition(), CPoint(7, -9));
  TTestContext context;
  EXPECT_EQ(node.Compose(context), node.m_pExtent.get());  // the extent itself, unchanged
  // Kind tests double as casts: null in the base.
  EXPECT_EQ(node.IsCompoundNode(), nullptr);
  EXPECT_EQ(node.IsGlueNode(), nullptr);

  CString text = "old";
  node.Description(text);
  EXPECT_EQ(text, "general expression");

  // Printing: nothing of its own, braces and brackets count two columns.
  CString tex;
  int column = 3;
  node.PrintTex(tex, column);
  node.PrintTexArgument(tex, column);
  node.PrintTexOptionalArgument(tex, column);
  EXPECT_EQ(tex, "{}[]");
  EXPECT_EQ(column, 7);
  CString mml;
  node.PrintMml(mml, 2);
  EXPECT_EQ(mml, "\n  <mi>UNKNOWN</mi>");

  // Caret stops: the node itself, when the point is inside.
  CObList path;
  EXPECT_EQ(node.FindFirstCaretPosition(path), 1);
  EXPECT_EQ(node.FindLastCaretPosition(path), 1);
  EXPECT_EQ(path.GetCount(), 2);
  CPoint outside(0, 0);
  EXPECT_EQ(node.FindCaretPosition(outside, path), 0);  // empty extent holds nothing
  EXPECT_EQ(path.GetCount(), 2);
}

TEST_F(NodeTest, ExtentRectangleRunsFromTopAboveToBottomBelow) {
  std::unique_ptr<TFmtNode> node(MakeNode(100, -200, 10, 4, 50));
  CRect r;
  node->ExtentRectangle(r);
  // y grows upward: top is y + height, bottom is y - depth.
  EXPECT_EQ(r, CRect(100, -190, 150, -204));
  // HasSameExtent compares two distinct rectangle objects: false, even for itself.
  EXPECT_EQ(node->HasSameExtent(node.get()), 0);
}

TEST_F(NodeTest, DrawIsRequiredWithinSixPointsAboveAndBelow) {
  std::unique_ptr<TFmtNode> node(MakeNode(100, -200, 10, 4, 50));
  TTestContext context;
  // Box y from -190 to -204; widened by 12 to -178 .. -216, sides unchanged.
  context.m_ClipRegion = CRect(0, -216, 1000, -400);
  EXPECT_EQ(node->IsDrawRequired(context), 1);  // touches at |y| = 216
  EXPECT_EQ(context.m_LastClipTest, CRect(100, -178, 150, -216));
  context.m_ClipRegion = CRect(0, -217, 1000, -400);
  EXPECT_EQ(node->IsDrawRequired(context), 0);
  // Above the box: the clip ends at |y| 178, where the widened top begins.
  context.m_ClipRegion = CRect(0, 0, 1000, -178);
  EXPECT_EQ(node->IsDrawRequired(context), 1);
  context.m_ClipRegion = CRect(0, 0, 1000, -177);
  EXPECT_EQ(node->IsDrawRequired(context), 0);
  // No widening at the sides: a clip right of x 150 misses.
  context.m_ClipRegion = CRect(151, -100, 300, -300);
  EXPECT_EQ(node->IsDrawRequired(context), 0);

  // Either flag wins over the clip, and the clip is then not asked.
  context.m_LastClipTest = CRect();
  context.m_bForceDraw = 1;
  EXPECT_EQ(node->IsDrawRequired(context), 1);
  context.m_bForceDraw = 0;
  node->m_bDrawAlways = 1;
  EXPECT_EQ(node->IsDrawRequired(context), 1);
  EXPECT_EQ(context.m_LastClipTest, CRect());
}

TEST_F(NodeTest, CopyClearsHashCodeAssignmentKeepsIt) {
  std::unique_ptr<TFmtNode> source(MakeNode(5, -6, 1, 2, 3));
  source->m_bDrawAlways = 1;
  source->m_bIsSelected = 1;
  source->m_bIsHighlighted = 1;
  source->m_nHashCode = 42;

  std::unique_ptr<TFmtNode> copy(source->Copy());
  EXPECT_EQ(copy->m_Position, CPoint(5, -6));
  EXPECT_EQ(copy->m_bDrawAlways, 1);
  EXPECT_NE(copy->m_pExtent.get(), source->m_pExtent.get());  // an extent of its own
  EXPECT_EQ(copy->m_pExtent->m_nWidth, 3);
  EXPECT_EQ(copy->m_bIsSelected, 0);
  EXPECT_EQ(copy->m_bIsHighlighted, 0);
  EXPECT_EQ(copy->m_nHashCode, 0u);

  TFmtNode target;
  target.m_bIsSelected = 1;
  target = *source;
  EXPECT_EQ(target.m_nHashCode, 42u);
  EXPECT_EQ(target.m_bIsSelected, 0);
  EXPECT_EQ(target.m_bIsHighlighted, 0);
  EXPECT_EQ(target.m_bDrawAlways, 1);
  EXPECT_EQ(target.m_pExtent->m_nDepth, 2);
  EXPECT_NE(target.m_pExtent.get(), source->m_pExtent.get());
}

TEST_F(NodeTest, PointInExtentRectangleCases) {
  CPoint p;
  std::unique_ptr<TFmtNode> flat(MakeNode(3, -4, 0, 0, 10));  // width, no height or depth
  EXPECT_EQ(flat->GetPointInExtentRectangle(p), 0);
  EXPECT_EQ(p, CPoint(3, -4));
  std::unique_ptr<TFmtNode> thin(MakeNode(3, -4, 5, 2, 0));  // no width
  EXPECT_EQ(thin->GetPointInExtentRectangle(p), 0);
  std::unique_ptr<TFmtNode> deep(MakeNode(3, -4, 0, 2, 10));
  EXPECT_EQ(deep->GetPointInExtentRectangle(p), 1);
  EXPECT_EQ(p, CPoint(3, -4));  // the origin lies above the bottom edge
  EXPECT_EQ(deep->IsPointInExtentRectangle(p), 1);
  std::unique_ptr<TFmtNode> tall(MakeNode(3, -4, 5, 0, 10));
  EXPECT_EQ(tall->GetPointInExtentRectangle(p), 1);
  EXPECT_EQ(p, CPoint(3, -3));  // the baseline is the excluded bottom edge
  EXPECT_EQ(tall->IsPointInExtentRectangle(p), 1);
  EXPECT_EQ(tall->IsPointInExtentRectangle(CPoint(3, -4)), 0);
}

TEST_F(NodeTest, StateColoursAndTheSelectionStack) {
  TFmtContext::fg_ColorForeground[0] = CColorRef(0, 0, 0);
  TFmtContext::fg_ColorForeground[1] = CColorRef(255, 255, 255);
  TFmtContext::fg_ColorForeground[4] = CColorRef(0, 0, 255);
  TFmtContext::fg_ColorForeground[5] = CColorRef(10, 20, 30);
  TFmtContext::fg_ColorBackground[1] = CColorRef(0, 0, 128);
  TFmtContext::fg_ColorBackground[4] = CColorRef(255, 255, 0);

  TFmtNode node;
  EXPECT_EQ(node.GetForegroundColor(), CColorRef(0, 0, 0));
  node.m_bIsHighlighted = 1;
  EXPECT_EQ(node.GetForegroundColor(), CColorRef(0, 0, 255));
  node.m_bIsSelected = 1;
  // Selected and highlighted: entry 1 xor entry 4, neither of them.
  EXPECT_EQ(node.GetForegroundColor(), CColorRef(255, 255, 0));
  EXPECT_EQ(node.GetBackgroundColor(), CColorRef(255, 255, 128));
  node.m_bIsHighlighted = 0;
  EXPECT_EQ(node.GetForegroundColor(), CColorRef(255, 255, 255));
  TObjectLike object;
  EXPECT_EQ(object.GetForegroundColor(), CColorRef(10, 20, 30));

  // Delimiters and lines: the current colour unless math is coloured.
  TFmtNode plain;
  TFmtContext::fg_CurrentColor = CColorRef(1, 2, 3);
  TFmtContext::fg_bDoColorizeExpressions = 0;
  EXPECT_EQ(plain.DelimiterColor(), CColorRef(1, 2, 3));
  EXPECT_EQ(plain.LineColor(), CColorRef(1, 2, 3));
  EXPECT_EQ(node.DelimiterColor(), CColorRef(255, 255, 255));  // selected: the state colour

  // The forced foreground and its undoing.
  TTestContext context;
  context.m_TextColor = CColorRef(9, 9, 9);
  TFmtContext::fg_bDoColorizeExpressions = 1;
  node.SetSelectionForeground(context);
  EXPECT_EQ(context.m_TextColor, CColorRef(255, 255, 255));
  EXPECT_EQ(TFmtContext::fg_CurrentColor, CColorRef(255, 255, 255));
  EXPECT_EQ(TFmtContext::fg_bDoColorizeExpressions, 0);
  EXPECT_EQ(context.m_bColorForced, 1);
  EXPECT_EQ(TFmtNode::fg_SelectionStack.GetCount(), 1);
  node.UnsetSelectionForeground(context);
  EXPECT_EQ(context.m_TextColor, CColorRef(9, 9, 9));
  EXPECT_EQ(TFmtContext::fg_CurrentColor, CColorRef(9, 9, 9));
  EXPECT_EQ(TFmtContext::fg_bDoColorizeExpressions, 1);
  EXPECT_EQ(context.m_bColorForced, 0);
  EXPECT_TRUE(TFmtNode::fg_SelectionStack.IsEmpty());

  // Neither selected, highlighted nor an object: nothing is forced.
  plain.SetSelectionForeground(context);
  EXPECT_TRUE(TFmtNode::fg_SelectionStack.IsEmpty());
  EXPECT_EQ(context.m_TextColor, CColorRef(9, 9, 9));
}

TEST_F(NodeTest, SelectionBackgroundAndTheBoundedNode) {
  TTestContext context;
  std::unique_ptr<TFmtNode> zeroWidth(MakeNode(0, 0, 5, 5, 0));
  zeroWidth->m_bIsSelected = 1;
  TFmtNode::fg_pBoundedNode = zeroWidth.get();
  zeroWidth->DrawSelectionBackground(context);
  EXPECT_TRUE(context.m_DrawnRects.empty());  // width 0: nothing at all
  std::unique_ptr<TFmtNode> node(MakeNode(10, -20, 5, 5, 30));
  TFmtNode::fg_pBoundedNode = node.get();
  node->DrawSelectionBackground(context);
  ASSERT_EQ(context.m_DrawnRects.size(), 1u);
  EXPECT_EQ(context.m_DrawnRects[0], CRect(10, -15, 40, -25));
  EXPECT_TRUE(context.m_FilledRects.empty());  // neither selected nor highlighted

  // Selected: the box is filled in the selection background.
  TFmtContext::fg_ColorBackground[1] = CColorRef(0, 0, 128);
  node->m_bIsSelected = 1;
  TFmtNode::fg_pBoundedNode = nullptr;
  node->DrawSelectionBackground(context);
  ASSERT_EQ(context.m_FilledRects.size(), 1u);
  EXPECT_EQ(context.m_FilledRects[0], CRect(10, -15, 40, -25));
  EXPECT_EQ(context.m_FillColors[0], CColorRef(0, 0, 128));
  EXPECT_EQ(context.m_DrawnRects.size(), 1u);  // no box without the bounded node

  // An object node is filled unless objects are opaque.
  TObjectLike object;
  object.m_pExtent->Reset(1, 1, 1);
  TFmtContext::fg_ColorBackground[5] = CColorRef(7, 7, 7);
  object.DrawSelectionBackground(context);
  ASSERT_EQ(context.m_FillColors.size(), 2u);
  EXPECT_EQ(context.m_FillColors[1], CColorRef(7, 7, 7));
  context.m_bOpaqueObjects = 1;
  object.DrawSelectionBackground(context);
  EXPECT_EQ(context.m_FillColors.size(), 2u);
  TFmtNode::fg_pBoundedNode = node.get();
  // The destructor forgets the bounded node.
  node.reset();
  EXPECT_EQ(TFmtNode::fg_pBoundedNode, nullptr);
  zeroWidth.reset();
}

TEST_F(NodeTest, HashCodesCountSiblingsButNotGlueObjectsOrNotes) {
  TFmtNode a, b, c, outsider;
  TGlueLike glue;
  TObjectLike object;
  static CObList children;
  children.RemoveAll();
  for (TFmtNode* n : {static_cast<TFmtNode*>(&a), static_cast<TFmtNode*>(&glue), &b, static_cast<TFmtNode*>(&object), &c})
    children.AddTail(n);
  TFmtNode parent;
  static TFmtNode* s_pParent = nullptr;
  s_pParent = &parent;
  // Without a list view no code can be counted.
  EXPECT_EQ(c.HashCode(&parent), 0u);
  TFmtNode::fg_pCompoundView = [](TFmtNode* node) -> const CObList* { return node == s_pParent ? &children : nullptr; };
  // Start at 1 and count a, b, c: glue and object are passed over.
  EXPECT_EQ(a.HashCode(&parent), 2u);
  EXPECT_EQ(b.HashCode(&parent), 3u);
  EXPECT_EQ(c.HashCode(&parent), 4u);
  EXPECT_EQ(glue.HashCode(&parent), 2u);  // only a counted before it
  EXPECT_EQ(c.HashCode(nullptr), 0u);
  EXPECT_EQ(c.HashCode(&outsider), 0u);  // not a list
  c.m_nHashCode = 17;  // a fixed code wins
  EXPECT_EQ(c.HashCode(&parent), 17u);

  EXPECT_EQ(parent.Find(3), &b);
  EXPECT_EQ(parent.Find(17), &c);
  EXPECT_EQ(parent.Find(99), nullptr);
  EXPECT_EQ(outsider.Find(2), nullptr);
  children.RemoveAll();
}

TEST_F(NodeTest, FlagsAndCaretWalkOnALeaf) {
  TFmtNode node;
  node.SetIsSelected(1);
  node.SetIsHighlighted(1);
  EXPECT_EQ(node.m_bIsSelected + node.m_bIsHighlighted, 2);
  node.SetIsSelected(0);
  EXPECT_EQ(node.m_bIsSelected, 0);
  // A list of leaves: each element gets the function once, in order.
  TFmtNode first, second;
  CObList list;
  list.AddTail(&first);
  list.AddTail(&second);
  int one = 1;
  TFmtNode::ApplyRecursivelyList(list, TFmtNode::SetNodeHighlight, &one);
  EXPECT_EQ(first.m_bIsHighlighted + second.m_bIsHighlighted, 2);
  static std::vector<TFmtNode*> visited;
  visited.clear();
  TFmtNode::ApplyRecursivelyList(list, [](TFmtNode* n) { visited.push_back(n); });
  EXPECT_EQ(visited, (std::vector<TFmtNode*>{&first, &second}));

  // No level finds a next stop: the path is cut back to nothing.
  TFmtNode root, middle;
  CObList path;
  path.AddTail(&root);
  path.AddTail(&middle);
  path.AddTail(&node);
  EXPECT_EQ(node.FindNextCaretPosition(path, nullptr), 0);
  EXPECT_TRUE(path.IsEmpty());
  path.AddTail(&root);
  EXPECT_EQ(root.FindPrevCaretPosition(path, nullptr), 0);
  EXPECT_TRUE(path.IsEmpty());
}

TEST_F(NodeTest, VerbatimPrinting) {
  CString out;
  int column = 4;
  TFmtNode::PrintVerbTex("a|b", out, column, 0);
  EXPECT_EQ(out, "\\verb!a|b!");  // '|' is in the text, '!' is the next delimiter
  EXPECT_EQ(column, 4 + 7 + 3);

  out = "";
  column = 2;
  TFmtNode::PrintVerbTex("\\verb+x+", out, column, 0);  // already verb text
  EXPECT_EQ(out, "\\verb+x+");
  EXPECT_EQ(column, 2 + 8);

  out = "x";
  column = 5;
  TFmtNode::PrintVerbTex("p\nq", out, column, 0);  // a newline makes a block
  EXPECT_EQ(out, "x\n\\begin{verbatim}\np\nq\n\\end{verbatim}\n");
  EXPECT_EQ(column, 0);
  out = "";
  TFmtNode::PrintVerbTex("r", out, column, 1);  // column 0: no leading newline
  EXPECT_EQ(out, "\\begin{verbatim}\nr\n\\end{verbatim}\n");
}

TEST_F(NodeTest, CharacterExtentFromAGivenFontReselectsTheCurrentOne) {
  TTestContext context;
  ztest::TTestFont current(20, 6, 11), other(30, 8, 15);
  TExtendedFont* saved = TExtendedFont::fg_pCurrent;
  TExtendedFont::fg_pCurrent = &current;
  TFmtNode node;
  node.ComputeCharacterFmtExtent('x', context, &other);
  EXPECT_EQ(node.m_pExtent->m_nHeight, 30);
  EXPECT_EQ(node.m_pExtent->m_nDepth, 8);
  EXPECT_EQ(node.m_pExtent->m_nWidth, 15);
  EXPECT_EQ(other.m_nSelections, 1);
  EXPECT_EQ(current.m_nSelections, 1);  // selected again afterwards
  node.ComputeCharacterFmtExtent('x', context, nullptr);  // the current font, no selecting
  EXPECT_EQ(node.m_pExtent->m_nWidth, 11);
  EXPECT_EQ(current.m_nSelections, 1);
  TExtendedFont::fg_pCurrent = saved;
}

TEST(NodeStartUp, DrawPropertiesMarkTheAlwaysDrawNames) {
  TFmtNode::InitializeDrawProperties();
  TFmtNode::InitializeDrawProperties();  // guarded: a second call is harmless
  EXPECT_EQ(TFmtNode::fg_bDrawPropertiesInitialized, 1);
  TStringPool* pool = TStringPool::g_pGlobal;
  ASSERT_NE(pool, nullptr);
  // \colorbox changes the GC as it draws, so it must run outside the clip.
  EXPECT_EQ(pool->GetBoolean("colorbox", TGlobalString::g_pALWAYSDRAW), 1);
  EXPECT_EQ(pool->GetBoolean("alpha", TGlobalString::g_pALWAYSDRAW), 0);
}
