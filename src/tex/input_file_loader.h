// What the token source asks of the application when a document includes a
// file: the URL that relative names resolve against, and the file's text.
// The application object answers for documents on screen (it may have to ask
// the browser, so a file can be "not there yet"); the local loader answers
// for tools and tests from the disk.
#pragma once

#include "framework/cstring.h"

class TFmtDocumentNode;

class CInputFileLoader {
 public:
  virtual ~CInputFileLoader() = default;

  // The URL of the file being loaded: the base of relative \input names.
  virtual CString Get_CurrentUrl() const = 0;
  // 1 with the file's text in text; 0 when it cannot be delivered now (the
  // caller then stops the parse to wait for it). flag is not used.
  virtual int LoadStringFromUrl(const CString& url, CString& text, int flag, TFmtDocumentNode* document) = 0;

  // The loader in force for the process: the one set last, or, with none
  // set, a local loader with no current URL.
  static CInputFileLoader* Get_Global();
  // Not owned; null returns to the default.
  static void Set_Global(CInputFileLoader* loader);
};

// Local files only: "file:" URLs and plain paths, read from the disk. Any
// other scheme cannot be delivered.
class CLocalInputFileLoader : public CInputFileLoader {
 public:
  CLocalInputFileLoader() = default;
  explicit CLocalInputFileLoader(const char* currentUrl) : m_CurrentUrl(currentUrl) {}

  CString Get_CurrentUrl() const override { return m_CurrentUrl; }
  void Set_CurrentUrl(const char* url) { m_CurrentUrl = url; }
  int LoadStringFromUrl(const CString& url, CString& text, int flag, TFmtDocumentNode* document) override;

  // "file:" and the absolute path of name (made absolute against the working
  // directory), so that names included by that file resolve beside it.
  static CString FileUrlFromPath(const char* name);

 private:
  CString m_CurrentUrl;
};
