// TFmtContext_XWin: the drawing device. It carries out the context's logical
// operations on an X window and owns the device's persistent settings (font
// names, sizes, colours) in the profile store.
//
// Logical y grows upward and one logical unit is half a point; device units
// are pixels with y downward. Conversions multiply in 64 bits, truncate toward
// zero and saturate to 32 bits; nothing reaches X outside its 16-bit range.
#pragma once

#include <X11/Xlib.h>

#include "format/context.h"
#include "framework/cstring.h"
#include "framework/geometry.h"

class CWnd;

class TFmtContext_XWin : public TFmtContext {
 public:
  TFmtContext_XWin();
  // Ratios, current point and font metrics; the window stays null, the clip
  // empty, and the copy has its own saved objects.
  TFmtContext_XWin(const TFmtContext_XWin& other);
  // Ratios, current point, window and font metrics; the clip region and the
  // saved objects stay.
  TFmtContext_XWin& operator=(const TFmtContext_XWin& other);
  ~TFmtContext_XWin() override;

  // ---- the device's virtual operations ----
  void Serialize(CArchive&) override {}
  int Arc(int, int, int, int, int, int, int, int) override { return 1; }  // no arcs on this device
  void CharacterOut(char c, int x, int y, TExtendedFont* font) override;
  void DPtoLP(CPoint* points, int count) override;
  void DrawRect(const CRect&) override {}
  void FillRect(const CRect* rect, CBrush* brush) override;
  CColorRef GetTextColor() override;
  CSize GetTextExtent(const char* text, int length) override;
  int Get_QuadWidth() override { return GetTextExtent("M", 1).cx; }
  int IntersectsClippingRegion(CRect& rect) override;
  int IsPrinting() override { return 0; }
  void LPtoDP(CPoint* points, int count) override;
  void LPtoDP(CRect* rect) override;
  void LPtoDP(CSize* size) override;
  int LineTo(int x, int y) override;
  CPoint MoveTo(int x, int y) override;
  int RectVisible(const CRect* rect) override;
  int Rectangle(const CRect* rect) override;
  int Rectangle(int left, int top, int right, int bottom) override;
  CBrush* SelectObject(CBrush* brush) override;
  CFont* SelectObject(CFont* font) override;
  CPen* SelectObject(CPen* pen) override;
  CColorRef SetBkColor(const CColorRef& color) override;
  void SetPageColor(const CColorRef& color) override;
  CColorRef SetTextColor(const CColorRef& color) override;
  int TextOut(int x, int y, const char* text, int length) override;
  int TextOut(int x, int y, const CString& text) override;
  virtual void DPtoLP(CSize& size) { Dev2Log(size); }
  virtual void DPtoLP(CRect* rect);

  // ---- window and clip ----
  void Set_Window(CWnd* window);
  CWnd* Get_Window() const { return m_pWindow; }
  void Set_ClipRegion(const CRect& rect) { m_ClipRegion = rect; }
  const CRect& Get_ClipRegion() const { return m_ClipRegion; }
  void ComputeDisplayRatios();
  // The ratios for a screen of these pixel and millimetre sizes. A size of 0
  // or less leaves all four at 1, as with no window.
  void SetDisplayRatios(int pixelWidth, int pixelHeight, int mmWidth, int mmHeight);
  int Get_DisplayWidth() const { return m_nDisplayWidth; }
  int Get_DisplayHeight() const { return m_nDisplayHeight; }
  int Get_LogicalWidth() const { return m_nLogicalWidth; }
  int Get_LogicalHeight() const { return m_nLogicalHeight; }
  XFontStruct* Get_FontMetrics() const { return m_pFontMetrics; }

  // ---- conversions ----
  void Dev2Log(int& x, int& y) const;
  void Dev2Log(CPoint& point) const { Dev2Log(point.x, point.y); }
  void Dev2Log(CRect& rect) const;
  void Dev2Log(CSize& size) const;  // the height keeps its sign
  void Log2Dev(int& x, int& y) const;
  void Log2Dev(CPoint& point) const { Log2Dev(point.x, point.y); }
  void Log2Dev(CRect& rect) const;
  void Log2Dev(CSize& size) const;  // a positive height stays positive

  // ---- font name templates added by the device ----
  static const CString* Get_MathItFontName() { return fg_pMathItFontName; }
  static const CString* Get_RmBldFontName() { return fg_pRmBldFontName; }
  static const CString* Get_RmItFontName() { return fg_pRmItFontName; }
  static const CString* Get_MathExtFontName(int i);
  static void Set_MathItFontName(const char* name) { Assign(fg_pMathItFontName, name); }
  static void Set_RmBldFontName(const char* name) { Assign(fg_pRmBldFontName, name); }
  static void Set_RmItFontName(const char* name) { Assign(fg_pRmItFontName, name); }
  static void Set_MathExtFontName(int i, const char* name);
  static const CString* Get_MathExt0FontName() { return fg_pMathExt0FontName; }
  static const CString* Get_MathExt1FontName() { return fg_pMathExt1FontName; }
  static const CString* Get_MathExt2FontName() { return fg_pMathExt2FontName; }
  static const CString* Get_MathExt3FontName() { return fg_pMathExt3FontName; }
  static const CString* Get_MathExt4FontName() { return fg_pMathExt4FontName; }
  static void Set_MathExt0FontName(const char* name) { Assign(fg_pMathExt0FontName, name); }
  static void Set_MathExt1FontName(const char* name) { Assign(fg_pMathExt1FontName, name); }
  static void Set_MathExt2FontName(const char* name) { Assign(fg_pMathExt2FontName, name); }
  static void Set_MathExt3FontName(const char* name) { Assign(fg_pMathExt3FontName, name); }
  static void Set_MathExt4FontName(const char* name) { Assign(fg_pMathExt4FontName, name); }
  static void Set_MathExt0FontName(const CString& name) { Set_MathExt0FontName(name.c_str()); }
  static void Set_MathExt1FontName(const CString& name) { Set_MathExt1FontName(name.c_str()); }
  static void Set_MathExt2FontName(const CString& name) { Set_MathExt2FontName(name.c_str()); }
  static void Set_MathExt3FontName(const CString& name) { Set_MathExt3FontName(name.c_str()); }
  static void Set_MathExt4FontName(const CString& name) { Set_MathExt4FontName(name.c_str()); }
  static void Set_MathItFontName(const CString& name) { Set_MathItFontName(name.c_str()); }
  static void Set_RmBldFontName(const CString& name) { Set_RmBldFontName(name.c_str()); }
  static void Set_RmItFontName(const CString& name) { Set_RmItFontName(name.c_str()); }

  // ---- class-wide ----
  static void InitializeResources();
  static void FreeResources();
  static void ReadRegistryValues();
  static void SaveRegistryValues();
  static void ResetScaledFeatures();
  static void WriteRegistryColor(const CColorRef& color, const char* key);
  // "r g b": digits, one character, digits, one character, digits; a missing
  // number is 0, a long digit run saturates.
  static CColorRef StringToRGB(const char* text);

  static inline CString* fg_pMathItFontName = nullptr;    // owned
  static inline CString* fg_pRmBldFontName = nullptr;     // owned
  static inline CString* fg_pRmItFontName = nullptr;      // owned
  static inline CString* fg_pMathExt0FontName = nullptr;  // owned
  static inline CString* fg_pMathExt1FontName = nullptr;  // owned
  static inline CString* fg_pMathExt2FontName = nullptr;  // owned
  static inline CString* fg_pMathExt3FontName = nullptr;  // owned
  static inline CString* fg_pMathExt4FontName = nullptr;  // owned

 private:
  static void Assign(CString*& field, const char* name);
  static CString** MathExtField(int i);
  // Places color as the GC's foreground (1) or background (0); answers the
  // colour it had.
  CColorRef SetGCColor(const CColorRef& color, int bForeground);
  // The colour of a pixel as the window's screen shows it, unnamed.
  CColorRef ColorOfPixel(unsigned long pixel) const;
  bool CanDraw() const;
  // Draws the part of a device line inside X's coordinate range.
  void DrawClippedLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2);
  void FillClipped(int64_t x, int64_t y, int64_t width, int64_t height);

  // ---- fields, in order ----
  int m_nDisplayHeight = 1;
  int m_nDisplayWidth = 1;
  int m_nLogicalHeight = 1;
  int m_nLogicalWidth = 1;
  CPoint m_CurrentPoint;
  CRect m_ClipRegion;
  CWnd* m_pWindow = nullptr;  // not owned
  CBrush* m_pSavedBrush = nullptr;
  CFont* m_pSavedFont = nullptr;
  CPen* m_pSavedPen = nullptr;
  XFontStruct* m_pFontMetrics = nullptr;  // not owned
};
