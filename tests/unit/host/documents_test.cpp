// Documents without a window or a browser: the server's list of instances,
// the bookkeeping of requested files, the application's registry and file
// cache, and the records the host fills.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "format/document_node.h"
#include "framework/async_doc.h"
#include "host/np_doc.h"
#include "host/np_view.h"
#include "host/np_zephrin_app.h"
#include "host/zr_document.h"
#include "host/zr_server.h"
#include "support/host_shim.h"
#include "support/paths.h"
#include "support/tex_tokens.h"
#include "tex/input_file_loader.h"

namespace {
// A user that records what it was given.
class TRecordingUser : public AsynchronousDocumentUser {
 public:
  void FileIsReady(const char* localName, CWnd* window) override {
    AsynchronousDocumentUser::FileIsReady(localName, window);
    ++calls;
    last = localName ? localName : "(null)";
  }
  int calls = 0;
  std::string last;
};

class Documents : public ztest::TokenSourceTest {
 protected:
  void SetUp() override {
    ztest::TokenSourceTest::SetUp();
    dir = ztest::ScratchDir("docs");
    ASSERT_TRUE(ztest::WriteFile(dir + "/registry", ""));
    ASSERT_EQ(AfxGetApp()->InitializeRegistry((dir + "/registry").c_str()), 1);
    AfxGetApp()->SetRegistryKey("Corvane");
    CInputFileLoader::Set_Global(AfxGetApp());
  }
  void TearDown() override {
    CInputFileLoader::Set_Global(nullptr);
    ztest::TokenSourceTest::TearDown();
  }
  std::string dir;
};
}  // namespace

TEST(DocumentList, NewestFirstAndDeleteTakesTheNewest) {
  DList list;
  ZRDocument a, b, c;
  list.Insert(&a, 5);
  list.Insert(&b, 6);
  list.Insert(&c, 5);
  EXPECT_EQ(list.Find(5)->GetDocument(), &c);
  list.Delete(5);
  EXPECT_EQ(list.Find(5)->GetDocument(), &a);
  list.Delete(6);
  list.Delete(6);  // gone already: nothing happens
  EXPECT_EQ(list.Find(6), nullptr);
  EXPECT_EQ(list.Count(), 1);
}

TEST(LinkRecords, StatusOf999CharactersGoesAsItIsAndOf1000AsReady) {
  zlink::TTextRecord record;
  std::string text999(999, 's');
  ZRServer::FillStatus(&record, 9, text999.c_str());
  EXPECT_EQ(std::string(record.text), text999);
  EXPECT_EQ(record.type, 140u);
  EXPECT_EQ(record.length, 1020u);
  EXPECT_EQ(record.id, 9);
  EXPECT_EQ(record.zero, 0u);
  EXPECT_EQ(record.sentinel, 140u);
  ZRServer::FillStatus(&record, 9, std::string(1000, 's').c_str());
  EXPECT_STREQ(record.text, "Ready");
}

TEST(LinkRecords, DocumentTextIsCutTo999Characters) {
  zlink::TTextRecord record;
  std::string long1001(1001, 't');
  ZRServer::FillDocumentText(&record, long1001.c_str());
  EXPECT_EQ(std::strlen(record.text), 999u);
  EXPECT_EQ(record.type, 70u);
  EXPECT_EQ(record.sentinel, 70u);
  ZRServer::FillDocumentText(&record, "short");
  EXPECT_STREQ(record.text, "short");
}

TEST_F(Documents, TheNewestUserOfAUrlTakesTheFileAndOnlyOnce) {
  ZRDocument instance;
  CZephrinPlugInDoc document(&instance, 2);
  instance.SetState(1, nullptr, &document, 0);
  TRecordingUser older, newer, other;
  document.RequestUrl("http://h/a.gif", &older);
  document.RequestUrl("http://h/b.gif", &other);
  document.RequestUrl("http://h/a.gif", &newer);
  EXPECT_EQ(document.NotifyUrlUser("HTTP://H/A.GIF", "/tmp/one"), 1);
  EXPECT_EQ(newer.calls, 1);
  EXPECT_EQ(newer.last, "/tmp/one");
  EXPECT_EQ(older.calls, 0);
  EXPECT_EQ(document.NotifyUrlUser("http://h/a.gif", "/tmp/two"), 1);
  EXPECT_EQ(older.last, "/tmp/two");
  // Nobody waits any more: the file would be the document's own.
  EXPECT_EQ(document.NotifyUrlUser("http://h/a.gif", "/tmp/three"), 0);
  EXPECT_EQ(document.Get_RequestCount(), 1);
}

TEST_F(Documents, ALocalFileIsAnsweredAtOnceAndOnlyOneRequestPerUser) {
  ASSERT_TRUE(ztest::WriteFile(dir + "/pic.gif", "GIF"));
  TFmtDocumentNode node;
  node.Set_DocumentSource(("file:" + dir + "/doc.tex").c_str());
  TRecordingUser user;
  user.RequestFile("pic.gif", &node, nullptr);
  EXPECT_EQ(user.calls, 1);
  EXPECT_EQ(user.last, dir + "/pic.gif");
  EXPECT_TRUE(user.IsFileReady());
  user.RequestFile("other.gif", &node, nullptr);
  EXPECT_EQ(user.calls, 1);

  // A missing local file reports an empty name: the user stays requested.
  TRecordingUser missing;
  missing.RequestFile("none.gif", &node, nullptr);
  EXPECT_EQ(missing.last, "");
  EXPECT_FALSE(missing.IsFileReady());
  EXPECT_TRUE(missing.HasFileBeenRequested());
}

TEST_F(Documents, RegistryOfDocumentsAndInlineNames) {
  CNpZephrinApp* app = AfxGetApp();
  size_t before = app->GetDocumentList().size();
  ZRDocument i1, i2;
  {
    CZephrinPlugInDoc first(&i1, 2), second(&i2, 1);
    first.Set_InlineName("fig");
    second.Set_InlineName("fig");
    EXPECT_EQ(app->GetDocumentList().size(), before + 2);
    EXPECT_EQ(app->GetDocumentFromInlineName("fig"), &second);  // newest first
    EXPECT_EQ(app->GetDocumentFromInlineName("nothing"), nullptr);
    CZephrinPlugInDoc unregistered;
    EXPECT_EQ(app->GetDocumentList().size(), before + 2);
  }
  EXPECT_EQ(app->GetDocumentList().size(), before);
}

TEST_F(Documents, InlineTexIsTrimmedAndBlanksCountAsNone) {
  ZRDocument instance;
  CZephrinPlugInDoc document(&instance, 2);
  document.Set_InlineTexData("  \n  ");
  EXPECT_EQ(document.LoadDocument(), 0);
  document.Set_InlineTexData("  x y  ");
  EXPECT_EQ(std::string(document.Get_InlineTexData()), "x y");
  EXPECT_EQ(document.LoadDocument(), 1);
  EXPECT_EQ(document.Get_InLoad(), 0);
}

TEST_F(Documents, AFileHasPriorityOverInlineTexAndAMissingFileStaysLoaded) {
  ZRDocument instance;
  CZephrinPlugInDoc document(&instance, 2);
  instance.SetState(1, nullptr, &document, 0);
  document.Set_InlineTexData("inline");
  document.Set_FileName((dir + "/absent.tex").c_str());
  AfxGetApp()->Set_CurrentUrl("marker");
  // Not there: loaded all the same, so that a blank window is not retried.
  EXPECT_EQ(document.LoadDocument(), 1);
  // The file path was taken (and left before the load's base URL was set).
  EXPECT_EQ(std::string(AfxGetApp()->Get_CurrentUrl()), "marker");
}

TEST_F(Documents, InputOfALocalFileLoadsTwiceThenComesFromTheCache) {
  ASSERT_TRUE(ztest::WriteFile(dir + "/main.tex", "a \\input{part.tex} b\n"));
  ASSERT_TRUE(ztest::WriteFile(dir + "/part.tex", "inside\n"));
  ZRDocument instance;
  CZephrinPlugInDoc document(&instance, 2);
  instance.SetState(1, nullptr, &document, 0);
  std::string url = "file:" + dir + "/main.tex";
  document.Set_Url(url.c_str());
  document.Set_FileName((dir + "/main.tex").c_str());
  // The first load finds the file only through the request, which clears
  // the loaded flag: the next paint loads again.
  EXPECT_EQ(document.LoadDocument(), 0);
  std::string part = "file:" + dir + "/part.tex";
  EXPECT_EQ(std::string(AfxGetApp()->Get_LocalInputFileName(part.c_str())), dir + "/part.tex");
  EXPECT_EQ(document.LoadDocument(), 1);
  CString text;
  EXPECT_EQ(AfxGetApp()->LoadStringFromUrl(part.c_str(), text, 1, document.Get_DocumentNode()), 1);
  EXPECT_EQ(std::string(text), "inside\n");
  // A cached file that has gone is dropped from the map and asked for anew.
  ASSERT_EQ(std::remove((dir + "/part.tex").c_str()), 0);
  AfxGetApp()->Set_LocalInputFileName("http://h/x.tex", (dir + "/part.tex").c_str());
  EXPECT_EQ(AfxGetApp()->LoadStringFromUrl("http://h/x.tex", text, 1, nullptr), 0);
  EXPECT_EQ(std::string(AfxGetApp()->Get_LocalInputFileName("http://h/x.tex")), "");
  AfxGetApp()->Set_LocalInputFileName("http://h/y.tex", "");
  EXPECT_EQ(std::string(AfxGetApp()->Get_LocalInputFileName("http://h/y.tex")), "");
}

TEST_F(Documents, TheBookmarkLivesInTheProfileStore) {
  CNpZephrinApp* app = AfxGetApp();
  app->Set_MostRecentlyRequestedUrl("file:/d/next.tex", "sec2");
  EXPECT_EQ(std::string(app->Get_MostRecentlyRequestedUrl()), "file:/d/next.tex");
  const char* label = app->Get_MostRecentlyRequestedUrlLabel();
  ASSERT_NE(label, nullptr);
  EXPECT_STREQ(label, "sec2");
  EXPECT_EQ(label, app->Get_MostRecentlyRequestedUrlLabel()) << "the label is interned";
  // A fresh store on the same file sees it: it outlives the instance.
  CWinApp fresh;
  ASSERT_EQ(fresh.InitializeRegistry((dir + "/registry").c_str()), 1);
  fresh.SetRegistryKey("Corvane");
  EXPECT_EQ(std::string(fresh.GetProfileString("Bookmark", "URL", "")), "file:/d/next.tex");
  app->Set_MostRecentlyRequestedUrl(nullptr, nullptr);
  EXPECT_EQ(std::string(app->Get_MostRecentlyRequestedUrl()), "");
  EXPECT_EQ(app->Get_MostRecentlyRequestedUrlLabel(), nullptr);
}

TEST_F(Documents, ARelativeLinkIsResolvedAndBookmarkedWithItsLabel) {
  ZRDocument instance;
  CZephrinPlugInDoc document(&instance, 2);
  instance.SetState(1, nullptr, &document, 0);
  document.Set_Url("http://h/a/b/doc.tex");
  CZephrinPlugInView* view = new CZephrinPlugInView;  // the document owns it
  document.Set_Window(view);
  int ok = -1;
  EXPECT_EQ(view->LoadRelativeFile("../c/next.tex#s", ok, "sec", nullptr), 1);
  EXPECT_EQ(std::string(AfxGetApp()->Get_MostRecentlyRequestedUrl()), "http://h/a/c/next.tex#s");
  EXPECT_STREQ(AfxGetApp()->Get_MostRecentlyRequestedUrlLabel(), "sec");
  EXPECT_EQ(view->LoadRelativeFile("", ok, nullptr, nullptr), 0);

  CZephrinPlugInDoc orphan;  // no instance: nothing to ask
  CZephrinPlugInView* lone = new CZephrinPlugInView;
  orphan.Set_Window(lone);
  EXPECT_EQ(lone->LoadRelativeFile("x.tex", ok, nullptr, nullptr), 0);
}

TEST(NavigatorVersion, PrefixesAgreeUpToTheShorter) {
  CNpZephrinApp& app = *AfxGetApp();
  app.SetNavigatorVersionForTest("");
  EXPECT_EQ(app.IsNavigatorVersion("4"), 0);
  app.SetNavigatorVersionForTest("4.76 [en]");
  EXPECT_EQ(app.IsNavigatorVersion("4.7"), 1);
  EXPECT_EQ(app.IsNavigatorVersion("4.76 [en] (X11)"), 1);
  EXPECT_EQ(app.IsNavigatorVersion("3"), 0);
  EXPECT_EQ(app.IsNavigatorVersion(""), 1);
  EXPECT_EQ(app.IsNavigatorVersion(nullptr), 0);
  app.SetNavigatorVersionForTest("");
}
