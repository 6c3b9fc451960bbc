// The X-bound font classes: a loaded X font with per-character metric caches
// in logical units, and the typeface families that make such fonts at the
// named sizes and at any size for one stretched character.
#pragma once

#include "device/font_family_pi.h"
#include "framework/collections.h"
#include "framework/cstring.h"
#include "framework/gdi_objects.h"
#include "symbols/font_tag.h"

class CWnd;

// Builds an X font name from an XLFD template: pixel size and average width
// become "*", the point size `deciPoints`, the resolutions the two given.
// The pixel, point and width fields are skipped by one character, so a
// template with several digits there keeps the rest; the walk stops after
// the 15th hyphen. `out` must hold the template plus the three numbers
// (callers use about 512 bytes); the longer form below bounds the writing.
void CreateFontNameAtSize(int deciPoints, int xResolution, int yResolution, const char* templateName, char* out);
// As above, never writing more than `outSize` bytes (terminated when > 0).
void CreateFontNameAtSize(int deciPoints, int xResolution, int yResolution, const char* templateName, char* out,
                          size_t outSize);

// One loaded X font. The caches hold -1 until a character is measured.
class TExtendedFont : public TExtendedFont_PI {
 public:
  static constexpr int fg_nCodes = 256;

  // For fonts that are not loaded from the server (test doubles): all unmeasured.
  TExtendedFont();
  // Loads `name` through the context's window (or `window` when the context
  // has none) and measures ascent and descent. Throws CFontException when the
  // server refuses the name; nothing is kept then.
  TExtendedFont(TFmtContext& context, const char* name, int passedOn, CWnd* window = nullptr);
  TExtendedFont(const TExtendedFont&) = delete;
  TExtendedFont& operator=(const TExtendedFont&) = delete;

  void Initialize(TFmtContext& context);

  int Ascent(TFmtContext& context) override;
  int CharacterDepth(int c, TFmtContext& context) override;
  int CharacterHeight(int c, TFmtContext& context) override;
  int CharacterVerticalThickness(int c, TFmtContext& context) override;
  int CharacterWidth(int c, TFmtContext& context) override;
  // Always null: only families make fonts.
  TExtendedFont_PI* CreateFontForCharacter(int c, int height, int depth, TFmtContext& context, int extra) override;
  int Descent(TFmtContext& context) override;
  int ExternalLeading(TFmtContext& context) override;
  int Height(TFmtContext& context) override;
  // Selects the font into the context; does not set fg_pCurrent (the caller does).
  TExtendedFont_PI* Select(TFmtContext& context) override;

  void ComputeCharacterDepthAndHeight(int c, TFmtContext& context);
  CFont& Get_Font() { return m_Font; }
  const char* Get_Name() const { return m_Font.Get_FaceName(); }

  // A code as a cache index: negative codes get 256 added, and what is still
  // outside 0..255 is taken modulo 256.
  static int CodeIndex(int c) {
    if (c < 0) c += fg_nCodes;
    return c & (fg_nCodes - 1);
  }

  // The font selected into the GC now.
  static inline TExtendedFont* fg_pCurrent = nullptr;
  // Fonts loaded from the server in this run (for tools and tests).
  static inline int fg_nLoaded = 0;

 protected:
  // Only three fields of the outline metrics are used here, in logical units.
  struct TOutlineTextMetrics {
    int m_nHeight = 0;  // ascent + descent
    int m_nAscent = 0;
    int m_nDescent = 0;
  };

  CFont m_Font;
  TOutlineTextMetrics m_OutlineTextMetrics;
  int m_CharacterDepth[fg_nCodes];
  int m_CharacterHeight[fg_nCodes];
  int m_CharacterWidth[fg_nCodes];
};

// A font made for one stretched size, and that size in tenths of a point.
class TFontAndSize : public CObject {
 public:
  TFontAndSize(TExtendedFont* font, int deciPoints) : m_pFont(font), m_nDeciPoints(deciPoints) {}
  TFontAndSize(const TFontAndSize&) = delete;
  TFontAndSize& operator=(const TFontAndSize&) = delete;
  ~TFontAndSize() override { delete m_pFont; }

  TExtendedFont* m_pFont;  // owned
  int m_nDeciPoints;
};

class TFontFamily : public TFontFamily_PI {
 public:
  static constexpr int fg_nSizes = 11;

  // For families that make no X fonts (test doubles).
  TFontFamily() = default;
  // `faceName` is the XLFD template; the rest is kept as given (PrepareAllFonts
  // passes 1, 1, 100, 0 after the italic flag).
  TFontFamily(CWnd* window, const char* faceName, int pointSize, int italic, int alwaysOne = 1, int one = 1,
              int hundred = 100, int passedOn = 0);
  TFontFamily(const TFontFamily&) = delete;
  TFontFamily& operator=(const TFontFamily&) = delete;
  ~TFontFamily() override;

  // The font at a named size, made on first use. A size outside 0..10 counts
  // as normal size.
  TExtendedFont* CreateFontAtSize(TFmtContext& context, int size);

  // A font at which character `c` fills `height` above and `depth` below the
  // baseline, centred on the math axis, with `extra` more on the longer side.
  TExtendedFont_PI* CreateFontForCharacter(int c, int height, int depth, TFmtContext& context, int extra) override;
  TExtendedFont_PI* GetFontAtCurrentSize(TFmtContext& context) override;
  // Ignores `size`: the font at the current size, as callers expect.
  TExtendedFont_PI* GetSizedFont(TFmtContext& context, int size) override;
  const char* FaceName() const override { return m_FaceName.c_str(); }
  void MakeCurrentAndSelect(TFmtContext& context) override;
  TExtendedFont_PI* Select(TFmtContext& context) override;

  CWnd* Get_Window() const { return m_pWindow; }
  int Get_PointSize() const { return m_nPointSize; }
  // The slot of a named size (null until made).
  TExtendedFont* Get_SizedFont(int size) const {
    return size >= 0 && size < fg_nSizes ? m_pSizedFonts[size] : nullptr;
  }
  int Get_StretchedFontCount() const { return m_FontAndSizes.GetCount(); }

  // The one font of input fields, made on first use.
  static CFont* CreateFontForEditBox(TFmtContext& context);
  // Vertical measures of the minus sign at the current size: its height is
  // the math axis. 0 when the minus has no glyph.
  static int MinusHeight(TFmtContext& context);
  static int MinusThickness(TFmtContext& context);

  // The thirteen families from the window's resolution and the device's
  // templates and point sizes; nothing when fonts exist or `window` is null.
  static void PrepareAllFonts(CWnd* window);
  static void DestroyAllFonts();
  static TFontFamily* AddFontFamily(CString&) { return nullptr; }
  static void ReadRegistryValues() {}
  static void SaveRegistryValues() {}

  // Tag 0 is the current family; 13 and above name none.
  static TFontFamily* GetFontFamilyFromTag(KFontTag tag);
  static TFontFamily* GetFontFamilyFromTag(int tag) { return GetFontFamilyFromTag(static_cast<KFontTag>(tag)); }

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
  static inline CFont* fg_pEditBoxFont = nullptr;  // owned

 private:
  // Builds this family's name at `deciPoints` for the context's window (the
  // family's when the context has none).
  void BuildName(TFmtContext& context, int deciPoints, char* out, size_t outSize) const;
  CWnd* WindowFor(TFmtContext& context) const;

  CWnd* m_pWindow = nullptr;  // not owned
  TExtendedFont* m_pSizedFonts[fg_nSizes] = {};  // owned
  CObList m_FontAndSizes;  // of TFontAndSize, owned, newest first
  CString m_FaceName;
};
