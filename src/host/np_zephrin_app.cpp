#include "host/np_zephrin_app.h"

#include "device/context_xwin.h"
#include "device/font_family.h"
#include "errors/parse_errors.h"
#include "format/node.h"
#include "host/resource.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

namespace {
CNpZephrinApp theApp;
}

CNpZephrinApp* CNpZephrinApp::GetPlugInDllObject() { return &theApp; }
CNpZephrinApp* AfxGetApp() { return &theApp; }

int CNpZephrinApp::InitInstance() {
  m_pszAppName = kAppName;
  TFmtContext_XWin::InitializeResources();
  // TFmtImageNode_PI::InitializeResources();   the missing-image picture
  UpdateFromRegistry();
  TStringPool::InitializeGlobal();
  TGlobalString::Initialize();
  TFmtNode::InitializeTexParser();  // every node class enters its control sequences
  // TMacroProperty::Initialize();              the built-in macros
  TFmtNode::InitializeDrawProperties();  // the _EXTENT and _DRAW handlers
  TGlobalString::InitializeSymbolFonts();
  Resource::GetResourceObject()->SetPropertyPages();
  return 1;
}

int CNpZephrinApp::ExitInstance() {
  UpdateToRegistry();
  ShutDownRegistry();
  TFontFamily::DestroyAllFonts();
  // TFmtDocumentNode::DeleteTemporaryDocuments();
  // TFmtDocumentNode::DeleteDocumentStorage(); TFmtImageNode_PI::FreeResources();
  TFmtContext_XWin::FreeResources();
  // TStringPool::FreeGlobal(); then the current
  // URL, the document list and the map of local names are cleared.
  m_pszAppName.Empty();
  return 0;
}

void CNpZephrinApp::UpdateFromRegistry() {
  TFmtContext_XWin::ReadRegistryValues();
  // TFontFamily::ReadRegistryValues() has nothing to read.
  // TFmtDocumentNode::ReadRegistryValues();        SaveTemporaryDocuments
  // TFmtApplicationLinkNode::ReadRegistryValues(); ExecutionPermission
  CZrError::ReadRegistryValues();
  Resource::GetResourceObject()->ReadRegistryValues();
}

void CNpZephrinApp::UpdateToRegistry() {
  // The same owners' SaveRegistryValues in the same order; CZrError clears
  // its parse errors first.
  TFmtContext_XWin::SaveRegistryValues();
  CZrError::SaveRegistryValues();
  Resource::GetResourceObject()->SaveRegistryValues();
}
