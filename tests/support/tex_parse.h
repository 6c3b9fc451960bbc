// Parsing TeX into format trees in tests: a fresh pool with the parser
// tables loaded, errors collected and named by number, and checks of the
// tree's shape.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "format/compound_node.h"

namespace ztest {
// The whole text parsed as a document is (never null).
std::unique_ptr<TFmtCompoundNode> ParseDocument(const std::string& text);
// The text parsed, then printed from column 0.
std::string PrintTexOf(const std::string& text);
std::string PrintTexOf(const TFmtNode* node);
// The indented dump of the parse of text.
std::string TreeOf(const std::string& text);
// Null children anywhere below node, as paths for the failure message.
std::vector<std::string> NullChildren(const TFmtNode* node);
// Runs of blanks and line ends made one blank, and none at the ends.
std::string SquashBlanks(const std::string& text);

// Each test gets a fresh pool with the parsers loaded; numbered errors are
// saved with the message "#<number>".
class TexParseTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
  static std::vector<std::string> Errors();
};
}  // namespace ztest
