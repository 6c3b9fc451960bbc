#include "host/np_view.h"

#include <Xm/Xm.h>
#include <X11/cursorfont.h>

#include "host/link_records.h"
#include "host/np_doc.h"
#include "host/np_zephrin_app.h"
#include "host/zr_document.h"
#include "host/zr_server.h"

void CZephrinPlugInView::SubClass(Widget shell, Widget main, Widget draw, Widget vScroll, Widget hScroll,
                                  Window drawWindow, Window browserWindow, Display* display, GC gc,
                                  Visual* visual, int screen, int depth, int colors, int zero, Colormap* colormap,
                                  int x, int y, int width, int height) {
  SetInfo(shell, draw, main, vScroll, hScroll, drawWindow, browserWindow, x, y, width, height, display, gc, visual,
          screen, depth, colors, zero, colormap);
  // New widgets have shown nothing yet: their first paint is reported again.
  m_nPaintReported = 0;
}

void CZephrinPlugInView::SetGeometry(int x, int y, int width, int height) {
  m_x = x;
  m_y = y;
  m_nWidth = width;
  m_nHeight = height;
}

void CZephrinPlugInView::Invalidate(int erase) {
  if (!m_pDisplay || !m_DrawWindow) return;
  XClearArea(m_pDisplay, m_DrawWindow, 0, 0, 0, 0, erase ? True : False);
  // An area that is already clear makes no expose without exposures on.
  if (!erase) XClearArea(m_pDisplay, m_DrawWindow, 0, 0, 0, 0, True);
}

void CZephrinPlugInView::UpdateWindow() {
  if (m_pDisplay) XFlush(m_pDisplay);
}

void CZephrinPlugInView::RecomposeAndRedraw() { Invalidate(1); }

void CZephrinPlugInView::UpdateStatusLineText(const char* text) {
  ZRDocument* instance = m_pDocument ? m_pDocument->Get_DocumentInstance() : nullptr;
  if (instance && instance->GetServer()) instance->GetServer()->NSStatus(instance, text);
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

void CZephrinPlugInView::SetWaitCursor() {
  if (!m_pDisplay || !m_DrawWindow) return;
  static Cursor watch = XCreateFontCursor(m_pDisplay, XC_watch);
  XDefineCursor(m_pDisplay, m_DrawWindow, watch);
}

void CZephrinPlugInView::SetIBeamCursor() {
  if (!m_pDisplay || !m_DrawWindow) return;
  static Cursor beam = XCreateFontCursor(m_pDisplay, XC_xterm);
  XDefineCursor(m_pDisplay, m_DrawWindow, beam);
}

void CZephrinPlugInView::OnPaint() {
  if (!m_pDocument) return;
  if (!m_pDocument->Get_DocumentIsLoaded()) m_pDocument->LoadDocument();
  // A load that is waiting for a file comes round again with the file.
  if (!m_pDocument->Get_DocumentIsLoaded()) return;
  // The tree is drawn here once the format nodes and the device exist.
  if (!m_nPaintReported) {
    m_nPaintReported = 1;
    ReportPaintDone();
  }
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
  ZRDocument* instance = m_pDocument->Get_DocumentInstance();
  event.xclient.data.l[0] = instance ? instance->GetDocID() : 0;
  XSendEvent(m_pDisplay, m_BrowserWindow, False, 0, &event);
  XFlush(m_pDisplay);
}

void CZephrinPlugInView::OnExposeHelperXm(Widget, XtPointer client, XtPointer call) {
  auto* document = static_cast<CZephrinPlugInDoc*>(client);
  auto* data = static_cast<XmDrawingAreaCallbackStruct*>(call);
  // Only the last of a run of exposes paints.
  if (data && data->event && data->event->type == Expose && data->event->xexpose.count > 0) return;
  if (document && document->Get_Window()) document->Get_Window()->OnPaint();
}

// Pointer and keys go to the tree's links and selection once those exist.
void CZephrinPlugInView::OnInputHelperXm(Widget, XtPointer, XtPointer) {}
void CZephrinPlugInView::OnMouseMoveHelperXm(Widget, XtPointer, XEvent*, Boolean*) {}
