// CNodePath: the way from the document node down to one node, since nodes
// keep no parent pointer. Pointers are borrowed: a path is dropped whenever
// its tree is replaced.
//
// Only the list operations are here so far (what the format context's walk
// needs); the pointer search, caret and menu walks come with selection.
#pragma once

#include "framework/collections.h"
#include "framework/geometry.h"

class TFmtNode;

class CNodePath : public CObject {
 public:
  CNodePath() = default;
  explicit CNodePath(TFmtNode* root);
  CNodePath(const CNodePath& other);
  CNodePath& operator=(const CNodePath& other);

  void GetNodeList(CObList& out) const;
  void SetNodeList(const CObList& nodes);
  void AddTail(TFmtNode* node);
  // Null on an empty path.
  TFmtNode* RemoveTail();
  void RemoveAll() { m_Nodes.RemoveAll(); }

  TFmtNode* GetHeadNode() const;
  TFmtNode* GetTailNode() const;
  int GetCount() const { return m_Nodes.GetCount(); }
  bool IsEmpty() const { return m_Nodes.IsEmpty(); }
  bool IsInPath(const TFmtNode* node) const;

  static void CopyNodeList(const CObList& from, CObList& to);

  CPoint m_LastPoint;

 private:
  CObList m_Nodes;  // of TFmtNode, head = root; not owned
  CObList::POSITION m_Position{};
};
