// The document node without a display: the status merge, labels, the title
// page made from what \title, \author and \date gave it, the lists kept in
// reading order (y grows upward: lower on the page is a smaller y), the
// deletion store and the temporary file names.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "format/break_nodes.h"
#include "format/compound_node.h"
#include "format/document_node.h"
#include "format/glue_node.h"
#include "format/leaf_nodes.h"
#include "format/line_node.h"
#include "format/vertical_list_node.h"
#include "interact/node_path.h"
#include "support/paths.h"
#include "support/test_context.h"
#include "support/tex_parse.h"
#include "symbols/string_pool.h"
#include "tex/token_source.h"

namespace {
// A leaf that counts its deletions.
class TCountedNode : public TFmtNode {
 public:
  ~TCountedNode() override { ++fg_nDeleted; }
  static inline int fg_nDeleted = 0;
};

TFmtNode* At(TFmtNode* node, int x, int y) {
  node->m_Position = CPoint(x, y);
  return node;
}

std::vector<TFmtNode*> Nodes(const CObList& list) {
  std::vector<TFmtNode*> out;
  for (CObject* o : list) out.push_back(static_cast<TFmtNode*>(o));
  return out;
}

std::string TextOf(TFmtNode* node) {
  CString text;
  node->SimplyStringify(text);
  return text.c_str();
}

class DocumentNode : public ztest::TexParseTest {
 protected:
  // Parses text with the document as the source's, as a load does.
  std::unique_ptr<TFmtCompoundNode> Parse(const std::string& text) {
    auto root = std::make_unique<TFmtCompoundNode>();
    TTexTokenSource source("test", text.c_str());
    source.Set_DocumentNode(&m_Document);
    TFmtNode* result = root->ParseTex(source);
    if (result != root.get()) root.reset(TFmtCompoundNode::CompoundIt(result));
    return root;
  }
  // The lines of a title page: the name of each line's font and its text
  // after the font; "glue" and the name of a control sequence for the others.
  std::vector<std::string> TitlePageRows() {
    std::vector<std::string> rows;
    TFmtVerticalListNode* page = m_Document.Generate_TitlePage()->IsVerticalListNode();
    if (!page) return rows;
    for (TFmtNode* child : Nodes(page->Get_Children())) {
      if (auto* line = dynamic_cast<TFmtLineNode*>(child)) {
        std::string row = line->Get_Type() == k_LineCentre ? "centre " : "other ";
        TFmtControlSequenceNode* font = line->GetHead() ? line->GetHead()->IsControlSequenceNode() : nullptr;
        row += font ? font->Get_Name() : "?";
        row += " |";
        bool first = true;
        for (TFmtNode* item : Nodes(line->Get_Children())) {
          if (!first) row += TextOf(item);
          first = false;
        }
        rows.push_back(row + "|");
      } else if (child->IsGlueNode()) {
        rows.push_back("glue");
      } else if (TFmtControlSequenceNode* cs = child->IsControlSequenceNode()) {
        rows.push_back(cs->Get_Name());
      } else {
        rows.push_back("?");
      }
    }
    return rows;
  }

  TFmtDocumentNode m_Document;
};

TEST(DocumentStatus, PendingValuesMergeAndZeroOrThreeAlwaysTake) {
  const struct {
    int present, next, expected;
  } cases[] = {
      {0, 1, 1}, {0, 2, 2}, {0, 3, 3},  // anything onto composed
      {1, 2, 3}, {2, 1, 3},             // two kinds of pending work need everything
      {1, 1, 1}, {2, 2, 2},             // the same value changes nothing
      {3, 1, 3}, {3, 2, 3},             // everything stays everything
      {1, 3, 3}, {2, 3, 3},             // 3 always takes
      {1, 0, 0}, {2, 0, 0}, {3, 0, 0},  // and so does 0
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.present << " then " << c.next);
    TFmtDocumentNode document;
    document.Set_CompositionStatus(k_Composed);
    document.Set_CompositionStatus(static_cast<KCompositionStatus>(c.present));
    document.Set_CompositionStatus(static_cast<KCompositionStatus>(c.next));
    EXPECT_EQ(document.Get_CompositionStatus(), c.expected);
  }
  TFmtDocumentNode fresh;
  EXPECT_EQ(fresh.Get_CompositionStatus(), k_ComposeEverything);
}

TEST_F(DocumentNode, LaterLabelsWinAndANullSiteIsIgnored) {
  TFmtCharacterNode first('a'), second('b');
  TFmtSequenceNode name("eq:one");
  m_Document.UpdateLabelDatabase(&name, &first);
  m_Document.UpdateLabelDatabase(&name, &second);
  m_Document.UpdateLabelDatabase(&name, nullptr);  // keeps the second
  TFmtSequenceNode other("eq:two");
  m_Document.UpdateLabelDatabase(&other, nullptr);
  // Looked up by text: a buffer of the same letters finds the interned name.
  const std::string key = "eq:one";
  EXPECT_EQ(m_Document.ResolveLabel(key.c_str()), &second);
  EXPECT_EQ(m_Document.ResolveLabel("eq:two"), nullptr);
  EXPECT_EQ(m_Document.ResolveLabel("nosuch"), nullptr);
  EXPECT_EQ(m_Document.Get_LabelCount(), 1);

  // Through the context: the site is the one the walk last set.
  ztest::TTestContext context;
  context.Set_DocumentNode(&m_Document);
  context.SetMostRecentLabelSite(&first);
  context.UpdateLabelDatabase(&other);
  EXPECT_EQ(m_Document.ResolveLabel("eq:two"), &first);
  context.Set_DocumentNode(nullptr);
  context.UpdateLabelDatabase(&name);  // no document: nothing to do, no fault
}

TEST_F(DocumentNode, ABuildForgetsLabelsWhoseSitesItDeleted) {
  m_Document.Build(Parse("One.\n\nTwo.").release());
  TFmtNode* site = m_Document.Get_VerticalList()->GetHead();
  ASSERT_NE(site, nullptr);
  m_Document.UpdateLabelDatabase("one", site);
  m_Document.Build(Parse("Three.").release());
  EXPECT_EQ(m_Document.ResolveLabel("one"), nullptr);
  EXPECT_EQ(m_Document.Get_CompositionStatus(), k_ComposeEverything);
}

TEST_F(DocumentNode, TitlePageHasACentredLinePerAuthorInItsSize) {
  Parse("\\title{On Knots}\\author{Ann \\and Bo}\\date{May}\\maketitle");
  EXPECT_EQ(m_Document.GetMakeTitle(), 1);
  EXPECT_EQ(TitlePageRows(), (std::vector<std::string>{"centre LARGE |On Knots|", "centre large |Ann|",
                                                       "centre large |Bo|", "centre small |May|", "medskip"}));
  // Made once: the same page again.
  EXPECT_EQ(m_Document.Generate_TitlePage(), m_Document.Generate_TitlePage());
}

TEST_F(DocumentNode, TitlePageLinesBreakAtDoubleBackslashWithItsSkip) {
  Parse("\\author{Ann\\\\[4pt] Bo \\\\ Cy}");
  EXPECT_EQ(TitlePageRows(),
            (std::vector<std::string>{"centre large |Ann|", "glue", "centre large |Bo|", "centre large |Cy|", "medskip"}));
  // A one-word title is no compound: one line all the same.
  m_Document.Set_Title(new TFmtSequenceNode("Knots"));
  m_Document.Set_Author(nullptr);
  EXPECT_EQ(TitlePageRows(), (std::vector<std::string>{"centre LARGE |Knots|", "medskip"}));
}

TEST_F(DocumentNode, TitlePageOfNothingIsAnEmptyCompound) {
  // \maketitle alone: there is nothing to show.
  Parse("\\maketitle");
  TFmtNode* page = m_Document.Generate_TitlePage();
  ASSERT_NE(page->IsCompoundNode(), nullptr);
  EXPECT_EQ(page->IsVerticalListNode(), nullptr);
  EXPECT_TRUE(page->IsEmpty());
}

TEST_F(DocumentNode, TitleDataAreCopiesAndANewTitleMakesANewPage) {
  auto tree = Parse("\\title{Old}");
  EXPECT_EQ(TextOf(m_Document.Get_Title()), "Old");
  EXPECT_EQ(TitlePageRows(), (std::vector<std::string>{"centre LARGE |Old|", "medskip"}));
  tree.reset();  // the document's copy outlives the parse tree
  EXPECT_EQ(TextOf(m_Document.Get_Title()), "Old");
  Parse("\\title{New}");  // the text parsed again
  EXPECT_EQ(TitlePageRows(), (std::vector<std::string>{"centre LARGE |New|", "medskip"}));
  // Without a document the commands only stand in the tree.
  EXPECT_EQ(ztest::PrintTexOf("\\title{X}\\maketitle"), "\\title{X}\\maketitle ");
}

TEST(DocumentLists, ControlsAndEvaluationsKeepReadingOrderOnce) {
  // a b on the upper line, c d on the lower one.
  TFmtCharacterNode a('a'), b('b'), c('c'), d('d'), e('e');
  At(&a, 0, 100);
  At(&b, 50, 100);
  At(&c, 0, 50);
  At(&d, 20, 50);
  At(&e, 0, 10);
  TFmtDocumentNode document;
  for (TFmtNode* node : {&c, &a, &d, &b, &e}) document.InsertInControlList(node);
  EXPECT_EQ(Nodes(document.Get_ControlList()), (std::vector<TFmtNode*>{&a, &b, &c, &d, &e}));
  document.InsertInControlList(&b);
  EXPECT_EQ(document.Get_ControlList().GetCount(), 5);
  document.RemoveFromControlList(&c);
  EXPECT_EQ(Nodes(document.Get_ControlList()), (std::vector<TFmtNode*>{&a, &b, &d, &e}));

  for (TFmtNode* node : {&e, &d, &c, &b, &a}) document.RegisterForEvaluation(node);
  EXPECT_EQ(Nodes(document.Get_EvaluationList()), (std::vector<TFmtNode*>{&a, &b, &c, &d, &e}));
  // Registered again after a walk moved it: still one entry, so that one
  // UnRegister leaves no pointer to it behind.
  At(&a, 0, 0);
  document.RegisterForEvaluation(&a);
  document.UnRegisterForEvaluation(&a);
  EXPECT_EQ(Nodes(document.Get_EvaluationList()), (std::vector<TFmtNode*>{&b, &c, &d, &e}));
}

TEST(DocumentLists, LocateControlStepsThroughReadingOrder) {
  TFmtCharacterNode a('a'), b('b'), c('c'), d('d');
  At(&a, 0, 100);
  At(&b, 50, 100);
  At(&c, 0, 50);
  At(&d, 20, 50);
  TFmtDocumentNode document;
  CPoint point(0, 200);
  EXPECT_EQ(document.LocateControl(1, point), nullptr);  // no controls
  for (TFmtNode* node : {&a, &b, &c, &d}) document.InsertInControlList(node);

  // Forward from above the page: the head; then each next one.
  const struct {
    int bForward;
    CPoint from;
    TFmtNode* answer;
  } cases[] = {
      {1, {0, 200}, &a}, {1, {0, 100}, &b}, {1, {10, 100}, &b}, {1, {50, 100}, &c}, {1, {0, 50}, &d},
      {1, {20, 50}, nullptr},  // nothing after the last
      {0, {0, 0}, &d},         // backward from below the page: the tail
      {0, {20, 50}, &c},       {0, {0, 50}, &b}, {0, {50, 100}, &a},
      {0, {0, 100}, nullptr},  // nothing before the first
  };
  for (const auto& k : cases) {
    SCOPED_TRACE(testing::Message() << (k.bForward ? "forward from " : "backward from ") << k.from.x << ","
                                    << k.from.y);
    CPoint p = k.from;
    EXPECT_EQ(document.LocateControl(k.bForward, p), k.answer);
    EXPECT_EQ(p, k.answer ? k.answer->m_Position : k.from);
  }
}

TEST(DocumentPages, APageFitsDownToThePrintableHeightBelowItsTop) {
  TFmtDocumentNode document;
  document.Set_PrintableArea(CSize(600, 1000));
  TFmtCharacterNode top('x');
  At(&top, 0, -500);
  auto* path = new CNodePath(&document);
  path->AddTail(&top);
  document.AddPage(path);
  ztest::TTestContext context;
  EXPECT_EQ(document.Get_PageTop(), -500);
  EXPECT_EQ(document.Get_PageCount(), 1);
  EXPECT_EQ(document.Get_Page(0, context), path);
  EXPECT_EQ(document.Get_Page(1, context), nullptr);
  // The page reaches down to -1500: a box from -600 of height 900 ends there.
  EXPECT_TRUE(document.FitsOnPage(-600, 900, context));
  EXPECT_FALSE(document.FitsOnPage(-600, 901, context));
  document.RemoveAllPages();
  EXPECT_EQ(document.Get_PageCount(), 0);
}

TEST(DocumentStorage, EachSliceDeletesOneChildThenItsEmptyList) {
  TFmtDocumentNode::DeleteDocumentStorage();
  TCountedNode::fg_nDeleted = 0;
  {
    TFmtDocumentNode first;
    first.AppendToBottom(new TCountedNode);
    first.AppendToBottom(new TCountedNode);
  }
  {
    TFmtDocumentNode second;
    second.AppendToBottom(new TCountedNode);
  }
  // Each body waits in the store, the first closed at the head.
  ASSERT_EQ(TFmtDocumentNode::Get_DocumentStorageCount(), 2);
  EXPECT_EQ(TCountedNode::fg_nDeleted, 0);
  const struct {
    int deleted, lists, more;
  } slices[] = {
      {1, 2, 1}, {2, 2, 1},  // the first body's two children, one at a time
      {2, 1, 1},             // then the empty body itself
      {3, 1, 1}, {3, 0, 0},  // the second body likewise; nothing remains
      {3, 0, 0},             // an empty store does nothing
  };
  for (const auto& s : slices) {
    const int more = TFmtDocumentNode::PartiallyDeleteDocumentStorage();
    EXPECT_EQ(TCountedNode::fg_nDeleted, s.deleted);
    EXPECT_EQ(TFmtDocumentNode::Get_DocumentStorageCount(), s.lists);
    EXPECT_EQ(more, s.more);
  }
  {
    TFmtDocumentNode third;
    third.AppendToBottom(new TCountedNode);
    third.AppendToBottom(new TCountedNode);
  }
  TFmtDocumentNode::DeleteDocumentStorage();
  EXPECT_EQ(TCountedNode::fg_nDeleted, 5);
  EXPECT_EQ(TFmtDocumentNode::Get_DocumentStorageCount(), 0);
}

class TemporaryDocuments : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"TMP", "TEMP"}) {
      const char* value = std::getenv(name);
      m_Saved.emplace_back(name, value ? std::optional<std::string>(value) : std::nullopt);
      unsetenv(name);
    }
    // Forget what other tests recorded, keeping their files.
    TFmtDocumentNode::SetSaveTemporaryDocuments(1);
    TFmtDocumentNode::DeleteTemporaryDocuments();
    TFmtDocumentNode::SetSaveTemporaryDocuments(0);
  }
  void TearDown() override {
    for (const auto& [name, value] : m_Saved) {
      if (value) setenv(name.c_str(), value->c_str(), 1);
      else unsetenv(name.c_str());
    }
    TFmtDocumentNode::SetSaveTemporaryDocuments(0);
  }
  static bool Exists(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0;
  }
  std::vector<std::pair<std::string, std::optional<std::string>>> m_Saved;
};

TEST_F(TemporaryDocuments, NamesComeFromTmpElseTempWithOneBackslash) {
  EXPECT_EQ(std::string(TFmtDocumentNode::MakeTemporaryFileName("a.tex")), "");
  EXPECT_EQ(TFmtDocumentNode::Get_TemporaryDocumentCount(), 0);
  setenv("TEMP", "C:\\temp\\", 1);
  EXPECT_EQ(std::string(TFmtDocumentNode::MakeTemporaryFileName("a.tex")), "C:\\temp\\a.tex");
  setenv("TMP", "/var/tmp", 1);
  EXPECT_EQ(std::string(TFmtDocumentNode::MakeTemporaryFileName("b.tex")), "/var/tmp\\b.tex");
  EXPECT_EQ(TFmtDocumentNode::Get_TemporaryDocumentCount(), 2);
}

TEST_F(TemporaryDocuments, FilesGoAtExitUnlessTheyAreKept) {
  const std::string directory = ztest::MakeTempDir("tmpdocs");
  // The backslash joins: "<dir>/p" and "x.tex" name "<dir>/p\x.tex".
  setenv("TMP", (directory + "/p").c_str(), 1);
  const std::string gone = std::string(TFmtDocumentNode::MakeTemporaryFileName("x.tex"));
  ASSERT_EQ(gone, directory + "/p\\x.tex");
  ASSERT_TRUE(ztest::WriteFile(gone, "x"));
  TFmtDocumentNode::DeleteTemporaryDocuments();
  EXPECT_FALSE(Exists(gone));
  EXPECT_EQ(TFmtDocumentNode::Get_TemporaryDocumentCount(), 0);

  const std::string kept = std::string(TFmtDocumentNode::MakeTemporaryFileName("y.tex"));
  ASSERT_TRUE(ztest::WriteFile(kept, "y"));
  TFmtDocumentNode::SetSaveTemporaryDocuments(1);
  TFmtDocumentNode::DeleteTemporaryDocuments();
  EXPECT_TRUE(Exists(kept));
  std::remove(kept.c_str());
  rmdir(directory.c_str());
}
}  // namespace
