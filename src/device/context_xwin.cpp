#include "device/context_xwin.h"

#include <Xm/Xm.h>

#include <algorithm>
#include <climits>
#include <cstdio>

#include "device/font_family.h"
#include "format/document_node.h"
#include "framework/gdi_objects.h"
#include "framework/wnd.h"
#include "host/np_zephrin_app.h"
#include "host/resource.h"

namespace {
int32_t Saturate(int64_t value) {
  if (value > INT32_MAX) return INT32_MAX;
  if (value < INT32_MIN) return INT32_MIN;
  return static_cast<int32_t>(value);
}

// a * b / c, the product in 64 bits, truncated toward zero, saturated.
int32_t Scale(int64_t a, int64_t b, int64_t c) {
  if (c == 0) return Saturate(a);
  return Saturate(a * b / c);
}

// X takes 16-bit coordinates; a little inside them so that line ends and
// widths stay representable.
constexpr int64_t kDeviceMin = -16384;
constexpr int64_t kDeviceMax = 16383;

const char* const fg_SingleColorKeys[] = {"Links", "LiveLink", "BinaryOps", "Delimiters",
                                          "Lines", "LoglikeFunctions", "Numbers", "Relations"};
const char* const fg_SingleColorDefaults[] = {"0 0 255", "255 0 0", "0 0 255", "0 0 0",
                                              "0 0 0", "255 0 0", "0 128 128", "0 128 0"};
CColorRef* SingleColor(int i) {
  CColorRef* colors[] = {&TFmtContext::fg_Color_Links,           &TFmtContext::fg_Color_LiveLink,
                         &TFmtContext::fg_MathColor_BinaryOps,   &TFmtContext::fg_MathColor_Delimiters,
                         &TFmtContext::fg_MathColor_Lines,       &TFmtContext::fg_MathColor_LoglikeFunctions,
                         &TFmtContext::fg_MathColor_Numbers,     &TFmtContext::fg_MathColor_Relations};
  return colors[i];
}
}  // namespace

TFmtContext_XWin::TFmtContext_XWin()
    : m_pSavedBrush(new CBrush), m_pSavedFont(new CFont), m_pSavedPen(new CPen) {}

TFmtContext_XWin::TFmtContext_XWin(const TFmtContext_XWin& other)
    : TFmtContext(other),
      m_nDisplayHeight(other.m_nDisplayHeight),
      m_nDisplayWidth(other.m_nDisplayWidth),
      m_nLogicalHeight(other.m_nLogicalHeight),
      m_nLogicalWidth(other.m_nLogicalWidth),
      m_CurrentPoint(other.m_CurrentPoint),
      m_pSavedBrush(new CBrush),
      m_pSavedFont(new CFont),
      m_pSavedPen(new CPen),
      m_pFontMetrics(other.m_pFontMetrics) {}

TFmtContext_XWin& TFmtContext_XWin::operator=(const TFmtContext_XWin& other) {
  if (this == &other) return *this;
  TFmtContext::operator=(other);
  m_nDisplayHeight = other.m_nDisplayHeight;
  m_nDisplayWidth = other.m_nDisplayWidth;
  m_nLogicalHeight = other.m_nLogicalHeight;
  m_nLogicalWidth = other.m_nLogicalWidth;
  m_CurrentPoint = other.m_CurrentPoint;
  m_pWindow = other.m_pWindow;
  m_pFontMetrics = other.m_pFontMetrics;
  return *this;
}

TFmtContext_XWin::~TFmtContext_XWin() {
  delete m_pSavedBrush;
  delete m_pSavedFont;
  delete m_pSavedPen;
}

// ---- window and ratios ----

void TFmtContext_XWin::Set_Window(CWnd* window) {
  m_pWindow = window;
  if (window) ComputeDisplayRatios();
}

void TFmtContext_XWin::ComputeDisplayRatios() {
  if (!m_pWindow || !m_pWindow->m_pDisplay) return;
  Display* display = m_pWindow->m_pDisplay;
  int screen = DefaultScreen(display);
  SetDisplayRatios(DisplayWidth(display, screen), DisplayHeight(display, screen), DisplayWidthMM(display, screen),
                   DisplayHeightMM(display, screen));
}

void TFmtContext_XWin::SetDisplayRatios(int pixelWidth, int pixelHeight, int mmWidth, int mmHeight) {
  const int64_t perMm = int64_t{fg_nUnitsPerPoint} * 720;
  int32_t logicalWidth = Scale(mmWidth, perMm, 254), logicalHeight = Scale(mmHeight, perMm, 254);
  // Nothing to divide by: keep the no-window ratios.
  if (pixelWidth <= 0 || pixelHeight <= 0 || logicalWidth <= 0 || logicalHeight <= 0) {
    m_nDisplayHeight = m_nDisplayWidth = m_nLogicalHeight = m_nLogicalWidth = 1;
    return;
  }
  m_nDisplayHeight = pixelHeight;
  m_nDisplayWidth = pixelWidth;
  m_nLogicalHeight = logicalHeight;
  m_nLogicalWidth = logicalWidth;
}

bool TFmtContext_XWin::CanDraw() const {
  return m_pWindow && m_pWindow->m_pDisplay && m_pWindow->m_DrawWindow && m_pWindow->m_GC;
}

// ---- conversions ----

void TFmtContext_XWin::Dev2Log(int& x, int& y) const {
  x = Scale(x, m_nLogicalWidth, m_nDisplayWidth);
  y = Saturate(-(int64_t{y} * m_nLogicalHeight / m_nDisplayHeight));
}

void TFmtContext_XWin::Log2Dev(int& x, int& y) const {
  int64_t up = -int64_t{y};
  x = Scale(x, m_nDisplayWidth, m_nLogicalWidth);
  y = Saturate(up * m_nDisplayHeight / m_nLogicalHeight);
}

void TFmtContext_XWin::Dev2Log(CRect& rect) const {
  Dev2Log(rect.left, rect.top);
  Dev2Log(rect.right, rect.bottom);
}

void TFmtContext_XWin::Log2Dev(CRect& rect) const {
  Log2Dev(rect.left, rect.top);
  Log2Dev(rect.right, rect.bottom);
}

void TFmtContext_XWin::Dev2Log(CSize& size) const {
  size.cx = Scale(size.cx, m_nLogicalWidth, m_nDisplayWidth);
  size.cy = Scale(size.cy, m_nLogicalHeight, m_nDisplayHeight);
}

void TFmtContext_XWin::Log2Dev(CSize& size) const {
  // The pair form negates y again.
  size.cy = Saturate(-int64_t{size.cy});
  Log2Dev(size.cx, size.cy);
}

void TFmtContext_XWin::DPtoLP(CPoint* points, int count) {
  for (int i = 0; points && i < count; ++i) Dev2Log(points[i]);
}

void TFmtContext_XWin::DPtoLP(CRect* rect) {
  if (rect) Dev2Log(*rect);
}

void TFmtContext_XWin::LPtoDP(CPoint* points, int count) {
  for (int i = 0; points && i < count; ++i) Log2Dev(points[i]);
}

void TFmtContext_XWin::LPtoDP(CRect* rect) {
  if (rect) Log2Dev(*rect);
}

void TFmtContext_XWin::LPtoDP(CSize* size) {
  if (size) Log2Dev(*size);
}

// ---- text ----

int TFmtContext_XWin::TextOut(int x, int y, const char* text, int length) {
  if (length < 1 || !text) return 1;
  if (!CanDraw()) return 1;
  Log2Dev(x, y);
  // An origin outside X's range would wrap to somewhere on screen.
  if (x < kDeviceMin || x > kDeviceMax || y < kDeviceMin || y > kDeviceMax) return 1;
  // A text request carries its length in 16 bits of 4-byte words: a string
  // of some 260,000 characters is refused, and a longer one leaves Xlib
  // without its sequence numbers, which aborts the process. At a pixel or
  // more a character, none past this many from an origin inside the range
  // can be on screen.
  constexpr int kMostCharactersDrawn = 65536;
  XDrawString(m_pWindow->m_pDisplay, m_pWindow->m_DrawWindow, m_pWindow->m_GC, x, y, text,
              std::min(length, kMostCharactersDrawn));
  return 1;
}

int TFmtContext_XWin::TextOut(int x, int y, const CString& text) { return TextOut(x, y, text.c_str(), text.GetLength()); }

void TFmtContext_XWin::CharacterOut(char c, int x, int y, TExtendedFont* font) {
  static char buffer[2];
  TExtendedFont* previous = TExtendedFont::fg_pCurrent;
  if (font) {
    font->Select(*this);
    TExtendedFont::fg_pCurrent = font;
  }
  buffer[0] = c;
  buffer[1] = '\0';
  TextOut(x, y, buffer, 1);
  if (font) {
    if (previous) previous->Select(*this);
    TExtendedFont::fg_pCurrent = previous;
  }
}

CSize TFmtContext_XWin::GetTextExtent(const char* text, int length) {
  CSize size(0, 0);
  if (!m_pWindow || !m_pWindow->m_pDisplay) return size;
  if (!m_pFontMetrics) m_pFontMetrics = CFont::QueryGCFont(m_pWindow->m_pDisplay, m_pWindow->m_GC);
  if (!m_pFontMetrics) return size;
  size.cx = (text && length > 0) ? XTextWidth(m_pFontMetrics, text, length) : 0;
  size.cy = m_pFontMetrics->ascent + m_pFontMetrics->descent;
  Dev2Log(size);
  return size;
}

// ---- lines and shapes ----

CPoint TFmtContext_XWin::MoveTo(int x, int y) {
  CPoint previous = m_CurrentPoint;
  m_CurrentPoint = CPoint(x, y);
  return previous;
}

void TFmtContext_XWin::DrawClippedLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2) {
  // Liang-Barsky against X's range: the visible part keeps its slope.
  double t0 = 0, t1 = 1;
  const double dx = static_cast<double>(x2 - x1), dy = static_cast<double>(y2 - y1);
  const double p[4] = {-dx, dx, -dy, dy};
  const double q[4] = {static_cast<double>(x1 - kDeviceMin), static_cast<double>(kDeviceMax - x1),
                       static_cast<double>(y1 - kDeviceMin), static_cast<double>(kDeviceMax - y1)};
  for (int i = 0; i < 4; ++i) {
    if (p[i] == 0) {
      if (q[i] < 0) return;
      continue;
    }
    double t = q[i] / p[i];
    if (p[i] < 0) t0 = std::max(t0, t);
    else t1 = std::min(t1, t);
    if (t0 > t1) return;
  }
  auto at = [](int64_t a, double d, double t) { return static_cast<int>(static_cast<double>(a) + d * t + (d * t < 0 ? -0.5 : 0.5)); };
  int ax = t0 > 0 ? at(x1, dx, t0) : static_cast<int>(x1), ay = t0 > 0 ? at(y1, dy, t0) : static_cast<int>(y1);
  int bx = t1 < 1 ? at(x1, dx, t1) : static_cast<int>(x2), by = t1 < 1 ? at(y1, dy, t1) : static_cast<int>(y2);
  XDrawLine(m_pWindow->m_pDisplay, m_pWindow->m_DrawWindow, m_pWindow->m_GC, ax, ay, bx, by);
}

void TFmtContext_XWin::FillClipped(int64_t x, int64_t y, int64_t width, int64_t height) {
  if (width <= 0 || height <= 0) return;
  int64_t left = std::max(x, kDeviceMin), top = std::max(y, kDeviceMin);
  int64_t right = std::min(x + width, kDeviceMax + 1), bottom = std::min(y + height, kDeviceMax + 1);
  if (right <= left || bottom <= top) return;
  XFillRectangle(m_pWindow->m_pDisplay, m_pWindow->m_DrawWindow, m_pWindow->m_GC, static_cast<int>(left),
                 static_cast<int>(top), static_cast<unsigned>(right - left), static_cast<unsigned>(bottom - top));
}

int TFmtContext_XWin::LineTo(int x, int y) {
  if (CanDraw()) {
    CPoint from = m_CurrentPoint, to(x, y);
    Log2Dev(from);
    Log2Dev(to);
    DrawClippedLine(from.x, from.y, to.x, to.y);
  }
  m_CurrentPoint = CPoint(x, y);
  return 1;
}

int TFmtContext_XWin::Rectangle(int left, int top, int right, int bottom) {
  if (!CanDraw()) return 1;
  Log2Dev(left, top);
  Log2Dev(right, bottom);
  const int64_t width = int64_t{right} - left + 1, height = int64_t{bottom} - top + 1;
  if (width <= 0 || height <= 0) return 1;
  Display* display = m_pWindow->m_pDisplay;
  GC gc = m_pWindow->m_GC;
  XGCValues values{};
  XGetGCValues(display, gc, GCForeground | GCBackground, &values);
  XSetForeground(display, gc, values.background);
  FillClipped(left, top, width, height);
  XSetForeground(display, gc, values.foreground);
  const int64_t x2 = left + width, y2 = top + height;
  if (left >= kDeviceMin && top >= kDeviceMin && x2 <= kDeviceMax && y2 <= kDeviceMax) {
    XDrawRectangle(display, m_pWindow->m_DrawWindow, gc, left, top, static_cast<unsigned>(width),
                   static_cast<unsigned>(height));
  } else {
    // Each edge starts at a corner, so every corner is inked once.
    DrawClippedLine(left, top, x2, top);
    DrawClippedLine(x2, top, x2, y2);
    DrawClippedLine(x2, y2, left, y2);
    DrawClippedLine(left, y2, left, top);
  }
  return 1;
}

int TFmtContext_XWin::Rectangle(const CRect* rect) {
  if (!rect) return 0;
  return Rectangle(rect->left, rect->top, rect->right, rect->bottom);
}

void TFmtContext_XWin::FillRect(const CRect* rect, CBrush* brush) {
  if (!rect || !CanDraw()) return;
  CRect device = *rect;
  LPtoDP(&device);
  CBrush* previous = brush ? SelectObject(brush) : nullptr;
  Display* display = m_pWindow->m_pDisplay;
  GC gc = m_pWindow->m_GC;
  XGCValues values{};
  XGetGCValues(display, gc, GCForeground | GCBackground, &values);
  XSetForeground(display, gc, values.background);
  FillClipped(device.left, device.top, int64_t{device.right} - device.left, int64_t{device.bottom} - device.top);
  XSetForeground(display, gc, values.foreground);
  if (previous) SelectObject(previous);
}

// ---- selection ----

CBrush* TFmtContext_XWin::SelectObject(CBrush* brush) {
  if (!brush) return m_pSavedBrush;
  if (brush != m_pSavedBrush) m_pSavedBrush->UpdateFromGC(m_pWindow);
  brush->m_Color.Allocate(m_pWindow, 0);
  brush->UpdateToGC(m_pWindow);
  return m_pSavedBrush;
}

CPen* TFmtContext_XWin::SelectObject(CPen* pen) {
  if (!pen) return m_pSavedPen;
  if (pen != m_pSavedPen) {
    m_pSavedPen->UpdateFromGC(m_pWindow);
    // The saved pen already holds a device width read from the GC.
    CPoint width(pen->m_nWidth, 0);
    Log2Dev(width);
    pen->m_GCValues.line_width = width.x < 0 ? 0 : std::min(width.x, 255);
  }
  pen->m_Color.Allocate(m_pWindow, 1);
  pen->UpdateToGC(m_pWindow);
  return m_pSavedPen;
}

CFont* TFmtContext_XWin::SelectObject(CFont* font) {
  if (!font) return m_pSavedFont;
  if (font != m_pSavedFont) m_pSavedFont->UpdateFromGC(m_pWindow);
  font->UpdateToGC(m_pWindow);
  m_pFontMetrics = font->Get_Extent();
  return m_pSavedFont;
}

// ---- colours ----

CColorRef TFmtContext_XWin::ColorOfPixel(unsigned long pixel) const {
  CColorRef color;
  color.m_Placed.pixel = static_cast<uint32_t>(pixel);
  color.m_Placed.flags = DoRed | DoGreen | DoBlue;
  const Visual* visual = m_pWindow->m_pVisual;
  if (!visual && m_pWindow->m_pDisplay) visual = DefaultVisual(m_pWindow->m_pDisplay, m_pWindow->m_nScreen);
  LookUpPixelComponents(visual, &color.m_Placed);
  color.m_Asked = color.m_Placed;
  // It is in the GC already: selecting it again must not allocate anew.
  color.m_bAllocated = 1;
  return color;
}

CColorRef TFmtContext_XWin::GetTextColor() {
  if (!CanDraw()) return CColorRef(0, 0, 0, "black");
  XGCValues values{};
  XGetGCValues(m_pWindow->m_pDisplay, m_pWindow->m_GC, GCForeground, &values);
  return ColorOfPixel(values.foreground);
}

CColorRef TFmtContext_XWin::SetGCColor(const CColorRef& color, int bForeground) {
  XGCValues values{};
  XGetGCValues(m_pWindow->m_pDisplay, m_pWindow->m_GC, bForeground ? GCForeground : GCBackground, &values);
  const unsigned long current = bForeground ? values.foreground : values.background;
  CColorRef previous = ColorOfPixel(current);
  CColorRef placed = color;
  placed.Allocate(m_pWindow, bForeground);
  if (placed.Pixel() != current) {
    if (bForeground) XSetForeground(m_pWindow->m_pDisplay, m_pWindow->m_GC, placed.Pixel());
    else XSetBackground(m_pWindow->m_pDisplay, m_pWindow->m_GC, placed.Pixel());
  }
  return previous;
}

CColorRef TFmtContext_XWin::SetTextColor(const CColorRef& color) {
  if (!CanDraw()) return CColorRef(0, 0, 0, "black");
  return SetGCColor(color, 1);
}

CColorRef TFmtContext_XWin::SetBkColor(const CColorRef& color) {
  // 252 and not 255: the table's white.
  if (!CanDraw()) return CColorRef(252, 252, 252, "white");
  return SetGCColor(color, 0);
}

void TFmtContext_XWin::SetPageColor(const CColorRef& color) {
  // The document keeps the colour, so that the view paints its background
  // before anything is drawn; the window takes it now.
  if (m_pDocumentNode) m_pDocumentNode->Set_PageColor(color);
  if (!CanDraw()) return;
  CColorRef placed = color;
  placed.Allocate(m_pWindow, 0);
  XSetWindowBackground(m_pWindow->m_pDisplay, m_pWindow->m_DrawWindow, placed.Pixel());
}

// ---- visibility ----

int TFmtContext_XWin::RectVisible(const CRect* rect) {
  if (!rect || !m_pWindow) return 0;
  CRect device = *rect;
  LPtoDP(&device);
  device.NormalizeRect();
  int value = 0, extent = m_pWindow->m_nHeight;
  if (m_pWindow->m_VScroll) XtVaGetValues(m_pWindow->m_VScroll, XmNvalue, &value, XmNsliderSize, &extent, nullptr);
  CRect band(0, value, m_pWindow->m_nWidth, Saturate(int64_t{value} + extent));
  CRect result;
  return result.IntersectRect(device, band);
}

int TFmtContext_XWin::IntersectsClippingRegion(CRect& rect) {
  static CRect clip;
  rect.NormalizeRect();
  clip = m_ClipRegion;
  clip.NormalizeRect();
  return clip.IntersectRect(rect, clip) ? 1 : 0;
}

// ---- class-wide settings ----

void TFmtContext_XWin::Assign(CString*& field, const char* name) {
  if (!field) field = new CString;
  *field = name;
}

CString** TFmtContext_XWin::MathExtField(int i) {
  CString** fields[] = {&fg_pMathExt0FontName, &fg_pMathExt1FontName, &fg_pMathExt2FontName,
                        &fg_pMathExt3FontName, &fg_pMathExt4FontName};
  return (i >= 0 && i < 5) ? fields[i] : nullptr;
}

const CString* TFmtContext_XWin::Get_MathExtFontName(int i) {
  CString** field = MathExtField(i);
  return field ? *field : nullptr;
}

void TFmtContext_XWin::Set_MathExtFontName(int i, const char* name) {
  if (CString** field = MathExtField(i)) Assign(*field, name);
}

void TFmtContext_XWin::InitializeResources() {
  const Resource* resource = Resource::GetResourceObject();
  Set_MathFontName(resource->GetFontStringResource(80003));
  Set_RmFontName(resource->GetFontStringResource(80003));
  Set_SfFontName(resource->GetFontStringResource(80001));
  Set_TtFontName(resource->GetFontStringResource(80000));
  Set_MathItFontName(resource->GetFontStringResource(80002));
  Set_RmBldFontName(resource->GetFontStringResource(80005));
  Set_RmItFontName(resource->GetFontStringResource(80004));
  for (int i = 0; i < 5; ++i) Set_MathExtFontName(i, resource->GetFontStringResource(80006 + i));
}

void TFmtContext_XWin::FreeResources() {
  for (CString** field : {&fg_pMathItFontName, &fg_pRmBldFontName, &fg_pRmItFontName, &fg_pMathExt0FontName,
                          &fg_pMathExt1FontName, &fg_pMathExt2FontName, &fg_pMathExt3FontName,
                          &fg_pMathExt4FontName}) {
    delete *field;
    *field = nullptr;
  }
  TFmtContext::FreeResources();
}

void TFmtContext_XWin::ResetScaledFeatures() {
  if (!fg_bDoResetScaledFeatures) return;
  fg_bDoResetScaledFeatures = 0;
  const int r = fg_nRmFontPointSize, u = fg_nUnitsPerPoint;
  fg_nParSkip = std::max(1, r / 2) * u;
  fg_nParIndent = 2 * u * r;
  fg_nRuleExtension = std::max(1, r / 12) * u;
  fg_nSuperscriptRightShift = std::max(1, r / 12) * u;
  // The view's margin: one em of the text font on the left and at the top,
  // two on the right.
  fg_nDisplayMargin = r * u;
}

CColorRef TFmtContext_XWin::StringToRGB(const char* text) {
  int values[3] = {0, 0, 0};
  const char* p = text ? text : "";
  for (int i = 0; i < 3; ++i) {
    int64_t value = 0;
    while (*p >= '0' && *p <= '9') {
      value = std::min<int64_t>(value * 10 + (*p - '0'), INT32_MAX);
      ++p;
    }
    values[i] = static_cast<int>(value);
    if (!*p) break;  // the separator is skipped only where there is one
    ++p;
  }
  auto component = [](int v) { return static_cast<unsigned short>(std::min(v, 65535)); };
  return CColorRef(component(values[0]), component(values[1]), component(values[2]));
}

void TFmtContext_XWin::WriteRegistryColor(const CColorRef& color, const char* key) {
  auto byte = [](uint16_t component) { return static_cast<int>((component * 256) / 65536.0); };
  char text[48];
  std::snprintf(text, sizeof text, "%d %d %d", byte(color.m_Asked.red), byte(color.m_Asked.green),
                byte(color.m_Asked.blue));
  CNpZephrinApp::GetPlugInDllObject()->WriteProfileString("Colors", key, text);
}

namespace {
struct TFontKey {
  const char* entry;
  CString** name;
  unsigned resourceId;
};
}  // namespace

void TFmtContext_XWin::ReadRegistryValues() {
  CNpZephrinApp* app = CNpZephrinApp::GetPlugInDllObject();
  const Resource* resource = Resource::GetResourceObject();
  const TFontKey names[] = {
      {"MathName", &fg_pMathFontName, 80003},         {"TextName", &fg_pRmFontName, 80003},
      {"SansSerifName", &fg_pSfFontName, 80001},      {"MonospaceName", &fg_pTtFontName, 80000},
      {"MathIt", &fg_pMathItFontName, 80002},         {"RmBld", &fg_pRmBldFontName, 80005},
      {"RmIt", &fg_pRmItFontName, 80004},             {"MathExt0", &fg_pMathExt0FontName, 80006},
      {"MathExt1", &fg_pMathExt1FontName, 80007},     {"MathExt2", &fg_pMathExt2FontName, 80008},
      {"MathExt3", &fg_pMathExt3FontName, 80009},     {"MathExt4", &fg_pMathExt4FontName, 80010},
  };
  for (const TFontKey& key : names) {
    const char* current = *key.name ? key.name[0]->c_str() : resource->GetFontStringResource(key.resourceId);
    CString value = app->GetProfileString("Fonts", key.entry, current);
    Assign(*key.name, value);
  }
  fg_nMathFontPointSize = app->GetProfileInt("Fonts", "MathSize", fg_nMathFontPointSize);
  fg_nRmFontPointSize = app->GetProfileInt("Fonts", "TextSize", fg_nRmFontPointSize);
  fg_nSfFontPointSize = app->GetProfileInt("Fonts", "SansSerifSize", fg_nSfFontPointSize);
  fg_nTtFontPointSize = app->GetProfileInt("Fonts", "MonospaceSize", fg_nTtFontPointSize);

  fg_bDoColorizeExpressions = app->GetProfileInt("Colors", "ColorizeExpressions", fg_bDoColorizeExpressions) ? 1 : 0;
  static const char* const stateNames[fg_nColors] = {"Standard", "Selection", "StandardMath",
                                                     "EditBox",  "Highlight", "ActiveMath"};
  char key[64];
  for (int i = 0; i < fg_nColors; ++i) {
    // The older spelling first, so that the numbered key wins.
    for (int foreground = 0; foreground < 2; ++foreground) {
      CColorRef& color = foreground ? fg_ColorForeground[i] : fg_ColorBackground[i];
      const char* kind = foreground ? "Foreground" : "Background";
      std::snprintf(key, sizeof key, "%s%s", stateNames[i], kind);
      CString value = app->GetProfileString("Colors", key, "");
      if (!value.IsEmpty()) color = StringToRGB(value);
      std::snprintf(key, sizeof key, "%sColor%d", kind, i);
      value = app->GetProfileString("Colors", key, "");
      if (!value.IsEmpty()) color = StringToRGB(value);
    }
  }
  for (int i = 0; i < 8; ++i)
    *SingleColor(i) = StringToRGB(app->GetProfileString("Colors", fg_SingleColorKeys[i], fg_SingleColorDefaults[i]));

  fg_bCenterDisplayMathExpressions =
      app->GetProfileInt("Settings", "CenterMathDisplays", fg_bCenterDisplayMathExpressions) ? 1 : 0;
}

void TFmtContext_XWin::SaveRegistryValues() {
  CNpZephrinApp* app = CNpZephrinApp::GetPlugInDllObject();
  const std::pair<const char*, CString*> names[] = {
      {"MathName", fg_pMathFontName},         {"TextName", fg_pRmFontName},
      {"SansSerifName", fg_pSfFontName},      {"MonospaceName", fg_pTtFontName},
      {"MathIt", fg_pMathItFontName},         {"RmBld", fg_pRmBldFontName},
      {"RmIt", fg_pRmItFontName},             {"MathExt0", fg_pMathExt0FontName},
      {"MathExt1", fg_pMathExt1FontName},     {"MathExt2", fg_pMathExt2FontName},
      {"MathExt3", fg_pMathExt3FontName},     {"MathExt4", fg_pMathExt4FontName},
  };
  for (const auto& [entry, name] : names)
    if (name) app->WriteProfileString("Fonts", entry, *name);
  app->WriteProfileInt("Fonts", "MathSize", fg_nMathFontPointSize);
  app->WriteProfileInt("Fonts", "TextSize", fg_nRmFontPointSize);
  app->WriteProfileInt("Fonts", "SansSerifSize", fg_nSfFontPointSize);
  app->WriteProfileInt("Fonts", "MonospaceSize", fg_nTtFontPointSize);
  app->WriteProfileInt("Colors", "ColorizeExpressions", fg_bDoColorizeExpressions);
  char key[64];
  for (int i = 0; i < fg_nColors; ++i) {
    std::snprintf(key, sizeof key, "BackgroundColor%d", i);
    WriteRegistryColor(fg_ColorBackground[i], key);
    std::snprintf(key, sizeof key, "ForegroundColor%d", i);
    WriteRegistryColor(fg_ColorForeground[i], key);
  }
  for (int i = 0; i < 8; ++i) WriteRegistryColor(*SingleColor(i), fg_SingleColorKeys[i]);
  app->WriteProfileInt("Settings", "CenterMathDisplays", fg_bCenterDisplayMathExpressions);
}
