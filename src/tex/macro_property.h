// A macro definition: the property under _MACRO on a name, with a body that
// the defining node and the stored property share.
#pragma once

#include "framework/collections.h"
#include "symbols/properties.h"

// A body is shared by reference count: the defining node keeps its own
// property, and a later redefinition of the name must not free the tokens
// that node still prints.
class TMacroBody : public CObject {
 public:
  explicit TMacroBody(CObList* tokens);  // takes ownership; null is an empty body
  TMacroBody(const TMacroBody&) = delete;
  TMacroBody& operator=(const TMacroBody&) = delete;

  // Another holder: the same object, one more reference.
  TMacroBody* Copy() {
    ++m_nReferenceCount;
    return this;
  }
  // Deletes the body with its last holder.
  void Release();
  int Get_ReferenceCount() const { return m_nReferenceCount; }
  CObList* Get_Tokens() const { return m_pTokens; }  // of TTexToken, owned

 private:
  ~TMacroBody() override;  // through Release only
  void DeleteTokens();

  int m_nReferenceCount = 1;
  CObList* m_pTokens;
};

class TMacroProperty : public TProperty {
 public:
  static constexpr int fg_nMaxArguments = 9;

  TMacroProperty();
  // Takes ownership of tokens; the argument count is held to 0..9.
  TMacroProperty(int arguments, CObList* tokens);
  // Shares the body; a copy has no open expansions.
  TMacroProperty(const TMacroProperty& other);
  TMacroProperty& operator=(const TMacroProperty& other);
  ~TMacroProperty() override;

  TProperty* Copy() const override { return CopyDerived(); }
  TMacroProperty* CopyDerived() const { return new TMacroProperty(*this); }
  const char* KindName() const override { return "macro"; }
  void DescribeValue(CString& out) const override;
  // The body's tokens one after the other.
  void PrintTex(CString& out, int& column) const;

  int Get_ArgumentCount() const { return m_nArguments; }
  const CObList* Get_Tokens() const { return m_pBody->Get_Tokens(); }
  const TMacroBody* Get_Body() const { return m_pBody; }

  // Open expansions of this definition; the token source stops expanding a
  // name at a limit of it, which is what ends runaway recursion.
  int Get_ActiveCount() const { return m_nActive; }
  void IncrementActiveCount() { ++m_nActive; }
  void DecrementActiveCount() {
    if (m_nActive > 0) --m_nActive;
  }

  // The definition on a name, or null.
  static TMacroProperty* Get_Macro(const char* name);
  // Installs a definition as a \def does once its body is read: the stored
  // property is a second holder of the body, whose list gets the end mark
  // that points back at the stored property. Any old definition is deleted.
  // Takes ownership of tokens; returns the stored property.
  static TMacroProperty* PutDefinition(const char* name, int arguments, CObList* tokens);

 private:
  int m_nArguments = 0;
  int m_nActive = 0;
  TMacroBody* m_pBody;  // shared, never null
};
