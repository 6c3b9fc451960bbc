#include "host/info_wizard.h"

#include <Xm/Form.h>
#include <Xm/Protocols.h>
#include <Xm/PushB.h>
#include <Xm/Text.h>
#include <Xm/Xm.h>
#include <X11/Shell.h>

CInfoWizard::CInfoWizard(Widget parent, int width, int height, const char* title, const CString* pages,
                         int pageCount, CloseCallback onClose)
    : m_Pages(pages, pages + (pageCount > 0 ? pageCount : 0)), m_OnClose(onClose) {
  if (m_Pages.empty()) m_Pages.emplace_back("");
  f_Shell = XtVaCreatePopupShell("infoWizard", topLevelShellWidgetClass, parent, XmNtitle, title, XmNiconName,
                                 title, XmNwidth, width, XmNheight, height, XmNdeleteResponse, XmDO_NOTHING,
                                 nullptr);
  Widget form = XtVaCreateManagedWidget("form", xmFormWidgetClass, f_Shell, XmNhorizontalSpacing, 8,
                                        XmNverticalSpacing, 8, nullptr);
  f_Close = XtVaCreateManagedWidget("Close", xmPushButtonWidgetClass, form, XmNbottomAttachment,
                                    XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
  f_Next = XtVaCreateManagedWidget("Next >", xmPushButtonWidgetClass, form, XmNbottomAttachment, XmATTACH_FORM,
                                   XmNrightAttachment, XmATTACH_WIDGET, XmNrightWidget, f_Close, nullptr);
  f_Back = XtVaCreateManagedWidget("< Back", xmPushButtonWidgetClass, form, XmNbottomAttachment, XmATTACH_FORM,
                                   XmNrightAttachment, XmATTACH_WIDGET, XmNrightWidget, f_Next, nullptr);
  Arg args[8];
  int n = 0;
  XtSetArg(args[n], XmNeditMode, XmMULTI_LINE_EDIT); ++n;
  XtSetArg(args[n], XmNeditable, False); ++n;
  XtSetArg(args[n], XmNcursorPositionVisible, False); ++n;
  XtSetArg(args[n], XmNwordWrap, True); ++n;
  XtSetArg(args[n], XmNscrollHorizontal, False); ++n;
  f_Text = XmCreateScrolledText(form, const_cast<char*>("page"), args, n);
  XtVaSetValues(XtParent(f_Text), XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM,
                XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget,
                f_Close, nullptr);
  XtManageChild(f_Text);
  XtAddCallback(f_Back, XmNactivateCallback, &CInfoWizard::OnBackHelper, this);
  XtAddCallback(f_Next, XmNactivateCallback, &CInfoWizard::OnNextHelper, this);
  XtAddCallback(f_Close, XmNactivateCallback, &CInfoWizard::OnCloseHelper, this);
  // The window manager's close does what Close does.
  Atom deleteWindow = XmInternAtom(XtDisplay(f_Shell), const_cast<char*>("WM_DELETE_WINDOW"), False);
  XmAddWMProtocolCallback(f_Shell, deleteWindow, &CInfoWizard::OnCloseHelper, this);
  ShowPage(0);
}

CInfoWizard::~CInfoWizard() {
  if (f_Shell) XtDestroyWidget(f_Shell);
}

void CInfoWizard::ShowPage(int page) {
  int last = static_cast<int>(m_Pages.size()) - 1;
  m_nPage = page < 0 ? 0 : (page > last ? last : page);
  XmTextSetString(f_Text, const_cast<char*>(m_Pages[m_nPage].c_str()));
  XtSetSensitive(f_Back, m_nPage > 0);
  XtSetSensitive(f_Next, m_nPage < last);
}

void CInfoWizard::DoModal() {
  XtPopup(f_Shell, XtGrabNone);
  XtAppContext app = XtWidgetToApplicationContext(f_Shell);
  while (!m_bDone) XtAppProcessEvent(app, XtIMAll);
  XtPopdown(f_Shell);
}

void CInfoWizard::Close() {
  m_bDone = true;
  if (m_OnClose) m_OnClose();
}

void CInfoWizard::OnBackHelper(Widget, XtPointer self, XtPointer) {
  auto* wizard = static_cast<CInfoWizard*>(self);
  wizard->ShowPage(wizard->m_nPage - 1);
}

void CInfoWizard::OnNextHelper(Widget, XtPointer self, XtPointer) {
  auto* wizard = static_cast<CInfoWizard*>(self);
  wizard->ShowPage(wizard->m_nPage + 1);
}

void CInfoWizard::OnCloseHelper(Widget, XtPointer self, XtPointer) { static_cast<CInfoWizard*>(self)->Close(); }
