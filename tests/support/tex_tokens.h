// Reading tokens in tests: a token as a short text, whole inputs as lists of
// those, and macros defined the way a \def stores them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

class TTexToken;
class TTexTokenSource;
class TMacroProperty;

namespace ztest {
// A character as itself, a control sequence or control character as a
// backslash and its name, a sequence (and "#n") as its text.
std::string DescribeToken(const TTexToken* token);
// Every token left in the source, read with NextToken(skipBlanks, expand).
std::vector<std::string> ReadAll(TTexTokenSource& source, int expand, int skipBlanks = 0);
// The tokens of text read from a source of its own.
std::vector<std::string> Tokens(const char* text, int expand = 0);
// Defines name with arguments; body is the text between the braces of a
// definition, read as a \def reads it (bound to name, unexpanded).
TMacroProperty* DefineMacro(const char* name, int arguments, const char* body);

// A fresh pool for each test (definitions and \newif switches are global),
// parse errors collected without a dialog, the default file loader.
class TokenSourceTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
  // The saved errors' messages, in order.
  static std::vector<std::string> SavedErrorMessages();
};
}  // namespace ztest
