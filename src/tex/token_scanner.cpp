// The token source's scanner: characters to tokens. Character classes are
// fixed here (no category codes), words and numbers come whole, and the
// ligatures of text are made here rather than by a font.
#include <cstring>
#include <string>

#include "symbols/global_strings.h"
#include "tex/token_source.h"

namespace {
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlankOrTab(char c) { return c == ' ' || c == '\t'; }

TTexToken* ControlSequence(const char* canonicalName) { return new TTexControlSequenceToken(canonicalName); }
}  // namespace

TTexToken* TTexTokenSource::MakeTextToken(const char* text, size_t length) {
  if (length == 1) return new TTexCharacterToken(text[0]);
  return new TTexSequenceToken(TStringPool::g_pGlobal->Put(std::string(text, length).c_str()));
}

TTexToken* TTexTokenSource::NextNormalInputToken() {
  char c;
  if (!m_pInput->GetCharacter(c)) return nullptr;
  TTexToken* token = nullptr;
  if (NextWhiteSpace(c, token)) return token;
  SetState(kInsideLine);
  if (IsLetter(c)) return NextSequence();
  if (IsDigit(c)) return NextNumber();
  switch (c) {
    case '\\': return NextBackSlash();
    case '.': return NextNumber();
    case '#': return NextSharp();
    case '$': return NextDollar();
    case '-': return NextDash();
    case '`': return NextBackQuote();
    case '\'': return NextQuote();
    case '?': return NextQuestionMark();
    case '!': return NextExclamationPoint();
    default: return new TTexCharacterToken(c);  // braces, & ^ _ ~ and the rest: the parser decides
  }
}

int TTexTokenSource::NextWhiteSpace(char& c, TTexToken*& token) {
  token = nullptr;
  for (;;) {
    switch (c) {
      case '%':
        // The comment takes its newline with it and leaves the state alone.
        while (c != '\n')
          if (!m_pInput->GetCharacter(c)) return 1;
        break;
      case '\n':
        if (m_nObeyLines) {
          token = new TTexCharacterToken('\n');
          SetState(kStartOfLine);
          return 1;
        }
        if (m_State == kFrozen) {
          token = new TTexCharacterToken(' ');
          return 1;
        }
        if (m_State == kStartOfLine) {
          token = ControlSequence(TGlobalString::g_ppar);  // a blank line ends the paragraph
          return 1;
        }
        if (m_State == kInsideLine) {
          token = new TTexCharacterToken(' ');
          SetState(kStartOfLine);
          return 1;
        }
        break;  // skipping blanks: so a line ending in a blank is followed by no paragraph end
      case ' ':
      case '\t':
        if (m_State == kFrozen) {
          token = new TTexCharacterToken(' ');
          return 1;
        }
        if (m_State == kInsideLine) {
          token = new TTexCharacterToken(' ');
          SetState(kSkipBlanks);
          return 1;
        }
        break;
      default:
        return 0;
    }
    if (!m_pInput->GetCharacter(c)) return 1;
  }
}

TTexToken* TTexTokenSource::NextBackSlash() {
  char c;
  if (!m_pInput->GetCharacter(c)) c = ' ';
  SetState(kSkipBlanks);
  if (IsLetter(c)) return NextControlSequence();
  switch (c) {
    case '{': return ControlSequence(TGlobalString::g_pLBRACE);
    case '}': return ControlSequence(TGlobalString::g_pRBRACE);
    case '\\': return ControlSequence(TGlobalString::g_pnewline);
    case '.': return ControlSequence(fg_pdot);
    case '^': return ControlSequence(fg_phat);
    case '~': return ControlSequence(fg_ptilde);
    case '"': return ControlSequence(TGlobalString::g_pCS_DOUBLEQUOTE);
    case '\'': return m_nTabbing ? new TTexControlCharacterToken(c) : ControlSequence(TGlobalString::g_pACUTE);
    case '=':
      return m_nTabbing ? new TTexControlCharacterToken(c) : ControlSequence(TGlobalString::g_pOVERBARACCENT);
    case '`': return m_nTabbing ? new TTexControlCharacterToken(c) : ControlSequence(TGlobalString::g_pGRAVE);
    default:
      // A control blank ("\ ", or a backslash before a line end) is itself a
      // blank in the line: what follows it is not skipped.
      if (c == ' ' || c == '\t' || c == '\n') SetState(kInsideLine);
      return new TTexControlCharacterToken(c);
  }
}

TTexToken* TTexTokenSource::NextControlSequence() {
  m_pInput->StartToken(1);
  char c;
  while (m_pInput->GetCharacter(c) && (IsLetter(c) || c == '@')) {
  }
  // \section* is the one name "section*": starred forms are names of their own.
  const char* text = m_pInput->FinishToken(m_pInput->GetLastCharacter() == '*');
  const char* name = TStringPool::g_pGlobal->Put(text);
  if (m_nTabbing && name == fg_pa) {
    // \a' and \a` are the tabbing forms of the accents.
    SetState(kSkipBlanks);
    if (m_pInput->GetCharacter(c)) {
      if (c == '\'') return ControlSequence(TGlobalString::g_pACUTE);
      if (c == '`') return ControlSequence(TGlobalString::g_pGRAVE);
      m_pInput->PutBackCharacter();
    }
    return ControlSequence(name);
  }
  if (name == TGlobalString::g_pverb) return NextVerb();
  SetState(kSkipBlanks);
  return ControlSequence(name);
}

TTexToken* TTexTokenSource::NextVerb() {
  // \verb|text| reads as \verb{text}: the text is taken raw, one sequence
  // token, so that its parser sees a one-argument command.
  std::string text;
  char delimiter, c;
  if (m_pInput->GetCharacter(delimiter)) {
    while (m_pInput->GetCharacter(c)) {
      if (c == delimiter) break;
      if (c == '\n') {
        m_pInput->PutBackCharacter();  // an unclosed \verb ends at the line end, which stays
        break;
      }
      text += c;
    }
  }
  PutBack(new TTexCharacterToken('}'));
  if (!text.empty()) PutBack(new TTexSequenceToken(TStringPool::g_pGlobal->Put(text.c_str())));
  PutBack(new TTexCharacterToken('{'));
  SetState(kInsideLine);
  return ControlSequence(TGlobalString::g_pverb);
}

TTexToken* TTexTokenSource::NextSequence() {
  // Letters, and digits too outside math: in math "x2" is a letter and a number.
  m_pInput->StartToken(1);
  char c;
  if (m_nMathMode) {
    while (m_pInput->GetCharacter(c) && IsLetter(c)) {
    }
  } else {
    while (m_pInput->GetCharacter(c) && (IsLetter(c) || IsDigit(c))) {
    }
  }
  const char* text = m_pInput->FinishToken(0);
  return MakeTextToken(text, std::strlen(text));
}

TTexToken* TTexTokenSource::NextNumber() {
  // Digits and points: "3.14." and "..." are single tokens, a full stop alone a character.
  m_pInput->StartToken(1);
  char c;
  while (m_pInput->GetCharacter(c) && (IsDigit(c) || c == '.')) {
  }
  const char* text = m_pInput->FinishToken(0);
  return MakeTextToken(text, std::strlen(text));
}

TTexToken* TTexTokenSource::NextSharp() {
  char c;
  if (!m_pInput->GetCharacter(c)) return new TTexCharacterToken('#');
  if (IsDigit(c)) return new TTexMacroArgToken(c - '0', PeekDefiningMacroName());
  if (c != '#') m_pInput->PutBackCharacter();  // "##" is one "#"
  return new TTexCharacterToken('#');
}

TTexToken* TTexTokenSource::NextDollar() {
  if (m_pInput->IsCharacter('$')) return new TTexSequenceToken(TGlobalString::g_pDISPLAYMATH);
  return new TTexCharacterToken('$');
}

TTexToken* TTexTokenSource::NextDash() {
  // In math every "-" is a minus; the next one is left for the next token.
  if (m_nMathMode || !m_pInput->IsCharacter('-')) return new TTexCharacterToken('-');
  if (m_pInput->IsCharacter('-')) return ControlSequence(TGlobalString::g_pEMDASH);
  return ControlSequence(TGlobalString::g_pENDASH);
}

TTexToken* TTexTokenSource::NextBackQuote() {
  if (m_pInput->IsCharacter('`')) return ControlSequence(TGlobalString::g_pOPENDOUBLEQUOTE);
  return new TTexCharacterToken('`');
}

TTexToken* TTexTokenSource::NextQuote() {
  if (m_pInput->IsCharacter('\'')) return ControlSequence(TGlobalString::g_pCLOSEDOUBLEQUOTE);
  return new TTexCharacterToken('\'');
}

TTexToken* TTexTokenSource::NextQuestionMark() {
  if (m_pInput->IsCharacter('`')) return ControlSequence(TGlobalString::g_pINVERTED_QM);
  return new TTexCharacterToken('?');
}

TTexToken* TTexTokenSource::NextExclamationPoint() {
  if (m_pInput->IsCharacter('`')) return ControlSequence(TGlobalString::g_pINVERTED_EP);
  return new TTexCharacterToken('!');
}

// ---- verbatim -------------------------------------------------------------------

void TTexTokenSource::StartVerbatimMode() {
  m_pInputReader = &TTexTokenSource::NextVerbatim;
  // The text starts on the line after \begin{verbatim}, when nothing but
  // blanks stands behind it.
  char c;
  while (m_pInput->GetCharacter(c)) {
    if (IsBlankOrTab(c)) continue;
    if (c != '\n') m_pInput->PutBackCharacter();
    break;
  }
}

void TTexTokenSource::StopVerbatimMode() { m_pInputReader = &TTexTokenSource::NextNormalInputToken; }

TTexToken* TTexTokenSource::NextVerbatim() { return NextSpecial(TGlobalString::g_pendverbatim); }

TTexToken* TTexTokenSource::NextSpecial(const char* endText) {
  // One line per token, raw, up to the line end or the end text.
  m_pInput->StartToken(0);
  bool any = false, found = false;
  char c;
  while (m_pInput->GetCharacter(c)) {
    any = true;
    if (c == '\n') break;
    if (m_pInput->FindString(endText)) {
      found = true;
      break;
    }
  }
  std::string line = m_pInput->FinishToken(1);
  if (!any) return nullptr;  // the end of input
  if (found) line.resize(line.size() - std::strlen(endText));
  while (!line.empty() && (IsBlankOrTab(line.back()) || line.back() == '\n')) line.pop_back();
  TTexToken* end = found ? new TTexSequenceToken(TStringPool::g_pGlobal->Put(endText)) : nullptr;
  // A line of nothing but the end text (indented or not) is the end text alone.
  if (end && line.empty()) return end;
  if (end) PutBack(end);
  if (line.empty()) line.push_back(' ');  // an empty line is one blank
  return new TTexSequenceToken(TStringPool::g_pGlobal->Put(line.c_str()));
}
