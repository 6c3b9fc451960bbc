// The document node's title page, its lists in reading order, pages,
// temporary files and the store of bodies waiting to be deleted.
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "format/break_nodes.h"
#include "format/compound_node.h"
#include "format/context.h"
#include "format/document_node.h"
#include "format/glue_node.h"
#include "format/leaf_nodes.h"
#include "format/line_node.h"
#include "format/unit_node.h"
#include "format/vertical_list_node.h"
#include "framework/util.h"
#include "host/np_zephrin_app.h"
#include "interact/node_path.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

// ---- title page ------------------------------------------------------------------

void TFmtDocumentNode::ProcessTitlePageLines(TFmtVerticalListNode* list, TFmtNode* item, TFmtNode* fontNode) {
  TFmtCompoundNode* compound = item->IsCompoundNode();
  if (!compound) {
    auto* line = new TFmtLineNode(nullptr, k_LineCentre);
    line->AddTail(fontNode->Copy());
    line->AddTail(item->Copy());
    list->AddTail(line);
    return;
  }
  const char* andName = TStringPool::g_pGlobal->Put("and");
  // Copies: the item stays the document's, and a second title page can be
  // made from it after a reload of options.
  std::unique_ptr<TFmtCompoundNode> children(static_cast<TFmtCompoundNode*>(compound->Copy()));
  auto newLine = [&] {
    auto* line = new TFmtLineNode(nullptr, k_LineCentre);
    line->AddTail(fontNode->Copy());
    return line;
  };
  TFmtLineNode* line = newLine();
  bool lineHasContent = false;
  while (TFmtNode* child = children->RemoveHead()) {
    TFmtLineBreakNode* lineBreak = child->IsLineBreakNode();
    if (!lineBreak && !child->IsControlSequence(andName)) {
      // Blanks at either end of a line would put it off centre.
      if (!lineHasContent && child->IsWhiteSpace()) {
        delete child;
        continue;
      }
      line->AddTail(child);
      lineHasContent = true;
      continue;
    }
    line->RemoveTrailingWhiteSpace();
    list->AddTail(line);
    if (lineBreak && lineBreak->Get_OptionalSkip()) {
      auto* skip = new TFmtGlueNode(0, 0);
      skip->SetNormalSpace(lineBreak->Get_OptionalSkip()->CopyDerived());
      list->AddTail(skip);
    }
    delete child;
    line = newLine();
    lineHasContent = false;
  }
  if (lineHasContent) {
    line->RemoveTrailingWhiteSpace();
    list->AddTail(line);
  } else {
    delete line;
  }
}

TFmtNode* TFmtDocumentNode::Generate_TitlePage() {
  if (!m_pTitlePage->IsEmpty()) return m_pTitlePage;
  delete m_pTitlePage;
  m_pTitlePage = nullptr;
  if (m_pTitle->IsEmpty() && m_pAuthor->IsEmpty() && m_pDate->IsEmpty()) {
    m_pTitlePage = new TFmtCompoundNode;
    return m_pTitlePage;
  }
  auto* list = new TFmtVerticalListNode(TFmtVerticalListNode::k_RefTop);
  struct Part {
    TFmtNode* item;
    const char* font;
  } parts[] = {{m_pTitle, "LARGE"}, {m_pAuthor, "large"}, {m_pDate, "small"}};
  for (const Part& part : parts) {
    if (part.item->IsEmpty()) continue;
    TFmtControlSequenceNode font(TStringPool::g_pGlobal->Put(part.font));
    ProcessTitlePageLines(list, part.item, &font);
  }
  list->AddTail(new TFmtControlSequenceNode(TStringPool::g_pGlobal->Put("medskip")));
  m_pTitlePage = list;
  return m_pTitlePage;
}

// ---- controls and evaluation -----------------------------------------------------

void TFmtDocumentNode::InsertInReadingOrder(CObList& list, TFmtNode* node) {
  if (!node) return;
  if (list.IsEmpty()) {
    list.AddTail(node);
    return;
  }
  // A node already listed stays where it is, even if it has moved since: a
  // second entry would outlive the node when only one is removed.
  if (list.Find(node) != list.GetEnd()) return;
  // From the tail: lower down, or on the same line further right, goes after.
  for (auto it = list.end(); it != list.begin();) {
    --it;
    auto* element = static_cast<TFmtNode*>(*it);
    const CPoint& at = element->m_Position;
    const CPoint& p = node->m_Position;
    if (p.y < at.y || (p.y == at.y && p.x > at.x)) {
      list.InsertAfter(it, node);
      return;
    }
  }
  list.AddHead(node);
}

void TFmtDocumentNode::InsertInControlList(TFmtNode* node) { InsertInReadingOrder(m_Controls, node); }
void TFmtDocumentNode::RegisterForEvaluation(TFmtNode* node) { InsertInReadingOrder(m_EvaluationList, node); }
namespace {
void RemoveFrom(CObList& list, TFmtNode* node) {
  auto position = list.Find(node);
  if (position != list.GetEnd()) list.RemoveAt(position);
}
}  // namespace

void TFmtDocumentNode::RemoveFromControlList(TFmtNode* node) { RemoveFrom(m_Controls, node); }
void TFmtDocumentNode::UnRegisterForEvaluation(TFmtNode* node) { RemoveFrom(m_EvaluationList, node); }
void TFmtDocumentNode::RemoveImmediateDeleteItem(TFmtNode* node) { RemoveFrom(m_ImmediateDeleteList, node); }

namespace {
// Whether b comes after a in reading order: lower, or on the line to the right.
bool After(const CPoint& b, const CPoint& a) { return b.y < a.y || (b.y == a.y && b.x > a.x); }
}  // namespace

TFmtNode* TFmtDocumentNode::LocateControl(int bForward, CPoint& point) const {
  if (m_Controls.IsEmpty()) return nullptr;
  TFmtNode* answer = nullptr;
  if (bForward) {
    auto* head = static_cast<TFmtNode*>(m_Controls.GetHead());
    if (head->m_Position.y < point.y) {
      answer = head;
    } else {
      for (CObject* o : m_Controls) {
        auto* control = static_cast<TFmtNode*>(o);
        if (After(control->m_Position, point)) {
          answer = control;
          break;
        }
      }
    }
  } else {
    auto* tail = static_cast<TFmtNode*>(m_Controls.GetTail());
    if (tail->m_Position.y > point.y) {
      answer = tail;
    } else {
      for (auto it = m_Controls.end(); it != m_Controls.begin();) {
        --it;
        auto* control = static_cast<TFmtNode*>(*it);
        if (After(point, control->m_Position)) {
          answer = control;
          break;
        }
      }
    }
  }
  if (answer) point = answer->m_Position;
  return answer;
}

// ---- pages -----------------------------------------------------------------------

void TFmtDocumentNode::AddPage(CNodePath* path) {
  if (!path) return;
  if (TFmtNode* tail = path->GetTailNode()) m_nPageTop = tail->m_Position.y;
  m_Pages.AddTail(path);
  TRACE("AddPage [%d]: page top = %d\n", m_Pages.GetCount(), m_nPageTop);
}

int TFmtDocumentNode::FitsOnPage(int y, int height, TFmtContext&) const {
  return static_cast<int64_t>(y) - height >= static_cast<int64_t>(m_nPageTop) - m_PrintableArea.cy;
}

void TFmtDocumentNode::RemoveAllPages() {
  while (!m_Pages.IsEmpty()) delete static_cast<CNodePath*>(m_Pages.RemoveTail());
  m_nPageTop = 0;
}

CNodePath* TFmtDocumentNode::Get_Page(int n, TFmtContext&) const {
  if (n < 0 || n >= m_Pages.GetCount()) return nullptr;
  int i = 0;
  for (CObject* o : m_Pages)
    if (i++ == n) return static_cast<CNodePath*>(o);
  return nullptr;
}

// ---- temporary documents ---------------------------------------------------------

void TFmtDocumentNode::ReadRegistryValues() {
  fg_bSaveTemporaryDocuments = AfxGetApp()->GetProfileInt("Settings", "SaveTemporaryDocuments", 0);
}

void TFmtDocumentNode::SaveRegistryValues() {
  AfxGetApp()->WriteProfileInt("Settings", "SaveTemporaryDocuments", fg_bSaveTemporaryDocuments);
}

void TFmtDocumentNode::AddTemporaryDocument(const CString& name) {
  // Kept as a copy, not through the pool: the names are removed at exit,
  // when the pool may be gone.
  fg_TemporaryDocuments.AddTail(name);
}

void TFmtDocumentNode::DeleteTemporaryDocuments() {
  if (!fg_bSaveTemporaryDocuments)
    for (auto it = fg_TemporaryDocuments.end(); it != fg_TemporaryDocuments.begin();) {
      --it;
      std::remove((*it).c_str());
    }
  fg_TemporaryDocuments.RemoveAll();
}

CString TFmtDocumentNode::MakeTemporaryFileName(const char* name) {
  const char* directory = std::getenv("TMP");
  if (!directory) directory = std::getenv("TEMP");
  if (!directory) return CString();
  // The backslash on every system: the names are compared as written.
  CString result(directory);
  if (result.IsEmpty() || result[result.GetLength() - 1] != '\\') result += '\\';
  result += name ? name : "";
  AddTemporaryDocument(result);
  return result;
}

// ---- deletion store --------------------------------------------------------------

TFmtDocumentNode::TDocumentStorage::~TDocumentStorage() {
  while (!IsEmpty()) delete static_cast<TFmtVerticalListNode*>(RemoveHead());
}

void TFmtDocumentNode::DeleteDocumentStorage() {
  if (fg_DocumentStorage.IsEmpty()) return;
  TRACE("deleting document\n");
  while (!fg_DocumentStorage.IsEmpty()) delete static_cast<TFmtVerticalListNode*>(fg_DocumentStorage.RemoveHead());
}

int TFmtDocumentNode::PartiallyDeleteDocumentStorage() {
  if (fg_DocumentStorage.IsEmpty()) return 0;
  auto* list = static_cast<TFmtVerticalListNode*>(fg_DocumentStorage.GetHead());
  if (list->Get_Children().IsEmpty()) {
    fg_DocumentStorage.RemoveHead();
    delete list;
    TRACE("incrementally deleting document\n");
  } else {
    delete list->RemoveTail();
  }
  return !fg_DocumentStorage.IsEmpty();
}
