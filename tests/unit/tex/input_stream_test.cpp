#include "tex/input_stream.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "support/paths.h"

namespace {
// Everything the stack delivers, read to the end.
std::string ReadAll(TInputStack& stack) {
  std::string out;
  char c;
  while (stack.GetCharacter(c)) out += c;
  return out;
}

FILE* FileWith(const std::string& bytes) {
  std::string path = ztest::MakeTempDir("input") + "/in.tex";
  EXPECT_TRUE(ztest::WriteFile(path, bytes));
  return std::fopen(path.c_str(), "r");
}
}  // namespace

TEST(InputStreamLineEndings, CarriageReturnsVanishWhole) {
  const struct {
    const char* in;
    const char* out;
    int lines;  // newlines delivered
  } cases[] = {
      {"a\r\nb", "a\nb", 1},
      {"\r", "", 0},
      {"a\rb", "ab", 0},  // a lone \r is not a line break
      {"\r\r\r\n\n", "\n\n", 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.in);
    TInputStack stack;
    stack.InsertStream(new TStringInputStream(c.in, "s"));
    EXPECT_EQ(ReadAll(stack), c.out);
    EXPECT_EQ(stack.GetLineCount(), c.lines);
    EXPECT_EQ(stack.GetCharacterCount(), static_cast<int>(std::string(c.out).size()));
  }
}

TEST(InputStreamNesting, InsertedStreamIsReadThroughThenTheOuterResumes) {
  TInputStack stack;
  stack.InsertStream(new TStringInputStream("ab\ncd", "outer"));
  char c;
  ASSERT_TRUE(stack.GetCharacter(c));  // 'a'
  ASSERT_TRUE(stack.GetCharacter(c));  // 'b'
  stack.InsertStream(new TStringInputStream("XY\nZ", "inner"));
  EXPECT_STREQ(stack.GetSourceName(), "inner");
  std::string got;
  for (int i = 0; i < 4; ++i) {
    ASSERT_TRUE(stack.GetCharacter(c));
    got += c;
  }
  EXPECT_EQ(got, "XY\nZ");
  EXPECT_EQ(stack.GetLineNumber(), 2);  // the inner stream's second line
  // The inner stream ends on the next read, which already comes from the outer.
  ASSERT_TRUE(stack.GetCharacter(c));
  EXPECT_EQ(c, '\n');
  EXPECT_STREQ(stack.GetSourceName(), "outer");
  EXPECT_EQ(ReadAll(stack), "cd");
}

TEST(InputStreamEnd, AfterTheLastStreamTheFallbackNameAndEndLine) {
  TInputStack unnamed;
  unnamed.InsertStream(new TStringInputStream("x", "doc.tex"));
  EXPECT_STREQ(unnamed.GetSourceName(), "doc.tex");
  EXPECT_EQ(ReadAll(unnamed), "x");
  EXPECT_EQ(unnamed.GetLastCharacter(), 0);
  EXPECT_EQ(unnamed.GetLineNumber(), 0x7FFFFFFF);
  EXPECT_STREQ(unnamed.GetSourceName(), "<unknown>");

  TInputStack named;
  named.SetSourceName("fallback");  // no stream open: sets the fallback
  named.SetSourceName("second");    // only while it is still empty
  EXPECT_STREQ(named.GetSourceName(), "fallback");
  named.InsertStream(new TStringInputStream("", "empty"));
  char c;
  EXPECT_FALSE(named.GetCharacter(c));
  EXPECT_STREQ(named.GetSourceName(), "fallback");
  named.PutBackCharacter();  // nothing was read: the end stays the end
  EXPECT_FALSE(named.GetCharacter(c));
}

TEST(InputStreamPutBack, GivesTheSameCharacterWithEqualCounts) {
  TInputStack stack;
  stack.InsertStream(new TStringInputStream("a\nb", "s"));
  char c;
  stack.GetCharacter(c);
  ASSERT_TRUE(stack.GetCharacter(c));
  ASSERT_EQ(c, '\n');
  int count = stack.GetCharacterCount(), lines = stack.GetLineCount();
  stack.PutBackCharacter();
  EXPECT_EQ(stack.GetCharacterCount(), count - 1);
  EXPECT_EQ(stack.GetLineCount(), lines - 1);
  ASSERT_TRUE(stack.GetCharacter(c));
  EXPECT_EQ(c, '\n');
  EXPECT_EQ(stack.GetCharacterCount(), count);
  EXPECT_EQ(stack.GetLineCount(), lines);

  EXPECT_EQ(stack.IsCharacter('x'), 0);  // 'b' goes back
  EXPECT_EQ(stack.IsCharacter('b'), 1);
  EXPECT_EQ(stack.IsCharacter('b'), 0);  // end of input
}

TEST(InputStreamTokens, CollectionLeavesTheEndingCharacterUnlessKept) {
  TInputStack stack;
  stack.InsertStream(new TStringInputStream("word rest", "s"));
  char c;
  stack.GetCharacter(c);  // 'w' read before the token starts
  stack.StartToken(1);
  while (stack.GetCharacter(c) && c != ' ') {
  }
  EXPECT_STREQ(stack.FinishToken(0), "word");
  ASSERT_TRUE(stack.GetCharacter(c));
  EXPECT_EQ(c, ' ');  // the blank went back

  // Verbatim's end test: the collected text ends with the closing text.
  stack.StartToken(0);
  while (stack.GetCharacter(c) && !stack.FindString("st")) {
  }
  EXPECT_NE(stack.FindString("st"), nullptr);
  EXPECT_EQ(stack.FindString("xx"), nullptr);
  EXPECT_STREQ(stack.FinishToken(1), "rest");
}

TEST(InputStreamTokens, AWordLongerThanAnyFixedBufferIsCollectedWhole) {
  std::string word(100000, 'w');
  TInputStack stack;
  stack.InsertStream(new TStringInputStream((word + " ").c_str(), "s"));
  char c;
  stack.StartToken(0);
  while (stack.GetCharacter(c) && c != ' ') {
  }
  EXPECT_EQ(std::string(stack.FinishToken(0)), word);
}

TEST(InputStreamFiles, AFileLargerThanTheBufferReadsAcrossItsBoundary) {
  // 4095 bytes, then "\r\n" straddling the 4096-byte buffer edge, then more.
  std::string bytes(4095, 'x');
  bytes += "\r\nyz";
  TInputStack stack;
  stack.InsertStream(new TFileInputStream(FileWith(bytes), "big.tex"));
  EXPECT_EQ(stack.GetCharacterTotal(), 4099);
  std::string got = ReadAll(stack);
  EXPECT_EQ(got, std::string(4095, 'x') + "\nyz");
  // The carriage return was expected but never delivered: the total is corrected.
  EXPECT_EQ(stack.GetCharacterTotal(), 4098);
  EXPECT_EQ(stack.GetLineCount(), 1);

  TInputStack unreadable;
  unreadable.InsertStream(new TFileInputStream(nullptr, "missing.tex"));
  EXPECT_EQ(ReadAll(unreadable), "");
}

TEST(InputStreamFiles, NulBytesDoNotEndTheInput) {
  TInputStack stack;
  stack.InsertStream(new TStringInputStream(std::string("a\0b", 3).c_str(), 3, "s"));
  EXPECT_EQ(ReadAll(stack), "ab");
}
