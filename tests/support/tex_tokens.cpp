#include "support/tex_tokens.h"

#include <memory>

#include "errors/parse_errors.h"
#include "symbols/string_pool.h"
#include "tex/input_file_loader.h"
#include "tex/macro_property.h"
#include "tex/token_source.h"

namespace ztest {
std::string DescribeToken(const TTexToken* token) {
  if (!token) return "<null>";
  if (token->IsCharacter()) return std::string(1, token->GetCharacter());
  if (token->IsControlCharacter()) return std::string("\\") + token->GetControlCharacter();
  if (const char* name = token->GetControlSequence()) return std::string("\\") + name;
  if (const char* text = token->GetSequence()) return text;
  return "<other>";
}

std::vector<std::string> ReadAll(TTexTokenSource& source, int expand, int skipBlanks) {
  std::vector<std::string> result;
  while (TTexToken* token = source.NextToken(skipBlanks, expand)) {
    result.push_back(DescribeToken(token));
    delete token;
  }
  return result;
}

std::vector<std::string> Tokens(const char* text, int expand) {
  TTexTokenSource source("test", text);
  return ReadAll(source, expand);
}

TMacroProperty* DefineMacro(const char* name, int arguments, const char* body) {
  const char* canonical = TStringPool::g_pGlobal->Put(name);
  std::string text = std::string("{") + body + "}";
  TTexTokenSource source("definition", text.c_str());
  auto* list = new CObList;
  source.PushDefiningMacroName(canonical);
  source.NextTokenList(list);
  source.PopDefiningMacroName();
  return TMacroProperty::PutDefinition(canonical, arguments, list);
}

void TokenSourceTest::SetUp() {
  TStringPool::FreeGlobal();
  TStringPool::InitializeGlobal();
  CZrError::ClearParseErrors();
  CZrError::Set_DialogParent(nullptr);
  CZrError::Set_ReportParseErrors(kReportAtEnd);
  CInputFileLoader::Set_Global(nullptr);
}

void TokenSourceTest::TearDown() {
  CZrError::ClearParseErrors();
  CZrError::Set_ReportParseErrors(kReportNone);
  CInputFileLoader::Set_Global(nullptr);
  TStringPool::FreeGlobal();
}

std::vector<std::string> TokenSourceTest::SavedErrorMessages() {
  std::vector<std::string> messages;
  for (CObject* error : CZrError::Get_SavedErrors()) messages.push_back(static_cast<CSavedError*>(error)->m_Message.c_str());
  return messages;
}
}  // namespace ztest
