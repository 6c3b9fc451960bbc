#include "symbols/string_pool.h"

#include <cstring>

#include "framework/util.h"

TSimpleString::TSimpleString(const char* text) {
  size_t length = text ? std::strlen(text) : 0;
  char* copy = new char[length + 1];
  if (length) std::memcpy(copy, text, length);
  copy[length] = '\0';
  m_pText = copy;
}

TSimpleString::~TSimpleString() {
  delete[] m_pText;
  m_pText = "<deleted string>";
  delete m_pPropertyList;
  m_pPropertyList = nullptr;
}

TStringPool* TStringPool::g_pGlobal = nullptr;
TSimpleString* TStringPool::fg_pMemoEntry = nullptr;
const char* TStringPool::fg_pMemoText = nullptr;
int TStringPool::fg_nGlobalGeneration = 0;

// A pool of no buckets could hold nothing; one bucket keeps every name findable.
TStringPool::TStringPool(int size) : m_nBuckets(size < 1 ? 1 : size), m_pBuckets(new TPoolBucket[m_nBuckets]) {}

TStringPool::~TStringPool() {
  Empty();
  delete[] m_pBuckets;
  // The memo may name an entry just deleted; a later pool must not find it.
  fg_pMemoEntry = nullptr;
  fg_pMemoText = nullptr;
}

void TStringPool::InitializeGlobal() {
  if (g_pGlobal) return;
  g_pGlobal = new TStringPool(fg_nGlobalBucketCount);
  ++fg_nGlobalGeneration;
}

void TStringPool::FreeGlobal() {
  delete g_pGlobal;
  g_pGlobal = nullptr;
}

unsigned TStringPool::HashText(const char* name) {
  if (!name) return 0;
  uint32_t h = 0;
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(name); *p; ++p) {
    h = (h << 4) + *p;
    uint32_t g = h & 0xF0000000u;
    if (g) h ^= g >> 24;
    h &= ~g;
  }
  return h;
}

namespace {
bool SameName(const TSimpleString* entry, const char* name) {
  const char* text = entry->Get_Text();
  return text == name || std::strcmp(text, name) == 0;
}
}  // namespace

TSimpleString* TStringPool::Lookup(const char* name) {
  if (!name) name = "";  // one entry for both spellings of "no name"
  TPoolBucket& bucket = m_pBuckets[Hash(name)];
  TSimpleString* found = nullptr;
  int freeSlot = -1;
  for (int i = 0; i < 2; ++i) {
    TSimpleString* entry = bucket.m_pSlots[i];
    if (!entry) {
      freeSlot = i;
      break;
    }
    if (SameName(entry, name)) {
      found = entry;
      break;
    }
  }
  if (!found && freeSlot < 0) {
    for (CObject* object : bucket.m_Overflow) {
      TSimpleString* entry = static_cast<TSimpleString*>(object);
      if (SameName(entry, name)) {
        found = entry;
        break;
      }
    }
  }
  if (!found) {
    found = new TSimpleString(name);
    if (freeSlot >= 0)
      bucket.m_pSlots[freeSlot] = found;
    else
      bucket.m_Overflow.AddTail(found);
  }
  fg_pMemoEntry = found;
  fg_pMemoText = found->Get_Text();
  return found;
}

TSimpleString* TStringPool::Find(const char* name) const {
  if (!name) name = "";
  const TPoolBucket& bucket = m_pBuckets[Hash(name)];
  for (TSimpleString* entry : bucket.m_pSlots)
    if (entry && SameName(entry, name)) return entry;
  for (CObject* object : bucket.m_Overflow) {
    TSimpleString* entry = static_cast<TSimpleString*>(object);
    if (SameName(entry, name)) return entry;
  }
  return nullptr;
}

const char* TStringPool::Put(const char* name, const char* propertyName, TProperty* property) {
  TSimpleString* entry = Get(name);
  if (TPropertyList* list = entry->Get_PropertyList())
    list->PutProperty(propertyName, property, 1);
  else
    entry->Set_PropertyList(new TPropertyList(propertyName, property));
  return entry->Get_Text();
}

void TStringPool::Remove(const char* name, const char* propertyName) {
  if (TPropertyList* list = Get(name)->Get_PropertyList()) list->RemoveProperty(propertyName);
}

int TStringPool::Get_NameCount() const {
  int count = 0;
  for (int i = 0; i < m_nBuckets; ++i) {
    const TPoolBucket& bucket = m_pBuckets[i];
    count += (bucket.m_pSlots[0] != nullptr) + (bucket.m_pSlots[1] != nullptr) + bucket.m_Overflow.GetCount();
  }
  return count;
}

// Runs once, on the way to destruction: the slots are left as they are.
void TStringPool::Empty() {
  if (m_nBuckets < 1) return;
  int deleted = 0;
  int emptyBuckets = 0;
  for (int i = 0; i < m_nBuckets; ++i) {
    TPoolBucket& bucket = m_pBuckets[i];
    int before = deleted;
    for (TSimpleString* entry : bucket.m_pSlots) {
      if (!entry) continue;
      delete entry;
      ++deleted;
    }
    while (!bucket.m_Overflow.IsEmpty()) {
      delete static_cast<TSimpleString*>(bucket.m_Overflow.RemoveHead());
      ++deleted;
    }
    if (deleted == before) ++emptyBuckets;
  }
  TRACE("Emptying %d objects from hash table, %d empty buckets of the %d total.\n", deleted, emptyBuckets,
        m_nBuckets);
  (void)emptyBuckets;
}
