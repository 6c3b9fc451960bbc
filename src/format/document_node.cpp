#include "format/document_node.h"

void TFmtDocumentNode::Set_CompositionStatus(KCompositionStatus status) {
  if (status == m_nCompositionStatus) return;
  if (status == k_Composed || status == k_ComposeEverything || m_nCompositionStatus == k_Composed) {
    m_nCompositionStatus = status;
    return;
  }
  // Two different pending values: one of them is 3 already, or they are 1 and 2.
  m_nCompositionStatus = k_ComposeEverything;
}
