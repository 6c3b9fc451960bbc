// zephrin-inspect fontchart draws a font's 16x16 code chart through the X
// server into a PNG file, finding the installation's fonts by itself.
// GoogleTest comes first: Xlib's macros (None, Bool) break its headers.
#include <gtest/gtest.h>

#include <png.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/paths.h"

namespace {
struct GrayImage {
  int width = 0, height = 0;
  std::vector<unsigned char> pixels;
  bool Black(int x, int y) const { return pixels[static_cast<size_t>(y) * width + x] < 128; }
};

bool ReadGrayPng(const std::string& file, GrayImage& image) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&png, file.c_str())) return false;
  png.format = PNG_FORMAT_GRAY;
  image.width = static_cast<int>(png.width);
  image.height = static_cast<int>(png.height);
  image.pixels.resize(PNG_IMAGE_SIZE(png));
  return png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr) != 0;
}

int RunInspect(const std::string& arguments) {
  std::string command = ztest::BuildPath("zephrin-inspect") + " " + arguments + " 2>/dev/null";
  return std::system(command.c_str());
}

// Black pixels in the lower half of a cell, where only the glyph draws (the
// code's number is printed at the top).
int GlyphInkInCell(const GrayImage& chart, int code) {
  int cellWidth = (chart.width - 1) / 16, cellHeight = (chart.height - 1) / 16;
  int left = (code % 16) * cellWidth, top = (code / 16) * cellHeight;
  int ink = 0;
  for (int y = top + cellHeight / 2; y < top + cellHeight; ++y)
    for (int x = left + 1; x < left + cellWidth; ++x) ink += chart.Black(x, y);
  return ink;
}
}  // namespace

TEST(InspectFontchart, DrawsTheGlyphsOfAnInstalledFaceIntoTheirCells) {
  std::string dir = ztest::MakeTempDir("fontchart");
  ASSERT_FALSE(dir.empty());
  std::string out = dir + "/zrsya.png";
  ASSERT_EQ(RunInspect("fontchart zrsya " + out), 0);
  GrayImage chart;
  ASSERT_TRUE(ReadGrayPng(out, chart));
  ASSERT_GT(chart.width, 16 * 16);
  ASSERT_GT(chart.height, 16 * 16);
  // zrsya: 56 is "forall" with its long stems below the middle of the line,
  // 112 the radical sign that hangs below the baseline; 55 and 127 are empty.
  EXPECT_GT(GlyphInkInCell(chart, 56), 0);
  EXPECT_GT(GlyphInkInCell(chart, 112), 0);
  EXPECT_EQ(GlyphInkInCell(chart, 55), 0);
  EXPECT_EQ(GlyphInkInCell(chart, 127), 0);
  std::remove(out.c_str());
  std::remove(dir.c_str());
}

TEST(InspectFontchart, AnUnknownFontFailsWithoutWritingAFile) {
  std::string dir = ztest::MakeTempDir("fontchart");
  ASSERT_FALSE(dir.empty());
  std::string out = dir + "/none.png";
  EXPECT_NE(RunInspect("fontchart zrnosuchface " + out), 0);
  FILE* f = std::fopen(out.c_str(), "rb");
  EXPECT_EQ(f, nullptr);
  if (f) std::fclose(f);
  EXPECT_NE(RunInspect("fontchart zrsya"), 0);  // no output file named
  std::remove(dir.c_str());
}
