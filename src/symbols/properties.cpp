#include "symbols/properties.h"

void TBooleanProperty::DescribeValue(CString& out) const { out.Format("%d", m_nValue); }

void TIntegerProperty::DescribeValue(CString& out) const { out.Format("%d", m_nValue); }

void TStringProperty::DescribeValue(CString& out) const {
  if (m_pText)
    out.Format("\"%s\"", m_pText);
  else
    out = "null";
}

void TFunctionProperty::DescribeValue(CString& out) const {
  if (m_pFunction)
    out.Format("%p", reinterpret_cast<void*>(m_pFunction));
  else
    out = "null";
}

void TColorProperty::DescribeValue(CString& out) const {
  out.Format("%d %d %d", m_Color.Red(), m_Color.Green(), m_Color.Blue());
  if (!m_Color.m_Name.IsEmpty()) out += CString(" \"") + m_Color.m_Name + "\"";
}

void TFontIndexProperty::DescribeValue(CString& out) const {
  out.Format("tag %d code %d", static_cast<int>(m_Tag), m_nCode);
}

TNodeProperty::TNodeProperty(const TNodeProperty& other)
    : TProperty(other), m_pNode(other.m_pNode ? other.m_pNode->Copy() : nullptr) {}

TNodeProperty& TNodeProperty::operator=(const TNodeProperty& other) {
  if (this == &other) return *this;
  delete m_pNode;
  m_pNode = other.m_pNode ? other.m_pNode->Copy() : nullptr;
  return *this;
}

TNodeProperty::~TNodeProperty() { delete m_pNode; }

void TNodeProperty::DescribeValue(CString& out) const {
  if (m_pNode)
    out.Format("owned node %p", static_cast<const void*>(m_pNode));
  else
    out = "null";
}

TPropertyList::TPropertyList(const char* key, TProperty* value) : m_pHead(new TKeyValue(key, value)) {}

TPropertyList::TPropertyList(const TPropertyList& other) : CObject(other) { AppendCopiesOf(other); }

TPropertyList& TPropertyList::operator=(const TPropertyList& other) {
  if (this == &other) return *this;
  DeleteAll();
  AppendCopiesOf(other);
  return *this;
}

TPropertyList::~TPropertyList() { DeleteAll(); }

void TPropertyList::DeleteAll() {
  while (m_pHead) {
    TKeyValue* next = m_pHead->m_pNext;
    delete m_pHead;
    m_pHead = next;
  }
}

// Called on an empty list: copies go behind each other so the order is kept.
void TPropertyList::AppendCopiesOf(const TPropertyList& other) {
  TKeyValue** tail = &m_pHead;
  for (const TKeyValue* pair = other.m_pHead; pair; pair = pair->m_pNext) {
    *tail = new TKeyValue(pair->m_pKey, pair->m_pValue ? pair->m_pValue->Copy() : nullptr);
    tail = &(*tail)->m_pNext;
  }
}

void TPropertyList::PutProperty(const char* key, TProperty* value, int deleteOld) {
  for (TKeyValue* pair = m_pHead; pair; pair = pair->m_pNext) {
    if (pair->m_pKey != key) continue;
    TProperty* old = pair->SetValue(value);
    // Putting the value that is already there must not free it.
    if (deleteOld && old && old != value) delete old;
    return;
  }
  TKeyValue* pair = new TKeyValue(key, value);
  pair->m_pNext = m_pHead;
  m_pHead = pair;
}

void TPropertyList::RemoveProperty(const char* key) {
  for (TKeyValue** link = &m_pHead; *link; link = &(*link)->m_pNext) {
    if ((*link)->m_pKey != key) continue;
    TKeyValue* pair = *link;
    *link = pair->m_pNext;
    delete pair;
    return;
  }
}

int TPropertyList::GetCount() const {
  int count = 0;
  for (const TKeyValue* pair = m_pHead; pair; pair = pair->m_pNext) ++count;
  return count;
}
