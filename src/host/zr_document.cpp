#include "host/zr_document.h"

DList::~DList() {
  while (m_pHead) {
    DNode* next = m_pHead->m_pNext;
    delete m_pHead;
    m_pHead = next;
  }
}

void DList::Insert(ZRDocument* document, int32_t id) {
  DNode* node = new DNode;
  node->m_pDocument = document;
  node->m_nId = id;
  node->m_pNext = m_pHead;
  if (m_pHead) m_pHead->m_pPrev = node;
  m_pHead = node;
}

DNode* DList::Find(int32_t id) const {
  for (DNode* node = m_pHead; node; node = node->m_pNext)
    if (node->m_nId == id) return node;
  return nullptr;
}

void DList::Delete(int32_t id) {
  DNode* node = Find(id);
  if (!node) return;
  if (node->m_pPrev)
    node->m_pPrev->m_pNext = node->m_pNext;
  else
    m_pHead = node->m_pNext;
  if (node->m_pNext) node->m_pNext->m_pPrev = node->m_pPrev;
  delete node;
}

int DList::Count() const {
  int count = 0;
  for (DNode* node = m_pHead; node; node = node->m_pNext) ++count;
  return count;
}
