#include "tex/tokens.h"

#include <cctype>
#include <cstring>

#include "symbols/string_pool.h"

void TTexCharacterToken::PrintTex(CString& out, int& column) const {
  out += m_c;
  column += 1;
}

TTexControlCharacterToken::TTexControlCharacterToken(char c)
    : m_c(std::isspace(static_cast<unsigned char>(c)) ? ' ' : c) {}

const char* TTexControlCharacterToken::GetControlSequence() const {
  const char name[2] = {m_c, '\0'};
  return TStringPool::g_pGlobal->Put(name);
}

void TTexControlCharacterToken::PrintTex(CString& out, int& column) const {
  out += '\\';
  out += m_c;
  column += 2;
}

void TTexControlSequenceToken::PrintTex(CString& out, int& column) const {
  out += '\\';
  out += m_pName;
  out += ' ';
  column += static_cast<int>(std::strlen(m_pName)) + 2;
}

int TTexSequenceToken::IsTexParameter() const {
  if (m_pText && m_pText[0] == '#' && m_pText[1] >= '1' && m_pText[1] <= '9' && m_pText[2] == '\0')
    return m_pText[1] - '0';
  return -1;
}

void TTexSequenceToken::PrintTex(CString& out, int& column) const {
  out += m_pText;
  column += static_cast<int>(std::strlen(m_pText));
}

namespace {
const char* MacroArgText(int number) {
  const char text[3] = {'#', static_cast<char>('0' + (number >= 0 && number <= 9 ? number : 0)), '\0'};
  return TStringPool::g_pGlobal->Put(text);
}
}  // namespace

TTexMacroArgToken::TTexMacroArgToken(int number, const char* macroName)
    : TTexSequenceToken(MacroArgText(number)), m_nArgument(number), m_pMacroName(macroName) {}
