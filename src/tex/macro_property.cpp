#include "tex/macro_property.h"

#include "symbols/global_strings.h"
#include "tex/tokens.h"

TMacroBody::TMacroBody(CObList* tokens) : m_pTokens(tokens ? tokens : new CObList) {}

TMacroBody::~TMacroBody() { DeleteTokens(); }

void TMacroBody::Release() {
  if (--m_nReferenceCount <= 0) delete this;
}

void TMacroBody::DeleteTokens() {
  if (!m_pTokens) return;
  for (CObject* token : *m_pTokens) delete token;
  delete m_pTokens;
  m_pTokens = nullptr;
}

TMacroProperty::TMacroProperty() : m_pBody(new TMacroBody(nullptr)) {}

TMacroProperty::TMacroProperty(int arguments, CObList* tokens)
    : m_nArguments(arguments < 0 ? 0 : arguments > fg_nMaxArguments ? fg_nMaxArguments : arguments),
      m_pBody(new TMacroBody(tokens)) {}

TMacroProperty::TMacroProperty(const TMacroProperty& other)
    : TProperty(other), m_nArguments(other.m_nArguments), m_pBody(other.m_pBody->Copy()) {}

TMacroProperty& TMacroProperty::operator=(const TMacroProperty& other) {
  if (this == &other) return *this;
  TMacroBody* body = other.m_pBody->Copy();
  m_pBody->Release();
  m_pBody = body;
  m_nArguments = other.m_nArguments;
  return *this;
}

TMacroProperty::~TMacroProperty() { m_pBody->Release(); }

void TMacroProperty::PrintTex(CString& out, int& column) const {
  for (CObject* token : *m_pBody->Get_Tokens()) static_cast<const TTexToken*>(token)->PrintTex(out, column);
}

void TMacroProperty::DescribeValue(CString& out) const {
  out.Format("%d argument%s: ", m_nArguments, m_nArguments == 1 ? "" : "s");
  int column = 0;
  out += "{";
  PrintTex(out, column);
  out += "}";
}

TMacroProperty* TMacroProperty::Get_Macro(const char* name) {
  TProperty* property = TStringPool::g_pGlobal->Get(name, TGlobalString::g_pMACRO);
  return property ? dynamic_cast<TMacroProperty*>(property) : nullptr;
}

TMacroProperty* TMacroProperty::PutDefinition(const char* name, int arguments, CObList* tokens) {
  TMacroProperty defining(arguments, tokens);
  TMacroProperty* stored = defining.CopyDerived();
  stored->m_pBody->Get_Tokens()->AddTail(new TTexMacroPropertyToken(stored));
  TStringPool::g_pGlobal->Put(name, TGlobalString::g_pMACRO, stored);
  return stored;
}
