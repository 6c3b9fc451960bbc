#include "framework/dialogs.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PanedW.h>
#include <Xm/Protocols.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Xm.h>
#include <X11/Shell.h>

#include "framework/modal_loop.h"
#include "framework/wnd.h"
#include "host/resource.h"
#include "host/zr_server.h"

CYesNoMsgBox::CYesNoMsgBox(Widget parent, const char* title, const char* text) {
  if (!parent) return;
  f_Shell = XtVaCreatePopupShell("YesNoMsgBox", transientShellWidgetClass, parent, XmNtitle, title ? title : "",
                                 XmNdeleteResponse, XmDO_NOTHING, nullptr);
  f_PanedWidget = XtVaCreateManagedWidget("f_PanedWidget", xmPanedWindowWidgetClass, f_Shell, XmNsashWidth, 1,
                                          XmNsashHeight, 1, nullptr);
  f_MainFormWidget = XtVaCreateManagedWidget("f_MainFormWidget", xmFormWidgetClass, f_PanedWidget, nullptr);
  f_RowCol = XtVaCreateManagedWidget("f_RowCol", xmRowColumnWidgetClass, f_MainFormWidget, XmNtopAttachment,
                                     XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, XmNleftAttachment,
                                     XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
  XmString words = XmStringCreateLtoR(const_cast<char*>(text ? text : ""), const_cast<char*>(XmFONTLIST_DEFAULT_TAG));
  XtVaCreateManagedWidget("f_Text", xmLabelWidgetClass, f_RowCol, XmNlabelString, words, XmNalignment,
                          XmALIGNMENT_BEGINNING, nullptr);
  XmStringFree(words);
  f_ResponseFormWidget = XtVaCreateManagedWidget("f_ResponseFormWidget", xmFormWidgetClass, f_PanedWidget,
                                                 XmNfractionBase, 2, XmNskipAdjust, True, nullptr);
  const char* labels[] = {"OK", "Cancel"};
  XtCallbackProc helpers[] = {OnOKHelper, OnCancelHelper};
  for (int i = 0; i < 2; ++i) {
    XmString label = XmStringCreateLocalized(const_cast<char*>(labels[i]));
    Widget button = XtVaCreateManagedWidget(
        labels[i], xmPushButtonWidgetClass, f_ResponseFormWidget, XmNlabelString, label, XmNtopAttachment,
        XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_POSITION, XmNleftPosition,
        i, XmNrightAttachment, XmATTACH_POSITION, XmNrightPosition, i + 1, nullptr);
    XmStringFree(label);
    XtAddCallback(button, XmNactivateCallback, helpers[i], this);
  }
  Atom deleteWindow = XmInternAtom(XtDisplay(f_Shell), const_cast<char*>("WM_DELETE_WINDOW"), False);
  XmAddWMProtocolCallback(f_Shell, deleteWindow, OnCancelHelper, this);
  Resource::GetResourceObject()->SetStandardColors(f_PanedWidget);
}

CYesNoMsgBox::~CYesNoMsgBox() {
  if (f_Shell) XtDestroyWidget(f_Shell);
}

void CYesNoMsgBox::OnOKHelper(Widget, XtPointer self, XtPointer) { static_cast<CYesNoMsgBox*>(self)->m_nResult = kOK; }
void CYesNoMsgBox::OnCancelHelper(Widget, XtPointer self, XtPointer) {
  static_cast<CYesNoMsgBox*>(self)->m_nResult = kCancel;
}

int CYesNoMsgBox::DoModal() {
  if (!f_Shell) return kCancel;
  m_nResult = 0;
  XtAppContext app = XtWidgetToApplicationContext(f_Shell);
  XtPopup(f_Shell, XtGrabExclusive);
  {
    TModalLoopGuard guard;
    while (!m_nResult) XtAppProcessEvent(app, XtIMAll);
  }
  XtPopdown(f_Shell);
  XSync(XtDisplay(f_Shell), False);
  XmUpdateDisplay(f_Shell);
  return m_nResult;
}

int AfxMessageBox(const char* text, int style, CWnd* window) {
  int result = CYesNoMsgBox::kCancel;
  Widget parent = window ? window->m_Shell : nullptr;
  if (!parent) {
    ZRServer* server = Resource::GetResourceObject()->GetServer();
    parent = server ? server->GetTopLevel() : nullptr;
  }
  if (!parent) return result;
  CYesNoMsgBox box(parent, "Corvane zephrin", text);
  if (style == 3) result = box.DoModal();
  return result;
}

int AfxMessageBox(const char*, unsigned, unsigned) { return 0; }
