// A format context without a display, for tests of layout and of the node
// protocol: it keeps a clip region and a text colour, answers the clip test
// by the device's rule (normalise both, intersect), and records what it was
// asked to paint.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "device/font_family.h"
#include "format/context.h"
#include "framework/gdi_objects.h"

namespace ztest {

class TTestContext : public TFmtContext {
 public:
  TTestContext() = default;
  TTestContext(const TTestContext&) = default;

  int Arc(int, int, int, int, int, int, int, int) override { return 1; }
  void CharacterOut(char c, int x, int y, TExtendedFont*) override { TextOut(x, y, &c, 1); }
  void DPtoLP(CPoint*, int) override {}
  void DrawRect(const CRect& rect) override { m_DrawnRects.push_back(rect); }
  void FillRect(const CRect* rect, CBrush* brush) override {
    if (!rect || !brush) return;
    m_FilledRects.push_back(*rect);
    m_FillColors.push_back(brush->m_Color);
  }
  CColorRef GetTextColor() override { return m_TextColor; }
  CSize GetTextExtent(const char*, int length) override { return {length > 0 ? 10 * length : 0, 20}; }
  int Get_QuadWidth() override { return GetTextExtent("M", 1).cx; }
  int IntersectsClippingRegion(CRect& rect) override {
    m_LastClipTest = rect;
    rect.NormalizeRect();
    CRect clip = m_ClipRegion;
    clip.NormalizeRect();
    CRect result;
    return result.IntersectRect(rect, clip);
  }
  int IsPrinting() override { return 0; }
  void LPtoDP(CPoint*, int) override {}
  void LPtoDP(CRect*) override {}
  void LPtoDP(CSize*) override {}
  int LineTo(int x, int y) override {
    m_Current = CPoint(x, y);
    return 1;
  }
  CPoint MoveTo(int x, int y) override {
    const CPoint previous = m_Current;
    m_Current = CPoint(x, y);
    return previous;
  }
  int RectVisible(const CRect*) override { return 1; }
  int Rectangle(const CRect* rect) override { return rect ? Rectangle(rect->left, rect->top, rect->right, rect->bottom) : 0; }
  int Rectangle(int, int, int, int) override { return 1; }
  CBrush* SelectObject(CBrush* brush) override { return brush; }
  CFont* SelectObject(CFont* font) override {
    ++m_nFontSelections;
    return font;
  }
  CPen* SelectObject(CPen* pen) override { return pen; }
  CColorRef SetBkColor(const CColorRef& color) override {
    const CColorRef previous = m_BkColor;
    m_BkColor = color;
    return previous;
  }
  void SetPageColor(const CColorRef&) override {}
  CColorRef SetTextColor(const CColorRef& color) override {
    const CColorRef previous = m_TextColor;
    m_TextColor = color;
    return previous;
  }
  int TextOut(int, int, const char* text, int length) override {
    if (length > 0) m_Text.append(text, static_cast<size_t>(length));
    return 1;
  }
  int TextOut(int x, int y, const CString& text) override { return TextOut(x, y, text, text.GetLength()); }

  CRect m_ClipRegion;
  CRect m_LastClipTest;
  CColorRef m_TextColor{0, 0, 0, "black"};
  CColorRef m_BkColor{252, 252, 252, "white"};
  CPoint m_Current;
  std::vector<CRect> m_DrawnRects;
  std::vector<CRect> m_FilledRects;
  std::vector<CColorRef> m_FillColors;
  std::string m_Text;
  int m_nFontSelections = 0;
};

// A font whose every character measures the same: height, depth, width.
class TTestFont : public TExtendedFont {
 public:
  TTestFont(int height, int depth, int width) : m_nHeight(height), m_nDepth(depth), m_nWidth(width) {}
  int Ascent(TFmtContext&) override { return m_nHeight; }
  int CharacterDepth(int, TFmtContext&) override { return m_nDepth; }
  int CharacterHeight(int, TFmtContext&) override { return m_nHeight; }
  int CharacterVerticalThickness(int, TFmtContext&) override { return m_nHeight; }
  int CharacterWidth(int, TFmtContext&) override { return m_nWidth; }
  TExtendedFont_PI* CreateFontForCharacter(int, int, int, TFmtContext&, int) override { return nullptr; }
  int Descent(TFmtContext&) override { return m_nDepth; }
  int ExternalLeading(TFmtContext&) override { return 0; }
  int Height(TFmtContext&) override { return m_nHeight + m_nDepth; }
  TExtendedFont_PI* Select(TFmtContext& context) override {
    context.SelectObject(static_cast<CFont*>(nullptr));
    ++m_nSelections;
    return this;
  }
  int m_nHeight, m_nDepth, m_nWidth;
  int m_nSelections = 0;
};

// A family with one font per size, each `scale` times the size number wide,
// so that tests can tell which size is current from a measurement.
class TTestFamily : public TFontFamily {
 public:
  explicit TTestFamily(int scale) {
    for (int i = 0; i < 11; ++i) m_Fonts.emplace_back(2 * scale * (i + 1), scale * (i + 1), scale * (i + 1));
  }
  TExtendedFont_PI* CreateFontForCharacter(int, int, int, TFmtContext&, int) override { return nullptr; }
  TExtendedFont_PI* GetFontAtCurrentSize(TFmtContext&) override { return &m_Fonts.at(Clamp(fg_CurrentFontSize)); }
  TExtendedFont_PI* GetSizedFont(TFmtContext& context, int) override { return GetFontAtCurrentSize(context); }
  const char* FaceName() const override { return "test"; }
  void MakeCurrentAndSelect(TFmtContext& context) override {
    fg_pCurrent = this;
    TExtendedFont::fg_pCurrent = static_cast<TExtendedFont*>(Select(context));
  }
  TExtendedFont_PI* Select(TFmtContext& context) override { return GetFontAtCurrentSize(context)->Select(context); }

  static int Clamp(int size) { return size < 0 ? 0 : size > 10 ? 10 : size; }
  std::deque<TTestFont> m_Fonts;  // handed out by address: a deque never moves them
};

}  // namespace ztest
