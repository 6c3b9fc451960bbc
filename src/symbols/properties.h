// Typed values hung on interned names, and the list that holds them.
//
// A property list is short and walked from the head with pointer compares:
// keys are canonical pool texts, so a key is found by its address alone.
#pragma once

#include "framework/color_ref.h"
#include "framework/cstring.h"
#include "framework/objects.h"
#include "symbols/copyable_node.h"
#include "symbols/font_tag.h"

class TFmtNode;
class TFmtControlSequenceNode;
class TTexTokenSource;
class TFmtContext;

// The handler signatures stored under _PARSER_TEX, and under _EXTENT and _DRAW.
using TTexParserFunction = TFmtNode* (*)(TFmtControlSequenceNode*, TTexTokenSource&);
using TFmtHandlerFunction = void (*)(TFmtNode*, int position, TFmtContext&);

// What Kind() answers, so that typed readers need no dynamic_cast.
enum KPropertyKind : int {
  k_PropertyNone = 0,  // the base class
  k_PropertyBoolean,
  k_PropertyInteger,
  k_PropertyString,
  k_PropertyFunction,
  k_PropertyColor,
  k_PropertyNode,
  k_PropertyFontIndex,
};

class TProperty : public CObject {
 public:
  TProperty() = default;
  ~TProperty() override = default;
  // Property lists are never written to an archive.
  void Serialize(CArchive&) override {}
  virtual TProperty* Copy() const { return new TProperty(*this); }

  virtual KPropertyKind Kind() const { return k_PropertyNone; }
  // For developers' tools: the kind's name and the value as text.
  virtual const char* KindName() const { return "property"; }
  virtual void DescribeValue(CString& out) const { out.Empty(); }

 protected:
  TProperty(const TProperty&) = default;
  TProperty& operator=(const TProperty&) = default;
};

class TBooleanProperty : public TProperty {
 public:
  static constexpr KPropertyKind fg_Kind = k_PropertyBoolean;
  explicit TBooleanProperty(int value) : m_nValue(value) {}
  TBooleanProperty(const TBooleanProperty&) = default;
  TBooleanProperty& operator=(const TBooleanProperty&) = default;
  TProperty* Copy() const override { return new TBooleanProperty(*this); }
  KPropertyKind Kind() const override { return fg_Kind; }
  const char* KindName() const override { return "boolean"; }
  void DescribeValue(CString& out) const override;

  int Get_Value() const { return m_nValue; }
  void Set_Value(int value) { m_nValue = value; }

 private:
  int m_nValue;
};

class TIntegerProperty : public TProperty {
 public:
  static constexpr KPropertyKind fg_Kind = k_PropertyInteger;
  explicit TIntegerProperty(int value) : m_nValue(value) {}
  TIntegerProperty(const TIntegerProperty&) = default;
  TIntegerProperty& operator=(const TIntegerProperty&) = default;
  TProperty* Copy() const override { return new TIntegerProperty(*this); }
  KPropertyKind Kind() const override { return fg_Kind; }
  const char* KindName() const override { return "integer"; }
  void DescribeValue(CString& out) const override;

  int Get_Value() const { return m_nValue; }
  void Set_Value(int value) { m_nValue = value; }

 private:
  int m_nValue;
};

// The text is shared, never copied: it must be a pool text or a literal.
class TStringProperty : public TProperty {
 public:
  static constexpr KPropertyKind fg_Kind = k_PropertyString;
  explicit TStringProperty(const char* text) : m_pText(text) {}
  TStringProperty(const TStringProperty&) = default;
  TStringProperty& operator=(const TStringProperty&) = default;
  ~TStringProperty() override { m_pText = nullptr; }  // not owned: only forgotten
  TProperty* Copy() const override { return new TStringProperty(*this); }
  KPropertyKind Kind() const override { return fg_Kind; }
  const char* KindName() const override { return "string"; }
  void DescribeValue(CString& out) const override;

  const char* Get_Text() const { return m_pText; }

 private:
  const char* m_pText;
};

// A plain function of any signature. Whoever reads it names the signature it
// was stored with; the round trip through the generic pointer type is exact.
class TFunctionProperty : public TProperty {
 public:
  static constexpr KPropertyKind fg_Kind = k_PropertyFunction;
  using TCodePointer = void (*)();

  TFunctionProperty() = default;
  template <class R, class... A>
  explicit TFunctionProperty(R (*function)(A...)) : m_pFunction(reinterpret_cast<TCodePointer>(function)) {}
  TFunctionProperty(const TFunctionProperty&) = default;
  TFunctionProperty& operator=(const TFunctionProperty&) = default;
  TProperty* Copy() const override { return new TFunctionProperty(*this); }
  KPropertyKind Kind() const override { return fg_Kind; }
  const char* KindName() const override { return "function"; }
  void DescribeValue(CString& out) const override;

  template <class F>
  F Get_Function() const {
    return reinterpret_cast<F>(m_pFunction);
  }
  TTexParserFunction Get_TexParser() const { return Get_Function<TTexParserFunction>(); }
  TFmtHandlerFunction Get_Handler() const { return Get_Function<TFmtHandlerFunction>(); }
  bool IsNull() const { return m_pFunction == nullptr; }

 private:
  TCodePointer m_pFunction = nullptr;
};

class TColorProperty : public TProperty {
 public:
  static constexpr KPropertyKind fg_Kind = k_PropertyColor;
  TColorProperty() : m_Color(0, 0, 0, "black") {}
  explicit TColorProperty(const CColorRef& color) : m_Color(color) {}
  TColorProperty(const TColorProperty&) = default;
  TColorProperty& operator=(const TColorProperty&) = default;
  TProperty* Copy() const override { return new TColorProperty(*this); }
  KPropertyKind Kind() const override { return fg_Kind; }
  const char* KindName() const override { return "colour"; }
  void DescribeValue(CString& out) const override;

  // Mutable: the device allocates the pixel on the stored colour once.
  CColorRef& Get_Color() { return m_Color; }
  const CColorRef& Get_Color() const { return m_Color; }

 private:
  CColorRef m_Color;
};

// Owns its node: copies clone it, the destructor deletes it.
class TNodeProperty : public TProperty {
 public:
  static constexpr KPropertyKind fg_Kind = k_PropertyNode;
  TNodeProperty() = default;
  explicit TNodeProperty(TCopyableNode* node) : m_pNode(node) {}  // takes ownership
  TNodeProperty(const TNodeProperty& other);
  TNodeProperty& operator=(const TNodeProperty& other);
  ~TNodeProperty() override;
  TProperty* Copy() const override { return new TNodeProperty(*this); }
  KPropertyKind Kind() const override { return fg_Kind; }
  const char* KindName() const override { return "node"; }
  void DescribeValue(CString& out) const override;

  TCopyableNode* Get_Node() const { return m_pNode; }
  // The node as the class it was stored as (the reader knows: one key, one class).
  template <class T>
  T* Get_NodeAs() const {
    return static_cast<T*>(m_pNode);
  }

 private:
  TCopyableNode* m_pNode = nullptr;  // owned
};

// Which glyph a symbol name draws: a family tag and a character code.
class TFontIndexProperty : public TProperty {
 public:
  static constexpr KPropertyKind fg_Kind = k_PropertyFontIndex;
  TFontIndexProperty() = default;
  TFontIndexProperty(KFontTag tag, int code) : m_Tag(tag), m_nCode(code) {}
  TFontIndexProperty(const TFontIndexProperty&) = default;
  TFontIndexProperty& operator=(const TFontIndexProperty&) = default;
  TProperty* Copy() const override { return new TFontIndexProperty(*this); }
  KPropertyKind Kind() const override { return fg_Kind; }
  const char* KindName() const override { return "font index"; }
  void DescribeValue(CString& out) const override;

  KFontTag Get_FontTag() const { return m_Tag; }
  int Get_Code() const { return m_nCode; }

 private:
  KFontTag m_Tag = k_FontTagCurrent;
  int m_nCode = 0;
};

// One pair of a list: the key is a canonical pool text (not owned), the value
// is owned.
class TKeyValue : public CObject {
 public:
  TKeyValue(const char* key, TProperty* value) : m_pKey(key), m_pValue(value) {}
  TKeyValue(const TKeyValue&) = delete;
  TKeyValue& operator=(const TKeyValue&) = delete;
  ~TKeyValue() override { delete m_pValue; }

  const char* Get_Key() const { return m_pKey; }
  TProperty* Get_Value() const { return m_pValue; }
  // Stores the new value and hands back the old one, which it does not delete.
  TProperty* SetValue(TProperty* value) {
    TProperty* old = m_pValue;
    m_pValue = value;
    return old;
  }
  const TKeyValue* Get_Next() const { return m_pNext; }

 private:
  friend class TPropertyList;
  const char* m_pKey;
  TProperty* m_pValue;  // owned
  TKeyValue* m_pNext = nullptr;
};

// A singly linked list of pairs, at most one per key; the newest key first.
class TPropertyList : public CObject {
 public:
  TPropertyList() = default;
  TPropertyList(const char* key, TProperty* value);  // takes ownership of value
  // Deep: every value is copied through its Copy, the order is kept.
  TPropertyList(const TPropertyList& other);
  TPropertyList& operator=(const TPropertyList& other);
  ~TPropertyList() override;
  void Serialize(CArchive&) override {}

  // Keys compare as pointers: a key must be the canonical pool text.
  TProperty* GetProperty(const char* key) const {
    for (const TKeyValue* pair = m_pHead; pair; pair = pair->m_pNext)
      if (pair->m_pKey == key) return pair->m_pValue;
    return nullptr;
  }
  // Takes ownership of value. An existing key keeps its place and gets the new
  // value; with deleteOld the old value is deleted, else the caller keeps it.
  // A new key goes to the head.
  void PutProperty(const char* key, TProperty* value, int deleteOld);
  // Deletes the pair of that key and its value; an absent key is no error.
  void RemoveProperty(const char* key);

  const TKeyValue* Get_Head() const { return m_pHead; }
  int GetCount() const;

 private:
  void DeleteAll();
  void AppendCopiesOf(const TPropertyList& other);
  TKeyValue* m_pHead = nullptr;  // owned chain
};
