// ZephrinStat: the status values of the host process (also its exit codes)
// and what each one shows: nothing, a line on standard error, or a wizard.
#pragma once

#include <X11/Intrinsic.h>

#include "framework/cstring.h"

class ZephrinStat {
 public:
  enum ZRStatus {
    k_SocketFailed = 1,
    k_BindFailed = 2,
    k_SocketNameFailed = 3,
    k_ConnectFailed = 4,
    k_ReadFailed = 5,
    k_UnknownMessage = 6,
    k_FontsGood = 7,
    k_FontPathFailed = 8,
    k_CurrentFontPathUnreadable = 9,
    k_OldFontPathUnreadable = 10,
    k_NothingRemoved = 11,
    k_FontNotLoaded = 12,
    k_RegistryOpened = 13,
    k_RegistryFailed = 14,
    k_NoUse = 15,
    k_OutOfMemory = 16,
    k_GeneralError = 17,
    k_InternalError = 18,
  };
  using ShutDownCallback = void (*)();

  static ZephrinStat* GetZephrinStatObject();

  void Initialize(Widget parent, ShutDownCallback shutDown);
  int GetFontStatus() const { return m_nFontStatus; }
  void ErrorMessage(int status, const char* text);
  [[noreturn]] void ErrorExit(int status, const char* text);

  // The wizards' texts as last built, for whoever shows or checks them.
  const CString& GetFontPathPage(int page) const { return m_FontPathPages[page ? 1 : 0]; }
  const CString& GetFontPage() const { return m_FontPage; }
  const CString& GetRegistryPage() const { return m_RegistryPage; }

  static constexpr const char* kWizardTitle = "Corvane zephrin Document Viewer";

 private:
  void BuildFontPathPages();
  void BuildFontPage(const char* fontName);
  void BuildRegistryPage();
  void ShowWizard(const CString* pages, int count);

  Widget m_Parent = nullptr;
  ShutDownCallback m_ShutDown = nullptr;
  CString m_FontPathPages[2];
  CString m_FontPage;
  CString m_RegistryPage;
  int m_nFontStatus = 7;
};
