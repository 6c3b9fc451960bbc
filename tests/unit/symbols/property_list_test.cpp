#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/test_node.h"
#include "symbols/properties.h"

using ztest::TTestNode;

namespace {
// Keys are compared by address, so stable arrays stand in for pool texts.
const char kA[] = "_A";
const char kB[] = "_B";
const char kC[] = "_C";

std::vector<const char*> Keys(const TPropertyList& list) {
  std::vector<const char*> keys;
  for (const TKeyValue* pair = list.Get_Head(); pair; pair = pair->Get_Next()) keys.push_back(pair->Get_Key());
  return keys;
}
int IntegerAt(const TPropertyList& list, const char* key) {
  return static_cast<TIntegerProperty*>(list.GetProperty(key))->Get_Value();
}

void ComposeHandler(TFmtNode*, int, TFmtContext&) {}
TFmtNode* ParserHandler(TFmtControlSequenceNode*, TTexTokenSource&) { return nullptr; }
}  // namespace

TEST(PropertyList, KeysMatchByPointerOnly) {
  TPropertyList list(kA, new TIntegerProperty(7));
  std::string sameLetters = kA;
  EXPECT_EQ(list.GetProperty(sameLetters.c_str()), nullptr);
  EXPECT_EQ(IntegerAt(list, kA), 7);
  list.PutProperty(sameLetters.c_str(), new TIntegerProperty(8), 1);  // another key, not a replacement
  EXPECT_EQ(list.GetCount(), 2);
  EXPECT_EQ(IntegerAt(list, kA), 7);
}

TEST(PropertyList, NewKeysGoFirstReplacedKeysKeepTheirPlace) {
  TPropertyList list(kA, new TIntegerProperty(1));
  list.PutProperty(kB, new TIntegerProperty(2), 1);
  list.PutProperty(kC, new TIntegerProperty(3), 1);
  EXPECT_EQ(Keys(list), (std::vector<const char*>{kC, kB, kA}));

  list.PutProperty(kB, new TIntegerProperty(20), 1);
  EXPECT_EQ(Keys(list), (std::vector<const char*>{kC, kB, kA}));
  EXPECT_EQ(IntegerAt(list, kB), 20);
}

TEST(PropertyList, DeleteOldDecidesWhoFreesTheReplacedValue) {
  const int live = TTestNode::fg_nLive;
  TNodeProperty* first = new TNodeProperty(new TTestNode(1));
  TPropertyList list(kA, first);

  // deleteOld zero: the caller keeps the old value (as when shadowing a definition).
  list.PutProperty(kA, new TNodeProperty(new TTestNode(2)), 0);
  EXPECT_EQ(TTestNode::fg_nLive, live + 2);
  EXPECT_EQ(first->Get_NodeAs<TTestNode>()->m_nValue, 1);
  delete first;

  // deleteOld set: the old value goes.
  list.PutProperty(kA, new TNodeProperty(new TTestNode(3)), 1);
  EXPECT_EQ(TTestNode::fg_nLive, live + 1);

  // Putting the value that is already there frees nothing.
  TProperty* current = list.GetProperty(kA);
  list.PutProperty(kA, current, 1);
  EXPECT_EQ(list.GetProperty(kA), current);
  EXPECT_EQ(static_cast<TNodeProperty*>(current)->Get_NodeAs<TTestNode>()->m_nValue, 3);
}

TEST(PropertyList, RemoveTakesOnlyThatKeyAndIgnoresAbsentOnes) {
  const int live = TTestNode::fg_nLive;
  TPropertyList list(kA, new TIntegerProperty(1));
  list.PutProperty(kB, new TNodeProperty(new TTestNode(2)), 1);
  list.PutProperty(kC, new TIntegerProperty(3), 1);

  list.RemoveProperty("_B");  // same letters, other address: absent
  EXPECT_EQ(Keys(list), (std::vector<const char*>{kC, kB, kA}));

  list.RemoveProperty(kB);
  EXPECT_EQ(Keys(list), (std::vector<const char*>{kC, kA}));
  EXPECT_EQ(TTestNode::fg_nLive, live);
  list.RemoveProperty(kC);
  list.RemoveProperty(kA);
  EXPECT_EQ(list.Get_Head(), nullptr);
  list.RemoveProperty(kA);  // empty list: nothing to do
}

TEST(PropertyList, CopyClonesNodesSharesTextsAndKeepsOrder) {
  const int live = TTestNode::fg_nLive;
  static const char text[] = "reference";
  TPropertyList original(kA, new TStringProperty(text));
  original.PutProperty(kB, new TNodeProperty(new TTestNode(5)), 1);
  original.PutProperty(kC, new TColorProperty(CColorRef(1, 2, 3, "x")), 1);

  TPropertyList copy(original);
  EXPECT_EQ(Keys(copy), Keys(original));
  EXPECT_EQ(TTestNode::fg_nLive, live + 2);

  auto* originalNode = static_cast<TNodeProperty*>(original.GetProperty(kB))->Get_NodeAs<TTestNode>();
  auto* copiedNode = static_cast<TNodeProperty*>(copy.GetProperty(kB))->Get_NodeAs<TTestNode>();
  EXPECT_NE(copiedNode, originalNode);
  originalNode->m_nValue = 6;
  EXPECT_EQ(copiedNode->m_nValue, 5);  // independent

  EXPECT_NE(copy.GetProperty(kA), original.GetProperty(kA));  // a new property object...
  EXPECT_EQ(static_cast<TStringProperty*>(copy.GetProperty(kA))->Get_Text(), text);  // ...on the same text
  EXPECT_EQ(static_cast<TColorProperty*>(copy.GetProperty(kC))->Get_Color().Green(), 2);

  // Assignment drops what was there, then copies deeply; self-assignment is a no-op.
  TPropertyList target(kC, new TNodeProperty(new TTestNode(9)));
  target = original;
  EXPECT_EQ(Keys(target), Keys(original));
  EXPECT_EQ(TTestNode::fg_nLive, live + 3);
  TPropertyList& alias = target;
  target = alias;
  EXPECT_EQ(Keys(target), Keys(original));
  EXPECT_EQ(TTestNode::fg_nLive, live + 3);
}

TEST(PropertyKinds, NodePropertyOwnsClonesAndReplacesItsNode) {
  const int live = TTestNode::fg_nLive;
  {
    TNodeProperty a(new TTestNode(1));
    TNodeProperty b(new TTestNode(2));
    a = b;
    EXPECT_EQ(TTestNode::fg_nLive, live + 2);  // a's old node deleted, b's cloned
    EXPECT_NE(a.Get_Node(), b.Get_Node());
    EXPECT_EQ(a.Get_NodeAs<TTestNode>()->m_nValue, 2);
    TNodeProperty& self = a;
    a = self;
    EXPECT_EQ(a.Get_NodeAs<TTestNode>()->m_nValue, 2);
    std::unique_ptr<TProperty> copy(a.Copy());
    EXPECT_EQ(copy->Kind(), k_PropertyNode);
    EXPECT_EQ(TTestNode::fg_nLive, live + 3);
    TNodeProperty empty;
    std::unique_ptr<TProperty> emptyCopy(empty.Copy());
    EXPECT_EQ(static_cast<TNodeProperty*>(emptyCopy.get())->Get_Node(), nullptr);
  }
  EXPECT_EQ(TTestNode::fg_nLive, live);
}

TEST(PropertyKinds, ValueKindsCopyTheirValues) {
  TFunctionProperty handler(&ComposeHandler);
  std::unique_ptr<TProperty> handlerCopy(handler.Copy());
  EXPECT_EQ(static_cast<TFunctionProperty*>(handlerCopy.get())->Get_Handler(), &ComposeHandler);
  EXPECT_EQ(TFunctionProperty(&ParserHandler).Get_TexParser(), &ParserHandler);
  EXPECT_TRUE(TFunctionProperty().IsNull());

  TColorProperty black;
  EXPECT_EQ(black.Get_Color().Red() + black.Get_Color().Green() + black.Get_Color().Blue(), 0);
  EXPECT_STREQ(black.Get_Color().m_Name, "black");

  TFontIndexProperty glyph(k_FontTagMathExtension3, 102);
  std::unique_ptr<TProperty> glyphCopy(glyph.Copy());
  auto* copied = static_cast<TFontIndexProperty*>(glyphCopy.get());
  EXPECT_EQ(copied->Get_FontTag(), k_FontTagMathExtension3);
  EXPECT_EQ(copied->Get_Code(), 102);
  EXPECT_EQ(TFontIndexProperty().Get_Code(), 0);

  TBooleanProperty flag(1);
  TBooleanProperty other(0);
  other = flag;
  EXPECT_EQ(other.Get_Value(), 1);
}
