// CZephrinGenericView: joins a format tree to its X window. Expose events
// become composition and drawing, pointer events become the status line,
// the cursor, links and the popup menu. It assumes no host document: pop-up
// windows use it with a tree of their own. CZephrinPlugInView adds what
// belongs to an embedded instance.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#include "framework/color_ref.h"
#include "framework/cstring.h"
#include "framework/geometry.h"
#include "framework/wnd.h"

class CMenu;
class CNodePath;
class TFmtContext_XWin;
class TFmtDocumentNode;
class TFmtLinkNode;
class TFmtNode;

// What lies under the pointer: the node hit, then the first node on the way
// up from it that carries each transient feature.
class CGenericTargets {
 public:
  CGenericTargets() = default;
  CGenericTargets(const CGenericTargets&) = delete;
  CGenericTargets& operator=(const CGenericTargets&) = delete;
  virtual ~CGenericTargets() = default;

  // Each slot keeps its first hit.
  virtual void AddTargets(TFmtNode* node);

  TFmtNode* m_pHit = nullptr;
  TFmtNode* m_pBackground = nullptr;
  TFmtNode* m_pForeground = nullptr;
  TFmtNode* m_pLink = nullptr;
  TFmtNode* m_pStatus = nullptr;
  TFmtNode* m_pToolTip = nullptr;
  TFmtNode* m_pNote = nullptr;
};

class CZephrinGenericView : public CWnd {
 public:
  CZephrinGenericView();
  CZephrinGenericView(const CZephrinGenericView&) = delete;
  CZephrinGenericView& operator=(const CZephrinGenericView&) = delete;
  ~CZephrinGenericView() override;

  // ---- the virtual table, in its order ----
  int OnEraseBkgnd() override;
  void OnUpdate(CWnd* sender, long hint, CObject* hintObject) override;
  virtual TFmtDocumentNode* Get_DocumentNode() const { return nullptr; }
  virtual TFmtContext_XWin* Get_FmtContext() const { return nullptr; }
  virtual void Set_MenuNode(TFmtNode* node) { m_pMenuNode = node; }
  // No clipboard on this host: the slot stays for another.
  virtual void CopyToClipboard(const CString&, unsigned) {}
  virtual int ExecuteLink(TFmtLinkNode* link, int flags);
  virtual void OnPrepareDC();
  virtual void ReleaseDC() {}
  virtual void SetScrollInfo() {}
  virtual void UpdateStatusLineText(const CString&) {}
  virtual void CustomizePopUpMenu(CMenu*) const {}

  // ---- set-up ----
  // Stores the handles and makes the three shared cursors on first use.
  int SubClass(Widget shell, Widget main, Widget draw, Widget vScroll, Widget hScroll, Window drawWindow,
               Window browserWindow, Display* display, GC gc, Visual* visual, int screen, int depth, int colors,
               int zero, Colormap* colormap, int x, int y, int width, int height);
  void SetGeometry(int x, int y, int width, int height);
  // Drops every pointer into the document's tree: it is being replaced.
  void ForgetTree();

  // ---- painting ----
  // The device rectangle of an expose: loads, composes when needed, draws.
  void OnPaint(const CRect& rect);
  void OnDraw();
  void PreDraw(int bWaitCursor, const CString& title);
  void RecomposeAndRedraw();
  // A repaint of what the window shows now (the drawing area may be larger).
  void Invalidate(int erase = 1);
  void UpdateWindow();
  // Grows the drawing area to total (device units) and sets the bars' step.
  void SetScrollSizes(const CSize& total, const CSize& page, const CSize& line);
  void GetTrueClientSize(CSize& client, CSize& bars) const;
  // The part of the drawing area that the window shows, in device units.
  CRect GetVisibleRect() const;
  // The width that shows of the drawing area, in pixels.
  int VisibleWidth() const;

  // ---- scrolling to a place ----
  void Set_NodeToScrollTo(TFmtNode* node, int top) {
    m_pNodeToScrollTo = node;
    m_bScrollToTop = top;
  }
  void Set_IndexToScrollTo(int index, int top) {
    m_nIndexToScrollTo = index;
    m_bScrollToTop = top;
  }
  TFmtNode* Get_NodeToScrollTo() const { return m_pNodeToScrollTo; }
  int Get_IndexToScrollTo() const { return m_nIndexToScrollTo; }
  void ScrollToNode();
  void ScrollToIndex();

  // ---- pointer ----
  void OnLButtonDown(unsigned flags, CPoint point);
  void OnLButtonUp(unsigned flags, CPoint point);
  void OnLButtonDblClk(unsigned flags, CPoint point);
  void OnMouseMove(unsigned flags, CPoint point);
  // Device point to logical, with the context prepared for the view.
  void OnTranslatePoint(CPoint& point);
  void GetActiveTargets(const CPoint& point, CGenericTargets& targets);
  int HandleTargets(CGenericTargets& targets);
  TFmtLinkNode* GetActiveLink(CPoint& point);
  void OnContextMenu(CWnd* window, XButtonEvent* event);
  void OnCommandContextMenuChoice(unsigned id);
  void PostExecuteLink(int action);

  // ---- caret: a position in the document, never shown on this host ----
  void MoveCaret(CPoint& point);
  void CreateCaret();
  void HideCaret() {}
  void ShowCaret() {}
  void MoveCaretLeft();
  void MoveCaretRight();

  // ---- invalidation and description ----
  void InvalidateExtentRect(TFmtNode* node);
  void InvalidateLogicalRect(CRect& rect);
  void DisplayNodeDescription(TFmtNode* node);
  TFmtNode* FindClosestVerticalNode(CPoint& point);
  int IsInRect(TFmtNode* node);
  CNodePath* Get_NodePath();
  // The path to the node under point (logical), kept for the menus.
  CNodePath* Set_NodePath(const CPoint& point);
  void Set_NextOverlayItemPath(CNodePath* path, const CPoint* point);

  // ---- cursors ----
  void SetWaitCursor();
  void SetIBeamCursor();
  void SetHypermediaCursor();

  int Get_ReadyShown() const { return m_bReadyShown; }
  int Get_ShowCaret() const { return m_bShowCaret; }
  void Set_ShowCaret(int show) { m_bShowCaret = show; }
  int Get_WaitCursor() const { return m_bWaitCursor; }
  void Set_WaitCursor(int flag) { m_bWaitCursor = flag; }
  const CColorRef& Get_BackgroundColor() const { return m_BackgroundColor; }
  TFmtNode* Get_MenuNode() const { return m_pMenuNode; }

  static Cursor fg_hcurIbeam;
  static Cursor fg_hcurHypermedia;
  static Cursor fg_hcurWait;

 protected:
  // The loading half of OnPaint, which only a view with a document has:
  // 0 when nothing (more) is to be loaded, non-zero to go round again.
  virtual int HasSource() const { return Get_DocumentNode() != nullptr; }
  virtual int IsLoaded() const { return 1; }
  virtual int Load() { return 0; }
  virtual void AfterPaint() {}
  void DefineCursor(Cursor cursor);
  void DocumentSize(CSize& size);

  // ---- fields, in order ----
  int m_bReadyShown = 0;
  int m_bShowCaret = 0;
  int m_bWaitCursor = 1;
  int m_nIndexToScrollTo = -1;
  TFmtNode* m_pNodeToScrollTo = nullptr;
  int m_bScrollToTop = 1;
  CColorRef m_BackgroundColor;
  CPoint m_HitPoint{-1, -1};
  TFmtNode* m_pMenuNode = nullptr;
  CNodePath* m_pNodePath = nullptr;            // owned, made on first use
  CNodePath* m_pNextOverlayItemPath = nullptr;  // owned

 private:
  static Display* fg_pCursorDisplay;
};
