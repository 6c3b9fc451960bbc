// zephrin-inspect tree and tex: a node a line with its parts labelled, the
// document printed back, parse errors on standard error, exit status 0.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>

#include "support/paths.h"

namespace {
struct TResult {
  std::string out;
  int status = -1;
};

TResult RunCommand(const std::string& command) {
  TResult result;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return result;
  char buffer[4096];
  while (size_t count = std::fread(buffer, 1, sizeof buffer, pipe)) result.out.append(buffer, count);
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}
}  // namespace

TEST(InspectTree, NodesByDepthWithPartsAndErrorsOnStandardError) {
  const std::string dir = ztest::MakeTempDir("inspect-tree");
  ASSERT_TRUE(ztest::WriteFile(dir + "/doc.tex", "$x^2_3$ a}\\frac[2pt]ab"));
  const std::string tool = ztest::BuildPath("zephrin-inspect");
  const TResult tree = RunCommand(tool + " tree " + dir + "/doc.tex 2>" + dir + "/err.txt");
  EXPECT_EQ(tree.status, 0);
  EXPECT_EQ(tree.out,
            "TFmtCompoundNode\n"
            "  TFmtMathNode\n"
            "    TFmtScriptedNode\n"
            "      nucleus: TFmtCharacterNode \"x\"\n"
            "      subscript: TFmtCharacterNode \"3\"\n"
            "      superscript: TFmtCharacterNode \"2\"\n"
            "  TFmtGlueNode kind 17\n"
            "  TFmtCharacterNode \"a\"\n"
            "  TFmtCharacterNode \"}\"\n"
            "  TFmtOverNode type 5\n"
            "    thickness: TFmtUnitNode 2/1 pt\n"
            "    top: TFmtCompoundNode\n"
            "      TFmtCharacterNode \"a\"\n"
            "    bottom: TFmtCompoundNode\n"
            "      TFmtCharacterNode \"b\"\n");
  const TResult errors = RunCommand("cat " + dir + "/err.txt");
  // One error, for the stray brace, in the collected format.
  EXPECT_NE(errors.out.find("Line 1 of "), std::string::npos) << errors.out;
  EXPECT_NE(errors.out.find("[TeX/LaTeX]"), std::string::npos) << errors.out;

  const TResult tex = RunCommand(tool + " tex " + dir + "/doc.tex 2>/dev/null");
  EXPECT_EQ(tex.status, 0);
  EXPECT_EQ(tex.out, " $x_3^2$  a}\\frac[2pt]{a}{b}");
}
