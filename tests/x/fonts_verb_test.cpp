// zephrin-inspect's font and colour verbs, run as a user would: names,
// relative sizes, metrics and stretched sizes from the installation's fonts,
// and a template from the profile store that the server refuses.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "support/paths.h"

namespace {
struct TRun {
  int status = -1;
  std::string out, err;
};

TRun Inspect(const std::string& arguments) {
  TRun run;
  const std::string dir = ztest::MakeTempDir("inspect-fonts");
  const std::string command = ztest::BuildPath("zephrin-inspect") + " " + arguments + " >" + dir + "/out 2>" + dir +
                              "/err";
  const int raw = std::system(command.c_str());
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  for (auto [file, text] : {std::pair{"/out", &run.out}, std::pair{"/err", &run.err}}) {
    std::ifstream in(dir + file);
    std::stringstream all;
    all << in.rdbuf();
    *text = all.str();
  }
  std::system(("rm -rf " + dir).c_str());
  return run;
}
}  // namespace

TEST(InspectFonts, NamesAndSizesWithoutAServer) {
  TRun name = Inspect("fontname -corvane-zrcmr-medium-r-normal--0-0-0-0-p-0-iso8859-1 130 75 75");
  EXPECT_EQ(name.status, 0);
  EXPECT_EQ(name.out, "-corvane-zrcmr-medium-r-normal--*-130-75-75-p-*-iso8859-1\n");
  EXPECT_EQ(Inspect("relsize 2 6").out, "4\n");
  EXPECT_EQ(Inspect("relsize x 9").status, 2);
}

TEST(InspectFonts, MetricsAndStretchedSizesFromTheInstalledFonts) {
  TRun large = Inspect("metrics 11 7 65 -63 193");
  ASSERT_EQ(large.status, 0) << large.err;
  std::istringstream lines(large.out);
  std::string font, metrics, a, minus63, code193;
  std::getline(lines, font);
  std::getline(lines, metrics);
  std::getline(lines, a);
  std::getline(lines, minus63);
  std::getline(lines, code193);
  EXPECT_EQ(font, "font -corvane-zrcmr-medium-r-normal--*-162-100-100-p-*-iso8859-1");
  int ascent = 0, descent = 0, height = 0, leading = 0;
  ASSERT_EQ(std::sscanf(metrics.c_str(), "ascent %d descent %d height %d leading %d", &ascent, &descent, &height,
                        &leading), 4);
  EXPECT_EQ(height, ascent + descent);
  EXPECT_EQ(leading, height / 5);
  EXPECT_EQ(a.rfind("65 width ", 0), 0u);
  // -63 is 193 as a signed char: the same measures.
  EXPECT_EQ(minus63.substr(minus63.find(' ')), code193.substr(code193.find(' ')));

  EXPECT_EQ(Inspect("metrics editbox").out, "font -corvane-zrcmtt-medium-r-normal--*-90-100-100-m-*-iso8859-1\n");

  // Twice the same extent, then another: two fonts, and the minus's own.
  TRun stretch = Inspect("stretch 6 104 40 10 4 40 10 4 100 0 0");
  ASSERT_EQ(stretch.status, 0) << stretch.err;
  int m = 0;
  ASSERT_EQ(std::sscanf(stretch.out.c_str(), "minus %d", &m), 1);
  ASSERT_GT(m, 0);
  // half = max(40 - m, 10 + m) + 4, and 2 % more, truncated; then 100 - m.
  const int points = std::max(40 - m, 10 + m) + 4;
  const std::string first = "font -corvane-zrsya-medium-r-normal--*-" + std::to_string(10 * (points * 102 / 100)) +
                            "-100-100-p-*-iso8859-1\n";
  const std::string second = "font -corvane-zrsya-medium-r-normal--*-" + std::to_string(10 * ((100 - m) * 102 / 100)) +
                             "-100-100-p-*-iso8859-1\n";
  EXPECT_EQ(stretch.out, "minus " + std::to_string(m) + "\n" + first + first + second + "loaded 3\n");
}

TEST(InspectFonts, TheNamedColoursOnATrueColourScreen) {
  TRun colors = Inspect("colors");
  ASSERT_EQ(colors.status, 0) << colors.err;
  EXPECT_NE(colors.out.find("70001 0x00ff00 0 65535 0\n"), std::string::npos);
  EXPECT_NE(colors.out.find("70016 0xffffff 65535 65535 65535\n"), std::string::npos);
  EXPECT_EQ(Inspect("colors 1 2 3").out, "0x010203 257 514 771\n");
}

TEST(InspectFonts, ATemplateTheServerRefusesEndsTheRunWithItsPage) {
  const char* home = std::getenv("HOME");
  ASSERT_TRUE(home && *home);
  const std::string dir = std::string(home) + "/.zephrin/Cache";
  std::system(("mkdir -p " + dir).c_str());
  ASSERT_TRUE(ztest::WriteFile(dir + "/registry",
                               "Corvane.Fonts.TextName: -corvane-nosuchface-medium-r-normal--0-0-0-0-p-0-iso8859-1\n"
                               "Corvane.Fonts.TextSize: 10\n"));
  TRun run = Inspect("metrics 11 5 65");
  std::remove((dir + "/registry").c_str());
  EXPECT_EQ(run.status, 12);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("cannot load the font:\n\n-corvane-nosuchface-medium-r-normal--*-100-100-100-p-*-iso8859-1"),
            std::string::npos)
      << run.err;
}
