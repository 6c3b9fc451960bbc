// Measurements as exact fractions. U = fg_nUnitsPerPoint = 2: one logical
// unit is half a point, an inch 144 units. Expected values are worked by hand.
#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "device/font_family.h"
#include "format/context.h"
#include "format/unit_node.h"
#include "support/test_context.h"
#include "support/tex_tokens.h"
#include "tex/measure_args.h"
#include "tex/token_source.h"

using ztest::TTestContext;
using ztest::TTestFont;

namespace {

class UnitNodeTest : public ztest::TokenSourceTest {
 protected:
  void SetUp() override {
    TokenSourceTest::SetUp();
    TExtendedFont::fg_pCurrent = nullptr;
  }
  void TearDown() override {
    TExtendedFont::fg_pCurrent = nullptr;
    TokenSourceTest::TearDown();
  }

  // A measure read from text as the readers read it; `rest` gets the first
  // token left behind, as text.
  static std::unique_ptr<TFmtUnitNode> Parse(const char* text, std::string* rest = nullptr) {
    TTexTokenSource source("test", text);
    std::unique_ptr<TFmtUnitNode> unit(NextTexMeasureArg(source));
    if (rest) {
      std::unique_ptr<TTexToken> next(source.NextToken(1, 1));
      *rest = next ? ztest::DescribeToken(next.get()) : "";
    }
    return unit;
  }
  static std::string Print(const TFmtUnitNode& unit) {
    CString out;
    int column = 0;
    unit.PrintTex(out, column);
    EXPECT_EQ(column, out.GetLength()) << out.c_str();
    return out.c_str();
  }

  TTestContext m_Context;
};

TEST_F(UnitNodeTest, GcdIsTheDeliberateLoopNotEuclids) {
  EXPECT_EQ(TFmtUnitNode::Gcd(35, 10), 3);  // r=5; a=3, b=5, r=3; a=0, b=3, r=0
  EXPECT_EQ(TFmtUnitNode::Gcd(10, 35), 3);  // the larger comes first
  EXPECT_EQ(TFmtUnitNode::Gcd(-35, 10), 3);
  EXPECT_EQ(TFmtUnitNode::Gcd(18, 12), 1);  // r=6; a=1, b=6, r=1; a=0, b=1, r=0
  EXPECT_EQ(TFmtUnitNode::Gcd(12, 4), 4);   // r=0 at once
  EXPECT_EQ(TFmtUnitNode::Gcd(0, 7), 1);
  EXPECT_EQ(TFmtUnitNode::Gcd(7, 0), 1);
  EXPECT_GE(TFmtUnitNode::Gcd(std::numeric_limits<long>::min(), 3), 1);
}

TEST_F(UnitNodeTest, LengthsInLogicalUnits) {
  const struct {
    const char* text;
    long logical;
  } cases[] = {
      {"1in", 144},         // 72U
      {"1pc", 12},          // 6 points on this path
      {"1cm", 56},          // 14400/254 = 56.69, truncated
      {"2.54cm", 144},      // 254/100 in cm: Gcd 2 -> 127/50; 127 x 14400 / (50 x 254) = 144
      {"3.5pt", 7},         // 11/3 pt (see below) -> 22/3
      {"72bp", 144},        // bp and pt are the same size
      {"65536sp", 2},       // U x 65536 / 65536
      {"1157dd", 2476},     // 1238U
      {"1cc", 25},          // 29712/1157 = 25.68
      {"-1.5in", -216},     // 15/10: Gcd 1, so -15/10 in; -2160/10
      {"7", 7},             // no unit: logical units
      {"1PT", 1},           // case matters: PT is no unit, so 1 logical unit
      {"1furlong", 1},      // an unknown word likewise
      {"1true in", 144},    // true is kept and changes nothing
      {".5in", 72},         // 5/10: Gcd 5 -> 1/2
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Parse(c.text)->GetInternalValue(m_Context), c.logical);
  }
}

TEST_F(UnitNodeTest, DecimalsKeepTheFractionThatGcdLeaves) {
  auto unit = Parse("3.5pt");
  EXPECT_TRUE(unit->OfForm(11, 3, k_UnitPt));  // 35/10 divided by 3, truncating
  EXPECT_EQ(Print(*unit), "3.666667pt");
  // 0 stays unreduced, and the sign comes after the reduction.
  EXPECT_TRUE(Parse("0.00pt")->OfForm(0, 100, k_UnitPt));
  // 25/10: Gcd 2 (r=5; a=2, b=5, r=2; a=0, b=2), so 12/5: 2.5cm drifts to 2.4cm.
  EXPECT_TRUE(Parse("-2.5cm")->OfForm(-12, 5, k_UnitCm));
  EXPECT_EQ(Print(*Parse("-2.5cm")), "-2.400000cm");
  EXPECT_TRUE(Parse("1true in")->Get_True());
  // Unit 0 prints in points: 7 logical units are 3.5pt.
  EXPECT_EQ(Print(*Parse("7")), "3.500000pt");
  EXPECT_EQ(Print(TFmtUnitNode(1, 1, k_UnitFilll)), "1filll");
  EXPECT_EQ(Print(TFmtUnitNode(2, 1, k_UnitMu)), "2mu");
  // "\hsize" counts two columns, as every other unit name does.
  CString out;
  int column = 0;
  TFmtUnitNode(1, 2, k_UnitHsize).PrintTex(out, column);
  EXPECT_STREQ(out.c_str(), "0.500000\\hsize");
  EXPECT_EQ(column, 10);
}

TEST_F(UnitNodeTest, FontAndWindowUnitsFollowTheContext) {
  TTestFont font(8, 3, 10);  // every character 10 wide, 8 high
  TExtendedFont::fg_pCurrent = &font;
  EXPECT_EQ(Parse("2em")->GetInternalValue(m_Context), 20);
  EXPECT_EQ(Parse("1.5ex")->GetInternalValue(m_Context), 12);  // 15/10 x 8 = 120/10
  EXPECT_EQ(Parse("1mu")->GetInternalValue(m_Context), 180);   // 18 ems, not one eighteenth
  m_Context.m_nLeftMargin = 10;
  m_Context.m_nRightMargin = 110;
  EXPECT_EQ(Parse("0.5\\hsize")->GetInternalValue(m_Context), 50);  // 5/10: Gcd 5 -> 1/2
  auto hsize = Parse("\\hsize");
  EXPECT_TRUE(hsize->OfForm(1, 1, k_UnitHsize));
  EXPECT_EQ(hsize->GetInternalValue(m_Context), 100);
  // The same node measures anew when the font changes.
  auto em = Parse("2em");
  TTestFont wide(8, 3, 15);
  TExtendedFont::fg_pCurrent = &wide;
  EXPECT_EQ(em->GetInternalValue(m_Context), 30);
  // No font at all: em is 0, and no division by zero follows.
  TExtendedFont::fg_pCurrent = nullptr;
  EXPECT_EQ(em->GetInternalValue(m_Context), 0);
  long n, d;
  Parse("1in")->GetValue(n, d, m_Context, k_UnitEm);
  EXPECT_EQ(d, 0);  // no em to count in; the reader of such a value must not divide
}

TEST_F(UnitNodeTest, ConversionBetweenUnits) {
  long n, d;
  Parse("1in")->GetValue(n, d, m_Context, k_UnitPt);
  EXPECT_EQ(n, 72);  // 144/1 in unit 0, over U = 2, reduced by Gcd(144, 2) = 2
  EXPECT_EQ(d, 1);
  Parse("0pt")->GetValue(n, d, m_Context, k_UnitCm);
  EXPECT_EQ(n, 0);
  EXPECT_EQ(d, 1);
  // Add: fetched in unit 0 (144/1 and 7/1), Gcd of denominators 1.
  std::unique_ptr<TFmtUnitNode> sum(Parse("1in")->Add(Parse("3.5pt").get(), 1, m_Context));
  EXPECT_EQ(sum->Get_UnitType(), k_UnitNone);
  EXPECT_EQ(sum->GetInternalValue(m_Context), 144 + 7);  // 22/3 in unit 0: 432/3 + 22/3 = 454/3
  std::unique_ptr<TFmtUnitNode> difference(Parse("1in")->Add(Parse("1cm").get(), -1, m_Context));
  EXPECT_EQ(difference->GetInternalValue(m_Context), 87);  // 144 - 14400/254 = 22176/254 = 87.3
}

TEST_F(UnitNodeTest, FixedConversionsForTheDialogs) {
  EXPECT_EQ(TFmtUnitNode::ConvertFixedToInternal(1, "cm"), 57);  // floor(0.5 + 2 x 72 / 2.54)
  EXPECT_EQ(TFmtUnitNode::ConvertFixedToInternal(1, "pc"), 24);  // 12 points here
  EXPECT_EQ(TFmtUnitNode::ConvertFixedToInternal(0, "in"), 0);
  EXPECT_DOUBLE_EQ(TFmtUnitNode::ConvertFixed(1, "in", "pt"), 72);
  EXPECT_DOUBLE_EQ(TFmtUnitNode::ConvertFixed(72, "PT", "In"), 1);  // names without regard to case
  EXPECT_DOUBLE_EQ(TFmtUnitNode::ConvertFixed(2, "pc", "pt"), 24);
  EXPECT_DOUBLE_EQ(TFmtUnitNode::ConvertFixed(3, "furlong", "pt"), 216);  // unknown names are inches
  EXPECT_EQ(TFmtUnitNode::GetUnitTypeFromName("FILLL"), k_UnitFilll);
  EXPECT_EQ(TFmtUnitNode::GetUnitTypeFromName("\\hsize"), k_UnitHsize);
}

TEST_F(UnitNodeTest, MeasureReadersLeaveTheRestOfTheText) {
  std::string rest;
  EXPECT_TRUE(Parse("{2pt}x", &rest)->OfForm(2, 1, k_UnitPt));
  EXPECT_EQ(rest, "x");
  EXPECT_TRUE(Parse("2pt x", &rest)->OfForm(2, 1, k_UnitPt));
  EXPECT_EQ(rest, "x");
  // The token where "}" should be is dropped; the measure stands.
  EXPECT_TRUE(Parse("{2pt = x", &rest)->OfForm(2, 1, k_UnitPt));
  EXPECT_EQ(rest, "x");
  // No number: nothing is taken, the unit is 0.
  EXPECT_TRUE(Parse("abc", &rest)->OfForm(0, 1, k_UnitNone));
  EXPECT_EQ(rest, "abc");
  EXPECT_TRUE(Parse("")->OfForm(0, 1, k_UnitNone));
  // A dash ligature never forms: "--2pt" is a minus and no number.
  EXPECT_TRUE(Parse("-2pt")->OfForm(-2, 1, k_UnitPt));

  TTexTokenSource source("test", "[3pt] [x]");
  std::unique_ptr<TFmtUnitNode> optional(NextTexOptionalMeasureArg(source));
  ASSERT_TRUE(optional);
  EXPECT_TRUE(optional->OfForm(3, 1, k_UnitPt));
  std::unique_ptr<TFmtUnitNode> second(NextTexOptionalMeasureArg(source));
  ASSERT_TRUE(second);  // "[" was there: an empty measure, "x" in the place of "]" dropped
  EXPECT_TRUE(second->OfForm(0, 1, k_UnitNone));
  TTexTokenSource none("test", "x");
  EXPECT_EQ(NextTexOptionalMeasureArg(none), nullptr);
  std::unique_ptr<TTexToken> left(none.NextToken(1, 1));
  ASSERT_TRUE(left);
  EXPECT_EQ(ztest::DescribeToken(left.get()), "x");
}

TEST_F(UnitNodeTest, HugeNumbersNeitherTrapNorWrap) {
  // The tenth digit would pass 2^31 - 1: the number ends before it.
  EXPECT_TRUE(Parse("99999999999pt")->OfForm(999999999, 1, k_UnitPt));
  // 300000000 in is past the 32-bit range in logical units: clamped.
  EXPECT_EQ(Parse("3000000000in")->GetInternalValue(m_Context), std::numeric_limits<int32_t>::max());
  EXPECT_EQ(Parse("-3000000000in")->GetInternalValue(m_Context), std::numeric_limits<int32_t>::min());
  // The denominator stops at 10^9 just the same.
  auto tiny = Parse("0.000000000001pt");
  EXPECT_EQ(tiny->Get_Numerator(), 0);
  EXPECT_EQ(tiny->GetInternalValue(m_Context), 0);
  auto big = Parse("2147483647cc");
  std::unique_ptr<TFmtUnitNode> sum(big->Add(big.get(), 1, m_Context));
  EXPECT_GT(sum->GetInternalValue(m_Context), 0);
  long n, d;
  big->GetValue(n, d, m_Context, k_UnitSp);  // cc to sp: products past 64 bits saturate
  EXPECT_NE(d, 0);
  TFmtUnitNode most(std::numeric_limits<int32_t>::min(), 1, k_UnitPt);
  most.Negate();
  EXPECT_EQ(most.Get_Numerator(), std::numeric_limits<int32_t>::max());
  TFmtUnitNode zeroDenominator(5, 0, k_UnitPt);
  EXPECT_EQ(zeroDenominator.Get_Denominator(), 1);
}

}  // namespace
