// Font names from templates, code indices and the family table, without a
// display.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "device/font_family.h"

namespace {
const char* const kRoman = "-corvane-zrcmr-medium-r-normal--0-0-0-0-p-0-iso8859-1";

std::string Name(int deciPoints, int x, int y, const std::string& text, size_t room = 600) {
  std::vector<char> out(room, '#');
  CreateFontNameAtSize(deciPoints, x, y, text.c_str(), out.data(), out.size());
  return out.data();
}
}  // namespace

TEST(FontNames, FieldsOfTheTemplateAreReplaced) {
  EXPECT_EQ(Name(130, 75, 75, kRoman), "-corvane-zrcmr-medium-r-normal--*-130-75-75-p-*-iso8859-1");
  // The unbounded form gives the same with a buffer of the usual size.
  char out[512];
  CreateFontNameAtSize(162, 100, 100, kRoman, out);
  EXPECT_STREQ(out, "-corvane-zrcmr-medium-r-normal--*-162-100-100-p-*-iso8859-1");
  // Several digits in the pixel, point and width fields: one is skipped and
  // the rest stay; the resolutions are skipped to their hyphen.
  EXPECT_EQ(Name(130, 100, 100, "-f-n-m-r-w--12-140-75-75-p-90-iso8859-1"),
            "-f-n-m-r-w--*2-13040-100-100-p-*0-iso8859-1");
  // The walk ends with the 15th hyphen.
  EXPECT_EQ(Name(130, 75, 75, "-a-b-c-d-e--0-0-0-0-p-0-x-y-z-tail"), "-a-b-c-d-e--*-130-75-75-p-*-x-y-");
}

TEST(FontNames, ShortLongAndOddTemplatesStayInBounds) {
  EXPECT_EQ(Name(130, 75, 75, ""), "");
  EXPECT_EQ(Name(130, 75, 75, "nohyphens"), "nohyphens");
  // Ending right after a field's hyphen: the skip stops at the end.
  EXPECT_EQ(Name(130, 75, 75, "-a-b-c-d-e--"), "-a-b-c-d-e--*");
  EXPECT_EQ(Name(130, 75, 75, "-a-b-c-d-e--0-"), "-a-b-c-d-e--*-130");
  EXPECT_EQ(Name(130, 75, 75, "-a-b-c-d-e--0-0-"), "-a-b-c-d-e--*-130-75");
  EXPECT_EQ(Name(130, 75, 75, "-a-b-c-d-e--0-0-0-0-p-"), "-a-b-c-d-e--*-130-75-75-p-*");
  // Sizes from a bad profile are written as they are.
  EXPECT_EQ(Name(0, 75, 75, kRoman), "-corvane-zrcmr-medium-r-normal--*-0-75-75-p-*-iso8859-1");
  EXPECT_EQ(Name(-5, 75, 75, kRoman), "-corvane-zrcmr-medium-r-normal--*--5-75-75-p-*-iso8859-1");
  EXPECT_EQ(Name(1 << 30, INT_MIN, INT_MAX, kRoman),
            "-corvane-zrcmr-medium-r-normal--*-1073741824--2147483648-2147483647-p-*-iso8859-1");
  // 2,000 characters: cut at the room given, terminated.
  std::string huge(2000, 'x');
  for (size_t i = 0; i < huge.size(); i += 100) huge[i] = '-';
  EXPECT_EQ(Name(130, 75, 75, huge, 512).size(), 511u);
  EXPECT_EQ(Name(130, 75, 75, kRoman, 10), "-corvane-");
  EXPECT_EQ(Name(130, 75, 75, "-a-b-c-d-e--0-", 16), "-a-b-c-d-e--*-1");
  std::vector<char> whole(huge.size() + 64);
  CreateFontNameAtSize(130, 75, 75, huge.c_str(), whole.data());
  // Up to the 15th hyphen (index 1400): 1401 characters; the point size adds
  // 2 and each resolution, skipped to its hyphen, takes 99 away for 2.
  EXPECT_EQ(std::string(whole.data()).size(), 1401u + 2 - 97 - 97);
}

TEST(FontCodes, NegativeAndLargeCodesIndexTheCachesModulo256) {
  EXPECT_EQ(TExtendedFont::CodeIndex(65), 65);
  EXPECT_EQ(TExtendedFont::CodeIndex(-63), 193);  // a signed char of 193
  EXPECT_EQ(TExtendedFont::CodeIndex(449), 193);
  EXPECT_EQ(TExtendedFont::CodeIndex(-300), 212);  // -44 after the 256, then modulo
  EXPECT_EQ(TExtendedFont::CodeIndex(INT_MIN), 0);
  EXPECT_EQ(TExtendedFont::CodeIndex(INT_MAX), 255);
}

TEST(FontFamilyTable, TagsOutsideTheTableNameNoFamily) {
  TFontFamily family;
  TFontFamily::fg_pSansSerif = &family;
  EXPECT_EQ(TFontFamily::GetFontFamilyFromTag(k_FontTagSansSerif), &family);
  EXPECT_EQ(TFontFamily::GetFontFamilyFromTag(12), &family);
  EXPECT_EQ(TFontFamily::GetFontFamilyFromTag(13), nullptr);
  EXPECT_EQ(TFontFamily::GetFontFamilyFromTag(-1), nullptr);
  TFontFamily::fg_pSansSerif = nullptr;
  // Without a window nothing is made, and destroying nothing is harmless.
  TFontFamily::PrepareAllFonts(nullptr);
  EXPECT_EQ(TFontFamily::fg_pRoman, nullptr);
  TFontFamily::DestroyAllFonts();
}

TEST(FontSizes, ScriptSizeUnderLargeIsSmall) {
  const int saved = TFontFamily_PI::fg_StyleBaseFontSize;
  TFontFamily_PI::fg_StyleBaseFontSize = 6;
  // 0.85 x 1.125 = 0.956: from 9 down, 4 (0.8) is the first not above it.
  EXPECT_EQ(TFontFamily_PI::GetSizeRelativeToBase(2), 4);
  TFontFamily_PI::fg_StyleBaseFontSize = saved;
}
