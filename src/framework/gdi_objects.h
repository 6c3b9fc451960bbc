// The drawing objects: brush, pen and font. Each keeps a GC record of its own;
// UpdateToGC writes it into a window's GC and UpdateFromGC reads the GC back,
// which is how the drawing device saves and restores the GC around a
// selection.
#pragma once

#include <X11/Xlib.h>

#include "framework/color_ref.h"
#include "framework/objects.h"

class CWnd;

class CGdiObject : public CObject {
 public:
  virtual void UpdateFromGC(CWnd*) {}
  virtual void UpdateToGC(CWnd*) {}

  XGCValues m_GCValues{};
};

// The colour goes to the GC's background: fills take the background.
class CBrush : public CGdiObject {
 public:
  CBrush() : m_Color(252, 252, 252) {}
  explicit CBrush(const CColorRef& color) : m_Color(color) {}
  int CreateSolidBrush(const CColorRef& color) {
    m_Color = color;
    return 1;
  }
  void UpdateFromGC(CWnd* window) override;
  void UpdateToGC(CWnd* window) override;

  CColorRef m_Color;
};

class CPen : public CGdiObject {
 public:
  CPen() : CPen(0, 0, CColorRef(0, 0, 0)) {}
  CPen(int style, int width, const CColorRef& color);
  void UpdateFromGC(CWnd* window) override;
  void UpdateToGC(CWnd* window) override;

  int m_nStyle = 0;
  int m_nWidth = 0;  // logical units; the GC record holds the device width
  CColorRef m_Color;
};

// The two kinds are the same on this display.
CPen* NewSolidPen(int width, const CColorRef& color);
CPen* NewGeometricPen(int width, const CColorRef& color);

class CFont : public CGdiObject {
 public:
  CFont() = default;
  CFont(const CFont&) = delete;
  CFont& operator=(const CFont&) = delete;
  ~CFont() override;

  // Loads the X font. On failure the user is told once per run (status 12)
  // and CFontException is thrown. Answers 1.
  int CreateFont(CWnd* window, const char* name);
  XFontStruct* Get_Extent() const { return m_pFontStruct; }
  const char* Get_FaceName() const { return m_pName ? m_pName : ""; }

  void UpdateFromGC(CWnd* window) override;
  void UpdateToGC(CWnd* window) override;

  // The metrics of the font in `gc`, asked of the server once per font and
  // kept until the display closes.
  static XFontStruct* QueryGCFont(Display* display, GC gc);

  Display* m_pDisplay = nullptr;
  XFontStruct* m_pFontStruct = nullptr;
  char* m_pName = nullptr;  // owned
  unsigned long m_nGCMask = 0;

 private:
  bool m_bLoaded = false;  // m_pFontStruct is ours to free
};
