// The X-bound font classes, as far as layout needs them now: the class-wide
// current font and families. Their X members (the CFont, metric caches, the
// sized fonts of a family) join them with the font families themselves.
#pragma once

#include "device/font_family_pi.h"
#include "symbols/font_tag.h"

class TExtendedFont : public TExtendedFont_PI {
 public:
  using TExtendedFont_PI::TExtendedFont_PI;
  // The font selected into the GC now.
  static inline TExtendedFont* fg_pCurrent = nullptr;
};

class TFontFamily : public TFontFamily_PI {
 public:
  using TFontFamily_PI::TFontFamily_PI;

  // Tag 0 is the current family; 13 and above name none.
  static TFontFamily* GetFontFamilyFromTag(int tag);

  static inline TFontFamily* fg_pCurrent = nullptr;
  static inline TFontFamily* fg_pBold = nullptr;
  static inline TFontFamily* fg_pFixedWidth = nullptr;
  static inline TFontFamily* fg_pItalic = nullptr;
  static inline TFontFamily* fg_pMathItalic = nullptr;
  static inline TFontFamily* fg_pMathExtension0 = nullptr;
  static inline TFontFamily* fg_pMathExtension1 = nullptr;
  static inline TFontFamily* fg_pMathExtension2 = nullptr;
  static inline TFontFamily* fg_pMathExtension3 = nullptr;
  static inline TFontFamily* fg_pMathExtension4 = nullptr;
  static inline TFontFamily* fg_pMathRoman = nullptr;
  static inline TFontFamily* fg_pRoman = nullptr;
  static inline TFontFamily* fg_pSansSerif = nullptr;
};
