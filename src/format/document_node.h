// TFmtDocumentNode: the root of a format tree. For now it carries what the
// link and layout ask of it: where the document came from, the instance
// through which its nodes reach the socket layer, and the composition status
// with its merge rule. The body, labels, title, controls and pages join it
// with the document node's own work.
#pragma once

#include "format/node.h"
#include "framework/cstring.h"

class ZRDocument;

// How much of a document must be composed again.
enum KCompositionStatus : int {
  k_Composed = 0,          // extents and positions stand
  k_LinksChanged = 1,      // only marked link and alternate content recompose
  k_WidthChanged = 2,      // only the width changed: character-like nodes keep their extent
  k_ComposeEverything = 3,
};

class TFmtDocumentNode : public TFmtNode {
 public:
  explicit TFmtDocumentNode(ZRDocument* instance = nullptr) : m_pDocumentInstance(instance) {}

  TFmtNode* Copy() const override { return new TFmtDocumentNode(*this); }
  TFmtDocumentNode* IsDocumentNode() const override { return const_cast<TFmtDocumentNode*>(this); }
  void Description(CString& out) override { out += "document node"; }

  ZRDocument* Get_DocumentInstance() const { return m_pDocumentInstance; }
  void Set_DocumentInstance(ZRDocument* instance) { m_pDocumentInstance = instance; }
  // The URL that relative names in the document resolve against.
  const CString& Get_DocumentSource() const { return m_DocumentSource; }
  void Set_DocumentSource(const char* url) { m_DocumentSource = url; }

  KCompositionStatus Get_CompositionStatus() const { return m_nCompositionStatus; }
  // Merges: the same value changes nothing; 0 and 3 always take, and so does
  // anything while composed; 1 and 2 pending together need everything (3).
  void Set_CompositionStatus(KCompositionStatus status);
  // Stores without merging: for a scope that raised the status and puts
  // back what it found.
  void Replace_CompositionStatus(KCompositionStatus status) { m_nCompositionStatus = status; }

 private:
  KCompositionStatus m_nCompositionStatus = k_ComposeEverything;
  ZRDocument* m_pDocumentInstance;  // not owned
  CString m_DocumentSource;
};
