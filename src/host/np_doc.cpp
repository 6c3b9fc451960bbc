#include "host/np_doc.h"

#include <cstdio>

#include "device/context_xwin.h"
#include "errors/parse_errors.h"
#include "format/compound_node.h"
#include "format/document_node.h"
#include "format/leaf_nodes.h"
#include "host/resource.h"
#include "interact/node_path.h"
#include "tex/arguments.h"
#include "framework/files.h"
#include "framework/objects.h"
#include "framework/url.h"
#include "framework/util.h"
#include "host/np_view.h"
#include "host/np_zephrin_app.h"
#include "host/zr_document.h"
#include "host/zr_server.h"
#include "tex/token_source.h"

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
    BuildAndShow(new TFmtCompoundNode, 0);
  } else if (!m_InlineTexData.IsEmpty()) {
    LoadFromInlineTex();
  }
  return m_nDocumentIsLoaded;
}

namespace {
// The notice that ends a document whose \input has to wait for its file.
void AppendWaitingNotice(TFmtCompoundNode* compound) {
  if (TFmtNode* notice = ParseTexFromString(Resource::GetStringResource(32787)))
    compound->AddTail(notice);
}
}  // namespace

TFmtCompoundNode* CZephrinPlugInDoc::ParseSource(TTexTokenSource& source) {
  // Each load starts a new document node: labels, titles, topic names and
  // lists of the last load point into its tree, which goes (in slices,
  // after the next paint) with the old node.
  auto* fresh = new TFmtDocumentNode(m_pDocumentInstance);
  fresh->Set_DocumentSource(m_Url);
  Set_DocumentNode(fresh);
  if (m_pWindow) m_pWindow->ForgetTree();
  source.Set_DocumentNode(m_pDocumentNode);
  source.Set_StopAtMissingFile(1);
  auto* compound = new TFmtCompoundNode;
  TFmtNode* result = compound->ParseTex(source);
  if (result != compound) compound = TFmtCompoundNode::CompoundIt(result);
  m_nWaiting = source.Get_WaitingForFile();
  if (m_nWaiting) AppendWaitingNotice(compound);
  return compound;
}

void CZephrinPlugInDoc::BuildAndShow(TFmtCompoundNode* compound, int bFromFile) {
  m_pDocumentNode->Build(compound);
  m_pDocumentNode->FindFirstCaretPosition0();
  if (!m_pWindow) return;
  m_pWindow->DocumentLoaded();
  m_pWindow->SetScrollInfo();
  if (m_pLabel)
    if (TFmtNode* node = m_pDocumentNode->ResolveLabel(m_pLabel)) m_pWindow->Set_NodeToScrollTo(node, 1);
  if (bFromFile) UpdateStatusLine(" ");
  if (CNodePath* path = m_pWindow->Get_NodePath()) path->RemoveAll();
  m_pWindow->Invalidate(1);
  m_pWindow->UpdateWindow();
  if (bFromFile) m_pWindow->SetScrollInfo();
}

void CZephrinPlugInDoc::LoadFromFile() {
  CInLoadDocument guard(this);
  // Up before anything can fail: a file that does not open is not retried
  // on every expose.
  m_nDocumentIsLoaded = 1;
  CFile probe;
  if (!probe.Open(m_FileName, CFile::modeRead, nullptr)) return;
  if (m_pWindow) m_pWindow->SetWaitCursor();
  probe.Close();
  UpdateStatusLine("zephrin reading " + m_Url + " ...");
  AfxGetApp()->Set_CurrentUrl(m_Url);
  FILE* file = std::fopen(m_FileName, "r");
  if (!file) {
    if (m_pWindow) m_pWindow->SetIBeamCursor();
    return;
  }
  const int savedReport = CZrError::Get_ReportParseErrors();
  TFmtNode::InitializeTexParser();
  TFmtNode::InitializeDrawProperties();
  TFmtCompoundNode* compound;
  {
    // The MIME type would choose the MathML reader; TeX is the default and,
    // until that reader exists, the only one.
    TTexTokenSource source(m_Url, file);
    source.SetShowProgress();
    compound = ParseSource(source);
  }
  CZrError::ReportParseErrors();
  CZrError::Set_ReportParseErrors(savedReport);
  BuildAndShow(compound, 1);
  if (m_pWindow) m_pWindow->SetIBeamCursor();
}

void CZephrinPlugInDoc::LoadFromInlineTex() {
  CInLoadDocument guard(this);
  m_nDocumentIsLoaded = 1;
  const int savedReport = CZrError::Get_ReportParseErrors();
  TFmtNode::InitializeTexParser();
  TFmtNode::InitializeDrawProperties();
  TFmtCompoundNode* compound;
  {
    TTexTokenSource source("INLINE TEXDATA", m_InlineTexData.c_str());
    compound = ParseSource(source);
  }
  CZrError::ReportParseErrors();
  CZrError::Set_ReportParseErrors(savedReport);
  BuildAndShow(compound, 0);
}
