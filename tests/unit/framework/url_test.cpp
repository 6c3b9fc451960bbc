// URL parsing, merging and comparison: the text rules by which an included
// file is found beside the document that names it.
#include "framework/url.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "support/paths.h"

namespace {
CString Merged(const char* base, const char* relative) {
  int ok = 0;
  CString result = MergeUrls(base, relative, ok);
  EXPECT_EQ(ok, 1);
  return result;
}
}  // namespace

TEST(Url, PartsOfAUrl) {
  TUrl url("http://h/p/q/f.tex#s?q");
  EXPECT_EQ(url.Get_Scheme(), "http");
  EXPECT_EQ(url.Get_Host(), "h");
  EXPECT_EQ(url.Get_Path(), "p/q");  // no leading "/" behind a host
  EXPECT_EQ(url.Get_FileName(), "f.tex");
  EXPECT_EQ(url.Get_Fragment(), "s");
  EXPECT_EQ(url.Get_Query(), "q");
  EXPECT_EQ(static_cast<CString>(url), "http://h/p/q/f.tex#s?q");

  TUrl file("file:///home/u/doc.tex");
  EXPECT_EQ(file.Get_Scheme(), "file");
  EXPECT_EQ(file.Get_Path(), "/home/u");
  EXPECT_EQ(static_cast<CString>(file), "file:/home/u/doc.tex");

  // A drive in a two-slash file URL becomes the path form with "|".
  TUrl drive("file://c:\\dir\\x.tex");
  EXPECT_EQ(drive.Get_Path(), "/c|/dir");
  EXPECT_EQ(drive.Get_FileName(), "x.tex");

  // An address keeps its "?" and "#".
  TUrl mail("mailto:bob@example.org?subject=hi#x");
  EXPECT_EQ(mail.Get_Scheme(), "mailto");
  EXPECT_EQ(mail.Get_FileName(), "bob@example.org?subject=hi#x");
  EXPECT_EQ(static_cast<CString>(mail), "mailto:bob@example.org?subject=hi#x");

  TUrl plain("dir\\sub%20one\\f%7C.tex");
  EXPECT_EQ(plain.Get_Scheme(), "");
  EXPECT_EQ(plain.Get_Path(), "dir/sub one");
  EXPECT_EQ(plain.Get_FileName(), "f|.tex");
}

TEST(Url, PathsSimplify) {
  EXPECT_EQ(TUrl("a/../b.tex").Get_Path(), "");
  EXPECT_EQ(TUrl("a/../b.tex").Get_FileName(), "b.tex");
  EXPECT_EQ(TUrl("a/./b//c/../../d/f").Get_Path(), "a/d");
  EXPECT_EQ(TUrl("../../x/f").Get_Path(), "../../x");  // nothing to fold into
  EXPECT_EQ(TUrl("/a/b/../../../f").Get_Path(), "/..");
}

TEST(Url, MergingAgainstABase) {
  EXPECT_EQ(Merged("/d/e/main.tex", "../x.tex"), "/d/x.tex");
  EXPECT_EQ(Merged("file:///home/u/doc.tex", "fig/a.tex"), "file:/home/u/fig/a.tex");
  EXPECT_EQ(Merged("http://h/a/b.tex#s?q", "c.tex"), "http://h/a/c.tex");  // the base's own parts stay behind
  EXPECT_EQ(Merged("http://h/a/b.tex", "ftp://g/c.tex"), "ftp://g/c.tex");
  // Without a scheme a name is relative, even with a leading "/" or a host in it.
  EXPECT_EQ(Merged("/d/e/main.tex", "/abs/x.tex"), "/d/e/abs/x.tex");
  EXPECT_EQ(Merged("http://h/p/doc.tex", "www.example.org/a.tex"), "http://h/p/www.example.org/a.tex");
  EXPECT_EQ(Merged("", "x.tex"), "x.tex");
  EXPECT_EQ(Merged("http://h/doc.tex", "x.tex"), "http://h/x.tex");
}

TEST(Url, Comparisons) {
  EXPECT_TRUE(UrlEqual("file://c:/x", "FILE:///c|/x"));
  EXPECT_TRUE(UrlEqual("file:///a\\b", "file:///a/b"));
  EXPECT_FALSE(UrlEqual("a%20b", "a b"));  // the free normaliser leaves escapes alone
  EXPECT_FALSE(UrlEqual(nullptr, "x"));
  EXPECT_FALSE(UrlEqual("x", nullptr));

  EXPECT_TRUE(TUrl("HTTP://H/P/F.TEX#S") == TUrl("http://h/p/f.tex#s"));
  EXPECT_FALSE(TUrl("http://h/f?Q") == TUrl("http://h/f?q"));  // the query is exact
}

TEST(Url, LocalFiles) {
  EXPECT_EQ(FileUrlToFile("FILE:/x/y.tex"), "/x/y.tex");
  std::string dir = ztest::MakeTempDir("url");
  ASSERT_TRUE(ztest::WriteFile(dir + "/there.tex", "x"));
  EXPECT_TRUE(FileExists((dir + "/there.tex").c_str()));
  EXPECT_FALSE(FileExists((dir + "/absent.tex").c_str()));
  EXPECT_FALSE(FileExists(nullptr));
  std::remove((dir + "/there.tex").c_str());
  std::remove(dir.c_str());
}
