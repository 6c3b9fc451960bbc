#include "host/generic_view.h"

#include <Xm/ScrollBar.h>
#include <Xm/Xm.h>
#include <X11/cursorfont.h>

#include <algorithm>

#include "device/context_xwin.h"
#include "device/font_family.h"
#include "device/font_family_pi.h"
#include "format/document_node.h"
#include "format/vertical_list_node.h"
#include "framework/menu.h"
#include "framework/util.h"
#include "host/zephrin_stat.h"
#include "interact/node_path.h"

Cursor CZephrinGenericView::fg_hcurIbeam = 0;
Cursor CZephrinGenericView::fg_hcurHypermedia = 0;
Cursor CZephrinGenericView::fg_hcurWait = 0;
Display* CZephrinGenericView::fg_pCursorDisplay = nullptr;

namespace {
// X keeps window sizes and coordinates in 16 bits: a drawing area taller
// than this would wrap, so a longer document is cut off at its end.
constexpr int kMaxWindowSize = 32767;

bool FontsReady() {
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  return !stat || stat->GetFontStatus() == 7;
}
}  // namespace

// ---- targets ---------------------------------------------------------------------

void CGenericTargets::AddTargets(TFmtNode* node) {
  if (!node) return;
  if (!m_pHit) m_pHit = node;
  if (!m_pBackground && node->HasTransientBackgroundColor()) m_pBackground = node;
  if (!m_pForeground && node->HasTransientForegroundColor()) m_pForeground = node;
  if (!m_pLink && node->IsLinkNode()) m_pLink = node;
  if (!m_pStatus && node->HasTransientStatusMessage()) m_pStatus = node;
  if (!m_pToolTip && node->HasTransientToolTip()) m_pToolTip = node;
  if (!m_pNote && node->IsNoteNode()) m_pNote = node;
}

// ---- life ------------------------------------------------------------------------

CZephrinGenericView::CZephrinGenericView() : m_BackgroundColor(TFmtContext::fg_ColorBackground[0]) {}

CZephrinGenericView::~CZephrinGenericView() {
  m_pNodeToScrollTo = nullptr;
  m_nIndexToScrollTo = -1;
  delete m_pNodePath;
  delete m_pNextOverlayItemPath;
}

int CZephrinGenericView::SubClass(Widget shell, Widget main, Widget draw, Widget vScroll, Widget hScroll,
                                  Window drawWindow, Window browserWindow, Display* display, GC gc,
                                  Visual* visual, int screen, int depth, int colors, int zero, Colormap* colormap,
                                  int x, int y, int width, int height) {
  SetInfo(shell, draw, main, vScroll, hScroll, drawWindow, browserWindow, x, y, width, height, display, gc, visual,
          screen, depth, colors, zero, colormap);
  // Shared by every view of the connection; made again only for another one.
  if (display && fg_pCursorDisplay != display) {
    fg_pCursorDisplay = display;
    fg_hcurIbeam = XCreateFontCursor(display, XC_xterm);
    fg_hcurHypermedia = XCreateFontCursor(display, XC_hand2);
    fg_hcurWait = XCreateFontCursor(display, XC_watch);
  }
  return 1;
}

void CZephrinGenericView::SetGeometry(int x, int y, int width, int height) {
  m_x = x;
  m_y = y;
  m_nWidth = width;
  m_nHeight = height;
}

void CZephrinGenericView::ForgetTree() {
  m_pNodeToScrollTo = nullptr;
  m_nIndexToScrollTo = -1;
  m_pMenuNode = nullptr;
  delete m_pNodePath;
  m_pNodePath = nullptr;
  delete m_pNextOverlayItemPath;
  m_pNextOverlayItemPath = nullptr;
}

// ---- cursors ---------------------------------------------------------------------

void CZephrinGenericView::DefineCursor(Cursor cursor) {
  if (!m_pDisplay || !m_DrawWindow || !cursor || fg_pCursorDisplay != m_pDisplay) return;
  XDefineCursor(m_pDisplay, m_DrawWindow, cursor);
  // Flushed at once: a long composition follows, and the cursor must show
  // before it, not after.
  XFlush(m_pDisplay);
}

void CZephrinGenericView::SetWaitCursor() { DefineCursor(fg_hcurWait); }
void CZephrinGenericView::SetIBeamCursor() { DefineCursor(fg_hcurIbeam); }
void CZephrinGenericView::SetHypermediaCursor() { DefineCursor(fg_hcurHypermedia); }

// ---- painting --------------------------------------------------------------------

void CZephrinGenericView::OnPaint(const CRect& rect) {
  // A load answers whether to go round again: at most once more.
  for (int round = 0;; ++round) {
    if (!HasSource()) return;
    if (IsLoaded()) break;
    if (!Load() || round > 0) return;
  }
  TFmtContext_XWin* context = Get_FmtContext();
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!context || !document) return;
  context->Set_Window(this);
  CRect logical = rect;
  context->DPtoLP(&logical);
  context->Set_ClipRegion(logical);
  OnPrepareDC();
  if (document->Get_CompositionStatus() != k_Composed) {
    SetScrollInfo();
    OnPrepareDC();
  }
  OnDraw();
  TFmtDocumentNode::DeleteDocumentStorage();
  AfterPaint();
}

void CZephrinGenericView::OnPrepareDC() {
  TFmtContext_XWin* context = Get_FmtContext();
  if (!context) return;
  context->Set_Window(this);
  TFontFamily::PrepareAllFonts(this);
  TFmtContext_XWin::ResetScaledFeatures();
  CSize size(VisibleWidth(), m_nHeight);
  context->DPtoLP(size);
  const int m = TFmtContext::fg_nDisplayMargin;
  context->m_nLeftMargin = m;
  context->m_nRightMargin = m + std::max(0, size.cx - 3 * m);
  context->m_nTop = -m;
}

void CZephrinGenericView::PreDraw(int bWaitCursor, const CString& /*title*/) {
  if (bWaitCursor && m_bWaitCursor) SetWaitCursor();
  TFmtContext_XWin* context = Get_FmtContext();
  TFmtDocumentNode* document = Get_DocumentNode();
  if (context) {
    // Every walk starts from the same state: what a previous walk left open
    // (groups, lists, a size) must not leak into this one.
    const int left = context->m_nLeftMargin, right = context->m_nRightMargin, top = context->m_nTop;
    context->BringToDefaultState();
    context->Reset();
    context->m_nLeftMargin = left;
    context->m_nRightMargin = right;
    context->m_nTop = top;
    context->m_nJustification = 1;
    context->Set_DocumentNode(document);
    context->SetMostRecentLabelSite(document);
    context->SetStyle(k_StyleText);
    TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::fg_StyleBaseFontSize = TFontFamily_PI::k_NormalSize;
    if (TFontFamily::fg_pRoman) TFontFamily::fg_pRoman->MakeCurrentAndSelect(*context);
    TFmtContext::fg_CurrentColor = TFmtContext::fg_ColorForeground[0];
    context->SetTextColor(TFmtContext::fg_CurrentColor);
    CColorRef background = m_BackgroundColor;
    int isSet = 0;
    if (document) {
      CColorRef page;
      document->Get_PageColor(page, isSet);
      if (isSet) background = page;
    }
    context->SetBkColor(background);
  }
  if (bWaitCursor && m_bWaitCursor) SetIBeamCursor();
}

void CZephrinGenericView::OnDraw() {
  TFmtContext_XWin* context = Get_FmtContext();
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!context || !document) return;
  PreDraw(0, "");
  SetWaitCursor();
  document->m_Position = CPoint(context->m_nLeftMargin, context->m_nTop);
  if (document->Get_CompositionStatus() != k_Composed && FontsReady()) {
    document->Compose(*context);
    PreDraw(0, "");
  }
  if (FontsReady()) {
    if (m_pNodeToScrollTo) {
      // A measuring pass: nothing is inside an empty clip, but every node
      // takes its place, and the target's position is then known.
      const CRect clip = context->Get_ClipRegion();
      context->Set_ClipRegion(CRect(0, 0, 0, 0));
      document->Draw(*context);
      context->Set_ClipRegion(clip);
      ScrollToNode();
    } else {
      document->Draw(*context);
    }
  }
  SetIBeamCursor();
}

void CZephrinGenericView::RecomposeAndRedraw() {
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!document) return;
  document->Set_CompositionStatus(k_ComposeEverything);
  if (TFmtContext_XWin* context = Get_FmtContext()) context->Set_Window(this);
  OnPrepareDC();
  SetScrollInfo();
  Invalidate(1);
  UpdateWindow();
  SetScrollInfo();
}

int CZephrinGenericView::VisibleWidth() const {
  // The main window's clip window is what shows of the drawing area: the
  // window less a vertical bar when there is one. Lines are broken for it,
  // so that text never runs under the bar.
  Widget clip = nullptr;
  if (m_MainWidget) XtVaGetValues(m_MainWidget, XmNclipWindow, &clip, nullptr);
  Dimension shown = 0;
  if (clip) XtVaGetValues(clip, XmNwidth, &shown, nullptr);
  return shown > 0 ? std::min<int>(shown, m_nWidth) : m_nWidth;
}

CRect CZephrinGenericView::GetVisibleRect() const {
  int x = 0, y = 0;
  if (m_HScroll && XtIsManaged(m_HScroll)) XtVaGetValues(m_HScroll, XmNvalue, &x, nullptr);
  if (m_VScroll && XtIsManaged(m_VScroll)) XtVaGetValues(m_VScroll, XmNvalue, &y, nullptr);
  return CRect(x, y, x + m_nWidth, y + m_nHeight);
}

void CZephrinGenericView::Invalidate(int erase) {
  const CRect visible = GetVisibleRect();
  CWnd::InvalidateRect(&visible, erase);
}

void CZephrinGenericView::UpdateWindow() {
  if (m_pDisplay) XFlush(m_pDisplay);
}

int CZephrinGenericView::OnEraseBkgnd() {
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!document || !m_pDisplay || !m_DrawWindow) return 0;
  CColorRef color = m_BackgroundColor;
  CColorRef page;
  int isSet = 0;
  document->Get_PageColor(page, isSet);
  if (isSet) color = page;
  color.Allocate(this, 0);
  XSetWindowBackground(m_pDisplay, m_DrawWindow, color.Pixel());
  return 1;
}

void CZephrinGenericView::OnUpdate(CWnd*, long, CObject*) {}

void CZephrinGenericView::GetTrueClientSize(CSize& client, CSize& bars) const {
  Dimension width = 0, height = 0, barWidth = 0, barHeight = 0;
  if (m_DrawWidget) XtVaGetValues(m_DrawWidget, XmNwidth, &width, XmNheight, &height, nullptr);
  if (m_VScroll && XtIsManaged(m_VScroll)) XtVaGetValues(m_VScroll, XmNwidth, &barWidth, nullptr);
  if (m_HScroll && XtIsManaged(m_HScroll)) XtVaGetValues(m_HScroll, XmNheight, &barHeight, nullptr);
  client = CSize(width, height);
  bars = CSize(barWidth, barHeight);
}

void CZephrinGenericView::SetScrollSizes(const CSize& total, const CSize&, const CSize&) {
  if (m_DrawWidget) {
    // The main window scrolls the area, so a scroll is plain exposes. Its
    // width is the document's: lines are broken for what shows, so it fits
    // unless something is wider than a line, and no horizontal bar comes for
    // nothing. Its height is the document's, and no more than what shows
    // (once the width is settled: a horizontal bar takes some) when that is
    // shorter, so a document that fits brings no vertical bar either. Beyond
    // the area the clip window shows its own background, the same paper.
    Dimension width = 0, height = 0;
    XtVaGetValues(m_DrawWidget, XmNwidth, &width, XmNheight, &height, nullptr);
    // A document that fits is kept two pixels inside what shows: the main
    // window narrows its clip by two when the area comes that close to it,
    // and the text would have to be broken again.
    const int visible = VisibleWidth();
    const int fitted = total.cx <= visible ? std::min<int>(total.cx, visible - 2) : total.cx;
    const int newWidth = std::clamp<int>(fitted, 1, kMaxWindowSize);
    if (newWidth != width) XtVaSetValues(m_DrawWidget, XmNwidth, static_cast<Dimension>(newWidth), nullptr);
    Widget clip = nullptr;
    Dimension shown = 0;
    if (m_MainWidget) XtVaGetValues(m_MainWidget, XmNclipWindow, &clip, nullptr);
    if (clip) XtVaGetValues(clip, XmNheight, &shown, nullptr);
    // Grown to the document, or brought down to what shows; not grown back
    // to it (the clip gains a little when a bar goes, and would keep the
    // two chasing each other).
    int newHeight = height;
    if (total.cy > height) newHeight = total.cy;
    else if (shown > 0 && height > shown) newHeight = std::max<int>(total.cy, shown);
    newHeight = std::clamp(newHeight, 1, kMaxWindowSize);
    if (newHeight != height) XtVaSetValues(m_DrawWidget, XmNheight, static_cast<Dimension>(newHeight), nullptr);
  }
  // After the resize: the main window sets the bars anew when the area
  // changes, and the step must be ours.
  const int step = 2 * TFmtContext::Get_RmFontPointSize();
  for (Widget bar : {m_VScroll, m_HScroll}) {
    if (!bar) continue;
    int value = 0, slider = 0, page = 0;
    XtVaGetValues(bar, XmNvalue, &value, XmNsliderSize, &slider, XmNpageIncrement, &page, nullptr);
    XmScrollBarSetValues(bar, value, slider, step, page, True);
  }
}

void CZephrinGenericView::DocumentSize(CSize& size) {
  TFmtDocumentNode* document = Get_DocumentNode();
  TFmtContext_XWin* context = Get_FmtContext();
  const int m = TFmtContext::fg_nDisplayMargin;
  size = CSize(3 * m, 2 * m);
  if (!document || !context) return;
  const TFmtExtent& extent = *document->m_pExtent;
  size.cx += extent.m_nWidth;
  size.cy += extent.m_nHeight + extent.m_nDepth;
  context->Log2Dev(size);
  size.cy = std::abs(size.cy);
}

// ---- scrolling to a place --------------------------------------------------------

void CZephrinGenericView::ScrollToNode() {
  TFmtNode* node = m_pNodeToScrollTo;
  const int top = m_bScrollToTop;
  m_pNodeToScrollTo = nullptr;
  m_bScrollToTop = 1;
  TFmtContext_XWin* context = Get_FmtContext();
  if (!node || !context || !m_VScroll) return;
  CPoint caret = node->m_Position;
  MoveCaret(caret);
  int value = 0, slider = 0, minimum = 0, maximum = 0;
  XtVaGetValues(m_VScroll, XmNvalue, &value, XmNsliderSize, &slider, XmNminimum, &minimum, XmNmaximum, &maximum,
                nullptr);
  CRect shown(0, value, 0, value + slider);
  context->Dev2Log(shown);
  int64_t y = node->m_Position.y;
  if (top) y += static_cast<int64_t>(node->m_pExtent->m_nHeight) + node->BeforeSkip();
  else y -= std::abs(static_cast<int64_t>(shown.top) - shown.bottom) - node->m_pExtent->m_nDepth;
  CPoint at(0, static_cast<int>(std::clamp<int64_t>(y, INT32_MIN, INT32_MAX)));
  context->Log2Dev(at);
  CSize size;
  DocumentSize(size);
  if (at.y > minimum && at.y < maximum && slider < size.cy) {
    const int target = size.cy - slider > at.y ? at.y : maximum - slider - 1;
    XmScrollBarSetValues(m_VScroll, target, slider, 0, 0, True);
  }
}

void CZephrinGenericView::ScrollToIndex() {
  TFmtDocumentNode* document = Get_DocumentNode();
  const int index = m_nIndexToScrollTo;
  m_nIndexToScrollTo = -1;
  if (!document || index <= 0) return;
  const CObList& children = document->Get_VerticalList()->Get_Children();
  if (index >= children.GetCount()) return;
  auto position = children.FindIndex(index + 1);
  if (position == children.GetEnd()) return;
  Set_NodeToScrollTo(static_cast<TFmtNode*>(*position), m_bScrollToTop);
  ScrollToNode();
}

// ---- pointer ---------------------------------------------------------------------

void CZephrinGenericView::OnTranslatePoint(CPoint& point) {
  TFmtContext_XWin* context = Get_FmtContext();
  if (!context) return;
  context->Set_Window(this);
  OnPrepareDC();
  context->Dev2Log(point);
}

CNodePath* CZephrinGenericView::Get_NodePath() {
  if (!m_pNodePath) m_pNodePath = new CNodePath;
  return m_pNodePath;
}

CNodePath* CZephrinGenericView::Set_NodePath(const CPoint& point) {
  CNodePath* path = Get_NodePath();
  path->RemoveAll();
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!document) return path;
  CObList nodes;
  nodes.AddTail(document);
  CPoint at = point;
  document->FindCaretPosition(at, nodes);
  path->SetNodeList(nodes);
  path->m_LastPoint = point;
  return path;
}

void CZephrinGenericView::GetActiveTargets(const CPoint& point, CGenericTargets& targets) {
  CNodePath* path = Set_NodePath(point);
  CObList nodes;
  path->GetNodeList(nodes);
  for (auto it = nodes.end(); it != nodes.begin();) {
    --it;
    targets.AddTargets(static_cast<TFmtNode*>(*it));
  }
}

int CZephrinGenericView::HandleTargets(CGenericTargets& targets) {
  int result = 0;
  if (targets.m_pStatus) {
    CString text;
    targets.m_pStatus->GetTransientStatusMessage(text);
    UpdateStatusLineText(text);
    result = 1;
    m_bReadyShown = 0;
  } else if (!m_bReadyShown) {
    UpdateStatusLineText("Ready");
    m_bReadyShown = 1;
  }
  if (targets.m_pLink) {
    SetHypermediaCursor();
    result = 1;
  }
  return result;
}

void CZephrinGenericView::OnMouseMove(unsigned, CPoint point) {
  OnTranslatePoint(point);
  m_HitPoint = point;
  CGenericTargets targets;
  GetActiveTargets(point, targets);
  if (!HandleTargets(targets)) SetIBeamCursor();
}

TFmtLinkNode* CZephrinGenericView::GetActiveLink(CPoint& point) {
  CGenericTargets targets;
  GetActiveTargets(point, targets);
  return targets.m_pLink ? targets.m_pLink->IsLinkNode() : nullptr;
}

void CZephrinGenericView::OnLButtonDown(unsigned, CPoint point) {
  SetFocus();
  OnTranslatePoint(point);
  HideCaret();
  MoveCaret(point);
  // Selection arrives with the selection classes; a press only places the caret.
  ShowCaret();
}

void CZephrinGenericView::OnLButtonUp(unsigned flags, CPoint point) {
  SetFocus();
  OnTranslatePoint(point);
  TFmtDocumentNode* document = Get_DocumentNode();
  TFmtLinkNode* first = document ? document->Get_CaretLinkNode() : nullptr;
  MoveCaret(point);
  TFmtLinkNode* second = document ? document->Get_CaretLinkNode() : nullptr;
  // A link runs only when press and release fall into the same one.
  if (second && second == first) ExecuteLink(second, static_cast<int>(flags));
  ShowCaret();
}

void CZephrinGenericView::OnLButtonDblClk(unsigned, CPoint point) {
  OnTranslatePoint(point);
  Set_NodePath(point);
}

int CZephrinGenericView::ExecuteLink(TFmtLinkNode*, int) {
  // Links execute with the link classes; until then nothing changes.
  if (TFmtContext_XWin* context = Get_FmtContext()) context->Set_Window(this);
  OnPrepareDC();
  const int action = 2;
  PostExecuteLink(action);
  return action;
}

void CZephrinGenericView::PostExecuteLink(int action) {
  TFmtContext_XWin* context = Get_FmtContext();
  TFmtDocumentNode* document = Get_DocumentNode();
  if (context) context->Set_Window(this);
  OnPrepareDC();
  switch (action) {
    case 0:
      if (document) document->Set_CompositionStatus(k_LinksChanged);
      if (TFmtNode* entry = document ? document->Get_CaretVListNode() : nullptr; entry && context) {
        CRect rect;
        entry->ExtentRectangle(rect);
        rect.top += entry->BeforeSkip();
        context->Log2Dev(rect);
        rect.left = 0;
        rect.right = m_nWidth;
        rect.NormalizeRect();
        CWnd::InvalidateRect(&rect, 1);
      } else {
        Invalidate(1);
      }
      break;
    case 1:
    case 3: ScrollToNode(); break;
    case 2: break;
    default: Invalidate(1); break;
  }
  SetScrollInfo();
  ScrollToNode();
}

void CZephrinGenericView::OnContextMenu(CWnd*, XButtonEvent* event) {
  if (!event) return;
  SetFocus();
  CPoint point(event->x, event->y);
  OnTranslatePoint(point);
  HideCaret();
  MoveCaret(point);
  CNodePath* path = Set_NodePath(point);
  Set_NextOverlayItemPath(path, &point);
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!document) return;
  CMenu menu;
  // Nodes with menus of their own arrive with the menu classes; the
  // document, last owner, always serves.
  document->ContextMenuInto(menu);
  Set_MenuNode(document);
  CustomizePopUpMenu(&menu);
  unsigned chosen = menu.TrackPopupMenu(1, event->x_root, event->y_root, this, event);
  (void)chosen;  // each item runs its own callback
  ShowCaret();
}

void CZephrinGenericView::OnCommandContextMenuChoice(unsigned) {
  // Document menus (menu nodes) join with the menu classes.
}

// ---- caret -----------------------------------------------------------------------

void CZephrinGenericView::MoveCaret(CPoint& point) {
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!document) return;
  if (TFmtContext_XWin* context = Get_FmtContext()) context->Set_Window(this);
  OnPrepareDC();
  HideCaret();
  document->Set_CaretPosition(point);
  CreateCaret();
}

void CZephrinGenericView::CreateCaret() {
  // No caret is shown on this host; the position lives in the document.
}

void CZephrinGenericView::MoveCaretLeft() {
  // Caret movement by keys joins with the selection classes.
}
void CZephrinGenericView::MoveCaretRight() {}

// ---- invalidation ----------------------------------------------------------------

void CZephrinGenericView::InvalidateExtentRect(TFmtNode* node) {
  if (!node) return;
  CRect rect;
  node->ExtentRectangle(rect);
  InvalidateLogicalRect(rect);
}

void CZephrinGenericView::InvalidateLogicalRect(CRect& rect) {
  TFmtContext_XWin* context = Get_FmtContext();
  if (!context) return;
  context->Set_Window(this);
  OnPrepareDC();
  rect.right += 1;
  rect.bottom -= 1;
  context->Log2Dev(rect);
  rect.NormalizeRect();
  rect.InflateRect(1, 1);
  CWnd::InvalidateRect(&rect, 1);
}

void CZephrinGenericView::DisplayNodeDescription(TFmtNode* node) {
  if (!node) return;
  CString text;
  node->Description(text);
  UpdateStatusLineText(text);
}

TFmtNode* CZephrinGenericView::FindClosestVerticalNode(CPoint& point) {
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!document) return nullptr;
  return document->Get_VerticalList()->FindClosestNode(point);
}

int CZephrinGenericView::IsInRect(TFmtNode* node) {
  TFmtContext_XWin* context = Get_FmtContext();
  if (!node || !context) return 0;
  const CRect visible = GetVisibleRect();
  CPoint top(node->m_Position.x, node->m_Position.y + node->m_pExtent->m_nHeight);
  CPoint bottom(node->m_Position.x, node->m_Position.y - node->m_pExtent->m_nDepth);
  context->Log2Dev(top);
  context->Log2Dev(bottom);
  return top.y >= visible.top && top.y <= visible.bottom && bottom.y >= visible.top && bottom.y <= visible.bottom;
}

void CZephrinGenericView::Set_NextOverlayItemPath(CNodePath* path, const CPoint* point) {
  auto* next = new CNodePath;
  if (path) {
    CObList nodes, kept;
    path->GetNodeList(nodes);
    bool ranToEnd = true;
    for (CObject* o : nodes) {
      auto* node = static_cast<TFmtNode*>(o);
      kept.AddTail(node);
      if (!node->IsCompoundNode() && node != nodes.GetHead()) {
        ranToEnd = false;
        break;
      }
    }
    next->SetNodeList(kept);
    if (point && (ranToEnd || !IsInRect(next->GetTailNode()))) {
      CPoint at = *point;
      if (TFmtNode* closest = FindClosestVerticalNode(at)) {
        CObList cut;
        cut.AddTail(nodes.IsEmpty() ? static_cast<CObject*>(closest) : nodes.GetHead());
        cut.AddTail(closest);
        next->SetNodeList(cut);
      }
    }
  }
  delete m_pNextOverlayItemPath;
  m_pNextOverlayItemPath = next;
}
