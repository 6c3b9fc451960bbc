#include "interact/node_path.h"

#include "format/node.h"

CNodePath::CNodePath(TFmtNode* root) {
  if (root) m_Nodes.AddTail(root);
}

CNodePath::CNodePath(const CNodePath& other) : CObject(other), m_LastPoint(other.m_LastPoint) {
  CopyNodeList(other.m_Nodes, m_Nodes);
  m_Position = m_Nodes.GetEnd();
}

CNodePath& CNodePath::operator=(const CNodePath& other) {
  if (this != &other) {
    m_LastPoint = other.m_LastPoint;
    m_Nodes.RemoveAll();
    CopyNodeList(other.m_Nodes, m_Nodes);
    m_Position = m_Nodes.GetEnd();
  }
  return *this;
}

void CNodePath::GetNodeList(CObList& out) const {
  out.RemoveAll();
  CopyNodeList(m_Nodes, out);
}

void CNodePath::SetNodeList(const CObList& nodes) {
  m_Nodes.RemoveAll();
  CopyNodeList(nodes, m_Nodes);
  m_Position = m_Nodes.GetEnd();
}

void CNodePath::AddTail(TFmtNode* node) {
  if (!node) return;
  m_Nodes.AddTail(node);
  m_LastPoint = node->m_Position;
}

TFmtNode* CNodePath::RemoveTail() {
  if (m_Nodes.IsEmpty()) return nullptr;
  m_Position = m_Nodes.GetEnd();
  return static_cast<TFmtNode*>(m_Nodes.RemoveTail());
}

TFmtNode* CNodePath::GetHeadNode() const {
  return m_Nodes.IsEmpty() ? nullptr : static_cast<TFmtNode*>(m_Nodes.GetHead());
}

TFmtNode* CNodePath::GetTailNode() const {
  return m_Nodes.IsEmpty() ? nullptr : static_cast<TFmtNode*>(m_Nodes.GetTail());
}

bool CNodePath::IsInPath(const TFmtNode* node) const {
  for (CObject* o : m_Nodes)
    if (o == node) return true;
  return false;
}

void CNodePath::CopyNodeList(const CObList& from, CObList& to) {
  for (CObject* o : from) to.AddTail(o);
}
