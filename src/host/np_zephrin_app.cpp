#include "host/np_zephrin_app.h"

#include <algorithm>
#include <cstring>

#include "device/context_xwin.h"
#include "device/font_family.h"
#include "errors/parse_errors.h"
#include "format/document_node.h"
#include "format/node.h"
#include "framework/files.h"
#include "host/np_doc.h"
#include "host/np_view.h"
#include "host/resource.h"
#include "host/zr_document.h"
#include "host/zr_server.h"
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
  // \input of documents on screen goes through the browser.
  CInputFileLoader::Set_Global(this);
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

void CNpZephrinApp::AddDocument(CZephrinPlugInDoc* document) { m_DocumentList.push_front(document); }

void CNpZephrinApp::RemoveDocument(CZephrinPlugInDoc* document) {
  auto at = std::find(m_DocumentList.begin(), m_DocumentList.end(), document);
  if (at != m_DocumentList.end()) m_DocumentList.erase(at);
}

CZephrinPlugInDoc* CNpZephrinApp::GetDocumentFromInlineName(const char* name) const {
  if (!name) return nullptr;
  for (CZephrinPlugInDoc* document : m_DocumentList)
    if (document->Get_InlineName() == name) return document;
  return nullptr;
}

CString CNpZephrinApp::Get_LocalInputFileName(const char* url) const {
  auto at = m_LocalNames.find(CString(url));
  return at == m_LocalNames.end() ? CString() : at->second;
}

void CNpZephrinApp::Set_LocalInputFileName(const char* url, const char* local) {
  if (!local || !*local) return;
  m_LocalNames[CString(url)] = local;
}

int CNpZephrinApp::LoadStringFromUrl(const CString& url, CString& text, int, TFmtDocumentNode* node) {
  text.Empty();
  CString local = Get_LocalInputFileName(url);
  // At most two rounds: a request answered at once gives the name for the
  // second.
  for (int round = 0; round < 2; ++round) {
    if (local.IsEmpty()) {
      ZRDocument* instance = node ? node->Get_DocumentInstance() : nullptr;
      CZephrinPlugInDoc* document = instance ? instance->GetDocument() : nullptr;
      if (!document) return 0;
      document->RequestFile(url, node, document->Get_Window());
      if (!document->IsFileReady()) return 0;
      local = Get_LocalInputFileName(url);
      if (local.IsEmpty()) return 0;
      continue;
    }
    CStdioFile file;
    if (!file.Open(local, CFile::modeRead, nullptr)) {
      m_LocalNames.erase(url);  // fetched afresh next time
      return 0;
    }
    char block[1024];
    while (unsigned count = file.Read(block, 1023)) {
      block[count] = 0;
      text += CString(block, count);
    }
    return 1;
  }
  return 0;
}

CString CNpZephrinApp::Get_MostRecentlyRequestedUrl() { return GetProfileString("Bookmark", "URL", ""); }

const char* CNpZephrinApp::Get_MostRecentlyRequestedUrlLabel() {
  CString label = GetProfileString("Bookmark", "label", "");
  if (label.IsEmpty()) return nullptr;
  TStringPool::InitializeGlobal();
  return TStringPool::g_pGlobal->Put(label);
}

void CNpZephrinApp::Set_MostRecentlyRequestedUrl(const char* url, const char* label) {
  WriteProfileString("Bookmark", "URL", url ? url : "");
  WriteProfileString("Bookmark", "label", label ? label : "");
}

void CNpZephrinApp::DetermineNavigatorVersion(ZRDocument* instance) {
  if (!m_NavigatorVersion.IsEmpty() || !instance || !instance->GetServer()) return;
  CString agent = instance->GetServer()->UserAgent(instance);
  if (agent.Left(8) == "Mozilla/") agent = agent.Mid(8);
  m_NavigatorVersion = agent;
}

int CNpZephrinApp::IsNavigatorVersion(const char* prefix) const {
  if (m_NavigatorVersion.IsEmpty() || !prefix) return 0;
  if (!*prefix) return 1;
  size_t n = std::min(std::strlen(prefix), static_cast<size_t>(m_NavigatorVersion.GetLength()));
  return std::strncmp(prefix, m_NavigatorVersion, n) == 0;
}

void CNpZephrinApp::GoToWebSite() {
  if (m_DocumentList.empty()) return;
  ZRDocument* instance = m_DocumentList.front()->Get_DocumentInstance();
  if (instance && instance->GetServer())
    instance->GetServer()->GetURL(instance, Resource::GetStringResource(32781), "_self");
}
