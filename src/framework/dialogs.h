// Small modal dialogs and the message box.
#pragma once

#include <X11/Intrinsic.h>

#include "framework/cstring.h"
#include "framework/objects.h"

class CWnd;

// Dialog results: 12 accepted, 13 refused.
enum { IDOK_ZR = 12, IDCANCEL_ZR = 13 };

class CXDialog : public CObject {
 public:
  virtual int DoModal() { return IDOK_ZR; }
};

// Title, text, "OK" and "Cancel". DoModal answers 11 for "OK" and 10 for
// "Cancel" or a window closed by the window manager.
class CYesNoMsgBox : public CXDialog {
 public:
  CYesNoMsgBox(Widget parent, const char* title, const char* text);
  CYesNoMsgBox(const CYesNoMsgBox&) = delete;
  CYesNoMsgBox& operator=(const CYesNoMsgBox&) = delete;
  ~CYesNoMsgBox() override;
  int DoModal() override;

  Widget GetShell() const { return f_Shell; }
  static constexpr int kOK = 11;
  static constexpr int kCancel = 10;

 private:
  static void OnOKHelper(Widget, XtPointer self, XtPointer);
  static void OnCancelHelper(Widget, XtPointer self, XtPointer);

  Widget f_Shell = nullptr;
  Widget f_PanedWidget = nullptr;
  Widget f_MainFormWidget = nullptr;
  Widget f_RowCol = nullptr;
  Widget f_ResponseFormWidget = nullptr;
  int m_nResult = 0;  // 0 while the box is up
};

// Style 3 shows a yes/no box and answers its result; any other style shows
// nothing and answers 10.
int AfxMessageBox(const char* text, int style, CWnd* window);
int AfxMessageBox(const char* text, unsigned type, unsigned help);
inline void AfxFormatString1(CString&, unsigned, const char*) {}
