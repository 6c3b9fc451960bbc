#include "framework/win_app.h"

#include <cstdlib>
#include <cstring>

int CWinApp::InitializeRegistry() {
  CString path;
  path.LoadString(60001);
  return InitializeRegistry(path);
}

int CWinApp::InitializeRegistry(const char* path) {
  XrmInitialize();
  m_Path = path;
  if (m_Database) XrmDestroyDatabase(m_Database);
  m_Database = XrmGetFileDatabase(path);
  return m_Database ? 1 : 0;
}

void CWinApp::ShutDownRegistry() {
  if (m_Database) XrmDestroyDatabase(m_Database);
  m_Database = nullptr;
}

CString CWinApp::ResourceName(const char* section, const char* entry) const {
  return m_RegistryKey + "." + (section ? section : "") + "." + (entry ? entry : "");
}

bool CWinApp::Lookup(const char* section, const char* entry, CString* text) const {
  if (!m_Database) return false;
  CString name = ResourceName(section, entry);
  char* type = nullptr;
  XrmValue value{};
  if (!XrmGetResource(m_Database, name, name, &type, &value) || !value.addr) return false;
  // The size counts the closing zero; a value never runs past it.
  *text = CString(value.addr, value.size ? strnlen(value.addr, value.size) : 0);
  return true;
}

int CWinApp::GetProfileInt(const char* section, const char* entry, int defaultValue) const {
  CString text;
  return Lookup(section, entry, &text) ? std::atoi(text) : defaultValue;
}

CString CWinApp::GetProfileString(const char* section, const char* entry, const char* defaultValue) const {
  CString text;
  return Lookup(section, entry, &text) ? text : CString(defaultValue);
}

int CWinApp::WriteProfileInt(const char* section, const char* entry, int value) {
  CString text;
  text.Format("%d", value);
  return WriteProfileString(section, entry, text);
}

int CWinApp::WriteProfileString(const char* section, const char* entry, const char* value) {
  CString line = ResourceName(section, entry) + ":" + (value ? value : "");
  XrmInitialize();
  XrmPutLineResource(&m_Database, line);
  if (!m_Path.IsEmpty()) XrmPutFileDatabase(m_Database, m_Path);
  return 1;
}
