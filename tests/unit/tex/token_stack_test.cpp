#include "tex/token_stack.h"

#include <gtest/gtest.h>

#include <string>

#include "symbols/string_pool.h"

namespace {
class TokenStackTest : public testing::Test {
 protected:
  void SetUp() override { TStringPool::InitializeGlobal(); }
  void TearDown() override { TStringPool::FreeGlobal(); }
  static const char* Name(const char* text) { return TStringPool::g_pGlobal->Put(text); }
  static TTexToken* Word(const char* text) { return new TTexSequenceToken(Name(text)); }
  // Reads the rest of the stack as printed TeX, skipping each token.
  static std::string Drain(TTexTokenStack& stack) {
    CString out;
    int column = 0;
    while (TTexToken* t = stack.NextToken()) {
      t->PrintTex(out, column);
      stack.SkipCurrentToken();
    }
    return out.c_str();
  }
};
}  // namespace

TEST_F(TokenStackTest, TokenQueriesAndPrinting) {
  TTexSequenceToken p0(Name("#0")), p1(Name("#1")), p12(Name("#12")), hash(Name("#"));
  EXPECT_EQ(p0.IsTexParameter(), -1);
  EXPECT_EQ(p1.IsTexParameter(), 1);
  EXPECT_EQ(p12.IsTexParameter(), -1);
  EXPECT_EQ(hash.IsTexParameter(), -1);

  TTexControlCharacterToken newline('\n'), tab('\t'), comma(',');
  EXPECT_EQ(newline.GetControlCharacter(), ' ');
  EXPECT_EQ(tab.GetControlCharacter(), ' ');
  EXPECT_EQ(comma.GetControlSequence(), Name(","));  // looks up like a control sequence

  TTexControlSequenceToken alpha(Name("alpha"));
  EXPECT_TRUE(alpha.IsControlSequence(Name("alpha")));
  EXPECT_TRUE(alpha.IsControlSequence(nullptr));  // any
  char copy[] = "alpha";
  EXPECT_FALSE(alpha.IsControlSequence(copy));  // pointers, not texts

  TTexMacroArgToken arg(3, Name("foo"));
  EXPECT_EQ(arg.IsTexParameter(), 3);
  EXPECT_EQ(arg.IsTexMacroArg(), &arg);
  EXPECT_EQ(arg.GetMacroName(), Name("foo"));

  CString out;
  int column = 0;
  TTexCharacterToken brace('{');
  for (const TTexToken* t : {static_cast<const TTexToken*>(&alpha), static_cast<const TTexToken*>(&brace),
                             static_cast<const TTexToken*>(&comma), static_cast<const TTexToken*>(&arg)})
    t->PrintTex(out, column);
  EXPECT_EQ(out, "\\alpha {\\,#3");
  EXPECT_EQ(column, 7 + 1 + 2 + 2);
}

TEST_F(TokenStackTest, PutBackIsLastInFirstOutAndListsReadThroughFirst) {
  TTexTokenStack stack;
  stack.PutBackToken(Word("a"));
  stack.PutBackToken(Word("b"));
  EXPECT_EQ(Drain(stack), "ba");

  // A list put back on top of a token is read through before the token.
  CObList body;
  TTexSequenceToken x(Name("x")), y(Name("y"));
  body.AddTail(&x);
  body.AddTail(&y);
  stack.PutBackToken(Word("after"));
  stack.PutBackList(&body);
  stack.PutBackToken(Word("first"));
  EXPECT_EQ(Drain(stack), "firstxyafter");
  EXPECT_TRUE(stack.IsEmpty());
  EXPECT_EQ(body.GetCount(), 2);
}

TEST_F(TokenStackTest, UseCurrentTokenCopiesFromAMacroBodyAndLeavesTheBodyAlone) {
  CObList body;
  TTexSequenceToken word(Name("word"));
  body.AddTail(&word);
  TTexTokenStack stack;
  stack.PutBackList(&body);
  ASSERT_EQ(stack.NextToken(), &word);
  EXPECT_FALSE(stack.IsCurrentTokenOwned());
  TTexToken* mine = stack.UseCurrentToken();
  ASSERT_NE(mine, &word);  // a copy: the body keeps its token
  EXPECT_EQ(mine->GetSequence(), Name("word"));
  delete mine;
  stack.SkipCurrentToken();  // borrowed: must not delete the body's token
  EXPECT_EQ(body.GetHead(), &word);

  // An owned token is handed over as it is.
  TTexToken* owned = Word("own");
  stack.PutBackToken(owned);
  ASSERT_EQ(stack.NextToken(), owned);
  EXPECT_EQ(stack.UseCurrentToken(), owned);
  // The caller owns it now: putting it back gives it back, it is not copied.
  stack.PutBackToken(owned);
  EXPECT_EQ(stack.NextToken(), owned);
  EXPECT_TRUE(stack.IsCurrentTokenOwned());
  stack.SkipCurrentToken();

  // Putting back a borrowed current token puts back a copy.
  stack.PutBackList(&body);
  stack.NextToken();
  stack.PutBackToken(stack.GetCurrentToken());
  TTexToken* again = stack.NextToken();
  EXPECT_NE(again, &word);
  EXPECT_TRUE(stack.IsCurrentTokenOwned());
  stack.SkipCurrentToken();
}

TEST_F(TokenStackTest, RecordingNeverMixesOwnedAndBorrowedTokens) {
  CObList body;
  TTexSequenceToken fromBody(Name("m"));
  body.AddTail(&fromBody);

  TTexTokenStack stack;
  // Read order: a file token "f1", then the macro body "m", then "f2" and "}".
  stack.PutBackToken(Word("}"));
  stack.PutBackToken(Word("f2"));
  stack.PutBackList(&body);
  stack.PutBackToken(Word("f1"));

  stack.StartTokenStream(0);
  stack.NextToken();  // f1: owned, recorded as it is
  stack.NextToken();  // m: borrowed, the record owns: a copy is recorded
  stack.NextToken();  // f2
  ASSERT_TRUE(stack.NextToken()->IsSequence(Name("}")));
  EXPECT_EQ(stack.GetRecordCount(), 4u);
  TTexTokenStream* argument = stack.FinishTokenStream(0);  // "}" is not part of it
  ASSERT_NE(argument, nullptr);
  EXPECT_TRUE(argument->OwnsTokens());
  EXPECT_TRUE(stack.GetCurrentToken()->IsSequence(Name("}")));
  EXPECT_TRUE(stack.IsCurrentTokenOwned());
  stack.SkipCurrentToken();

  std::string replay;
  while (TTexToken* t = argument->NextToken()) {
    EXPECT_NE(t, &fromBody);
    replay += t->GetSequence();
    delete t;
  }
  EXPECT_EQ(replay, "f1mf2");
  delete argument;
  EXPECT_EQ(body.GetHead(), &fromBody);
}

TEST_F(TokenStackTest, RecordingBorrowedTokensThenAnOwnedOneCopiesTheRecord) {
  CObList body;
  TTexSequenceToken a(Name("a")), b(Name("b"));
  body.AddTail(&a);
  body.AddTail(&b);
  TTexTokenStack stack;
  stack.PutBackToken(Word("file"));
  stack.PutBackList(&body);
  stack.StartTokenStream(0);
  stack.NextToken();
  stack.NextToken();
  stack.NextToken();  // the owned file token turns the record into copies
  TTexTokenStream* recorded = stack.FinishTokenStream(1);
  ASSERT_NE(recorded, nullptr);
  EXPECT_TRUE(recorded->OwnsTokens());
  TTexToken* first = recorded->NextToken();
  EXPECT_NE(first, &a);
  EXPECT_EQ(first->GetSequence(), Name("a"));
  delete first;
  delete recorded;  // deletes the unread copies; the body stays whole
  EXPECT_EQ(body.GetCount(), 2);

  // Nothing recorded gives no stream.
  stack.StartTokenStream(0);
  EXPECT_EQ(stack.FinishTokenStream(1), nullptr);
}

TEST_F(TokenStackTest, ArgumentsOfAnyLengthAreRecorded) {
  TTexTokenStack stack;
  const int n = 20000;  // beyond any fixed 8192-token record
  for (int i = 0; i < n; ++i) stack.PutBackToken(Word("t"));
  stack.StartTokenStream(0);
  while (stack.NextToken()) {
  }
  TTexTokenStream* all = stack.FinishTokenStream(1);
  ASSERT_NE(all, nullptr);
  EXPECT_EQ(static_cast<TTexBufferTokenStream*>(all)->GetCount(), static_cast<size_t>(n));
  delete all;
}
