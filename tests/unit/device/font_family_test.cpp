// Font names from templates, code indices and the family table, without a
// display.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "device/font_family.h"
#include "framework/objects.h"
#include "host/zephrin_stat.h"
#include "support/test_context.h"

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

TEST(FontFamilyBadSizes, HugeAndNegativeSizesBuildNamesWithoutOverflow) {
  // No display: every load is refused, so the page tells the name that was
  // built. Status 12 is reset before each so that the page is rebuilt.
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  ztest::TTestContext context;
  auto refused = [&](auto make) {
    stat->Initialize(nullptr, nullptr);
    EXPECT_THROW(make(), CFontException);
    const std::string page = stat->GetFontPage().str();
    const size_t at = page.find("-corvane");
    return at == std::string::npos ? std::string() : page.substr(at, page.find('\n', at) - at);
  };
  TFontFamily huge(nullptr, kRoman, 1 << 30, 0);
  // 10 x 2^30 x 3 saturates.
  EXPECT_EQ(refused([&] { huge.CreateFontAtSize(context, 10); }),
            "-corvane-zrcmr-medium-r-normal--*-2147483647-0-0-p-*-iso8859-1");
  EXPECT_EQ(huge.Get_SizedFont(10), nullptr);
  TFontFamily negative(nullptr, kRoman, -5, 0);
  EXPECT_EQ(refused([&] { negative.CreateFontAtSize(context, 7); }),
            "-corvane-zrcmr-medium-r-normal--*--62-0-0-p-*-iso8859-1");  // -62.5 toward zero
  TFontFamily zero(nullptr, kRoman, 0, 0);
  EXPECT_EQ(refused([&] { zero.CreateFontAtSize(context, 40); }),  // a size outside the table is normal
            "-corvane-zrcmr-medium-r-normal--*-0-0-0-p-*-iso8859-1");
  // Extents at the ends of the int range stay in 64 bits and saturate.
  EXPECT_EQ(refused([&] { zero.CreateFontForCharacter(-1, INT_MAX, INT_MIN, context, INT_MAX); }),
            "-corvane-zrcmr-medium-r-normal--*-2147483647-0-0-p-*-iso8859-1");
  EXPECT_EQ(refused([&] { zero.CreateFontForCharacter(0, INT_MIN, INT_MIN, context, INT_MIN); }),
            "-corvane-zrcmr-medium-r-normal--*--2147483648-0-0-p-*-iso8859-1");
  EXPECT_EQ(zero.Get_StretchedFontCount(), 0);
  // The edit box: 2^30 x 5 x 2 logical units, saturated; this context's
  // LPtoDP keeps the number.
  const int savedTt = TFmtContext::fg_nTtFontPointSize;
  const bool hadName = TFmtContext::fg_pTtFontName != nullptr;
  const CString savedName = hadName ? *TFmtContext::fg_pTtFontName : CString();
  TFmtContext::Set_TtFontName("-corvane-zrcmtt-medium-r-normal--0-0-0-0-m-0-iso8859-1");
  TFmtContext::Set_TtFontPointSize(1 << 30);
  EXPECT_EQ(refused([&] { TFontFamily::CreateFontForEditBox(context); }),
            "-corvane-zrcmtt-medium-r-normal--*-2147483647-0-0-m-*-iso8859-1");
  EXPECT_EQ(TFontFamily::fg_pEditBoxFont, nullptr);
  TFmtContext::Set_TtFontPointSize(savedTt);
  if (hadName) {
    TFmtContext::Set_TtFontName(savedName);
  } else {
    delete TFmtContext::fg_pTtFontName;
    TFmtContext::fg_pTtFontName = nullptr;
  }
  stat->Initialize(nullptr, nullptr);
}
