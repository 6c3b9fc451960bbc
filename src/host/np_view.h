// CZephrinPlugInView: the view of one embedded instance. Its widgets are
// reparented into the browser's window; it loads the document on the first
// expose, sends status texts and link requests through the instance, and
// owns the document's popup menu commands.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#include "framework/cstring.h"
#include "host/generic_view.h"

class CZephrinPlugInDoc;

class CZephrinPlugInView : public CZephrinGenericView {
 public:
  CZephrinPlugInView() = default;

  // ---- overrides ----
  void OnUpdate(CWnd* sender, long hint, CObject* hintObject) override;
  TFmtDocumentNode* Get_DocumentNode() const override;
  TFmtContext_XWin* Get_FmtContext() const override;
  int ExecuteLink(TFmtLinkNode* link, int flags) override;
  // Composes for the window's width and sizes the scrollable area.
  void SetScrollInfo() override;
  void UpdateStatusLineText(const CString& text) override;
  void CustomizePopUpMenu(CMenu* menu) const override;

  // Takes the X handles of a fresh widget set; called again after SetWindow
  // has rebuilt the widgets.
  void SubClass(Widget shell, Widget main, Widget draw, Widget vScroll, Widget hScroll, Window drawWindow,
                Window browserWindow, Display* display, GC gc, Visual* visual, int screen, int depth, int colors,
                int zero, Colormap* colormap, int x, int y, int width, int height);
  void UnSubClass() {}
  // Also drops the node path, which points into the old tree.
  void Set_InstanceData(CZephrinPlugInDoc* document);
  CZephrinPlugInDoc* Get_InstanceData() const { return m_pDocument; }
  void UpdateStatusLineText(const char* text) { UpdateStatusLineText(CString(text)); }

  // A link to another file: resolved against the document's URL and asked
  // of the browser for the target ("_self" when none), with the label kept
  // in the bookmark for the instance that will show it. ok is 0 for an
  // empty name or a document without its instance.
  int LoadRelativeFile(const CString& relative, int& ok, const char* label, const char* target);
  // After a load the next complete paint is reported to the browser window.
  void DocumentLoaded() { m_nPaintReported = 0; }

  void OnAboveTopic();
  void OnNextTopic();
  void OnPreviousTopic();
  void OnAppAbout();
  void OnOptions();
  void OnProperties();

  // ---- callbacks; the client data is the document ----
  static void OnExposeHelperXm(Widget widget, XtPointer client, XtPointer call);
  static void OnInputHelperXm(Widget widget, XtPointer client, XtPointer call);
  static void OnMouseMoveHelperXm(Widget widget, XtPointer client, XEvent* event, Boolean* go_on);
  static void OnClientHelper(Widget widget, XtPointer client, XEvent* event, Boolean* go_on);
  // Menu items; the client data is the item, whose owner is the view.
  static void OnAboveTopicHelper(Widget, XtPointer item, XtPointer);
  static void OnNextTopicHelper(Widget, XtPointer item, XtPointer);
  static void OnPreviousTopicHelper(Widget, XtPointer item, XtPointer);
  static void OnAppAboutHelper(Widget, XtPointer item, XtPointer);
  static void OnOptionsHelper(Widget, XtPointer item, XtPointer);
  static void OnPropertiesHelper(Widget, XtPointer item, XtPointer);

 protected:
  int HasSource() const override { return m_pDocument != nullptr; }
  int IsLoaded() const override;
  int Load() override;
  void AfterPaint() override;

 private:
  void ReportPaintDone();
  // Grows the drawing area to a lower bound of the document's height when
  // that bound alone passes the window's: the vertical bar then shows
  // before the first composition, which is made for the width beside it.
  void ShowBarIfSurelyNeeded();
  // The top window's place and size, for the dialogs.
  void TopWindowGeometry(int& x, int& y, int& width, int& height) const;

  CZephrinPlugInDoc* m_pDocument = nullptr;  // not owned
  int m_nPaintReported = 0;
};
