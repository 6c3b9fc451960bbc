// The document family's table, and its handlers where no font matters: a
// display-less context with a test font in which every character is 10 wide.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "format/compound_node.h"
#include "format/document_node.h"
#include "format/leaf_nodes.h"
#include "format/tex_mode.h"
#include "format/vertical_list_node.h"
#include "support/test_context.h"
#include "support/tex_parse.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/families/document_handlers.h"
#include "tex/token_source.h"

namespace {
class DocumentFamily : public ztest::TexParseTest {
 protected:
  void SetUp() override {
    TexParseTest::SetUp();
    TFmtNode::InitializeDrawProperties();
    m_pSavedFont = TExtendedFont::fg_pCurrent;
    TExtendedFont::fg_pCurrent = &m_Font;
    g_CurrentTexMode = 3;
  }
  void TearDown() override {
    TExtendedFont::fg_pCurrent = m_pSavedFont;
    TexParseTest::TearDown();
  }
  TFmtExtent ComposeAll(const std::string& text) {
    std::unique_ptr<TFmtCompoundNode> root = ztest::ParseDocument(text);
    root->Compose(m_Context);
    return *root->m_pExtent;
  }

  ztest::TTestFont m_Font{12, 4, 10};
  TExtendedFont* m_pSavedFont = nullptr;
  ztest::TTestContext m_Context;
};

TEST_F(DocumentFamily, EachNameOnceWithBothHandlersLoaded) {
  std::set<std::string> seen;
  TStringPool& pool = *TStringPool::g_pGlobal;
  for (const TDrawHandlerEntry& entry : DocumentHandlerTable()) {
    SCOPED_TRACE(entry.name);
    EXPECT_TRUE(seen.insert(entry.name).second);
    TFunctionProperty* extent = pool.GetFunction(entry.name, TGlobalString::g_pEXTENT);
    TFunctionProperty* draw = pool.GetFunction(entry.name, TGlobalString::g_pDRAW);
    ASSERT_TRUE(extent && draw);
    EXPECT_EQ(extent->Get_Handler(), entry.extent);
    EXPECT_EQ(draw->Get_Handler(), entry.draw);
  }
  // The sizes, the preamble and the title commands are all there.
  for (const char* name : {"scriptscriptsize", "tiny", "scriptsize", "footnotesize", "small", "normalsize", "large",
                           "Large", "LARGE", "huge", "Huge", "documentclass", "usepackage", "author", "date",
                           "maketitle", "and", "begindocument", "enddocument"})
    EXPECT_EQ(seen.count(name), 1u) << name;
}

TEST_F(DocumentFamily, APreambleTakesNoRoomAndAnUnknownNameDoes) {
  EXPECT_EQ(ComposeAll("\\documentclass[a4paper]{article}\\usepackage{amsmath}\\author{A \\and B}"
                       "\\date{May}\\maketitle\\relax\\begin{document}\\end{document}")
                .m_nWidth,
            0);
  // "\nosuch" shows as its name: 7 characters of 10.
  EXPECT_EQ(ComposeAll("\\nosuch").m_nWidth, 70);
}

TEST_F(DocumentFamily, WithoutADocumentTheDocumentCommandsDoNothing) {
  // Nothing to record into: composed and drawn, they take no room and
  // draw nothing.
  std::unique_ptr<TFmtCompoundNode> root = ztest::ParseDocument(
      "\\label{a}\\aboveTopic{b}\\nextTopicUnparsed{c}\\title{d}\\windowTitle{e}\\pagecolor{red}\\begin{document}");
  root->Compose(m_Context);
  EXPECT_EQ(root->m_pExtent->m_nWidth, 0);
  m_Context.m_ClipRegion = CRect(0, 0, 1000, -1000);
  root->Draw(m_Context);
  EXPECT_EQ(m_Context.m_Text, "");
}

TEST_F(DocumentFamily, ATitleThatBeginsTheDocumentAgainIsComposedOnce) {
  TFmtDocumentNode document;
  auto root = std::make_unique<TFmtCompoundNode>();
  const char* text = "\\title{A\\begin{document}}\\maketitle\\begin{document}";
  TTexTokenSource source("test", text);
  source.Set_DocumentNode(&document);
  TFmtNode* result = root->ParseTex(source);
  if (result != root.get()) root.reset(TFmtCompoundNode::CompoundIt(result));
  document.Build(root.release());
  m_Context.Set_DocumentNode(&document);
  m_Context.m_nRightMargin = 1000;
  document.Compose(m_Context);
  m_Context.m_ClipRegion = CRect(0, 0, 1000, -1000);
  document.Draw(m_Context);
  // One line of "A" (12 + 4 high) and the 6 U skip below it.
  TFmtNode* page = document.Get_TitlePage();
  ASSERT_NE(page->IsVerticalListNode(), nullptr);
  EXPECT_EQ(page->m_pExtent->m_nDepth, 12 + 4 + 6 * TFmtContext::fg_nUnitsPerPoint);
  EXPECT_EQ(m_Context.m_Text, "A");
  m_Context.Set_DocumentNode(nullptr);
}
}  // namespace
