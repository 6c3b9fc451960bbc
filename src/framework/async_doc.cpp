#include "framework/async_doc.h"

#include "format/document_node.h"
#include "framework/files.h"
#include "framework/url.h"
#include "framework/util.h"
#include "host/np_doc.h"
#include "host/zr_document.h"

void AsynchronousDocumentUser::RequestFile(const char* name, TFmtDocumentNode* document, CWnd* window) {
  if (m_nHasBeenRequested || !name || !*name) return;
  m_nHasBeenRequested = 1;
  m_RequestedFileName = name;
  RequestFileFromSystem(name, document, window);
}

void AsynchronousDocumentUser::RequestFileFromSystem(const char* name, TFmtDocumentNode* document,
                                                     CWnd* window) {
  if (!document) return;
  int ok = 1;
  CString url = MergeUrls(document->Get_DocumentSource(), name, ok);
  if (strnicmp(url, "file:", 5) == 0) {
    CString path = FileUrlToFile(url);
    CFile file;
    if (file.Open(path, CFile::modeRead, nullptr)) {
      file.Close();
      FileIsReady(path, window);
    } else {
      FileIsReady("", window);
    }
    return;
  }
  ZRDocument* instance = document->Get_DocumentInstance();
  if (CZephrinPlugInDoc* owner = instance ? instance->GetDocument() : nullptr) owner->RequestUrl(url, this);
}

void AsynchronousDocumentUser::FileIsReady(const char* localName, CWnd*) {
  if (localName && *localName) {
    m_nIsFileReady = 1;
    m_LocalFileName = localName;
  }
}
