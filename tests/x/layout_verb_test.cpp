// zephrin-inspect layout run as a user would: one block of rows per width,
// the same tree recomposed at each further width.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/paths.h"

namespace {
struct TRun {
  int status = -1;
  std::string out, err;
};

TRun Inspect(const std::string& text, const std::string& arguments) {
  TRun run;
  const std::string dir = ztest::MakeTempDir("inspect-layout");
  ztest::WriteFile(dir + "/doc.tex", text);
  const std::string command = ztest::BuildPath("zephrin-inspect") + " layout " + dir + "/doc.tex " + arguments +
                              " >" + dir + "/out 2>" + dir + "/err";
  const int raw = std::system(command.c_str());
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  for (auto [file, out] : {std::pair{"/out", &run.out}, std::pair{"/err", &run.err}}) {
    std::ifstream in(dir + file);
    std::stringstream all;
    all << in.rdbuf();
    *out = all.str();
  }
  std::system(("rm -rf " + dir).c_str());
  return run;
}

// The blocks of rows, one per "width" line.
std::vector<std::string> Blocks(const std::string& out) {
  std::vector<std::string> blocks;
  std::istringstream lines(out);
  std::string line;
  while (std::getline(lines, line)) {
    if (line.rfind("width ", 0) == 0) blocks.emplace_back();
    if (!blocks.empty()) blocks.back() += line + "\n";
  }
  return blocks;
}
}  // namespace

TEST(InspectLayout, EachWidthIsOneBlockAndTheFirstWidthComesBackTheSame) {
  const std::string text =
      "Words of a first paragraph, long enough to break at the narrow width \\hfill twice or more.\n\n"
      "A centred one\\centering\\par and one with a hard\\\\break.\n";
  TRun run = Inspect(text, "--width 600 --width 150 --width 600");
  ASSERT_EQ(run.status, 0) << run.err;
  const std::vector<std::string> blocks = Blocks(run.out);
  ASSERT_EQ(blocks.size(), 3u);
  EXPECT_EQ(blocks[0].substr(0, 10), "width 600\n");
  EXPECT_EQ(blocks[1].substr(0, 10), "width 150\n");
  EXPECT_EQ(blocks[2], blocks[0]);
  EXPECT_NE(blocks[1], blocks[0]);
  // Three paragraphs; the last has a hard break and its end.
  EXPECT_NE(blocks[0].find("E 2 TFmtParagraphNode"), std::string::npos);
  EXPECT_NE(blocks[0].find(" hard "), std::string::npos);
  EXPECT_NE(blocks[0].find("L 2.1 end "), std::string::npos);
  EXPECT_NE(blocks[1].find(" soft "), std::string::npos);
}

TEST(InspectLayout, DegenerateWidthsAndBadArgumentsEndCleanly) {
  TRun negative = Inspect("aa bb \\parbox{-20pt}{cc dd} ee", "--width -50 --width 0");
  EXPECT_EQ(negative.status, 0) << negative.err;
  EXPECT_EQ(Blocks(negative.out).size(), 2u);
  EXPECT_EQ(Inspect("aa", "").status, 2);
  EXPECT_EQ(Inspect("aa", "--width").status, 2);
  EXPECT_EQ(Inspect("aa", "--width x").status, 2);
}
