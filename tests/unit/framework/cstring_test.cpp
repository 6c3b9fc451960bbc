#include "framework/cstring.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

TEST(CStringSlices, CountsAreCappedAtTheText) {
  CString s("zephrin");
  EXPECT_EQ(s.Left(99), "zephrin");
  EXPECT_EQ(s.Left(3), "zep");
  EXPECT_EQ(s.Left(-2), "");
  EXPECT_EQ(s.Right(4), "hrin");
  EXPECT_EQ(s.Right(99), "zephrin");
  EXPECT_EQ(s.Mid(4), "rin");
  EXPECT_EQ(s.Mid(2, 3), "phr");
  EXPECT_EQ(s.Mid(5, 99), "in");
  EXPECT_EQ(s.Mid(99), "");
}

TEST(CStringSearch, FindsFirstAndLastOrMinusOne) {
  EXPECT_EQ(CString().Find('a'), -1);
  EXPECT_EQ(CString().Find("a"), -1);
  EXPECT_EQ(CString().ReverseFind('a'), -1);
  CString path("/a/b/c.tex");
  EXPECT_EQ(path.Find('/'), 0);
  EXPECT_EQ(path.ReverseFind('/'), 4);
  EXPECT_EQ(path.Find("b/"), 3);
  EXPECT_EQ(path.Find("tex"), 7);
  EXPECT_EQ(path.Find("x/"), -1);
}

TEST(CStringCompare, CaseRulesAndOrdering) {
  CString s("Begin");
  EXPECT_EQ(s.Compare("Begin"), 0);
  EXPECT_LT(s.Compare("begin"), 0);  // 'B' < 'b' in strcmp
  EXPECT_EQ(s.CompareNoCase("BEGIN"), 0);
  EXPECT_TRUE(s == "Begin");
  EXPECT_TRUE(s != "begin");
  EXPECT_TRUE(CString("abc") < CString("abd"));
  EXPECT_TRUE(CString("b") > "a");
}

TEST(CStringEdit, TrimCaseAppendAndRepeat) {
  CString s(" \t\r\n x y \n");
  s.TrimLeft();
  EXPECT_EQ(s, "x y \n");
  s.TrimRight();
  EXPECT_EQ(s, "x y");
  CString blanks(" \t\n\r");
  blanks.TrimRight();
  EXPECT_TRUE(blanks.IsEmpty());
  CString more(" \t");
  more.TrimLeft();
  EXPECT_TRUE(more.IsEmpty());

  CString mixed("MiXeD 1\xC3");
  mixed.MakeLower();
  EXPECT_EQ(mixed, "mixed 1\xC3");  // bytes above 127 are left alone
  mixed.MakeUpper();
  EXPECT_EQ(mixed, "MIXED 1\xC3");

  CString built;
  built += CString("ab");
  built += "cd";
  built += 'e';
  EXPECT_EQ(built, "abcde");
  EXPECT_EQ(built.GetLength(), 5);
  EXPECT_EQ(CString('-', 4), "----");
  built.Empty();
  EXPECT_TRUE(built.IsEmpty());
}

TEST(CStringAccess, IndexOutsideTheTextThrows) {
  CString s("ab");
  EXPECT_EQ(s[1], 'b');
  EXPECT_THROW(s.GetAt(2), std::out_of_range);
  EXPECT_THROW(s.GetAt(-1), std::out_of_range);
  EXPECT_THROW(s.SetAt(5, 'x'), std::out_of_range);
}

TEST(CStringResources, UnknownIdsReadNoStringUntilATableIsInstalled) {
  CString s("old");
  EXPECT_EQ(s.LoadString(60002), 1);
  EXPECT_EQ(s, "NO STRING");

  CString::SetStringResourceLookup([](unsigned id) -> const char* { return id == 7 ? "seven %d" : nullptr; });
  EXPECT_EQ(s.LoadString(7), 1);
  EXPECT_EQ(s, "seven %d");
  EXPECT_EQ(s.LoadString(8), 1);
  EXPECT_EQ(s, "NO STRING");
  s.Format(7u, 42);
  EXPECT_EQ(s, "seven 42");
  CString::SetStringResourceLookup(nullptr);
}

TEST(CStringFormat, ResultLongerThanTheBufferIsCutNotOverrun) {
  CString s;
  s.Format("%s=%d", "x", 3);
  EXPECT_EQ(s, "x=3");

  std::string big(3 * CString::kFormatBufferSize, 'q');
  s.Format("<%s>", big.c_str());  // the sanitizer build would catch an overrun here
  ASSERT_EQ(s.GetLength(), static_cast<int>(CString::kFormatBufferSize - 1));
  EXPECT_EQ(s[0], '<');
  EXPECT_EQ(s[s.GetLength() - 1], 'q');
}
