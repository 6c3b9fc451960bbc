// CNpZephrinApp: the one application object, the profile store's owner and
// the start order of everything that start-up builds.
#pragma once

#include <list>
#include <map>

#include "framework/win_app.h"
#include "tex/input_file_loader.h"

class CZephrinPlugInDoc;
class ZRDocument;

// Also the loader through which \input reaches files that the browser may
// still have to fetch.
class CNpZephrinApp : public CWinApp, public CInputFileLoader {
 public:
  static CNpZephrinApp* GetPlugInDllObject();

  // Runs the start order; answers 1.
  int InitInstance();
  // Written for completeness: every exit path calls exit directly instead.
  int ExitInstance();

  // Reads every owner's keys, in a fixed order, before the string pool
  // exists: nothing here may use interned names.
  void UpdateFromRegistry();
  void UpdateToRegistry();

  // ---- the documents of the process, newest first ----
  void AddDocument(CZephrinPlugInDoc* document);
  // No effect if the document is not there.
  void RemoveDocument(CZephrinPlugInDoc* document);
  // The first document in list order with that inline name, else null.
  CZephrinPlugInDoc* GetDocumentFromInlineName(const char* name) const;
  const std::list<CZephrinPlugInDoc*>& GetDocumentList() const { return m_DocumentList; }

  // ---- fetched \input files: URL to local name, kept for the process ----
  // Empty when the URL has not been fetched.
  CString Get_LocalInputFileName(const char* url) const;
  // An empty local name changes nothing.
  void Set_LocalInputFileName(const char* url, const char* local);

  // The URL of the file being loaded: the base of relative \input names.
  CString Get_CurrentUrl() const override { return m_CurrentUrl; }
  void Set_CurrentUrl(const char* url) { m_CurrentUrl = url ? url : ""; }
  // 1 with the file's text; 0 when it has been asked for and is not there
  // yet (or could not be read, in which case the next attempt asks afresh).
  int LoadStringFromUrl(const CString& url, CString& text, int flag, TFmtDocumentNode* document) override;

  // ---- the bookmark of a link to another page, in the profile store ----
  // It must outlive this instance: the browser destroys it and makes a new
  // one for the target page.
  CString Get_MostRecentlyRequestedUrl();
  // Null for an empty label, else the interned label.
  const char* Get_MostRecentlyRequestedUrlLabel();
  // Null arguments are written as empty texts.
  void Set_MostRecentlyRequestedUrl(const char* url, const char* label);

  const CString& GetNavigatorVersion() const { return m_NavigatorVersion; }
  // When still unset: the user agent without a leading "Mozilla/".
  void DetermineNavigatorVersion(ZRDocument* instance);
  // True when the two agree up to the end of the shorter one.
  int IsNavigatorVersion(const char* prefix) const;
  void SetNavigatorVersionForTest(const char* version) { m_NavigatorVersion = version; }
  // Asks the newest document's browser to open the product's home page.
  void GoToWebSite();

  static constexpr const char* kAppName = "zephrin Document Viewer, Netscape Plug-in Edition";

 private:
  CString m_NavigatorVersion;
  CString m_CurrentUrl;
  std::list<CZephrinPlugInDoc*> m_DocumentList;
  std::map<CString, CString> m_LocalNames;
};

CNpZephrinApp* AfxGetApp();
