// Reading arguments: spellings that must build one tree, what stands in for
// a missing argument, and the commands with readers of their own.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "format/leaf_nodes.h"
#include "math/math_node.h"
#include "math/over_node.h"
#include "support/tex_parse.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/arguments.h"
#include "tex/families/parser_tables.h"

using ztest::NullChildren;
using ztest::ParseDocument;
using ztest::PrintTexOf;
using ztest::SquashBlanks;

namespace {
class TexArguments : public ztest::TexParseTest {};

TFmtGenericArgumentedNode* FirstGeneric(const TFmtCompoundNode& doc) {
  for (CObject* o : doc.Get_Children())
    if (auto* g = static_cast<TFmtNode*>(o)->IsGenericArgumentedNode()) return g;
  return nullptr;
}

TEST_F(TexArguments, SpellingsOfOneThingBuildOneTree) {
  EXPECT_EQ(PrintTexOf("\\frac ab"), PrintTexOf("\\frac{a}{b}"));  // a word splits into arguments
  EXPECT_EQ(PrintTexOf("\\frac ab"), "\\frac{a}{b}");
  EXPECT_EQ(PrintTexOf("\\looseness=2"), PrintTexOf("\\looseness 2"));
  EXPECT_EQ(PrintTexOf("\\looseness=-12"), "\\looseness -12 ");
  EXPECT_EQ(PrintTexOf("\\fbox x"), PrintTexOf("\\fbox{x}"));
  // Leading blanks of a braced argument go; the braces do too.
  EXPECT_EQ(PrintTexOf("\\fbox{ a b}"), "\\fbox{a b}");
}

TEST_F(TexArguments, MissingArgumentsAreEmptyNeverNull) {
  auto doc = ParseDocument("\\fbox");
  TFmtGenericArgumentedNode* fbox = FirstGeneric(*doc);
  ASSERT_NE(fbox, nullptr);
  EXPECT_EQ(fbox->Get_ArgumentCount(), 1);
  ASSERT_NE(fbox->GetArgument(1), nullptr);
  EXPECT_TRUE(fbox->GetArgument(1)->IsEmpty());
  doc = ParseDocument("$\\frac$");
  TFmtOverNode* frac = doc->GetNth(1)->IsCompoundNode()->GetNth(1)->IsOverNode();
  ASSERT_NE(frac, nullptr);
  EXPECT_TRUE(frac->Get_Top()->IsEmpty());
  EXPECT_TRUE(frac->Get_Bottom()->IsEmpty());
  EXPECT_TRUE(NullChildren(ParseDocument("\\colorbox{red").get()).empty());
}

TEST_F(TexArguments, OptionalArgumentsPrintInBrackets) {
  EXPECT_EQ(PrintTexOf("\\caption[short]{long}"), "\\caption[short]{long}");
  EXPECT_EQ(PrintTexOf("\\caption{long}"), "\\caption{long}");
  EXPECT_EQ(PrintTexOf("\\newcounter{c}[s]"), "\\newcounter{c}[s]");
  // The bracket closes at depth 0 only.
  EXPECT_EQ(PrintTexOf("\\caption[{a]b}]{t}"), "\\caption[{a]b}]{t}");
}

TEST_F(TexArguments, LabelsAndTitlesFallBackOnFixedTexts) {
  auto doc = ParseDocument("\\label{}");
  EXPECT_STREQ(FirstGeneric(*doc)->GetArgument(1)->IsSequenceNode()->Get_Sequence(), "_illegal_label_or_link_target");
  doc = ParseDocument("\\label{eq:{1}}");
  EXPECT_STREQ(FirstGeneric(*doc)->GetArgument(1)->IsSequenceNode()->Get_Sequence(), "eq:1");
  doc = ParseDocument("\\windowTitle{}");
  EXPECT_STREQ(FirstGeneric(*doc)->GetArgument(1)->IsSequenceNode()->Get_Sequence(), "<INVALID TITLE TEXT>");
}

TEST_F(TexArguments, DoubleQuoteAccentNamesASymbol) {
  auto doc = ParseDocument("\\\"a");
  ASSERT_EQ(doc->GetCount(), 1);
  EXPECT_TRUE(doc->GetNth(1)->IsControlSequence(TStringPool::g_pGlobal->Put("\"a")));
  doc = ParseDocument("\\\"{ab}");
  ASSERT_EQ(doc->GetCount(), 2);  // the compound dissolved into the document
  EXPECT_TRUE(doc->GetNth(1)->IsControlSequence(TGlobalString::g_pCS_DOUBLEQUOTE));
  EXPECT_STREQ(doc->GetNth(2)->IsSequenceNode()->Get_Sequence(), "ab");
}

TEST_F(TexArguments, AccentsPrintOnlyWhatWasWritten) {
  EXPECT_EQ(PrintTexOf("\\hat{x}"), "\\hat{x}");
  EXPECT_EQ(PrintTexOf("\\'e"), "\\'{e}");
  auto doc = ParseDocument("\\hat x");
  EXPECT_EQ(FirstGeneric(*doc)->Get_ArgumentCount(), 2);  // the glyph rides along
}

TEST_F(TexArguments, BibliographyItemsNumberThemselvesPerSource) {
  std::string text;
  for (int i = 0; i < 10; ++i) text += "\\bibitem{k}";
  const auto doc = ParseDocument(text);
  std::vector<TFmtGenericArgumentedNode*> items;
  for (CObject* o : doc->Get_Children())
    if (auto* g = static_cast<TFmtNode*>(o)->IsGenericArgumentedNode()) items.push_back(g);
  ASSERT_EQ(items.size(), 10u);
  EXPECT_TRUE(items[0]->GetArgument(1)->IsCharacter('1'));
  EXPECT_TRUE(items[8]->GetArgument(1)->IsCharacter('9'));
  ASSERT_NE(items[9]->GetArgument(1)->IsSequenceNode(), nullptr);
  EXPECT_STREQ(items[9]->GetArgument(1)->IsSequenceNode()->Get_Sequence(), "10");
  // A new source counts from 1 again.
  EXPECT_TRUE(FirstGeneric(*ParseDocument("\\bibitem{k}"))->GetArgument(1)->IsCharacter('1'));
}

TEST_F(TexArguments, SymbolNumbersInThreeBases) {
  EXPECT_TRUE(ParseDocument("\\symbol{\"41}")->GetNth(1)->IsControlSequence(TStringPool::g_pGlobal->Put("symbol65")));
  EXPECT_TRUE(ParseDocument("\\symbol{'101}")->GetNth(1)->IsControlSequence(TStringPool::g_pGlobal->Put("symbol65")));
  EXPECT_EQ(NumberStringValue("-12"), -12);
  EXPECT_EQ(NumberStringValue("\"ff"), 255);
  EXPECT_EQ(NumberStringValue("99999999999999999999"), 999999999L);  // stops before overflowing
}

TEST_F(TexArguments, LetReadsItsArgumentsAndDefinesNothing) {
  const auto doc = ParseDocument("\\let\\p=\\q \\p");
  TFmtGenericArgumentedNode* let = FirstGeneric(*doc);
  ASSERT_NE(let, nullptr);
  EXPECT_EQ(let->Get_ArgumentCount(), 2);
  EXPECT_TRUE(let->GetArgument(2)->IsControlSequence(TStringPool::g_pGlobal->Put("q")));
  EXPECT_TRUE(doc->GetTail()->IsControlSequence(TStringPool::g_pGlobal->Put("p")));
}

TEST_F(TexArguments, TextInMathIsReadAsTextAndMathResumes) {
  const auto doc = ParseDocument("$\\mbox{a$b$}c$");
  ASSERT_EQ(doc->GetCount(), 1);
  TFmtCompoundNode* math = doc->GetNth(1)->IsMathNode();
  ASSERT_NE(math, nullptr);
  ASSERT_EQ(math->GetCount(), 2);
  TFmtGenericArgumentedNode* box = math->GetNth(1)->IsGenericArgumentedNode();
  ASSERT_NE(box, nullptr);
  EXPECT_NE(box->GetArgument(1)->IsCompoundNode()->GetNth(2)->IsMathNode(), nullptr);
  EXPECT_TRUE(math->GetNth(2)->IsCharacter('c'));
  EXPECT_TRUE(Errors().empty());
}

TEST_F(TexArguments, RgbNamesAColourByItsDigits) {
  ParseDocument("\\rgb{255}{0}{0}");
  TColorProperty* color = TStringPool::g_pGlobal->GetColor("25500", TGlobalString::g_pCOLOR);
  ASSERT_NE(color, nullptr);
  EXPECT_EQ(color->Get_Color(), CColorRef(255, 0, 0, ""));
}

TEST_F(TexArguments, OversetGathersArgumentsUpToTo) {
  const auto doc = ParseDocument("$\\overset a b \\to c$");
  TFmtGenericArgumentedNode* overset = doc->GetNth(1)->IsCompoundNode()->GetNth(1)->IsGenericArgumentedNode();
  ASSERT_NE(overset, nullptr);
  EXPECT_EQ(overset->GetArgument(1)->IsCompoundNode()->GetCount(), 2);
  EXPECT_TRUE(overset->GetArgument(2)->IsCharacter('c'));
}

TEST_F(TexArguments, ErrmessageReportsItsText) {
  const auto doc = ParseDocument("\\errmessage{Oops}x");
  EXPECT_EQ(Errors(), std::vector<std::string>{"Oops"});
  EXPECT_TRUE(doc->GetTail()->IsCharacter('x'));
}

// Every registration table: each name once over all tables, and each
// command read with four braced arguments, in text and in math, leaves no
// null child anywhere.
TEST_F(TexArguments, EveryRegisteredNameOnceAndWhole) {
  std::set<std::string> seen;
  for (const TCsParserTable& table : AllParserTables()) {
    for (const TCsParserEntry& entry : table.entries) {
      SCOPED_TRACE(std::string(table.family) + ": " + entry.name);
      EXPECT_TRUE(seen.insert(entry.name).second) << "registered twice";
      ASSERT_NE(entry.parser, nullptr);
      TFunctionProperty* property =
          TStringPool::g_pGlobal->GetFunction(entry.name, TGlobalString::g_pPARSER_TEX);
      ASSERT_NE(property, nullptr);
      EXPECT_EQ(property->Get_TexParser(), entry.parser);
      const std::string call = std::string("\\csname ") + entry.name + "\\endcsname{a}{b}{c}{d}";
      for (const std::string& text : {call, "$" + call + "$"}) {
        const auto doc = ParseDocument(text);
        EXPECT_TRUE(NullChildren(doc.get()).empty());
        std::unique_ptr<TFmtNode> copy(doc->Copy());
        EXPECT_EQ(PrintTexOf(copy.get()), PrintTexOf(doc.get()));
      }
    }
  }
  EXPECT_GT(seen.size(), 130u);
}
}  // namespace
