// The one pool of interned names. Interning gives each name a canonical text
// pointer, so equal names compare by address everywhere else, and one place on
// which a list of typed properties hangs.
#pragma once

#include "framework/collections.h"
#include "framework/objects.h"
#include "symbols/properties.h"

// One interned name: the owned text and its owned property list (null until
// the first property arrives).
class TSimpleString : public CObject {
 public:
  explicit TSimpleString(const char* text);
  TSimpleString(const TSimpleString&) = delete;
  TSimpleString& operator=(const TSimpleString&) = delete;
  // Frees the text and leaves "<deleted string>" in its place, so a stale
  // reference prints as that rather than as freed memory.
  ~TSimpleString() override;

  // A reference, so that a holder of the field sees what the destructor leaves.
  const char* const& Get_Text() const { return m_pText; }
  TPropertyList* Get_PropertyList() const { return m_pPropertyList; }
  // Stores the pointer; a list that was there is not deleted.
  void Set_PropertyList(TPropertyList* list) { m_pPropertyList = list; }

 private:
  const char* m_pText;                       // owned heap copy while alive
  TPropertyList* m_pPropertyList = nullptr;  // owned
};

// Two inline slots cost no list node; the third and later names of a bucket go
// to the overflow list in order of creation.
class TPoolBucket : public CObject {
 public:
  TSimpleString* Get_Slot(int i) const { return m_pSlots[i]; }
  const CObList& Get_Overflow() const { return m_Overflow; }

 private:
  friend class TStringPool;
  TSimpleString* m_pSlots[2] = {nullptr, nullptr};
  CObList m_Overflow;
};

class TStringPool : public CObject {
 public:
  static constexpr int fg_nGlobalBucketCount = 1009;  // prime

  explicit TStringPool(int size);
  TStringPool(const TStringPool&) = delete;
  TStringPool& operator=(const TStringPool&) = delete;
  ~TStringPool() override;

  // The one pool of the process. InitializeGlobal makes it unless it is there;
  // FreeGlobal deletes it with every name and property.
  static TStringPool* g_pGlobal;
  static void InitializeGlobal();
  static void FreeGlobal();
  // Counts InitializeGlobal calls that made a pool, so that tables loaded into
  // a pool since freed can tell that they must load again.
  static int Get_GlobalGeneration() { return fg_nGlobalGeneration; }

  // The four-bit-shift hash of object-file symbol tables, then modulo the
  // bucket count. Null and "" go to bucket 0.
  static unsigned HashText(const char* name);
  int Hash(const char* name) const { return static_cast<int>(HashText(name) % static_cast<unsigned>(m_nBuckets)); }

  // Finds or interns (never null). A canonical pointer equal to the last one
  // asked about costs one comparison.
  TSimpleString* Get(const char* name) {
    if (name == fg_pMemoText && name) return fg_pMemoEntry;
    return Lookup(name);
  }
  // The canonical text: the interning call most code uses.
  const char* Put(const char* name) { return Get(name)->Get_Text(); }
  // Takes ownership of property, replacing (and deleting) any value of that key.
  const char* Put(const char* name, const char* propertyName, TProperty* property);
  // Null if the name has no such property; interns name in any case.
  TProperty* Get(const char* name, const char* propertyName) {
    const TPropertyList* list = Get(name)->Get_PropertyList();
    return list ? list->GetProperty(propertyName) : nullptr;
  }
  TPropertyList* GetPropertyList(const char* name) { return Get(name)->Get_PropertyList(); }
  void SetPropertyList(const char* name, TPropertyList* list) { Get(name)->Set_PropertyList(list); }
  // Removes one property; the name itself stays (names are never removed).
  void Remove(const char* name, const char* propertyName);

  // Typed readers: null (or 0) when the property is absent or of another kind.
  template <class P>
  P* GetTyped(const char* name, const char* propertyName) {
    TProperty* property = Get(name, propertyName);
    return property && property->Kind() == P::fg_Kind ? static_cast<P*>(property) : nullptr;
  }
  // The flag of a boolean property; absent reads as false.
  int GetBoolean(const char* name, const char* propertyName) {
    TBooleanProperty* property = GetTyped<TBooleanProperty>(name, propertyName);
    return property ? property->Get_Value() : 0;
  }
  TFunctionProperty* GetFunction(const char* name, const char* propertyName) {
    return GetTyped<TFunctionProperty>(name, propertyName);
  }
  TColorProperty* GetColor(const char* name, const char* propertyName) {
    return GetTyped<TColorProperty>(name, propertyName);
  }
  TFontIndexProperty* GetFontIndex(const char* name, const char* propertyName) {
    return GetTyped<TFontIndexProperty>(name, propertyName);
  }
  TNodeProperty* GetNode(const char* name, const char* propertyName) {
    return GetTyped<TNodeProperty>(name, propertyName);
  }

  // For tools and tests: looks without interning and without touching the memo.
  TSimpleString* Find(const char* name) const;
  int Get_BucketCount() const { return m_nBuckets; }
  const TPoolBucket& Get_Bucket(int i) const { return m_pBuckets[i]; }
  int Get_NameCount() const;

 private:
  TSimpleString* Lookup(const char* name);
  void Empty();

  int m_nBuckets;
  TPoolBucket* m_pBuckets;  // owned array of m_nBuckets

  // The one-entry memo is shared by all pools: there is one pool in the process.
  static TSimpleString* fg_pMemoEntry;
  static const char* fg_pMemoText;
  static int fg_nGlobalGeneration;
};
