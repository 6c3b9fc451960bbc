// CZephrinPlugInView: the widgets of one instance, reparented into the
// browser's window, and the paint that loads the document. Composition and
// drawing of the tree join this class with the format and device classes.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#include "framework/cstring.h"
#include "framework/wnd.h"

class CZephrinPlugInDoc;

class CZephrinPlugInView : public CWnd {
 public:
  CZephrinPlugInView() = default;
  CZephrinPlugInView(const CZephrinPlugInView&) = delete;
  CZephrinPlugInView& operator=(const CZephrinPlugInView&) = delete;

  // Takes the X handles of a fresh widget set; called again after SetWindow
  // has rebuilt the widgets.
  void SubClass(Widget shell, Widget main, Widget draw, Widget vScroll, Widget hScroll, Window drawWindow,
                Window browserWindow, Display* display, GC gc, Visual* visual, int screen, int depth, int colors,
                int zero, Colormap* colormap, int x, int y, int width, int height);
  void UnSubClass() {}
  void Set_InstanceData(CZephrinPlugInDoc* document) { m_pDocument = document; }
  CZephrinPlugInDoc* Get_InstanceData() const { return m_pDocument; }

  // Asks the X server for an expose of the whole drawing area.
  void Invalidate(int erase);
  void UpdateWindow();
  void RecomposeAndRedraw();
  void SetGeometry(int x, int y, int width, int height);
  // The browser's status line for this instance.
  void UpdateStatusLineText(const char* text);
  // A link to another file: resolved against the document's URL and asked
  // of the browser for the target ("_self" when none), with the label kept
  // in the bookmark for the instance that will show it. ok is 0 for an
  // empty name or a document without its instance.
  int LoadRelativeFile(const CString& relative, int& ok, const char* label, const char* target);
  void SetWaitCursor();
  void SetIBeamCursor();

  // Loads the document on the first expose; after the first paint that
  // follows a load the browser's window gets a paint-done client event.
  void OnPaint();
  void DocumentLoaded() { m_nPaintReported = 0; }

  static void OnExposeHelperXm(Widget widget, XtPointer client, XtPointer call);
  static void OnInputHelperXm(Widget widget, XtPointer client, XtPointer call);
  static void OnMouseMoveHelperXm(Widget widget, XtPointer client, XEvent* event, Boolean* go_on);

 private:
  void ReportPaintDone();

  CZephrinPlugInDoc* m_pDocument = nullptr;  // not owned
  int m_nPaintReported = 0;
};
