#include "host/np_doc.h"

#include <cstdio>

#include "device/context_xwin.h"
#include "errors/parse_errors.h"
#include "format/document_node.h"
#include "framework/files.h"
#include "framework/objects.h"
#include "framework/url.h"
#include "framework/util.h"
#include "host/np_view.h"
#include "host/np_zephrin_app.h"
#include "host/zr_document.h"
#include "host/zr_server.h"
#include "tex/token_source.h"
#include "tex/tokens.h"

namespace {
CString Trimmed(const char* text) {
  CString result(text);
  result.TrimLeft();
  result.TrimRight();
  return result;
}
}  // namespace

CZephrinPlugInDoc::CZephrinPlugInDoc()
    : m_pDocumentNode(new TFmtDocumentNode(nullptr)), m_pFmtContext(new TFmtContext_XWin) {
  m_pFmtContext->Set_DocumentNode(m_pDocumentNode);
}

CZephrinPlugInDoc::CZephrinPlugInDoc(ZRDocument* instance, uint16_t mode)
    : m_nMode(mode),
      m_pDocumentNode(new TFmtDocumentNode(instance)),
      m_pFmtContext(new TFmtContext_XWin),
      m_pDocumentInstance(instance) {
  m_pFmtContext->Set_DocumentNode(m_pDocumentNode);
  AfxGetApp()->AddDocument(this);
}

CZephrinPlugInDoc::~CZephrinPlugInDoc() {
  AfxGetApp()->RemoveDocument(this);
  Reset();
  delete m_pFmtContext;
  delete m_pDocumentNode;
  m_RequestedUrls.clear();
  m_RequestedUrlUsers.clear();
}

void CZephrinPlugInDoc::Reset() {
  if (!m_pWindow) return;
  m_pWindow->UnSubClass();
  delete m_pWindow;
  m_pWindow = nullptr;
}

void CZephrinPlugInDoc::Set_DocumentNode(TFmtDocumentNode* node) {
  if (node == m_pDocumentNode) return;
  delete m_pDocumentNode;
  m_pDocumentNode = node;
  m_pFmtContext->Set_DocumentNode(node);
}

void CZephrinPlugInDoc::Set_InlineMmlData(const char* text) { m_InlineMmlData = Trimmed(text); }
void CZephrinPlugInDoc::Set_InlineTexData(const char* text) { m_InlineTexData = Trimmed(text); }

void CZephrinPlugInDoc::Set_Url(const char* url) {
  if (!url) return;
  m_Url = url;
  if (m_pDocumentNode) m_pDocumentNode->Set_DocumentSource(url);
}

void CZephrinPlugInDoc::Set_Window(CZephrinPlugInView* view) {
  m_pWindow = view;
  if (view) view->Set_InstanceData(this);
}

CString CZephrinPlugInDoc::ResolveUrl(const CString& relative, int& ok) const {
  return MergeUrls(m_Url, relative, ok);
}

void CZephrinPlugInDoc::RequestUrl(const CString& url, AsynchronousDocumentUser* user) {
  m_RequestedUrls.push_front(url);
  m_RequestedUrlUsers.push_front(user);
  if (m_pDocumentInstance && m_pDocumentInstance->GetServer())
    m_pDocumentInstance->GetServer()->GetURL(m_pDocumentInstance, url, nullptr);
}

int CZephrinPlugInDoc::NotifyUrlUser(const char* url, const char* localName) {
  if (!url) return 0;
  for (size_t i = 0; i < m_RequestedUrls.size(); ++i) {
    if (stricmp(m_RequestedUrls[i], url) != 0) continue;
    AsynchronousDocumentUser* user = m_RequestedUrlUsers[i];
    m_RequestedUrls.erase(m_RequestedUrls.begin() + static_cast<long>(i));
    m_RequestedUrlUsers.erase(m_RequestedUrlUsers.begin() + static_cast<long>(i));
    user->FileIsReady(localName, m_pWindow);
    return 1;
  }
  return 0;
}

void CZephrinPlugInDoc::FileIsReady(const char* localName, CWnd* window) {
  AsynchronousDocumentUser::FileIsReady(localName, window);
  if (m_LocalFileName.IsEmpty()) return;
  AfxGetApp()->Set_LocalInputFileName(m_RequestedFileName, m_LocalFileName);
  m_nDocumentIsLoaded = 0;
  m_nHasBeenRequested = 0;
  m_nIsFileReady = 0;
  m_LocalFileName.Empty();
  // Inside a load the caller is that load: the next paint loads again.
  if (!m_nInLoad) LoadDocument();
}

void CZephrinPlugInDoc::UpdateStatusLine(const char* text) const {
  if (m_pWindow) m_pWindow->UpdateStatusLineText(text);
}

int CZephrinPlugInDoc::LoadDocument() {
  if (m_nDocumentIsLoaded) return m_nDocumentIsLoaded;
  if (!m_FileName.IsEmpty()) {
    LoadFromFile();
  } else if (!m_InlineMmlData.IsEmpty()) {
    // Inline MathML is kept and not read: the document comes up empty.
    CInLoadDocument guard(this);
    m_nDocumentIsLoaded = 1;
    if (m_pWindow) m_pWindow->DocumentLoaded();
  } else if (!m_InlineTexData.IsEmpty()) {
    LoadFromInlineTex();
  }
  return m_nDocumentIsLoaded;
}

void CZephrinPlugInDoc::ReadTokens(TTexTokenSource& source) {
  source.Set_DocumentNode(m_pDocumentNode);
  int savedReport = CZrError::Get_ReportParseErrors();
  m_nTokensRead = 0;
  m_nWaiting = 0;
  try {
    while (TTexToken* token = source.NextToken(0, 1)) {
      ++m_nTokensRead;
      delete token;
    }
  } catch (CInputFileException&) {
    // A file is on its way: the load runs again when it is there.
    m_nWaiting = 1;
  }
  CZrError::ReportParseErrors();
  CZrError::Set_ReportParseErrors(savedReport);
}

void CZephrinPlugInDoc::LoadFromFile() {
  CInLoadDocument guard(this);
  // Up before anything can fail: a file that does not open is not retried
  // on every expose.
  m_nDocumentIsLoaded = 1;
  CFile probe;
  if (!probe.Open(m_FileName, CFile::modeRead, nullptr)) return;
  if (m_pWindow) m_pWindow->SetWaitCursor();
  unsigned long length = probe.GetLength();
  probe.Close();
  UpdateStatusLine("zephrin reading " + m_Url + " ...");
  AfxGetApp()->Set_CurrentUrl(m_Url);
  FILE* file = std::fopen(m_FileName, "r");
  if (!file) {
    if (m_pWindow) m_pWindow->SetIBeamCursor();
    return;
  }
  // The parser takes over from here once the format nodes exist; until then
  // the text goes through the token source alone, which fetches every
  // \input it names.
  TTexTokenSource source(m_Url, file);
  source.SetShowProgress();
  ReadTokens(source);
  if (m_nWaiting) {
    // FileIsReady may have cleared the flag already (a local file): then the
    // next paint reads the text again, now with the file.
    UpdateStatusLine("zephrin is waiting for a file named by \\input");
  } else {
    CString text;
    text.Format("zephrin read %lu bytes, %d tokens (no layout or drawing yet)", length, m_nTokensRead);
    UpdateStatusLine(text);
  }
  if (m_pWindow) {
    m_pWindow->DocumentLoaded();
    m_pWindow->SetIBeamCursor();
    // A load that ended waiting for a local file runs again at this paint.
    m_pWindow->Invalidate(1);
  }
}

void CZephrinPlugInDoc::LoadFromInlineTex() {
  CInLoadDocument guard(this);
  m_nDocumentIsLoaded = 1;
  TTexTokenSource source("INLINE TEXDATA", m_InlineTexData.c_str());
  ReadTokens(source);
  if (m_pWindow) {
    m_pWindow->DocumentLoaded();
    m_pWindow->Invalidate(1);
  }
}
