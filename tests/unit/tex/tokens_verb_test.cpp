// zephrin-inspect tokens: one token a line, with its source line and class,
// and included files named where their tokens begin.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "support/paths.h"

namespace {
std::string Output(const std::string& command) {
  std::string output;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return output;
  char buffer[4096];
  while (size_t count = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, count);
  pclose(pipe);
  return output;
}
}  // namespace

TEST(InspectTokens, OneTokenALineWithClassTextAndLine) {
  std::string dir = ztest::MakeTempDir("inspect");
  ASSERT_TRUE(ztest::WriteFile(dir + "/doc.tex", "\\section*{Ab} x--y\n\n\\input{inc}\n"));
  ASSERT_TRUE(ztest::WriteFile(dir + "/inc.tex", "\\verb|a b|\n"));
  std::string tool = ztest::BuildPath("zephrin-inspect");

  std::string plain = Output(tool + " tokens " + dir + "/doc.tex");
  EXPECT_NE(plain.find("# source file:" + dir + "/doc.tex\n"), std::string::npos) << plain;
  EXPECT_NE(plain.find("     1  control-sequence  \"\\\\section*\"\n"), std::string::npos) << plain;
  EXPECT_NE(plain.find("     1  sequence          \"Ab\"\n"), std::string::npos) << plain;
  EXPECT_NE(plain.find("     1  control-sequence  \"\\\\--\"\n"), std::string::npos) << plain;
  EXPECT_NE(plain.find("control-sequence  \"\\\\par\"\n"), std::string::npos) << plain;
  EXPECT_NE(plain.find("control-sequence  \"\\\\input\"\n"), std::string::npos) << plain;  // not expanded

  std::string expanded = Output(tool + " tokens --expand " + dir + "/doc.tex");
  EXPECT_NE(expanded.find("# source file:" + dir + "/inc.tex\n"), std::string::npos) << expanded;
  EXPECT_NE(expanded.find("     1  sequence          \"a b\"\n"), std::string::npos) << expanded;
  EXPECT_EQ(expanded.find("\"\\\\input\""), std::string::npos) << expanded;

  std::remove((dir + "/doc.tex").c_str());
  std::remove((dir + "/inc.tex").c_str());
  std::remove(dir.c_str());
}
