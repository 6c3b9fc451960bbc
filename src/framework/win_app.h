// CWinApp: the application base and its profile store, an X resource file of
// lines "<registry key>.<section>.<entry>:<value>".
#pragma once

#include <X11/Xlib.h>
#include <X11/Xresource.h>

#include "framework/cstring.h"

class CWinApp {
 public:
  CWinApp() = default;
  CWinApp(const CWinApp&) = delete;
  CWinApp& operator=(const CWinApp&) = delete;

  // Reads the file named by string resource 60001. 1 when it could be read,
  // else 0: a missing file is a failed start, not an empty store.
  int InitializeRegistry();
  // Same, from an explicit file (the store's path otherwise comes from the
  // resource table).
  int InitializeRegistry(const char* path);
  void ShutDownRegistry();
  void SetRegistryKey(const char* key) { m_RegistryKey = key; }
  const CString& GetRegistryKey() const { return m_RegistryKey; }

  int GetProfileInt(const char* section, const char* entry, int defaultValue) const;
  // A null default reads as the empty string.
  CString GetProfileString(const char* section, const char* entry, const char* defaultValue) const;
  // Each write rewrites the whole file: there is no orderly end at which to
  // save. Failures of the write go unnoticed; both answer 1.
  int WriteProfileInt(const char* section, const char* entry, int value);
  int WriteProfileString(const char* section, const char* entry, const char* value);

  CString m_pszAppName;

 private:
  CString ResourceName(const char* section, const char* entry) const;
  bool Lookup(const char* section, const char* entry, CString* text) const;

  XrmDatabase m_Database = nullptr;
  CString m_RegistryKey;
  CString m_Path;
};
