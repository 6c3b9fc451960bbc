#include "host/np_view.h"

#include <Xm/Xm.h>

#include <algorithm>

#include "device/context_xwin.h"
#include "format/document_node.h"
#include "format/leaf_nodes.h"
#include "format/paragraph_node.h"
#include "format/vertical_list_node.h"
#include "framework/menu.h"
#include "host/info_wizard.h"
#include "host/link_records.h"
#include "host/np_doc.h"
#include "host/np_zephrin_app.h"
#include "host/zr_document.h"
#include "host/zephrin_stat.h"
#include "host/zr_server.h"
#include "framework/util.h"
#include "interact/node_path.h"

void CZephrinPlugInView::SubClass(Widget shell, Widget main, Widget draw, Widget vScroll, Widget hScroll,
                                  Window drawWindow, Window browserWindow, Display* display, GC gc,
                                  Visual* visual, int screen, int depth, int colors, int zero, Colormap* colormap,
                                  int x, int y, int width, int height) {
  CZephrinGenericView::SubClass(shell, main, draw, vScroll, hScroll, drawWindow, browserWindow, display, gc, visual,
                                screen, depth, colors, zero, colormap, x, y, width, height);
  // New widgets have shown nothing yet: their first paint is reported again.
  m_nPaintReported = 0;
  // Start-up has placed the colours by now.
  OnUpdate(nullptr, 0, nullptr);
}

void CZephrinPlugInView::Set_InstanceData(CZephrinPlugInDoc* document) {
  m_pDocument = document;
  delete m_pNodePath;
  m_pNodePath = nullptr;
}

TFmtDocumentNode* CZephrinPlugInView::Get_DocumentNode() const {
  return m_pDocument ? m_pDocument->Get_DocumentNode() : nullptr;
}

TFmtContext_XWin* CZephrinPlugInView::Get_FmtContext() const {
  return m_pDocument ? m_pDocument->Get_FmtContext() : nullptr;
}

void CZephrinPlugInView::OnUpdate(CWnd*, long, CObject*) { m_BackgroundColor = TFmtContext::fg_ColorBackground[0]; }

int CZephrinPlugInView::IsLoaded() const { return m_pDocument && m_pDocument->Get_DocumentIsLoaded(); }
int CZephrinPlugInView::Load() { return m_pDocument ? m_pDocument->LoadDocument() : 0; }

void CZephrinPlugInView::AfterPaint() {
  if (m_nPaintReported || !IsLoaded()) return;
  m_nPaintReported = 1;
  ReportPaintDone();
}

void CZephrinPlugInView::ReportPaintDone() {
  if (!m_pDisplay || !m_BrowserWindow) return;
  // Sent on the same connection as the drawing, so the X server has done
  // every request of this paint when the browser's client sees the event.
  // An empty mask delivers it to the window's creator: the browser.
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.display = m_pDisplay;
  event.xclient.window = m_BrowserWindow;
  event.xclient.message_type = XInternAtom(m_pDisplay, zlink::kPaintDoneAtom, False);
  event.xclient.format = 32;
  ZRDocument* instance = m_pDocument ? m_pDocument->Get_DocumentInstance() : nullptr;
  event.xclient.data.l[0] = instance ? instance->GetDocID() : 0;
  XSendEvent(m_pDisplay, m_BrowserWindow, False, 0, &event);
  XFlush(m_pDisplay);
}

void CZephrinPlugInView::SetScrollInfo() {
  TFmtContext_XWin* context = Get_FmtContext();
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!context || !document) return;
  CSize client, bars;
  GetTrueClientSize(client, bars);
  const CSize usable(client.cx - bars.cx, client.cy - 2 * bars.cy);
  // A composition that brings the vertical bar narrows what shows: the
  // text is then composed again, once, for the narrower width (in full, as
  // a resize is). A document sure to be taller than the window gets its bar
  // first, so that one composition is enough.
  if (document->Get_CompositionStatus() == k_ComposeEverything) ShowBarIfSurelyNeeded();
  for (int pass = 0; pass < 2; ++pass) {
    const int composedWidth = VisibleWidth();
    context->Set_Window(this);
    OnPrepareDC();
    PreDraw(0, "");
    document->m_Position = CPoint(context->m_nLeftMargin, context->m_nTop);
    if (document->Get_CompositionStatus() != k_Composed &&
        ZephrinStat::GetZephrinStatObject()->GetFontStatus() == 7) {
      SetWaitCursor();
      document->Compose(*context);
      SetIBeamCursor();
    }
    CSize total;
    DocumentSize(total);
    CSize page(MulDiv(usable.cx, 9, 10), MulDiv(usable.cy, 9, 10));
    CSize line(MulDiv(usable.cx, 1, 10), MulDiv(usable.cy, 1, 10));
    context->Log2Dev(page);
    context->Log2Dev(line);
    page.cy = std::abs(page.cy);
    line.cy = std::abs(line.cy);
    SetScrollSizes(total, page, line);
    if (VisibleWidth() == composedWidth) break;
    document->Set_CompositionStatus(k_ComposeEverything);
  }
}

void CZephrinPlugInView::ShowBarIfSurelyNeeded() {
  TFmtContext_XWin* context = Get_FmtContext();
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!context || !document || !m_DrawWidget) return;
  // A lower bound of the height: every paragraph that holds a word or a
  // letter is at least one line of three quarters of the text size, with
  // the paragraph skip between two. Only the body's own elements are
  // looked at, and only the head of each.
  const int line = TFmtContext::Get_RmFontPointSize() * TFmtContext::fg_nUnitsPerPoint * 3 / 4;
  Dimension height = 0;
  XtVaGetValues(m_DrawWidget, XmNheight, &height, nullptr);
  int64_t bound = 0;
  CSize device(0, 0);
  for (CObject* o : document->Get_VerticalList()->Get_Children()) {
    TFmtParagraphNode* paragraph = static_cast<TFmtNode*>(o)->IsParagraphNode();
    if (!paragraph) continue;
    int looked = 0;
    for (CObject* c : paragraph->Get_Children()) {
      auto* child = static_cast<TFmtNode*>(c);
      if (child->IsSequenceNode() || child->IsCharacterNode()) {
        bound += (bound > 0 ? TFmtContext::fg_nParSkip : 0) + line;
        break;
      }
      if (++looked == 8) break;
    }
    device = CSize(0, static_cast<int>(std::min<int64_t>(bound, INT32_MAX)));
    context->Log2Dev(device);
    if (std::abs(device.cy) > height) break;
  }
  const int wanted = std::abs(device.cy);
  // Narrow for the moment, so that no horizontal bar shows beside it and
  // the width that shows is the one the document will have.
  if (wanted > height)
    XtVaSetValues(m_DrawWidget, XmNwidth, static_cast<Dimension>(1), XmNheight,
                  static_cast<Dimension>(std::min(wanted, 32767)), nullptr);
}

void CZephrinPlugInView::UpdateStatusLineText(const CString& text) {
  // Any other text replaces "Ready": the next motion may say it again.
  if (text != "Ready") m_bReadyShown = 0;
  ZRDocument* instance = m_pDocument ? m_pDocument->Get_DocumentInstance() : nullptr;
  if (instance && instance->GetServer()) instance->GetServer()->NSStatus(instance, text);
}

int CZephrinPlugInView::ExecuteLink(TFmtLinkNode* link, int flags) {
  return CZephrinGenericView::ExecuteLink(link, flags);
}

// ---- the document's popup menu ---------------------------------------------------

void CZephrinPlugInView::CustomizePopUpMenu(CMenu* menu) const {
  if (!menu) return;
  TFmtDocumentNode* document = Get_DocumentNode();
  if (!document || m_pMenuNode != document) return;
  struct Entry {
    unsigned id;
    XtCallbackProc helper;
    const CString* name;  // null: always enabled
  } entries[] = {
      {32775, OnAboveTopicHelper, &document->Get_AboveTopicPathName()},
      {32777, OnNextTopicHelper, &document->Get_NextTopicPathName()},
      {32779, OnPreviousTopicHelper, &document->Get_PreviousTopicPathName()},
      {40000, OnAppAboutHelper, nullptr},
      {32778, OnOptionsHelper, nullptr},
      {32789, OnPropertiesHelper, nullptr},
  };
  const CMenuList& list = menu->GetList();
  for (const Entry& entry : entries) {
    const bool disabled = entry.name && entry.name->IsEmpty();
    menu->EnableMenuItem(entry.id, disabled ? CMenu::MF_GRAYED : CMenu::MF_STRING);
    if (disabled) continue;
    for (int i = 0; i < list.m_nCount; ++i) {
      CMenuItem* item = list.m_Items[i];
      if (!item || item->m_nId != entry.id) continue;
      item->m_Callback = entry.helper;
      item->m_pSelf = const_cast<CZephrinPlugInView*>(this);
    }
  }
}

namespace {
CZephrinPlugInView* ViewOfItem(XtPointer data) {
  auto* item = static_cast<CMenuItem*>(data);
  return item ? static_cast<CZephrinPlugInView*>(item->m_pSelf) : nullptr;
}
}  // namespace

void CZephrinPlugInView::OnAboveTopicHelper(Widget, XtPointer item, XtPointer) {
  if (CZephrinPlugInView* view = ViewOfItem(item)) view->OnAboveTopic();
}
void CZephrinPlugInView::OnNextTopicHelper(Widget, XtPointer item, XtPointer) {
  if (CZephrinPlugInView* view = ViewOfItem(item)) view->OnNextTopic();
}
void CZephrinPlugInView::OnPreviousTopicHelper(Widget, XtPointer item, XtPointer) {
  if (CZephrinPlugInView* view = ViewOfItem(item)) view->OnPreviousTopic();
}
void CZephrinPlugInView::OnAppAboutHelper(Widget, XtPointer item, XtPointer) {
  if (CZephrinPlugInView* view = ViewOfItem(item)) view->OnAppAbout();
}
void CZephrinPlugInView::OnOptionsHelper(Widget, XtPointer item, XtPointer) {
  if (CZephrinPlugInView* view = ViewOfItem(item)) view->OnOptions();
}
void CZephrinPlugInView::OnPropertiesHelper(Widget, XtPointer item, XtPointer) {
  if (CZephrinPlugInView* view = ViewOfItem(item)) view->OnProperties();
}

void CZephrinPlugInView::OnAboveTopic() {
  int ok = 1;
  if (TFmtDocumentNode* document = Get_DocumentNode()) LoadRelativeFile(document->Get_AboveTopicPathName(), ok, nullptr, nullptr);
}
void CZephrinPlugInView::OnNextTopic() {
  int ok = 1;
  if (TFmtDocumentNode* document = Get_DocumentNode()) LoadRelativeFile(document->Get_NextTopicPathName(), ok, nullptr, nullptr);
}
void CZephrinPlugInView::OnPreviousTopic() {
  int ok = 1;
  if (TFmtDocumentNode* document = Get_DocumentNode())
    LoadRelativeFile(document->Get_PreviousTopicPathName(), ok, nullptr, nullptr);
}

void CZephrinPlugInView::TopWindowGeometry(int& x, int& y, int& width, int& height) const {
  x = y = 0;
  width = 400;
  height = 300;
  if (!m_pDisplay || !m_MainWidget || !XtWindow(m_MainWidget)) return;
  Window top = GetTopWindow(XtWindow(m_MainWidget));
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(m_pDisplay, top, &attributes)) return;
  x = attributes.x;
  y = attributes.y;
  width = attributes.width;
  height = attributes.height;
}

namespace {
// The three dialogs of the menu are one page of text each: what the host
// knows and what can be set, shown in a window of the top window's size.
void ShowPage(Widget parent, int width, int height, const char* title, const CString& text) {
  if (!parent) return;
  CInfoWizard dialog(parent, std::min(width, 520), std::min(height, 360), title, &text, 1, nullptr);
  dialog.DoModal();
}
}  // namespace

void CZephrinPlugInView::OnAppAbout() {
  int x, y, width, height;
  TopWindowGeometry(x, y, width, height);
  ShowPage(m_Shell, width, height, "About the Corvane zephrin Document Viewer",
           "zephrin Document Viewer\n\nReads TeX and LaTeX documents and shows them with their links, "
           "pop-ups and pictures.\n\nOne host process serves every document of a session.");
}

void CZephrinPlugInView::OnOptions() {
  int x, y, width, height;
  TopWindowGeometry(x, y, width, height);
  CString text;
  text.Format("Text font: %d pt\nSans-serif font: %d pt\nTypewriter font: %d pt\nMath font: %d pt\n\n"
              "The sizes are kept in the profile store under Fonts.",
              TFmtContext::Get_RmFontPointSize(), TFmtContext::Get_SfFontPointSize(),
              TFmtContext::Get_TtFontPointSize(), TFmtContext::Get_MathFontPointSize());
  ShowPage(m_Shell, width, height, "zephrin Options", text);
}

void CZephrinPlugInView::OnProperties() {
  int x, y, width, height;
  TopWindowGeometry(x, y, width, height);
  TFmtDocumentNode* document = Get_DocumentNode();
  CString text;
  if (m_pDocument && document) {
    text.Format("Address: %s\nTitle: %s\nLabels: %d\nAbove topic: %s\nNext topic: %s\nPrevious topic: %s",
                m_pDocument->Get_Url().c_str(), document->Get_WindowTitle().c_str(), document->Get_LabelCount(),
                document->Get_AboveTopicPathName().c_str(), document->Get_NextTopicPathName().c_str(),
                document->Get_PreviousTopicPathName().c_str());
  }
  ShowPage(m_Shell, width, height, "Document Properties", text);
}

int CZephrinPlugInView::LoadRelativeFile(const CString& relative, int& ok, const char* label, const char* target) {
  ok = 1;
  // An empty name goes nowhere (the merge would otherwise set ok again and
  // open the document's own folder).
  if (relative.IsEmpty()) {
    ok = 0;
    return ok;
  }
  if (!m_pDocument) return ok;
  CString merged = m_pDocument->ResolveUrl(relative, ok);
  if (!ok) return ok;
  ZRDocument* instance = m_pDocument->Get_DocumentInstance();
  if (!instance) {
    ok = 0;
    return ok;
  }
  if (instance->GetServer()) instance->GetServer()->GetURL(instance, merged, target ? target : "_self");
  AfxGetApp()->Set_MostRecentlyRequestedUrl(merged, label);
  return ok;
}

// ---- callbacks -------------------------------------------------------------------

void CZephrinPlugInView::OnExposeHelperXm(Widget, XtPointer client, XtPointer call) {
  auto* document = static_cast<CZephrinPlugInDoc*>(client);
  auto* data = static_cast<XmDrawingAreaCallbackStruct*>(call);
  CZephrinPlugInView* view = document ? document->Get_Window() : nullptr;
  if (!view) return;
  if (!data || !data->event || data->event->type != Expose) {
    view->OnPaint(view->GetVisibleRect());
    return;
  }
  const XExposeEvent& e = data->event->xexpose;
  view->OnPaint(CRect(e.x, e.y, e.x + e.width, e.y + e.height));
}

void CZephrinPlugInView::OnInputHelperXm(Widget, XtPointer client, XtPointer call) {
  auto* document = static_cast<CZephrinPlugInDoc*>(client);
  auto* data = static_cast<XmDrawingAreaCallbackStruct*>(call);
  CZephrinPlugInView* view = document ? document->Get_Window() : nullptr;
  if (!view || !data || !data->event) return;
  XEvent* event = data->event;
  if (event->type != ButtonPress && event->type != ButtonRelease) return;  // keys are the scrolled window's
  const XButtonEvent& button = event->xbutton;
  const CPoint point(button.x, button.y);
  if (button.button == Button1) {
    if (event->type == ButtonPress) view->OnLButtonDown(1, point);
    else view->OnLButtonUp(1, point);
  } else if (button.button == Button3 && event->type == ButtonRelease) {
    view->OnContextMenu(view, &event->xbutton);
  }
}

void CZephrinPlugInView::OnMouseMoveHelperXm(Widget, XtPointer client, XEvent* event, Boolean*) {
  auto* document = static_cast<CZephrinPlugInDoc*>(client);
  CZephrinPlugInView* view = document ? document->Get_Window() : nullptr;
  if (!view || !event || event->type != MotionNotify) return;
  // Only the newest position counts: motion comes much faster than a walk.
  XEvent newer;
  while (XCheckTypedWindowEvent(event->xmotion.display, event->xmotion.window, MotionNotify, &newer)) *event = newer;
  view->OnMouseMove(0, CPoint(event->xmotion.x, event->xmotion.y));
}

void CZephrinPlugInView::OnClientHelper(Widget, XtPointer client, XEvent* event, Boolean*) {
  auto* document = static_cast<CZephrinPlugInDoc*>(client);
  CZephrinPlugInView* view = document ? document->Get_Window() : nullptr;
  if (!view || !event || event->type != ClientMessage) return;
  const long id = event->xclient.data.l[0];
  if (id >= 32000 && id < 32200) view->OnCommandContextMenuChoice(static_cast<unsigned>(id));
}
