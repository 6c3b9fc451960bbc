#include "errors/parse_error_dialogs.h"

#include <Xm/Form.h>
#include <Xm/PanedW.h>
#include <Xm/PushB.h>
#include <Xm/Text.h>
#include <Xm/Xm.h>
#include <X11/Shell.h>

#include "errors/parse_errors.h"
#include "framework/modal_loop.h"

CParseErrorDialogBase::CParseErrorDialogBase(Widget parent, const char* title, const CString& text) {
  f_Shell = XtVaCreatePopupShell("ParseErrorDialog", transientShellWidgetClass, parent, XmNtitle, title,
                                 XmNdeleteResponse, XmDO_NOTHING, XmNwidth, 520, XmNheight, 300, nullptr);
  f_MainFormWidget = XtVaCreateManagedWidget("f_MainFormWidget", xmFormWidgetClass, f_Shell, nullptr);
  f_PanedWidget = XtVaCreateManagedWidget("f_PanedWidget", xmPanedWindowWidgetClass, f_MainFormWidget,
                                          XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
                                          XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                                          XmNsashWidth, 1, XmNsashHeight, 1, nullptr);
  f_TextFormWidget = XtVaCreateManagedWidget("f_TextFormWidget", xmFormWidgetClass, f_PanedWidget, nullptr);
  Arg args[8];
  int n = 0;
  XtSetArg(args[n], XmNeditable, False), ++n;
  XtSetArg(args[n], XmNeditMode, XmMULTI_LINE_EDIT), ++n;
  XtSetArg(args[n], XmNcursorPositionVisible, False), ++n;
  XtSetArg(args[n], XmNwordWrap, True), ++n;
  XtSetArg(args[n], XmNscrollHorizontal, False), ++n;
  XtSetArg(args[n], XmNrows, 10), ++n;
  f_STWidget = XmCreateScrolledText(f_TextFormWidget, const_cast<char*>("f_STWidget"), args, n);
  XtVaSetValues(XtParent(f_STWidget), XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
                XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
  XmTextSetString(f_STWidget, const_cast<char*>(text.c_str()));
  XtManageChild(f_STWidget);
  f_ResponseFormWidget = XtVaCreateManagedWidget("f_ResponseFormWidget", xmFormWidgetClass, f_PanedWidget,
                                                 XmNfractionBase, 3, XmNskipAdjust, True, nullptr);
  XtAddEventHandler(f_Shell, StructureNotifyMask, False, MapDialog, this);
}

CParseErrorDialogBase::~CParseErrorDialogBase() {
  if (f_Shell) XtDestroyWidget(f_Shell);
}

Widget CParseErrorDialogBase::AddButton(const char* name, const char* label, int code) {
  if (m_nButtons >= 3) return nullptr;
  int slot = m_nButtons++;
  m_Buttons[slot] = {this, code};
  XmString text = XmStringCreateLocalized(const_cast<char*>(label));
  Widget button = XtVaCreateManagedWidget(
      name, xmPushButtonWidgetClass, f_ResponseFormWidget, XmNlabelString, text, XmNtopAttachment, XmATTACH_FORM,
      XmNbottomAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_POSITION, XmNleftPosition, slot,
      XmNrightAttachment, XmATTACH_POSITION, XmNrightPosition, slot + 1, nullptr);
  XmStringFree(text);
  XtAddCallback(button, XmNactivateCallback, OnButtonHelper, &m_Buttons[slot]);
  return button;
}

void CParseErrorDialogBase::OnButtonHelper(Widget, XtPointer clientData, XtPointer) {
  auto* data = static_cast<ButtonData*>(clientData);
  data->dialog->OnButton(data->code);
}

void CParseErrorDialogBase::MapDialog(Widget shell, XtPointer clientData, XEvent* event, Boolean*) {
  auto* dialog = static_cast<CParseErrorDialogBase*>(clientData);
  if (event->type != MapNotify || dialog->m_bCentred) return;
  dialog->m_bCentred = true;
  XWindowAttributes root;
  Display* display = XtDisplay(shell);
  XGetWindowAttributes(display, DefaultRootWindow(display), &root);
  Dimension width = 0, height = 0;
  XtVaGetValues(shell, XmNwidth, &width, XmNheight, &height, nullptr);
  XtVaSetValues(shell, XmNx, (root.width - width) / 2, XmNy, (root.height - height) / 2, nullptr);
}

int CParseErrorDialogBase::DoModal() {
  XtAppContext app = XtWidgetToApplicationContext(f_Shell);
  XtManageChild(f_MainFormWidget);
  XtPopup(f_Shell, XtGrabExclusive);
  {
    // No link record may arrive under an open dialog.
    TModalLoopGuard guard;
    while (!m_bDone) XtAppProcessEvent(app, XtIMAll);
  }
  XtUnmanageChild(f_MainFormWidget);
  XtPopdown(f_Shell);
  XSync(XtDisplay(f_Shell), False);
  XmUpdateDisplay(f_Shell);
  return 1;
}

namespace {
enum { kContinue, kStopShowing, kShowWhenFinished };
}

CParseErrorDialog::CParseErrorDialog(const CSavedError& error, int* mode, Widget parent)
    : CParseErrorDialogBase(parent, "Corvane zephrin Parsing Error",
                            [&] {
                              CString text;
                              FormatParseError(text, error);
                              return text;
                            }()),
      m_pMode(mode) {
  AddButton("f_ContinueButton", "Continue", kContinue);
  AddButton("f_StopButton", "Stop Showing Errors", kStopShowing);
  AddButton("f_FinishedButton", "Show Errors When Finished", kShowWhenFinished);
}

void CParseErrorDialog::OnButton(int code) {
  if (m_pMode) *m_pMode = code == kContinue ? kReportEach : code == kStopShowing ? kReportNone : kReportAtEnd;
  EndDialog();
}

namespace {
CString Title(const CObList& errors) {
  CString title;
  title.Format("%d Corvane zephrin Parsing Errors", errors.GetCount());
  return title;
}

CString AllErrors(const CObList& errors) {
  CString text;
  for (auto p = errors.GetHeadPosition(); p != errors.GetEnd();) {
    if (!text.IsEmpty()) text += "\r\n\r\n";
    FormatParseError(text, *static_cast<const CSavedError*>(errors.GetNext(p)));
  }
  return text;
}
}  // namespace

CParseErrorsDialog::CParseErrorsDialog(const CObList& errors, Widget parent)
    : CParseErrorDialogBase(parent, Title(errors), AllErrors(errors)) {
  AddButton("f_OKButton", "OK", 0);
}
