// CZephrinPlugInDoc: one embedded instance. It knows where its text comes
// from (a fetched file, inline TeX, inline MathML), owns the document node,
// and keeps the files it asked for until the browser delivers them.
#pragma once

#include <cstdint>
#include <deque>

#include "framework/async_doc.h"
#include "framework/cstring.h"

class CWnd;
class CZephrinPlugInView;
class TFmtContext_XWin;
class TFmtDocumentNode;
class ZRDocument;

class CZephrinPlugInDoc : public AsynchronousDocumentUser {
 public:
  // Keeps the flag up for the length of one load, also when a parse throws.
  class CInLoadDocument {
   public:
    explicit CInLoadDocument(CZephrinPlugInDoc* document) : m_pDocument(document) { m_pDocument->m_nInLoad = 1; }
    ~CInLoadDocument() { m_pDocument->m_nInLoad = 0; }
    CInLoadDocument(const CInLoadDocument&) = delete;
    CInLoadDocument& operator=(const CInLoadDocument&) = delete;

   private:
    CZephrinPlugInDoc* m_pDocument;
  };

  CZephrinPlugInDoc();
  // The one form that enters the application's registry.
  CZephrinPlugInDoc(ZRDocument* instance, uint16_t mode);
  CZephrinPlugInDoc(const CZephrinPlugInDoc&) = delete;
  CZephrinPlugInDoc& operator=(const CZephrinPlugInDoc&) = delete;
  ~CZephrinPlugInDoc() override;

  // Loads from the file, else inline MathML, else inline TeX; answers the
  // loaded flag after the attempt.
  int LoadDocument();
  // A requested file arrived (or, for a local one, was found): the whole
  // document loads again, now or at the next paint.
  void FileIsReady(const char* localName, CWnd* window) override;
  virtual TFmtDocumentNode* Get_DocumentNode() const { return m_pDocumentNode; }

  // 1 when the newest user waiting for url took the file; 0 when nobody was
  // waiting, so that the file is the document's own.
  int NotifyUrlUser(const char* url, const char* localName);
  void RequestUrl(const CString& url, AsynchronousDocumentUser* user);
  CString ResolveUrl(const CString& relative, int& ok) const;
  // Drops the view (its widgets have gone with its shell).
  void Reset();

  // Deletes the old node and ties the context to the new one.
  void Set_DocumentNode(TFmtDocumentNode* node);
  TFmtContext_XWin* Get_FmtContext() const { return m_pFmtContext; }
  const CString& Get_FileName() const { return m_FileName; }
  void Set_FileName(const char* name) { m_FileName = name; }
  const CString& Get_InlineMmlData() const { return m_InlineMmlData; }
  void Set_InlineMmlData(const char* text);
  const CString& Get_InlineTexData() const { return m_InlineTexData; }
  void Set_InlineTexData(const char* text);
  const CString& Get_InlineName() const { return m_InlineName; }
  void Set_InlineName(const char* name) { m_InlineName = name; }
  const char* Get_Label() const { return m_pLabel; }
  void Set_Label(const char* label) { m_pLabel = label; }
  const CString& Get_MimeType() const { return m_MimeType; }
  void Set_MimeType(const char* type) { m_MimeType = type; }
  uint16_t Get_Mode() const { return m_nMode; }
  void Set_Mode(uint16_t mode) { m_nMode = mode; }
  const CString& Get_Url() const { return m_Url; }
  void Set_Url(const char* url);
  CZephrinPlugInView* Get_Window() const { return m_pWindow; }
  void Set_Window(CZephrinPlugInView* view);
  ZRDocument* Get_DocumentInstance() const { return m_pDocumentInstance; }
  int Get_DocumentIsLoaded() const { return m_nDocumentIsLoaded; }
  void Set_DocumentIsLoaded(int loaded) { m_nDocumentIsLoaded = loaded; }
  int Get_InLoad() const { return m_nInLoad; }
  int Get_RequestCount() const { return static_cast<int>(m_RequestedUrls.size()); }

 private:
  void LoadFromFile();
  void LoadFromInlineTex();
  // Parses the whole source into a new compound; a wait for an \input's file
  // ends it with the waiting notice.
  class TFmtCompoundNode* ParseSource(class TTexTokenSource& source);
  // The tree into the document node, then composition and the first paint.
  void BuildAndShow(class TFmtCompoundNode* compound, int bFromFile);
  void UpdateStatusLine(const char* text) const;

  uint16_t m_nMode = 2;
  int m_nDocumentIsLoaded = 0;
  TFmtDocumentNode* m_pDocumentNode = nullptr;  // owned
  TFmtContext_XWin* m_pFmtContext = nullptr;    // owned
  CZephrinPlugInView* m_pWindow = nullptr;      // owned
  CString m_FileName;
  ZRDocument* m_pDocumentInstance = nullptr;   // not owned
  CString m_Url;
  const char* m_pLabel = nullptr;  // interned, or null
  CString m_MimeType;
  CString m_InlineMmlData;
  CString m_InlineTexData;
  CString m_InlineName;
  // Grow at the front together and pair up by position.
  std::deque<CString> m_RequestedUrls;
  std::deque<AsynchronousDocumentUser*> m_RequestedUrlUsers;
  int m_nInLoad = 0;
  int m_nWaiting = 0;
};
