// TFmtDocumentNode: the root of a format tree. For now it carries only what
// layout asks of it, the composition status and its merge rule; the body,
// labels, title, controls and pages arrive with the document node's own work.
#pragma once

#include "format/node.h"

// How much of a document must be composed again.
enum KCompositionStatus : int {
  k_Composed = 0,          // extents and positions stand
  k_LinksChanged = 1,      // only marked link and alternate content recompose
  k_WidthChanged = 2,      // only the width changed: character-like nodes keep their extent
  k_ComposeEverything = 3,
};

class TFmtDocumentNode : public TFmtNode {
 public:
  explicit TFmtDocumentNode(void* pInstance = nullptr) : m_pDocumentInstance(pInstance) {}

  TFmtNode* Copy() const override { return new TFmtDocumentNode(*this); }
  TFmtDocumentNode* IsDocumentNode() const override { return const_cast<TFmtDocumentNode*>(this); }
  void Description(CString& out) override { out += "document node"; }

  KCompositionStatus Get_CompositionStatus() const { return m_nCompositionStatus; }
  // Merges: the same value changes nothing; 0 and 3 always take, and so does
  // anything while composed; 1 and 2 pending together need everything (3).
  void Set_CompositionStatus(KCompositionStatus status);
  // Stores without merging: for a scope that raised the status and puts
  // back what it found.
  void Replace_CompositionStatus(KCompositionStatus status) { m_nCompositionStatus = status; }

 private:
  KCompositionStatus m_nCompositionStatus = k_ComposeEverything;
  void* m_pDocumentInstance;  // the host document; not owned
};
