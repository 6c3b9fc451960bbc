// zephrin-inspect draw: calls on the drawing device over its own window, and
// the ink per colour read back from the server.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/paths.h"

namespace {
std::string RunDraw(const std::string& options, const std::string& script) {
  std::string dir = ztest::MakeTempDir("inspect-draw");
  std::string file = dir + "/script";
  EXPECT_TRUE(ztest::WriteFile(file, script));
  std::string command = ztest::BuildPath("zephrin-inspect") + " draw " + options + " " + file + " 2>/dev/null";
  std::string out;
  if (FILE* pipe = popen(command.c_str(), "r")) {
    char buffer[512];
    while (size_t n = fread(buffer, 1, sizeof buffer, pipe)) out.append(buffer, n);
    EXPECT_EQ(pclose(pipe), 0);
  }
  std::system(("rm -rf '" + dir + "'").c_str());
  return out;
}
}  // namespace

TEST(InspectDrawColors, WorkedValuesAndInkPerColour) {
  const std::string script =
      "ratios\n"
      "l2d 100 -100\n"
      "d2l 69 69\n"
      "l2dsize 100 100\n"
      "fg 0 0 0 red\n"
      "rect 0 0 0 0\n"
      "fill 0 0 0 0 0 255 0\n"
      "fg 0 0 255\n"
      "line 100 -100 300 -100\n"
      "bg 10 20 30\n"
      "fill 500 -300 520 -320 0 128 0\n"
      "bogus call\n"
      "l2d 1\n"
      "node 100 -200 10 4 50\n"
      "clip 0 -216 1000 -400\n"
      "required\n"
      "clip 0 -217 1000 -400\n"
      "required\n"
      "force 1\n"
      "required\n"
      "visible 0 -500 10 -600\n"
      "visible 0 0 10 -10\n";
  // By hand: x * 1280 / 1842 and y * 1024 / 1474, truncated. The line runs
  // from (69, 69) to (208, 69); the fill from (347, 208) to (361, 222),
  // exclusive; the red outline of a one-pixel rectangle is 2 by 2.
  const std::string expected =
      "1280 1024 1842 1474\n"
      "69 69\n"
      "99 -99\n"
      "69 69\n"
      "0 0 0 -\n"
      "255 0 0 -\n"
      "255 255 255 -\n"
      "1\n"
      "0\n"
      "1\n"
      "0\n"
      "1\n"
      "ink 0 0 255 140 69 69 208 69\n"
      "ink 0 128 0 196 347 208 360 221\n"
      "ink 255 0 0 4 0 0 1 1\n";
  EXPECT_EQ(RunDraw("", script), expected);
}

TEST(InspectDrawColors, WithoutAWindowAnswersTheFixedValues) {
  const std::string script =
      "ratios\n"
      "fg 1 2 3\n"
      "bg 1 2 3\n"
      "extent Hello\n"
      "rect 0 0 10 -10\n"
      "font -corvane-zrcmr-medium-r-normal--*-240-100-100-p-*-iso8859-1\n"
      "l2d 100 -100\n";
  EXPECT_EQ(RunDraw("--no-window", script),
            "1 1 1 1\n"
            "0 0 0 black\n"
            "252 252 252 white\n"
            "0 0\n"
            "100 100\n");
  // The screen option sets the ratios with or without a window; 0 mm keeps 1.
  EXPECT_EQ(RunDraw("--no-window --screen 1280x1024/325x260", "ratios\nl2d 100 -100\n"),
            "1280 1024 1842 1474\n69 69\n");
  EXPECT_EQ(RunDraw("--no-window --screen 1280x1024/0x260", "ratios\n"), "1 1 1 1\n");
  EXPECT_EQ(RunDraw("--screen 640x480/100x100", "ratios\n"), "640 480 566 566\n");
}
