#include "framework/gdi_objects.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <utility>

#include "framework/display_hooks.h"
#include "framework/wnd.h"
#include "host/zephrin_stat.h"

namespace {
// The colour whose pixel a GC holds: unnamed, already placed, components as
// the screen shows them.
std::map<std::pair<Display*, XID>, XFontStruct*>& QueriedFonts() {
  // Never destroyed: the process keeps its queried fonts to the end.
  static auto* fonts = new std::map<std::pair<Display*, XID>, XFontStruct*>;
  return *fonts;
}

void ForgetQueriedFonts(Display* display) {
  for (auto entry = QueriedFonts().begin(); entry != QueriedFonts().end();) {
    if (entry->first.first != display) {
      ++entry;
      continue;
    }
    XFreeFontInfo(nullptr, entry->second, 1);
    entry = QueriedFonts().erase(entry);
  }
}

CColorRef ColorOfPixel(CWnd* window, unsigned long pixel) {
  CColorRef color;
  color.m_Placed.pixel = static_cast<uint32_t>(pixel);
  LookUpPixelComponents(window ? window->m_pVisual : nullptr, &color.m_Placed);
  color.m_Asked = color.m_Placed;
  color.m_bAllocated = 1;
  return color;
}
}  // namespace

void CBrush::UpdateFromGC(CWnd* window) {
  if (!window || !window->m_pDisplay || !window->m_GC) return;
  XGCValues values{};
  XGetGCValues(window->m_pDisplay, window->m_GC, GCBackground, &values);
  m_GCValues.background = values.background;
  m_Color = ColorOfPixel(window, values.background);
}

void CBrush::UpdateToGC(CWnd* window) {
  m_Color.m_Name.Empty();
  m_GCValues.background = m_Color.Pixel();
  if (!window || !window->m_pDisplay || !window->m_GC) return;
  XSetBackground(window->m_pDisplay, window->m_GC, m_Color.Pixel());
}

CPen::CPen(int style, int width, const CColorRef& color) : m_nStyle(style), m_nWidth(width), m_Color(color) {
  // Bits 1 and 2 of the style carry over to both the line style and the cap
  // style; every pen the system makes has style 0.
  m_GCValues.line_style = style & 3;
  m_GCValues.cap_style = style & 3;
  m_GCValues.line_width = width;
}

void CPen::UpdateFromGC(CWnd* window) {
  if (!window || !window->m_pDisplay || !window->m_GC) return;
  XGCValues values{};
  XGetGCValues(window->m_pDisplay, window->m_GC, GCForeground | GCLineWidth | GCLineStyle | GCCapStyle, &values);
  m_GCValues.foreground = values.foreground;
  m_GCValues.line_width = values.line_width;
  m_GCValues.line_style = values.line_style;
  m_GCValues.cap_style = values.cap_style;
  m_Color = ColorOfPixel(window, values.foreground);
}

void CPen::UpdateToGC(CWnd* window) {
  m_GCValues.foreground = m_Color.Pixel();
  if (!window || !window->m_pDisplay || !window->m_GC) return;
  XChangeGC(window->m_pDisplay, window->m_GC, GCForeground | GCLineWidth | GCLineStyle | GCCapStyle,
            &m_GCValues);
}

CPen* NewSolidPen(int width, const CColorRef& color) { return new CPen(0, width, color); }
CPen* NewGeometricPen(int width, const CColorRef& color) { return new CPen(0, width, color); }

CFont::~CFont() {
  if (m_bLoaded && m_pDisplay && m_pFontStruct) XFreeFont(m_pDisplay, m_pFontStruct);
  std::free(m_pName);
}

int CFont::CreateFont(CWnd* window, const char* name) {
  if (m_bLoaded && m_pDisplay && m_pFontStruct) XFreeFont(m_pDisplay, m_pFontStruct);
  m_bLoaded = false;
  m_pFontStruct = nullptr;
  m_nGCMask = 0;
  m_pDisplay = window ? window->m_pDisplay : nullptr;
  std::free(m_pName);
  m_pName = strdup(name ? name : "");
  if (m_pDisplay && name) m_pFontStruct = XLoadQueryFont(m_pDisplay, name);
  if (!m_pFontStruct) {
    // One wizard however many fonts fail in a run.
    ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
    if (stat->GetFontStatus() != ZephrinStat::k_FontNotLoaded) stat->ErrorMessage(ZephrinStat::k_FontNotLoaded, m_pName);
    throw CFontException();
  }
  m_bLoaded = true;
  m_GCValues.font = m_pFontStruct->fid;
  m_nGCMask = GCFont;
  return 1;
}

XFontStruct* CFont::QueryGCFont(Display* display, GC gc) {
  if (!display || !gc) return nullptr;
  XGCValues values{};
  XGetGCValues(display, gc, GCFont, &values);
  // Until a font is set, Xlib does not know the GC's font id: the GC itself
  // names it to XQueryFont.
  XID id = (values.font & 0xe0000000UL) ? XGContextFromGC(gc) : values.font;
  auto found = QueriedFonts().find({display, id});
  if (found != QueriedFonts().end()) return found->second;
  XFontStruct* info = XQueryFont(display, id);
  if (info) {
    CallWhenDisplayCloses(display, ForgetQueriedFonts);
    QueriedFonts()[{display, id}] = info;
  }
  return info;
}

void CFont::UpdateFromGC(CWnd* window) {
  if (!window || !window->m_pDisplay || !window->m_GC) return;
  m_pDisplay = window->m_pDisplay;
  XGCValues values{};
  XGetGCValues(window->m_pDisplay, window->m_GC, GCFont, &values);
  XFontStruct* metrics = window->m_pFontMetrics ? window->m_pFontMetrics : QueryGCFont(m_pDisplay, window->m_GC);
  if (m_bLoaded && m_pFontStruct && m_pFontStruct != metrics) XFreeFont(m_pDisplay, m_pFontStruct);
  m_bLoaded = false;
  m_pFontStruct = metrics;
  // A GC that never had a font set has no id to restore; then only the
  // metrics come back.
  bool known = !(values.font & 0xe0000000UL);
  m_GCValues.font = known ? values.font : 0;
  m_nGCMask = known ? GCFont : 0;
}

void CFont::UpdateToGC(CWnd* window) {
  if (!window) return;
  window->m_pFontMetrics = m_pFontStruct;
  if (!window->m_pDisplay || !window->m_GC || !m_nGCMask) return;
  XChangeGC(window->m_pDisplay, window->m_GC, GCFont, &m_GCValues);
}
