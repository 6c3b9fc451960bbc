// KFontTag: which of the thirteen font families a glyph comes from.
#pragma once

// The numbers are fixed: the symbol table and the font build name families by
// them, and a tag of 13 or more names no family.
enum KFontTag : int {
  k_FontTagCurrent = 0,  // the family last made current
  k_FontTagBold = 1,
  k_FontTagFixedWidth = 2,
  k_FontTagItalic = 3,
  k_FontTagMathItalic = 4,
  k_FontTagMathExtension0 = 5,
  k_FontTagMathExtension1 = 6,  // zrsya
  k_FontTagMathExtension2 = 7,  // zrsyb
  k_FontTagMathExtension3 = 8,  // zrsyc
  k_FontTagMathExtension4 = 9,
  k_FontTagMathRoman = 10,
  k_FontTagRoman = 11,
  k_FontTagSansSerif = 12,
};

constexpr int fg_nFontTagCount = 13;
