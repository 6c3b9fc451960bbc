#include <gtest/gtest.h>

#include "framework/color_ref.h"

TEST(CColorRefEquality, NamesDecideWhenBothAreSet) {
  EXPECT_EQ(CColorRef(255, 0, 0, "Red"), CColorRef(0, 0, 255, "red"));
  EXPECT_NE(CColorRef(255, 0, 0, "red"), CColorRef(255, 0, 0, "blue"));
  // One side unnamed: the components decide.
  EXPECT_EQ(CColorRef(10, 20, 30), CColorRef(10, 20, 30, "anything"));
  EXPECT_NE(CColorRef(10, 20, 30), CColorRef(10, 20, 31));
}

TEST(CColorRefEquality, XorIsUnnamedUnallocatedAndComponentwise) {
  CColorRef a(0xF0, 0x0F, 0xFF, "a");
  a.m_bAllocated = 1;
  a.m_Placed.pixel = 77;
  CColorRef x = a ^ CColorRef(0xFF, 0xFF, 0x00, "b");
  EXPECT_TRUE(x.m_Name.IsEmpty());
  EXPECT_EQ(x.m_bAllocated, 0);
  EXPECT_EQ(x.m_Placed.pixel, 0u);
  EXPECT_EQ(x.m_Asked.red, 0x0F0Fu);  // 0xF0F0 ^ 0xFFFF
  EXPECT_EQ(x.m_Asked.green, 0xF0F0u);
  EXPECT_EQ(x.m_Asked.blue, 0xFFFFu);
  EXPECT_EQ(x.Red(), 0x0F);
}
