// CInfoWizard: a paged message window with Back, Next and Close. Closing it
// (by its button or the window manager) runs the caller's callback.
#pragma once

#include <X11/Intrinsic.h>

#include <vector>

#include "framework/cstring.h"

class CInfoWizard {
 public:
  using CloseCallback = void (*)();

  CInfoWizard(Widget parent, int width, int height, const char* title, const CString* pages, int pageCount,
              CloseCallback onClose);
  ~CInfoWizard();
  CInfoWizard(const CInfoWizard&) = delete;
  CInfoWizard& operator=(const CInfoWizard&) = delete;

  // Shows the first page and handles events until the wizard is closed.
  void DoModal();
  int GetPage() const { return m_nPage; }
  Widget GetShell() const { return f_Shell; }

 private:
  void ShowPage(int page);
  void Close();
  static void OnBackHelper(Widget, XtPointer self, XtPointer);
  static void OnNextHelper(Widget, XtPointer self, XtPointer);
  static void OnCloseHelper(Widget, XtPointer self, XtPointer);

  std::vector<CString> m_Pages;
  CloseCallback m_OnClose;
  int m_nPage = 0;
  bool m_bDone = false;
  Widget f_Shell = nullptr;
  Widget f_Text = nullptr;
  Widget f_Back = nullptr;
  Widget f_Next = nullptr;
  Widget f_Close = nullptr;
};
