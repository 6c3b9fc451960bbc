// The device-independent halves of fonts and font families: what layout may
// ask of a font (metrics in logical units, selection through the context) and
// the class-wide current size that group states save and restore.
#pragma once

#include "framework/objects.h"

class TFmtContext;

// One loaded font. Every measure is in logical units.
class TExtendedFont_PI : public CObject {
 public:
  TExtendedFont_PI() = default;
  explicit TExtendedFont_PI(int passedOn) : m_nPassedOn(passedOn) {}

  virtual int Ascent(TFmtContext& context) = 0;
  virtual int CharacterDepth(int c, TFmtContext& context) = 0;
  virtual int CharacterHeight(int c, TFmtContext& context) = 0;
  virtual int CharacterVerticalThickness(int c, TFmtContext& context) = 0;
  virtual int CharacterWidth(int c, TFmtContext& context) = 0;
  virtual TExtendedFont_PI* CreateFontForCharacter(int c, int height, int depth, TFmtContext& context,
                                                   int extra) = 0;
  virtual int Descent(TFmtContext& context) = 0;
  virtual int ExternalLeading(TFmtContext& context) = 0;
  virtual int Height(TFmtContext& context) = 0;
  // Selects the font into the context's drawing state; returns this font.
  virtual TExtendedFont_PI* Select(TFmtContext& context) = 0;

 protected:
  int m_nPassedOn = 0;  // always 0 on this display
};

// One typeface at the named sizes.
class TFontFamily_PI : public CObject {
 public:
  // Named sizes; 11 is stored in the ratio table but is no size.
  enum KFontSize : int {
    k_ScriptScriptSize = 0,
    k_Tiny = 1,
    k_ScriptSize = 2,
    k_FootnoteSize = 3,
    k_Small = 4,
    k_NormalSize = 5,
    k_Large = 6,
    k_Large2 = 7,
    k_Large3 = 8,
    k_Huge = 9,
    k_Huge2 = 10,
  };
  static constexpr int fg_nSizeRatios = 12;
  static const int g_SizeNumerator[fg_nSizeRatios];
  static const int g_SizeDenominator[fg_nSizeRatios];

  TFontFamily_PI() = default;
  TFontFamily_PI(int pointSize, int italic) : m_nPointSize(pointSize), m_bItalic(italic) {}

  virtual TExtendedFont_PI* CreateFontForCharacter(int c, int height, int depth, TFmtContext& context,
                                                   int extra) = 0;
  virtual TExtendedFont_PI* GetFontAtCurrentSize(TFmtContext& context) = 0;
  // Gives the font at the current size whatever size is asked: callers rely on it.
  virtual TExtendedFont_PI* GetSizedFont(TFmtContext& context, int size) = 0;
  virtual const char* FaceName() const = 0;
  virtual void MakeCurrentAndSelect(TFmtContext& context) = 0;
  virtual TExtendedFont_PI* Select(TFmtContext& context) = 0;

  // Maps a size meant for normal text into the context of the style base size.
  static int GetSizeRelativeToBase(int size);
  // Small capitals: current and base one size down (not below 0); returns the old size.
  static int SetNextSmallerCurrentAndBaseFontSizes();

  static inline int fg_CurrentFontSize = k_NormalSize;
  static inline int fg_StyleBaseFontSize = k_NormalSize;

 protected:
  int m_nPointSize = 0;
  unsigned char m_bAlwaysOne = 1;
  int m_nPassedOn = 0;
  int m_bItalic = 0;
};
