// AsynchronousDocumentUser: the base of whatever asks for a file that may
// arrive later. A local file is answered at once; anything else goes to the
// browser through the document, and FileIsReady brings the answer back.
#pragma once

#include "framework/cstring.h"

class CWnd;
class TFmtDocumentNode;

class AsynchronousDocumentUser {
 public:
  AsynchronousDocumentUser() = default;
  virtual ~AsynchronousDocumentUser() = default;

  // One request per object: a second call, or a null or empty name, does
  // nothing.
  void RequestFile(const char* name, TFmtDocumentNode* document, CWnd* window);
  // Merges name with the document's source; "file:" is answered here, any
  // other scheme is asked of the browser. A null document does nothing.
  void RequestFileFromSystem(const char* name, TFmtDocumentNode* document, CWnd* window);
  // Keeps a non-empty local name and marks the file ready. Subclasses call
  // this first and act on a non-empty name.
  virtual void FileIsReady(const char* localName, CWnd* window);

  const CString& Get_LocalFileName() const { return m_LocalFileName; }
  const CString& Get_RequestedFileName() const { return m_RequestedFileName; }
  int HasFileBeenRequested() const { return m_nHasBeenRequested; }
  int IsFileReady() const { return m_nIsFileReady; }

 protected:
  int m_nIsFileReady = 0;
  int m_nHasBeenRequested = 0;
  CString m_RequestedFileName;
  CString m_LocalFileName;
};
