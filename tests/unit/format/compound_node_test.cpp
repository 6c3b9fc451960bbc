// Lists: the merging add that repairs scripts and \over, the parse loop's
// errors, and nesting far deeper than any document.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "format/leaf_nodes.h"
#include "errors/parse_errors.h"
#include "format/parse_depth.h"
#include "math/over_node.h"
#include "math/scripted_node.h"
#include "support/test_context.h"
#include "support/tex_parse.h"
#include "symbols/global_strings.h"
#include "tex/token_source.h"

using ztest::NullChildren;
using ztest::ParseDocument;
using ztest::PrintTexOf;
using ztest::SquashBlanks;

namespace {
class CompoundNodes : public ztest::TexParseTest {};

TFmtCompoundNode* MathOf(const TFmtCompoundNode& doc) { return doc.GetNth(1) ? doc.GetNth(1)->IsCompoundNode() : nullptr; }

TEST_F(CompoundNodes, ScriptsMergeIntoOneNode) {
  const auto doc = ParseDocument("$x^2_3$");
  EXPECT_TRUE(NullChildren(doc.get()).empty());
  TFmtCompoundNode* math = MathOf(*doc);
  ASSERT_NE(math, nullptr);
  ASSERT_EQ(math->GetCount(), 1);
  TFmtScriptedNode* s = math->GetNth(1)->IsScriptedNode();
  ASSERT_NE(s, nullptr);
  EXPECT_TRUE(s->Get_Nucleus()->IsCharacter('x'));
  EXPECT_TRUE(s->Get_Subscript()->IsCharacter('3'));
  EXPECT_TRUE(s->Get_Superscript()->IsCharacter('2'));
  EXPECT_EQ(PrintTexOf(doc.get()), " $x_3^2$ ");
}

TEST_F(CompoundNodes, ScriptAtTheHeadGetsAnEmptyGroupNucleus) {
  const auto doc = ParseDocument("$^2$");
  TFmtScriptedNode* s = MathOf(*doc)->GetNth(1)->IsScriptedNode();
  ASSERT_NE(s, nullptr);
  EXPECT_NE(s->Get_Nucleus()->IsGroupNode(), nullptr);
  EXPECT_TRUE(s->Get_Nucleus()->IsEmpty());
  EXPECT_EQ(PrintTexOf(doc.get()), " ${}^2$ ");
}

TEST_F(CompoundNodes, APartGivenTwiceNestsInsteadOfBeingLost) {
  const auto doc = ParseDocument("$x^2^3$");
  TFmtScriptedNode* outer = MathOf(*doc)->GetNth(1)->IsScriptedNode();
  ASSERT_NE(outer, nullptr);
  EXPECT_TRUE(outer->Get_Superscript()->IsCharacter('3'));
  ASSERT_NE(outer->Get_Nucleus()->IsScriptedNode(), nullptr);
  EXPECT_EQ(SquashBlanks(PrintTexOf(doc.get())), "${x^2}^3$");
}

TEST_F(CompoundNodes, OverTakesWhatStoodBeforeAsItsTop) {
  const auto doc = ParseDocument("{a \\over b}");
  TFmtCompoundNode* group = doc->GetNth(1)->IsGroupNode();
  ASSERT_NE(group, nullptr);
  ASSERT_EQ(group->GetCount(), 1);
  TFmtOverNode* over = group->GetNth(1)->IsOverNode();
  ASSERT_NE(over, nullptr);
  // The blank before \over is part of the top.
  ASSERT_EQ(over->Get_Top()->GetCount(), 2);
  EXPECT_TRUE(over->Get_Top()->GetNth(1)->IsCharacter('a'));
  EXPECT_TRUE(over->Get_Bottom()->GetNth(1)->IsCharacter('b'));
  EXPECT_EQ(PrintTexOf(doc.get()), "{a \\over b}");
  // A script after \over binds inside the bottom.
  const auto scripted = ParseDocument("$a\\over b^2$");
  TFmtOverNode* over2 = MathOf(*scripted)->GetNth(1)->IsOverNode();
  ASSERT_NE(over2, nullptr);
  EXPECT_NE(over2->Get_Bottom()->GetNth(1)->IsScriptedNode(), nullptr);
}

TEST_F(CompoundNodes, PureCompoundsDissolveWhenAdded) {
  TFmtCompoundNode list;
  auto* inner = new TFmtCompoundNode;
  inner->AddTailSimple(new TFmtCharacterNode('a'));
  inner->AddTailSimple(new TFmtCharacterNode('b'));
  list.AddTail(inner);
  list.AddTail(new TFmtCompoundNode);  // empty: adds nothing, freed
  ASSERT_EQ(list.GetCount(), 2);
  EXPECT_TRUE(list.GetNth(2)->IsCharacter('b'));
  list.AddTail(new TFmtGroupNode);  // a group is no pure compound: it stays
  EXPECT_EQ(list.GetCount(), 3);
  TFmtCompoundNode blanks;
  blanks.AddTailSimple(new TFmtCharacterNode(' '));
  blanks.AddTailSimple(new TFmtCharacterNode('\n'));
  blanks.RemoveLeadingWhiteSpace();
  EXPECT_TRUE(blanks.IsEmpty());
}

TEST_F(CompoundNodes, StrayCloseBraceIsReportedAndStands) {
  EXPECT_EQ(PrintTexOf("a}b"), "a}b");
  EXPECT_EQ(Errors(), std::vector<std::string>{"#25012"});
}

TEST_F(CompoundNodes, UnclosedGroupKeepsItsChildren) {
  const auto doc = ParseDocument("{ab{c");
  EXPECT_EQ(Errors(), (std::vector<std::string>{"#25022", "#25022"}));
  TFmtCompoundNode* group = doc->GetNth(1)->IsGroupNode();
  ASSERT_NE(group, nullptr);
  ASSERT_EQ(group->GetCount(), 2);
  EXPECT_NE(group->GetNth(2)->IsGroupNode(), nullptr);
}

TEST_F(CompoundNodes, CloseBraceInInlineMathIsDropped) {
  EXPECT_EQ(PrintTexOf("$a}b$"), " $ab$ ");
  EXPECT_EQ(Errors(), std::vector<std::string>{"#25052"});
}

TEST_F(CompoundNodes, ScriptOutsideMathShowsInRed) {
  const auto doc = ParseDocument("x^2");
  EXPECT_EQ(Errors(), std::vector<std::string>{"#25060"});
  ASSERT_EQ(doc->GetCount(), 1);
  TFmtScriptedNode* s = doc->GetNth(1)->IsScriptedNode();
  ASSERT_NE(s, nullptr);
  TFmtCompoundNode* shown = s->Get_Superscript()->IsGroupNode();
  ASSERT_NE(shown, nullptr);
  TFmtGenericArgumentedNode* color = shown->GetNth(1)->IsGenericArgumentedNode();
  ASSERT_NE(color, nullptr);
  EXPECT_EQ(color->Get_Name(), TGlobalString::g_pcolor);
  EXPECT_STREQ(color->GetArgument(1)->IsSequenceNode()->Get_Sequence(), "red");
  EXPECT_TRUE(shown->GetNth(2)->IsCharacter('2'));
}

TEST_F(CompoundNodes, DollarsClosingInlineMathLeaveOneOpen) {
  // "$x$$" ends the formula at the second dollar; the third opens another.
  const auto doc = ParseDocument("$x$$y$");
  ASSERT_EQ(doc->GetCount(), 2);
  EXPECT_NE(doc->GetNth(1)->IsMathNode(), nullptr);
  EXPECT_NE(doc->GetNth(2)->IsMathNode(), nullptr);
}

TEST_F(CompoundNodes, ParseWithTestsAtEndLeavesDoneAlone) {
  TFmtNode::InitializeTexParser();
  TTexTokenSource source("test", "ab");
  TFmtCompoundNode list;
  int done = 7;
  EXPECT_EQ(list.ParseTexWithTests(source, done, 0, nullptr, nullptr, nullptr, nullptr), &list);
  EXPECT_EQ(done, 7);
  EXPECT_EQ(list.GetCount(), 1);
}

TEST_F(CompoundNodes, UnarySignsAreMarkedWhenComposed) {
  ztest::TTestContext context;
  const auto doc = ParseDocument("-x(+y)a-b");
  doc->Compose(context);
  auto sign = [&](int n) { return doc->GetNth(n)->IsCharacterNode()->Get_NoExtraSpace(); };
  ASSERT_TRUE(doc->GetNth(1)->IsCharacter('-'));
  EXPECT_EQ(sign(1), 1);  // at the start
  ASSERT_TRUE(doc->GetNth(4)->IsCharacter('+'));
  EXPECT_EQ(sign(4), 1);  // after an opening bracket
  ASSERT_TRUE(doc->GetNth(8)->IsCharacter('-'));
  EXPECT_EQ(sign(8), 0);  // between operands
}

// 100,000 levels of each recursive form: the parse stops descending at the
// bound, reports once, and the tree prints, copies and deletes.
TEST_F(CompoundNodes, DeepNestingIsBoundedNotOverflowed) {
  const int n = 100000;
  const std::string forms[] = {
      std::string(n, '{') + "x" + std::string(n, '}'),
      "$" + std::string(n, '^') + "x$",
      [&] {
        std::string s;
        for (int i = 0; i < n; ++i) s += "\\fbox{";
        return s + "x" + std::string(n, '}');
      }(),
      "$" + [&] {
        std::string s;
        for (int i = 0; i < n; ++i) s += "\\frac 1";
        return s;
      }() + "$",
  };
  for (const std::string& text : forms) {
    SCOPED_TRACE(text.substr(0, 20));
    CZrError::ClearParseErrors();
    auto doc = ParseDocument(text);
    EXPECT_EQ(TParseDepth::Get_Depth(), 0);
    int depthErrors = 0;
    for (const std::string& e : Errors()) depthErrors += e.find("nested too deep") != std::string::npos;
    EXPECT_EQ(depthErrors, 1);
    EXPECT_TRUE(NullChildren(doc.get()).empty());
    const std::string printed = PrintTexOf(doc.get());
    EXPECT_GT(printed.size(), static_cast<size_t>(n));
    std::unique_ptr<TFmtNode> copy(doc->Copy());
    EXPECT_EQ(PrintTexOf(copy.get()), printed);
  }
}
}  // namespace
