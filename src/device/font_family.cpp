#include "device/font_family.h"

#include <X11/Xlib.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "device/context_xwin.h"
#include "framework/wnd.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

namespace {
// Long enough for any template the profile store may hold to come back whole
// in the usual case; longer ones are cut, and the server refuses them.
constexpr size_t kNameSize = 512;

int Saturate(int64_t value) { return static_cast<int>(std::clamp<int64_t>(value, INT_MIN, INT_MAX)); }

// A resolution in dots per inch, truncated; a nonsense value (no screen) is 0.
int Resolution(double dpi) {
  if (!(dpi > 0) || dpi > 1e6) return 0;
  return static_cast<int>(dpi);
}

TFmtContext_XWin* DeviceOf(TFmtContext& context) { return dynamic_cast<TFmtContext_XWin*>(&context); }

// A device length in logical units through the width of a size: vertical
// metrics scale with the horizontal ratio on this device.
int ToLogical(TFmtContext& context, int deviceValue) {
  TFmtContext_XWin* device = DeviceOf(context);
  if (!device) return deviceValue;
  CSize size(deviceValue, 10);
  device->DPtoLP(size);
  return size.cx;
}

const char* TemplateOf(const CString* name) { return name ? name->c_str() : ""; }
}  // namespace

// ---- font names ----

void CreateFontNameAtSize(int deciPoints, int xResolution, int yResolution, const char* templateName, char* out,
                          size_t outSize) {
  if (!out || outSize == 0) return;
  size_t o = 0;
  auto put = [&](const char* text) {
    for (; *text && o + 1 < outSize; ++text) out[o++] = *text;
  };
  auto putNumber = [&](int value) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%d", value);
    put(digits);
  };
  const char* p = templateName ? templateName : "";
  int hyphens = 0;
  while (*p && o + 1 < outSize) {
    const char ch = *p++;
    out[o++] = ch;
    if (ch != '-') continue;
    ++hyphens;
    switch (hyphens) {
      case 7:  // pixel size
        put("*");
        if (*p) ++p;
        break;
      case 8:  // point size
        putNumber(deciPoints);
        if (*p) ++p;
        break;
      case 9:   // x resolution
      case 10:  // y resolution
        putNumber(hyphens == 9 ? xResolution : yResolution);
        while (*p && *p != '-') ++p;
        break;
      case 12:  // average width
        put("*");
        if (*p) ++p;
        break;
      default: break;
    }
    if (hyphens >= 15) break;
  }
  out[o] = '\0';
}

void CreateFontNameAtSize(int deciPoints, int xResolution, int yResolution, const char* templateName, char* out) {
  // The caller vouches for the room: a template's length plus three numbers.
  const size_t length = templateName ? std::strlen(templateName) : 0;
  CreateFontNameAtSize(deciPoints, xResolution, yResolution, templateName, out, length + 3 * 12 + 4);
}

// ---- TExtendedFont ----

namespace {
void MarkUnmeasured(int* entries) { std::fill(entries, entries + TExtendedFont::fg_nCodes, -1); }
}  // namespace

TExtendedFont::TExtendedFont() {
  MarkUnmeasured(m_CharacterDepth);
  MarkUnmeasured(m_CharacterHeight);
  MarkUnmeasured(m_CharacterWidth);
}

TExtendedFont::TExtendedFont(TFmtContext& context, const char* name, int passedOn, CWnd* window)
    : TExtendedFont_PI(passedOn) {
  TFmtContext_XWin* device = DeviceOf(context);
  CWnd* loadThrough = device && device->Get_Window() ? device->Get_Window() : window;
  m_Font.CreateFont(loadThrough, name);  // throws CFontException; m_Font frees what it holds
  ++fg_nLoaded;
  Initialize(context);
}

void TExtendedFont::Initialize(TFmtContext& context) {
  const XFontStruct* metrics = m_Font.Get_Extent();
  m_OutlineTextMetrics.m_nAscent = metrics ? ToLogical(context, metrics->ascent) : 0;
  m_OutlineTextMetrics.m_nDescent = metrics ? ToLogical(context, metrics->descent) : 0;
  m_OutlineTextMetrics.m_nHeight =
      Saturate(int64_t{m_OutlineTextMetrics.m_nAscent} + m_OutlineTextMetrics.m_nDescent);
  MarkUnmeasured(m_CharacterDepth);
  MarkUnmeasured(m_CharacterHeight);
  MarkUnmeasured(m_CharacterWidth);
}

int TExtendedFont::Ascent(TFmtContext&) { return m_OutlineTextMetrics.m_nAscent; }
int TExtendedFont::Descent(TFmtContext&) { return m_OutlineTextMetrics.m_nDescent; }
int TExtendedFont::Height(TFmtContext&) { return m_OutlineTextMetrics.m_nHeight; }
int TExtendedFont::ExternalLeading(TFmtContext&) { return m_OutlineTextMetrics.m_nHeight / 5; }

// XTextWidth and XTextExtents work on the metrics loaded with the font, in
// the client: a measure needs neither the GC nor a request, so the selected
// font and fg_pCurrent are never switched for it.
int TExtendedFont::CharacterWidth(int c, TFmtContext& context) {
  const int i = CodeIndex(c);
  int width = m_CharacterWidth[i];
  if (width < 0) {
    const XFontStruct* metrics = m_Font.Get_Extent();
    char one = static_cast<char>(i);
    width = ToLogical(context, metrics ? XTextWidth(const_cast<XFontStruct*>(metrics), &one, 1) : 0);
    m_CharacterWidth[i] = width;
  }
  return width;
}

void TExtendedFont::ComputeCharacterDepthAndHeight(int c, TFmtContext& context) {
  const int i = CodeIndex(c);
  const XFontStruct* metrics = m_Font.Get_Extent();
  XCharStruct overall{};
  if (metrics) {
    char one = static_cast<char>(i);
    int direction = 0, ascent = 0, descent = 0;
    XTextExtents(const_cast<XFontStruct*>(metrics), &one, 1, &direction, &ascent, &descent, &overall);
  }
  m_CharacterDepth[i] = ToLogical(context, overall.descent);
  m_CharacterHeight[i] = ToLogical(context, overall.ascent);
}

int TExtendedFont::CharacterDepth(int c, TFmtContext& context) {
  const int i = CodeIndex(c);
  if (m_CharacterDepth[i] < 0) ComputeCharacterDepthAndHeight(i, context);
  return m_CharacterDepth[i];
}

int TExtendedFont::CharacterHeight(int c, TFmtContext& context) {
  const int i = CodeIndex(c);
  if (m_CharacterHeight[i] < 0) ComputeCharacterDepthAndHeight(i, context);
  return m_CharacterHeight[i];
}

int TExtendedFont::CharacterVerticalThickness(int c, TFmtContext& context) { return CharacterHeight(c, context); }

TExtendedFont_PI* TExtendedFont::CreateFontForCharacter(int, int, int, TFmtContext&, int) { return nullptr; }

TExtendedFont_PI* TExtendedFont::Select(TFmtContext& context) {
  context.SelectObject(&m_Font);
  return this;
}

// ---- TFontFamily ----

TFontFamily::TFontFamily(CWnd* window, const char* faceName, int pointSize, int italic, int alwaysOne, int /*one*/,
                         int /*hundred*/, int passedOn)
    : TFontFamily_PI(pointSize, italic), m_pWindow(window), m_FaceName(faceName ? faceName : "") {
  m_bAlwaysOne = static_cast<unsigned char>(alwaysOne);
  m_nPassedOn = passedOn;
}

TFontFamily::~TFontFamily() {
  for (TExtendedFont*& font : m_pSizedFonts) {
    delete font;
    font = nullptr;
  }
  for (auto position = m_FontAndSizes.GetHeadPosition(); position != m_FontAndSizes.GetEnd();)
    delete static_cast<TFontAndSize*>(m_FontAndSizes.GetNext(position));
  m_FontAndSizes.RemoveAll();
}

CWnd* TFontFamily::WindowFor(TFmtContext& context) const {
  TFmtContext_XWin* device = DeviceOf(context);
  return device && device->Get_Window() ? device->Get_Window() : m_pWindow;
}

void TFontFamily::BuildName(TFmtContext& context, int deciPoints, char* out, size_t outSize) const {
  CWnd* window = WindowFor(context);
  CreateFontNameAtSize(deciPoints, window ? Resolution(window->m_dDpiX) : 0, window ? Resolution(window->m_dDpiY) : 0,
                       m_FaceName.c_str(), out, outSize);
}

TExtendedFont* TFontFamily::CreateFontAtSize(TFmtContext& context, int size) {
  if (size < 0 || size >= fg_nSizes) size = k_NormalSize;
  if (m_pSizedFonts[size]) return m_pSizedFonts[size];
  // MulDiv's truncation, in 64 bits so that a huge point size saturates.
  const int deciPoints =
      Saturate(int64_t{10} * m_nPointSize * g_SizeNumerator[size] / g_SizeDenominator[size]);
  char name[kNameSize];
  BuildName(context, deciPoints, name, sizeof name);
  m_pSizedFonts[size] = new TExtendedFont(context, name, m_nPassedOn, m_pWindow);
  return m_pSizedFonts[size];
}

TExtendedFont_PI* TFontFamily::GetFontAtCurrentSize(TFmtContext& context) {
  return CreateFontAtSize(context, fg_CurrentFontSize);
}

TExtendedFont_PI* TFontFamily::GetSizedFont(TFmtContext& context, int) { return GetFontAtCurrentSize(context); }

TExtendedFont_PI* TFontFamily::Select(TFmtContext& context) {
  TExtendedFont_PI* font = GetFontAtCurrentSize(context);
  font->Select(context);
  return font;
}

void TFontFamily::MakeCurrentAndSelect(TFmtContext& context) {
  fg_pCurrent = this;
  TExtendedFont::fg_pCurrent = static_cast<TExtendedFont*>(Select(context));
}

TExtendedFont_PI* TFontFamily::CreateFontForCharacter(int c, int height, int depth, TFmtContext& context, int extra) {
  if (c < 0) c += 256;  // the character itself does not change the size
  const int64_t m = MinusHeight(context);
  const int64_t half = std::max(int64_t{height} - m, int64_t{depth} + m);
  const int64_t points = 2 * (half + extra) / TFmtContext::fg_nUnitsPerPoint;
  // Two percent of surplus, truncated before the tenths are made.
  const int deciPoints = Saturate(10 * (points * 102 / 100));
  for (auto position = m_FontAndSizes.GetHeadPosition(); position != m_FontAndSizes.GetEnd();) {
    auto* entry = static_cast<TFontAndSize*>(m_FontAndSizes.GetNext(position));
    if (entry->m_nDeciPoints == deciPoints) return entry->m_pFont;
  }
  char name[kNameSize];
  BuildName(context, deciPoints, name, sizeof name);
  auto* font = new TExtendedFont(context, name, m_nPassedOn, m_pWindow);
  m_FontAndSizes.AddHead(new TFontAndSize(font, deciPoints));
  return font;
}

CFont* TFontFamily::CreateFontForEditBox(TFmtContext& context) {
  if (fg_pEditBoxFont) return fg_pEditBoxFont;
  // The point size as a logical width: the device width is the tenths of a
  // point of the name.
  CSize size(Saturate(int64_t{TFmtContext::fg_nTtFontPointSize} * 5 * TFmtContext::fg_nUnitsPerPoint), 0);
  context.LPtoDP(&size);
  TFmtContext_XWin* device = DeviceOf(context);
  CWnd* window = device ? device->Get_Window() : nullptr;
  if (!window && fg_pFixedWidth) window = fg_pFixedWidth->m_pWindow;
  char name[kNameSize];
  CreateFontNameAtSize(size.cx, window ? Resolution(window->m_dDpiX) : 0, window ? Resolution(window->m_dDpiY) : 0,
                       TemplateOf(TFmtContext::fg_pTtFontName), name, sizeof name);
  auto* font = new CFont;
  try {
    font->CreateFont(window, name);
  } catch (...) {
    delete font;
    throw;
  }
  fg_pEditBoxFont = font;
  return font;
}

namespace {
// The glyph of the minus sign: its family's font at the current size and its
// code; false when the minus has no glyph.
bool MinusGlyph(TFmtContext& context, TExtendedFont_PI** font, int* code) {
  TStringPool* pool = TStringPool::g_pGlobal;
  if (!pool || !TGlobalString::g_pMINUS || !TGlobalString::g_pTEXFONTINDEX) return false;
  TFontIndexProperty* index = pool->GetFontIndex(TGlobalString::g_pMINUS, TGlobalString::g_pTEXFONTINDEX);
  if (!index) return false;
  TFontFamily* family = TFontFamily::GetFontFamilyFromTag(index->Get_FontTag());
  if (!family) return false;
  *font = family->GetFontAtCurrentSize(context);
  *code = index->Get_Code();
  return *font != nullptr;
}
}  // namespace

int TFontFamily::MinusHeight(TFmtContext& context) {
  TExtendedFont_PI* font = nullptr;
  int code = 0;
  return MinusGlyph(context, &font, &code) ? font->CharacterHeight(code, context) : 0;
}

int TFontFamily::MinusThickness(TFmtContext& context) {
  TExtendedFont_PI* font = nullptr;
  int code = 0;
  return MinusGlyph(context, &font, &code) ? font->CharacterVerticalThickness(code, context) : 0;
}

TFontFamily* TFontFamily::GetFontFamilyFromTag(KFontTag tag) {
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

void TFontFamily::PrepareAllFonts(CWnd* window) {
  if (fg_pCurrent || !window) return;
  using X = TFmtContext_XWin;
  const int rm = TFmtContext::fg_nRmFontPointSize, math = TFmtContext::fg_nMathFontPointSize;
  auto make = [window](const CString* name, int pointSize, int italic) {
    return new TFontFamily(window, TemplateOf(name), pointSize, italic, 1, 1, 100, 0);
  };
  fg_pRoman = make(TFmtContext::fg_pRmFontName, rm, 0);
  fg_pBold = make(X::fg_pRmBldFontName, rm, 0);
  fg_pFixedWidth = make(TFmtContext::fg_pTtFontName, TFmtContext::fg_nTtFontPointSize, 0);
  fg_pItalic = make(X::fg_pRmItFontName, rm, 1);
  fg_pMathItalic = make(X::fg_pMathItFontName, math, 1);
  fg_pMathExtension0 = make(X::fg_pMathExt0FontName, math, 0);
  fg_pMathExtension1 = make(X::fg_pMathExt1FontName, math, 0);
  fg_pMathExtension2 = make(X::fg_pMathExt2FontName, math, 0);
  fg_pMathExtension3 = make(X::fg_pMathExt3FontName, math, 0);
  fg_pMathExtension4 = make(X::fg_pMathExt4FontName, math, 0);
  fg_pMathRoman = make(TFmtContext::fg_pMathFontName, math, 0);
  fg_pSansSerif = make(TFmtContext::fg_pSfFontName, TFmtContext::fg_nSfFontPointSize, 0);
  fg_pCurrent = fg_pRoman;
  fg_CurrentFontSize = k_NormalSize;
}

void TFontFamily::DestroyAllFonts() {
  if (!fg_pCurrent) return;
  // The upper symbol families may be the first one again.
  for (TFontFamily** shared : {&fg_pMathExtension2, &fg_pMathExtension3, &fg_pMathExtension4}) {
    if (*shared && *shared != fg_pMathExtension1) delete *shared;
    *shared = nullptr;
  }
  for (TFontFamily** family : {&fg_pRoman, &fg_pBold, &fg_pFixedWidth, &fg_pItalic, &fg_pMathItalic,
                               &fg_pMathExtension0, &fg_pMathExtension1, &fg_pMathRoman, &fg_pSansSerif}) {
    delete *family;
    *family = nullptr;
  }
  fg_pCurrent = nullptr;
  TExtendedFont::fg_pCurrent = nullptr;
  delete fg_pEditBoxFont;
  fg_pEditBoxFont = nullptr;
}
