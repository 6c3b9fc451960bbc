// The document node's body, composition, labels and caret. The title page,
// the reading-order lists, pages, temporary files and the deletion store are
// in document_node_lists.cpp.
#include "format/document_node.h"

#include "format/compound_node.h"
#include "format/context.h"
#include "format/vertical_list_node.h"
#include "framework/menu.h"
#include "interact/node_path.h"
#include "symbols/string_pool.h"

TFmtDocumentNode::TFmtDocumentNode(ZRDocument* instance)
    : m_pDocumentInstance(instance),
      m_pVerticalList(new TFmtVerticalListNode(TFmtVerticalListNode::k_RefTop)),
      m_pCaretPath(new CNodePath(this)),
      m_pTitle(new TFmtCompoundNode),
      m_pTitlePage(new TFmtCompoundNode),
      m_pAuthor(new TFmtCompoundNode),
      m_pDate(new TFmtCompoundNode) {
  m_pVerticalList->Set_IsDocumentBody(1);
}

TFmtDocumentNode::~TFmtDocumentNode() {
  m_Controls.RemoveAll();
  m_EvaluationList.RemoveAll();
  m_Labels.RemoveAll();
  RemoveAllPages();
  while (!m_ImmediateDeleteList.IsEmpty()) delete static_cast<TFmtNode*>(m_ImmediateDeleteList.RemoveHead());
  delete m_pCaretPath;
  delete m_pTitle;
  delete m_pTitlePage;
  delete m_pAuthor;
  delete m_pDate;
  // The body goes to the store: a large tree is deleted in slices while idle.
  fg_DocumentStorage.AddTail(m_pVerticalList);
}

// ---- body ------------------------------------------------------------------------

void TFmtDocumentNode::Build(TFmtCompoundNode* source) {
  ResetNodes();
  // The sites are nodes of the body that Build deletes; the next Compose
  // finds the labels again.
  m_Labels.RemoveAll();
  m_pVerticalList->Build(source);
  Set_CompositionStatus(k_ComposeEverything);
}

void TFmtDocumentNode::AppendToBottom(TFmtNode* node) { m_pVerticalList->AddTail(node); }

void TFmtDocumentNode::Set_VerticalList(TFmtVerticalListNode* list) {
  if (!list || list == m_pVerticalList) return;
  ResetNodes();
  m_Labels.RemoveAll();
  delete m_pVerticalList;
  m_pVerticalList = list;
  m_pVerticalList->Set_IsDocumentBody(1);
}

int TFmtDocumentNode::IsEmpty() const { return m_pVerticalList->IsEmpty(); }

void TFmtDocumentNode::PrintTex(CString& out, int& column) const { m_pVerticalList->PrintTex(out, column); }
void TFmtDocumentNode::SimplyStringify(CString& out) { m_pVerticalList->SimplyStringify(out); }

void TFmtDocumentNode::ApplyRecursively(void (*f)(TFmtNode*)) {
  f(this);
  m_pTitlePage->ApplyRecursively(f);
  m_pVerticalList->ApplyRecursively(f);
}
void TFmtDocumentNode::ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) {
  f(this, a);
  m_pTitlePage->ApplyRecursively(f, a);
  m_pVerticalList->ApplyRecursively(f, a);
}
void TFmtDocumentNode::ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) {
  f(this, a, b);
  m_pTitlePage->ApplyRecursively(f, a, b);
  m_pVerticalList->ApplyRecursively(f, a, b);
}

int TFmtDocumentNode::ContextMenuInto(CMenu& menu) {
  menu.LoadMenu(119u);
  return 1;
}

// ---- composition -----------------------------------------------------------------

void TFmtDocumentNode::Set_CompositionStatus(KCompositionStatus status) {
  if (status == m_nCompositionStatus) return;
  if (status == k_Composed || status == k_ComposeEverything || m_nCompositionStatus == k_Composed) {
    m_nCompositionStatus = status;
    return;
  }
  // Two different pending values: one of them is 3 already, or they are 1 and 2.
  m_nCompositionStatus = k_ComposeEverything;
}

TFmtExtent* TFmtDocumentNode::Compose(TFmtContext& context) {
  // A repaint during a print run must not disturb the printed layout.
  if (m_bIsBusyPrinting && !context.IsPrinting()) {
    m_pExtent->Reset(0, 0, 0);
    return m_pExtent.get();
  }
  RemoveAllPages();
  m_pVerticalList->m_Position = m_Position;
  context.ClearNodePath();
  context.PushOnNodePath(this);
  TFmtExtent* composed = m_pVerticalList->Compose(context);
  *m_pExtent = composed ? *composed : *m_pVerticalList->m_pExtent;
  context.PopOffNodePath();
  Set_CompositionStatus(k_Composed);
  return m_pExtent.get();
}

void TFmtDocumentNode::Draw(TFmtContext& context) {
  if (m_bIsBusyPrinting && !context.IsPrinting()) return;
  // The X device never prints, so no page header is drawn here; a printing
  // context would put the title and "Page %d of %d" above the body.
  m_pVerticalList->m_Position = m_Position;
  m_pVerticalList->Draw(context);
}

// ---- labels ----------------------------------------------------------------------

void TFmtDocumentNode::UpdateLabelDatabase(TFmtNode* labelNode, TFmtNode* site) {
  if (!labelNode || !site) return;
  CString text;
  labelNode->SimplyStringify(text);
  UpdateLabelDatabase(TStringPool::g_pGlobal->Put(text), site);
}

void TFmtDocumentNode::UpdateLabelDatabase(const char* name, TFmtNode* site) {
  if (!name || !site) return;
  m_Labels.SetAt(TStringPool::g_pGlobal->Put(name), site);
}

TFmtNode* TFmtDocumentNode::ResolveLabel(const char* name) const {
  if (!name) return nullptr;
  TFmtNode* site = nullptr;
  return m_Labels.Lookup(TStringPool::g_pGlobal->Put(name), site) ? site : nullptr;
}

void TFmtContext::UpdateLabelDatabase(TFmtNode* labelNode) {
  if (m_pDocumentNode) m_pDocumentNode->UpdateLabelDatabase(labelNode, m_pLabelSite);
}

// ---- title data ------------------------------------------------------------------

void TFmtDocumentNode::ReplaceOwned(TFmtNode*& field, TFmtNode* node) {
  if (node == field) return;
  delete field;
  field = node ? node : new TFmtCompoundNode;
  // A title page made from the old data would be kept by Generate_TitlePage
  // through a parse of the text again: it is made anew from the new data.
  if (!m_pTitlePage->IsEmpty()) {
    ResetNodes();
    delete m_pTitlePage;
    m_pTitlePage = new TFmtCompoundNode;
  }
}

void TFmtDocumentNode::Set_Title(TFmtNode* node) { ReplaceOwned(m_pTitle, node); }
void TFmtDocumentNode::Set_Author(TFmtNode* node) { ReplaceOwned(m_pAuthor, node); }
void TFmtDocumentNode::Set_Date(TFmtNode* node) { ReplaceOwned(m_pDate, node); }

// ---- caret -----------------------------------------------------------------------

int TFmtDocumentNode::FindCaretPosition(CPoint& point, CObList& path) {
  return m_pVerticalList->FindCaretPosition(point, path);
}
int TFmtDocumentNode::FindFirstCaretPosition(CObList& path) { return m_pVerticalList->FindFirstCaretPosition(path); }
int TFmtDocumentNode::FindLastCaretPosition(CObList& path) { return m_pVerticalList->FindLastCaretPosition(path); }
int TFmtDocumentNode::FindNextCaretPositionInt(CObList& path, TFmtNode* node) {
  return m_pVerticalList->FindNextCaretPositionInt(path, node);
}
int TFmtDocumentNode::FindPrevCaretPositionInt(CObList& path, TFmtNode* node) {
  return m_pVerticalList->FindPrevCaretPositionInt(path, node);
}

void TFmtDocumentNode::FindFirstCaretPosition0() {
  CObList path;
  path.AddTail(this);
  if (!FindFirstCaretPosition(path)) {
    path.RemoveAll();
    path.AddTail(this);
  }
  m_pCaretPath->SetNodeList(path);
}

void TFmtDocumentNode::Set_CaretPosition(const CPoint& point) {
  CObList path;
  path.AddTail(this);
  CPoint at = point;
  if (!FindCaretPosition(at, path)) {
    path.RemoveAll();
    path.AddTail(this);
  }
  m_pCaretPath->SetNodeList(path);
  m_pCaretPath->m_LastPoint = point;
}

void TFmtDocumentNode::Set_CaretPosition(TFmtNode* node) {
  if (!node) return;
  CObList path;
  path.AddTail(this);
  // The path to a node is found by its position: nodes keep no parent.
  CPoint at = node->CaretPosition();
  if (!FindCaretPosition(at, path) || static_cast<TFmtNode*>(path.GetTail()) != node) {
    path.RemoveAll();
    path.AddTail(this);
  }
  m_pCaretPath->SetNodeList(path);
}

TFmtNode* TFmtDocumentNode::Get_CaretNode() const { return m_pCaretPath->GetTailNode(); }

TFmtNode* TFmtDocumentNode::Get_CaretVListNode() const {
  // The path runs document, body, element, ...
  CObList nodes;
  m_pCaretPath->GetNodeList(nodes);
  auto it = nodes.begin();
  if (it == nodes.end() || ++it == nodes.end() || ++it == nodes.end()) return nullptr;
  return static_cast<TFmtNode*>(*it);
}

TFmtLinkNode* TFmtDocumentNode::Get_CaretLinkNode() const {
  CObList nodes;
  m_pCaretPath->GetNodeList(nodes);
  for (auto it = nodes.end(); it != nodes.begin();) {
    --it;
    if (TFmtLinkNode* link = static_cast<TFmtNode*>(*it)->IsLinkNode()) return link;
  }
  return nullptr;
}

void TFmtDocumentNode::Get_CaretDescription(CString& out) const {
  out.Empty();
  if (TFmtNode* node = Get_CaretNode()) node->Description(out);
}

void TFmtDocumentNode::ResetNodes() {
  m_pCaretPath->RemoveAll();
  m_pCaretPath->AddTail(this);
}
