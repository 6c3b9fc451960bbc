// TFmtContext: the state that walks with Compose and Draw. It holds the page
// geometry, the scoped typesetting state and the stacks that restore it, the
// path of nodes above the current one, and, class-wide, the options that hold
// for every document. Painting and measuring are virtual: the X device
// implements them; everything here is device-independent.
#pragma once

#include "format/context_state.h"
#include "format/math_style.h"
#include "format/print_parameters.h"
#include "framework/collections.h"
#include "framework/color_ref.h"
#include "framework/cstring.h"
#include "framework/geometry.h"
#include "interact/node_path.h"

class CBrush;
class CFont;
class CPen;
class TExtendedFont;
class TFmtDocumentNode;
class TFmtFigureNode;
class TFmtNode;

// Cached metrics of the system font (the device fills them).
struct TSystemFontTextMetrics {
  int m_nHeight = 0;
  int m_nAscent = 0;
  int m_nDescent = 0;
  int m_nAveCharWidth = 0;
};

class TFmtContext : public CObject {
 public:
  TFmtContext() = default;
  // Copies the simple fields only: the document, case and caption requestor
  // are cleared, and no stack or path is copied (a copy measures on the side
  // and must not pop what the original pushed).
  TFmtContext(const TFmtContext& other);
  TFmtContext& operator=(const TFmtContext& other);

  // ---- the virtual table, in its order ----
  ~TFmtContext() override;
  void AssertValid() const override {}
  void Serialize(CArchive&) override {}
  virtual int Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) = 0;
  virtual void CharacterOut(char c, int x, int y, TExtendedFont* font) = 0;
  virtual void DPtoLP(CPoint* points, int count) = 0;
  virtual void DrawRect(const CRect& rect) = 0;
  virtual void FillRect(const CRect* rect, CBrush* brush) = 0;
  virtual int GetCurrentPrintPage() { return 0; }
  virtual int GetMaximumPrintPage() { return 0; }
  virtual CColorRef GetTextColor() = 0;
  virtual CSize GetTextExtent(const char* text, int length) = 0;
  virtual int Get_QuadWidth() = 0;
  // May normalise `rect` in place.
  virtual int IntersectsClippingRegion(CRect& rect) = 0;
  virtual int IsPrinting() = 0;
  virtual void LPtoDP(CPoint* points, int count) = 0;
  virtual void LPtoDP(CRect* rect) = 0;
  virtual void LPtoDP(CSize* size) = 0;
  virtual int LineTo(int x, int y) = 0;
  virtual CPoint MoveTo(int x, int y) = 0;  // answers the previous point
  virtual int RectVisible(const CRect* rect) = 0;
  virtual int Rectangle(const CRect* rect) = 0;
  virtual int Rectangle(int left, int top, int right, int bottom) = 0;
  // Each answers the object whose selection restores the previous state.
  virtual CBrush* SelectObject(CBrush* brush) = 0;
  virtual CFont* SelectObject(CFont* font) = 0;
  virtual CPen* SelectObject(CPen* pen) = 0;
  virtual CColorRef SetBkColor(const CColorRef& color) = 0;  // answers the previous colour
  virtual void SetCurrentPrintPage(int) {}
  virtual void SetMaximumPrintPage(int) {}
  virtual void SetPageColor(const CColorRef& color) = 0;
  virtual CColorRef SetTextColor(const CColorRef& color) = 0;  // answers the previous colour
  virtual int TextOut(int x, int y, const char* text, int length) = 0;
  virtual int TextOut(int x, int y, const CString& text) = 0;

  // ---- accessors ----
  TFmtDocumentNode* Get_DocumentNode() const { return m_pDocumentNode; }
  void Set_DocumentNode(TFmtDocumentNode* document) { m_pDocumentNode = document; }

  // ---- group state and styles ----
  void PushGroupState();
  void PopGroupState();  // nothing on an empty stack
  void PushAndSetStyle(int style);
  void PopStyle();  // nothing on an empty stack
  void SetStyle(int style);

  // ---- lists ----
  void PushListType(int type, int labelSep, int labelWidth, int leftMargin, int rightMargin,
                    const TFmtNode* pDefaultLabel);
  // Reports 60004 on an empty stack when checking; on a type mismatch
  // (checking, type not -1) reports 60003 and pops all the same. The margins
  // and depths are undone by the popped entry's own values. Answers the error
  // number reported, 0 for none.
  unsigned PopListType(int type, int bCheck);
  int ListCounter() const;
  int ListType() const;  // -2 with no open list
  int ListLabelWidth() const;
  int ListLabelSep() const;
  TFmtNode* ListDefaultLabel() const;
  int IncrementListCounter();  // answers the counter, then adds one
  int IncrementFootnoteCounter() { return ++m_nFootnoteCounter; }
  void UseCounter(const char* name);  // interned "enumi" .. "enumiv"

  // ---- spaces, from the roman family at the current size ----
  // Fractions of the width of "M"; 0 while no fonts are prepared.
  int ThinSpaceWidth() { return QuadOfRoman() / 8; }
  int MediumSpaceWidth() { return QuadOfRoman() / 4; }
  int ThickSpaceWidth() { return QuadOfRoman() / 2; }
  int TabbingSep() { return ThickSpaceWidth(); }

  // ---- case ----
  char Case(char c) const;
  // With case 0 answers the argument; otherwise a new[] copy the caller frees.
  const char* Case(const char* text, int& bAllocated) const;

  // ---- node path ----
  void ClearNodePath() { m_NodePath.RemoveAll(); }
  void PushOnNodePath(TFmtNode* node) { m_NodePath.AddTail(node); }
  void PopOffNodePath() { m_NodePath.RemoveTail(); }
  CNodePath* CopyNodePath() const { return new CNodePath(m_NodePath); }

  // ---- labels, vertical list, captions ----
  void SetMostRecentLabelSite(TFmtNode* node) { m_pLabelSite = node; }
  // Defined with the document node, whose label table it feeds.
  void UpdateLabelDatabase(TFmtNode* labelNode);
  // The outermost caller wins: a node is kept only if none is; null clears.
  void SetParentNodeOnVerticalList(TFmtNode* node);
  TFmtNode* Get_ParentNodeOnVerticalList() const { return m_pParentOnVerticalList; }
  void Set_CaptionRequestor(TFmtFigureNode* figure) { m_pCaptionRequestor = figure; }
  TFmtFigureNode* Get_CaptionRequestor() const { return m_pCaptionRequestor; }
  // Defined with the figure node, which takes the caption.
  void Set_Caption(TFmtNode* caption);

  // ---- whole state ----
  void Reset();
  void BringToDefaultState();
  TFmtSnapShot* SaveState();  // new; the caller owns it
  void RestoreState(const TFmtSnapShot* snapshot);

  // ---- class-wide ----
  static void NeedToResetScaledFeatures() {
    fg_bDoResetScaledFeatures = 1;
    fg_bSystemFontTextMetricsInitialized = 0;
  }
  static void InitializeResources() {}
  static void FreeResources();
  static int CanDecreaseAFontSize();

  static const CString* Get_MathFontName() { return fg_pMathFontName; }
  static const CString* Get_RmFontName() { return fg_pRmFontName; }
  static const CString* Get_SfFontName() { return fg_pSfFontName; }
  static const CString* Get_TtFontName() { return fg_pTtFontName; }
  static void Set_MathFontName(const char* name) { SetName(fg_pMathFontName, name); }
  static void Set_RmFontName(const char* name) { SetName(fg_pRmFontName, name); }
  static void Set_SfFontName(const char* name) { SetName(fg_pSfFontName, name); }
  static void Set_TtFontName(const char* name) { SetName(fg_pTtFontName, name); }
  static int Get_MathFontPointSize() { return fg_nMathFontPointSize; }
  static int Get_RmFontPointSize() { return fg_nRmFontPointSize; }
  static int Get_SfFontPointSize() { return fg_nSfFontPointSize; }
  static int Get_TtFontPointSize() { return fg_nTtFontPointSize; }
  static void Set_MathFontPointSize(int size) { fg_nMathFontPointSize = size; }
  static void Set_RmFontPointSize(int size) { fg_nRmFontPointSize = size; }
  static void Set_SfFontPointSize(int size) { fg_nSfFontPointSize = size; }
  static void Set_TtFontPointSize(int size) { fg_nTtFontPointSize = size; }

  // ---- fields, in order ----
  TFmtDocumentNode* m_pDocumentNode = nullptr;  // not owned
  int m_bForceDraw = 0;
  int m_bMathSpacing = 1;
  int m_nScriptDepth = 0;
  int m_bColorForced = 0;
  int m_bOpaqueObjects = 0;
  int m_nCase = 0;           // 0 none, 1 lower, 2 upper, 3 small capitals
  int m_nJustification = 1;  // KJustification: 1 ragged right, 2 ragged left, 3 centred
  int m_nEnumerationDepth = 0;
  int m_nFootnoteCounter = 0;
  int m_nItemizeDepth = 0;
  int m_nLeftMargin = 0;
  int m_nRightMargin = 0;
  int m_nTop = 0;
  TFmtNode* m_pLabelSite = nullptr;             // not owned
  TFmtNode* m_pParentOnVerticalList = nullptr;  // not owned
  TFmtFigureNode* m_pCaptionRequestor = nullptr;  // not owned
  CObList m_ListEnvironments;  // of TListEnvironment, owned, head = innermost
  CObList m_GroupStates;       // of TGroupState, owned, head = innermost
  CObList m_Styles;            // of TStyle, owned, head = innermost
  CNodePath m_NodePath;

  // ---- class-level data ----
  static inline int fg_bAllowUseOfColor = 1;
  static inline int fg_bDoColorizeExpressions = 0;
  static inline int fg_bCenterDisplayMathExpressions = 1;
  static inline int fg_bEnableAudioAutoPlay = 1;
  static inline int fg_bEnableVideoAutoPlay = 1;
  static inline int fg_CurrentStyle = k_StyleDisplay;
  static constexpr int fg_nUnitsPerPoint = 2;  // one logical unit is half a point
  static constexpr int fg_nColors = 6;
  static inline int fg_AboveRuleGapMultiplier = 4;
  static inline int fg_BelowRuleGapMultiplier = 5;
  static inline int fg_bDoResetScaledFeatures = 1;
  static inline int fg_bSystemFontTextMetricsInitialized = 0;
  static inline TSystemFontTextMetrics fg_SystemFontTextMetrics;
  static inline CString* fg_pMathFontName = nullptr;  // owned
  static inline CString* fg_pRmFontName = nullptr;    // owned
  static inline CString* fg_pSfFontName = nullptr;    // owned
  static inline CString* fg_pTtFontName = nullptr;    // owned
  static inline int fg_nMathFontPointSize = 13;
  static inline int fg_nRmFontPointSize = 13;
  static inline int fg_nSfFontPointSize = 12;
  static inline int fg_nTtFontPointSize = 13;
  static inline CColorRef fg_CurrentColor;
  static inline TFmtPrintParameters fg_PrintParameters;
  // Indexed by state: 0 standard, 1 selection, 2 standard math, 3 edit box,
  // 4 highlight, 5 active math (object nodes).
  // Black on white; a selection white on dark blue; a highlight on yellow.
  // The profile store's colours replace these.
  static inline CColorRef fg_ColorBackground[fg_nColors] = {
      CColorRef(255, 255, 255, "white"), CColorRef(0, 0, 139, "dark blue"), CColorRef(255, 255, 255, "white"),
      CColorRef(255, 255, 255, "white"), CColorRef(255, 255, 0, "yellow"),  CColorRef(255, 255, 255, "white")};
  static inline CColorRef fg_ColorForeground[fg_nColors] = {
      CColorRef(0, 0, 0, "black"), CColorRef(255, 255, 255, "white"), CColorRef(0, 0, 0, "black"),
      CColorRef(0, 0, 0, "black"), CColorRef(0, 0, 0, "black"),       CColorRef(0, 0, 0, "black")};
  static inline CColorRef fg_Color_Links;
  static inline CColorRef fg_Color_LiveLink;
  static inline CColorRef fg_MathColor_BinaryOps;
  static inline CColorRef fg_MathColor_Delimiters;
  static inline CColorRef fg_MathColor_Lines;
  static inline CColorRef fg_MathColor_LoglikeFunctions;
  static inline CColorRef fg_MathColor_Numbers;
  static inline CColorRef fg_MathColor_Relations;
  // Scaled layout values, set by the device's ResetScaledFeatures.
  static inline int fg_nDisplayMargin = 0;
  static inline int fg_nParIndent = 0;
  static inline int fg_nParSkip = 0;
  static inline int fg_nRuleExtension = 0;
  static inline int fg_nRuleThickness = 0;
  static inline int fg_nSuperscriptRightShift = 0;

 private:
  static void SetName(CString*& field, const char* name);
  void CopySimpleFields(const TFmtContext& other);
  void RestoreFromListEntry(const TListEnvironment& entry);
  void SelectCurrentFamily();
  int QuadOfRoman();
  static void DeleteAll(CObList& list);
  friend class TGroupState;
};
