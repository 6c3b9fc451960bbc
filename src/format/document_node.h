// TFmtDocumentNode as far as the link needs it: where the document came from
// and the instance through which its nodes reach the socket layer. The tree,
// composition and drawing join this class with the format nodes.
#pragma once

#include "framework/cstring.h"

class ZRDocument;

class TFmtDocumentNode {
 public:
  explicit TFmtDocumentNode(ZRDocument* instance = nullptr) : m_pDocumentInstance(instance) {}
  virtual ~TFmtDocumentNode() = default;

  ZRDocument* Get_DocumentInstance() const { return m_pDocumentInstance; }
  void Set_DocumentInstance(ZRDocument* instance) { m_pDocumentInstance = instance; }
  // The URL that relative names in the document resolve against.
  const CString& Get_DocumentSource() const { return m_DocumentSource; }
  void Set_DocumentSource(const char* url) { m_DocumentSource = url; }

 private:
  ZRDocument* m_pDocumentInstance;  // not owned
  CString m_DocumentSource;
};
