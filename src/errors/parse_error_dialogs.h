// The modal Motif dialogs of parse-error reporting.
#pragma once

#include <X11/Intrinsic.h>

#include "framework/collections.h"
#include "framework/cstring.h"

class CSavedError;

// Common frame: a popup shell holding a form, a paned window with a read-only
// scrolled text, and a row of response buttons. DoModal runs its own event
// loop until a button is pressed, with the host's tick stopped meanwhile.
class CParseErrorDialogBase {
 public:
  CParseErrorDialogBase(const CParseErrorDialogBase&) = delete;
  CParseErrorDialogBase& operator=(const CParseErrorDialogBase&) = delete;
  virtual ~CParseErrorDialogBase();
  int DoModal();
  Widget GetShell() const { return f_Shell; }

 protected:
  CParseErrorDialogBase(Widget parent, const char* title, const CString& text);
  // Adds a button to the response row; pressing it calls OnButton(code).
  Widget AddButton(const char* name, const char* label, int code);
  virtual void OnButton(int code) = 0;
  void EndDialog() { m_bDone = true; }

 private:
  static void OnButtonHelper(Widget, XtPointer clientData, XtPointer);
  static void MapDialog(Widget shell, XtPointer clientData, XEvent* event, Boolean*);

  Widget f_Shell = nullptr;
  Widget f_MainFormWidget = nullptr;
  Widget f_PanedWidget = nullptr;
  Widget f_TextFormWidget = nullptr;
  Widget f_STWidget = nullptr;
  Widget f_ResponseFormWidget = nullptr;
  int m_nButtons = 0;
  bool m_bDone = false;
  bool m_bCentred = false;
  struct ButtonData {
    CParseErrorDialogBase* dialog;
    int code;
  };
  ButtonData m_Buttons[3] = {};
};

// One error, shown as it is found; the buttons set the report mode.
class CParseErrorDialog : public CParseErrorDialogBase {
 public:
  CParseErrorDialog(const CSavedError& error, int* mode, Widget parent);

 protected:
  void OnButton(int code) override;

 private:
  int* m_pMode;
};

// Every error collected during the parse, in one text.
class CParseErrorsDialog : public CParseErrorDialogBase {
 public:
  CParseErrorsDialog(const CObList& errors, Widget parent);

 protected:
  void OnButton(int) override { EndDialog(); }
};
