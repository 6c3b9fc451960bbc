#include "format/extent.h"

#include <gtest/gtest.h>

#include <limits>

#include "device/font_family_pi.h"

TEST(FmtExtent, PointInRectangleOwnsTopAndLeftEdgesOnly) {
  // Origin (10, -20), height 5, depth 3, width 8: x in [10, 18), y in (-23, -15].
  const TFmtExtent extent(5, 3, 8);
  const CPoint origin(10, -20);
  EXPECT_TRUE(extent.IsPointInRectangle(origin, CPoint(10, -15)));   // top-left corner
  EXPECT_TRUE(extent.IsPointInRectangle(origin, CPoint(17, -22)));   // just inside bottom-right
  EXPECT_FALSE(extent.IsPointInRectangle(origin, CPoint(18, -17)));  // right edge
  EXPECT_FALSE(extent.IsPointInRectangle(origin, CPoint(12, -23)));  // bottom edge
  EXPECT_FALSE(extent.IsPointInRectangle(origin, CPoint(12, -14)));  // above the top
  EXPECT_FALSE(extent.IsPointInRectangle(origin, CPoint(9, -17)));   // left of the box
  // An empty extent holds no point, not even its origin.
  EXPECT_FALSE(TFmtExtent().IsPointInRectangle(origin, origin));
  // Near the limits the edges do not wrap round into a hit.
  const TFmtExtent wide(0, 1, 10);
  const int32_t big = std::numeric_limits<int32_t>::max() - 2;
  EXPECT_TRUE(wide.IsPointInRectangle(CPoint(big, 0), CPoint(big + 2, 0)));
  EXPECT_FALSE(wide.IsPointInRectangle(CPoint(big, 0), CPoint(std::numeric_limits<int32_t>::min(), 0)));
}

TEST(FmtExtent, MaximaResetAndSum) {
  TFmtExtent e(4, 2, 10);
  e.MaxHeight(3);  // smaller: kept
  e.MaxDepth(7);
  e.MaxWidth(10);
  EXPECT_EQ(e.m_nHeight, 4);
  EXPECT_EQ(e.m_nDepth, 7);
  EXPECT_EQ(e.m_nWidth, 10);
  EXPECT_EQ(e.Sum(), 21);
  // A zero sum is what the layout reads as empty, even with opposite signs.
  e.Reset(5, -5, 0);
  EXPECT_EQ(e.Sum(), 0);
  const TFmtExtent other(1, 2, 3);
  e.Reset(&other);
  EXPECT_EQ(e.Sum(), 6);
  e.Reset(nullptr);  // nothing to take: unchanged
  EXPECT_EQ(e.Sum(), 6);
  e.Reset(std::numeric_limits<int32_t>::max(), 5, 5);
  EXPECT_EQ(e.Sum(), std::numeric_limits<int32_t>::max());
}

TEST(FontSizes, RelativeToBaseFollowsTheRatioSearch) {
  const int savedBase = TFontFamily_PI::fg_StyleBaseFontSize;
  TFontFamily_PI::fg_StyleBaseFontSize = 5;
  EXPECT_EQ(TFontFamily_PI::GetSizeRelativeToBase(2), 2);  // normal base: the size itself
  TFontFamily_PI::fg_StyleBaseFontSize = 0;
  EXPECT_EQ(TFontFamily_PI::GetSizeRelativeToBase(5), 0);  // normal size: the base
  // 0.85 x 0.7 = 0.595 is not above 0.7: size 1.
  EXPECT_EQ(TFontFamily_PI::GetSizeRelativeToBase(2), 1);
  TFontFamily_PI::fg_StyleBaseFontSize = 9;
  // 1.25 x 2 = 2.5: from 9 down, ratio 2 is the first not above it.
  EXPECT_EQ(TFontFamily_PI::GetSizeRelativeToBase(7), 9);
  // 0.85 x 2 = 1.7: 9 (2.0) is above, 8 (1.5) is not.
  EXPECT_EQ(TFontFamily_PI::GetSizeRelativeToBase(2), 8);
  TFontFamily_PI::fg_StyleBaseFontSize = 4;
  // 0.85 x 0.8 = 0.68: not above 0.7, so 1.
  EXPECT_EQ(TFontFamily_PI::GetSizeRelativeToBase(2), 1);
  // 1.125 x 0.8 = 0.9: 9..5 are above it; 4 (0.8) is the first not above.
  EXPECT_EQ(TFontFamily_PI::GetSizeRelativeToBase(6), 4);
  // A size outside the table counts as normal: the base.
  EXPECT_EQ(TFontFamily_PI::GetSizeRelativeToBase(40), 4);
  TFontFamily_PI::fg_StyleBaseFontSize = savedBase;
}

TEST(FontSizes, NextSmallerStopsAtZero) {
  const int savedCurrent = TFontFamily_PI::fg_CurrentFontSize;
  const int savedBase = TFontFamily_PI::fg_StyleBaseFontSize;
  TFontFamily_PI::fg_CurrentFontSize = 1;
  TFontFamily_PI::fg_StyleBaseFontSize = 5;
  EXPECT_EQ(TFontFamily_PI::SetNextSmallerCurrentAndBaseFontSizes(), 1);
  EXPECT_EQ(TFontFamily_PI::fg_CurrentFontSize, 0);
  EXPECT_EQ(TFontFamily_PI::fg_StyleBaseFontSize, 0);
  TFontFamily_PI::fg_StyleBaseFontSize = 3;
  EXPECT_EQ(TFontFamily_PI::SetNextSmallerCurrentAndBaseFontSizes(), 0);
  EXPECT_EQ(TFontFamily_PI::fg_CurrentFontSize, 0);
  EXPECT_EQ(TFontFamily_PI::fg_StyleBaseFontSize, 3);  // untouched at size 0
  TFontFamily_PI::fg_CurrentFontSize = savedCurrent;
  TFontFamily_PI::fg_StyleBaseFontSize = savedBase;
}
