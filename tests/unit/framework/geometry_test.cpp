#include "framework/geometry.h"

#include <gtest/gtest.h>

TEST(CRectNormalize, AbsoluteValuesOfYComeBeforeTheSwap) {
  // A logical rectangle below the origin: y from -5 down to -30.
  CRect r(40, -5, 10, -30);
  r.NormalizeRect();
  EXPECT_EQ(r, CRect(10, 5, 40, 30));
  // Straddling the origin: |-20| = 20 and |8| = 8, so the band is 8..20, not -20..8.
  CRect s(0, -20, 5, 8);
  s.NormalizeRect();
  EXPECT_EQ(s, CRect(0, 8, 5, 20));
}

TEST(CRectIntersect, OverlapTouchingAndDisjoint) {
  CRect out;
  EXPECT_EQ(out.IntersectRect(CRect(10, 10, 50, 40), CRect(30, 20, 80, 90)), 1);
  EXPECT_EQ(out, CRect(30, 20, 50, 40));
  // Order of the arguments does not matter.
  EXPECT_EQ(out.IntersectRect(CRect(30, 20, 80, 90), CRect(10, 10, 50, 40)), 1);
  EXPECT_EQ(out, CRect(30, 20, 50, 40));
  // Touching edges meet: the intersection is the shared line.
  EXPECT_EQ(out.IntersectRect(CRect(0, 5, 10, 10), CRect(10, 5, 20, 10)), 1);
  EXPECT_EQ(out, CRect(10, 5, 10, 10));

  // Disjoint in x: zero on that axis and no intersection.
  EXPECT_EQ(out.IntersectRect(CRect(0, 5, 10, 10), CRect(20, 5, 30, 10)), 0);
  EXPECT_EQ(out.left, 0);
  EXPECT_EQ(out.right, 0);
  EXPECT_EQ(out.top, 5);
  EXPECT_EQ(out.bottom, 10);
  // Disjoint in y only.
  EXPECT_EQ(out.IntersectRect(CRect(0, 0, 10, 10), CRect(0, 50, 10, 60)), 0);
  EXPECT_EQ(out.top, 0);
  EXPECT_EQ(out.bottom, 0);
}

TEST(CRectIntersect, AnOverlapLyingAtZeroOnOneAxisCountsAsEmpty) {
  CRect out;
  // The rectangles share only the segment x = 0.
  EXPECT_EQ(out.IntersectRect(CRect(-10, 1, 0, 9), CRect(0, 2, 10, 8)), 0);
  EXPECT_EQ(out, CRect(0, 2, 0, 8));
  CRect viaOperator = CRect(-10, 1, 0, 9) & CRect(0, 2, 10, 8);
  EXPECT_EQ(viaOperator, CRect(0, 2, 0, 8));
}

TEST(CRectEmpty, TestsSumsNotDifferences) {
  EXPECT_TRUE(CRect().IsRectEmpty());
  EXPECT_FALSE(CRect(0, 0, 1, 1).IsRectEmpty());
  // Width is -5 here, but left + right = 15 and top + bottom = 1.
  EXPECT_FALSE(CRect(10, 0, 5, 1).IsRectEmpty());
  // Positive width, but left + right = 0.
  EXPECT_TRUE(CRect(-5, 0, 5, 3).IsRectEmpty());
}

TEST(CRectSides, WidthHeightAndInflate) {
  CRect r(1, 2, 11, 22);
  EXPECT_EQ(r.Width(), 10);
  EXPECT_EQ(r.Height(), 20);
  r.InflateRect(1, 2);
  EXPECT_EQ(r, CRect(0, 0, 12, 24));
  r.InflateRect(1, 2, 3, 4);
  EXPECT_EQ(r, CRect(-1, -2, 15, 28));
}
