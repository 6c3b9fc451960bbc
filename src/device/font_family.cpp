#include "device/font_family.h"

TFontFamily* TFontFamily::GetFontFamilyFromTag(int tag) {
  switch (tag) {
    case k_FontTagCurrent: return fg_pCurrent;
    case k_FontTagBold: return fg_pBold;
    case k_FontTagFixedWidth: return fg_pFixedWidth;
    case k_FontTagItalic: return fg_pItalic;
    case k_FontTagMathItalic: return fg_pMathItalic;
    case k_FontTagMathExtension0: return fg_pMathExtension0;
    case k_FontTagMathExtension1: return fg_pMathExtension1;
    case k_FontTagMathExtension2: return fg_pMathExtension2;
    case k_FontTagMathExtension3: return fg_pMathExtension3;
    case k_FontTagMathExtension4: return fg_pMathExtension4;
    case k_FontTagMathRoman: return fg_pMathRoman;
    case k_FontTagRoman: return fg_pRoman;
    case k_FontTagSansSerif: return fg_pSansSerif;
    default: return nullptr;
  }
}
