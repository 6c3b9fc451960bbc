// The token source's reading layers: the token stack with the ends of macro
// bodies, conditionals and \newif, the main read with expansion, macro
// arguments and the number readers. The scanner is in token_scanner.cpp,
// \input in token_input_files.cpp.
#include "tex/token_source.h"

#include <cstdlib>
#include <cstring>

#include "errors/parse_errors.h"
#include "symbols/global_strings.h"
#include "tex/macro_property.h"

int TTexTokenSource::fg_nInitGeneration = 0;

namespace {
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool EndsWith(const char* text, const char* suffix) {
  size_t length = std::strlen(text), suffixLength = std::strlen(suffix);
  return length >= suffixLength && std::strcmp(text + length - suffixLength, suffix) == 0;
}

// A name with the control sequence's first two letters "if".
bool IsIfName(const char* name) { return name[0] == 'i' && name[1] == 'f'; }

// One level of conditional or \csname nesting, undone also when an \input
// inside it throws.
class TNestingLevel {
 public:
  explicit TNestingLevel(int& depth) : m_nDepth(depth) { ++m_nDepth; }
  TNestingLevel(const TNestingLevel&) = delete;
  TNestingLevel& operator=(const TNestingLevel&) = delete;
  ~TNestingLevel() { --m_nDepth; }

 private:
  int& m_nDepth;
};
}  // namespace

void TTexTokenSource::Init() {
  if (fg_nInitGeneration == TStringPool::Get_GlobalGeneration()) return;
  fg_nInitGeneration = TStringPool::Get_GlobalGeneration();
  TStringPool* pool = TStringPool::g_pGlobal;
  fg_pinputonce = pool->Put("inputonce");
  fg_pdot = pool->Put("dot");
  fg_phat = pool->Put("hat");
  fg_ptilde = pool->Put("tilde");
  fg_pa = pool->Put("a");
}

void TTexTokenSource::InitMembers() {
  TGlobalString::Initialize();
  Init();
  m_pInput = std::make_unique<TInputStack>();
  m_pTokens = std::make_unique<TTexTokenStack>();
}

TTexTokenSource::TTexTokenSource(const char* sourceName, FILE* file) {
  InitMembers();
  m_pInput->InsertStream(new TFileInputStream(file, sourceName ? sourceName : ""));
  SetSourceName(sourceName);
}

TTexTokenSource::TTexTokenSource(const char* sourceName, const char* text) {
  InitMembers();
  m_pInput->InsertStream(new TStringInputStream(text, sourceName ? sourceName : ""));
  SetSourceName(sourceName);
}

TTexTokenSource::~TTexTokenSource() {
  // Levels of macros whose end was never read (environments have no end mark).
  while (!m_MacroTokens.empty()) PopMacroArgs(1);
}

void TTexTokenSource::Error(unsigned id) const { CZrError::TexParseError(id, GetLineNumber(), GetSourceName()); }

void TTexTokenSource::Error(const char* message) const {
  CZrError::TexParseError(message, GetLineNumber(), GetSourceName());
}

// ---- the stack layer ---------------------------------------------------------

void TTexTokenSource::SkipStackToken() {
  if (m_pTokens->IsRecording() && m_pTokens->GetCurrentToken()) m_pTokens->UnstackCurrentToken();
  m_pTokens->SkipCurrentToken();
}

TTexToken* TTexTokenSource::NextStackToken() {
  while (TTexToken* token = m_pTokens->NextToken()) {
    if (token->IsCharacter(' ')) {
      if (m_State == kSkipBlanks) {
        SkipStackToken();
        continue;
      }
      SetState(kSkipBlanks);
    } else if (token->IsControlSequence(TGlobalString::g_ppar) ||
               token->IsControlSequence(TGlobalString::g_pendgraf)) {
      SetState(kStartOfLine);
    } else {
      SetState(kInsideLine);
    }
    if (TTexMacroArgToken* argument = token->IsTexMacroArg()) {
      if (!argument->GetMacroName()) argument->SetMacroName(PeekDefiningMacroName());
    } else if (TMacroProperty* macro = token->IsTexMacroProperty()) {
      // The end of a macro's body.
      macro->DecrementActiveCount();
      PopMacroArgs(macro->Get_ArgumentCount());
      if (macro->Get_ArgumentCount() == 0 || m_nMathMode) SetState(kSkipBlanks);
      SkipStackToken();
      continue;
    }
    return token;
  }
  m_pTokens->MakeCurrentToken(NextInputToken());
  return m_pTokens->GetCurrentToken();
}

// ---- conditionals and \newif ---------------------------------------------------

TTexToken* TTexTokenSource::NextTokenUnexpanded() {
  if (m_bWaitingForFile) return nullptr;
  for (;;) {
    TTexToken* token = NextStackToken();
    if (!token) return nullptr;
    const char* name = token->IsControlCharacter() ? nullptr : token->GetControlSequence();
    if (!name) return m_pTokens->UseCurrentToken();

    if (name == TGlobalString::g_pnewif) {
      SkipStackToken();
      SetState(kSkipBlanks);
      TTexToken* next = NextStackToken();
      if (!next) return nullptr;
      const char* newName = next->GetControlSequence();
      if (newName && !next->IsControlCharacter() && IsIfName(newName)) {
        DefineNewIf(newName);
        SkipStackToken();
        continue;
      }
      return m_pTokens->UseCurrentToken();
    }
    // Only the switches that \newif made carry the property, and they all
    // end in "true" or "false": other names need no lookup.
    if ((EndsWith(name, "true") || EndsWith(name, "false")) &&
        TStringPool::g_pGlobal->GetTyped<TBooleanProperty>(name, TGlobalString::g_pnewif)) {
      SwitchNewIf(name, TStringPool::g_pGlobal->GetBoolean(name, TGlobalString::g_pnewif));
      SkipStackToken();
      continue;
    }
    if (!IsIfName(name)) return m_pTokens->UseCurrentToken();

    bool isCase = name == TGlobalString::g_pifcase;
    TBooleanProperty* value = nullptr;
    if (!isCase && name != TGlobalString::g_pifzephrin && name != TGlobalString::g_piftrue &&
        name != TGlobalString::g_piffalse && name != TGlobalString::g_pifmmode) {
      value = TStringPool::g_pGlobal->GetTyped<TBooleanProperty>(name, TGlobalString::g_pifval);
      if (!value) return m_pTokens->UseCurrentToken();  // \if and the rest: ordinary tokens
    }
    if (m_nNesting >= fg_nMaxNesting) {
      // Dropped, not returned: a conditional kept as text would be evaluated
      // again each time an enclosing branch is replayed.
      CZrError::TexParseError(60002u, 0, nullptr);
      SkipStackToken();
      continue;
    }
    SkipStackToken();
    TNestingLevel level(m_nNesting);
    int k;
    if (isCase) {
      CString number;
      NextPositiveInteger(number);
      k = std::atoi(number);
    } else if (value) {
      k = value->Get_Value() ? 0 : -1;
    } else if (name == TGlobalString::g_piffalse) {
      k = -1;
    } else if (name == TGlobalString::g_pifmmode) {
      k = m_nMathMode ? 0 : -1;
    } else {
      k = 0;
    }
    IfCaseElseFi(k);
  }
}

void TTexTokenSource::IfCaseElseFi(int k) {
  std::vector<TTexToken*> kept;
  // An \input in a branch may throw while the branch is gathered.
  struct TKeptGuard {
    std::vector<TTexToken*>& tokens;
    ~TKeptGuard() {
      for (TTexToken* token : tokens) delete token;
    }
  } guard{kept};
  int i = 0;
  while (TTexToken* token = NextTokenUnexpanded()) {
    if (token->IsControlSequence(TGlobalString::g_pfi)) {
      delete token;
      break;
    }
    if (token->IsControlSequence(TGlobalString::g_por)) {
      ++i;
      delete token;
    } else if (token->IsControlSequence(TGlobalString::g_pelse)) {
      if (k < 0 || k > i) k = -1;
      i = -1;
      delete token;
    } else if (i == k) {
      kept.push_back(token);
    } else {
      delete token;
    }
  }
  // One owning stream reads the branch in its order, as putting the tokens
  // back one by one in reverse would.
  if (kept.empty()) return;
  std::vector<TTexToken*> branch;
  branch.swap(kept);  // the stream owns them now, not the guard
  m_pTokens->PutBackStream(new TTexBufferTokenStream(std::move(branch), true));
}

void TTexTokenSource::DefineNewIf(const char* name) {
  CString stem(name + 2);
  TStringPool* pool = TStringPool::g_pGlobal;
  pool->Put(name, TGlobalString::g_pifval, new TBooleanProperty(0));
  pool->Put(stem + "false", TGlobalString::g_pnewif, new TBooleanProperty(0));
  pool->Put(stem + "true", TGlobalString::g_pnewif, new TBooleanProperty(1));
}

void TTexTokenSource::SwitchNewIf(const char* name, int value) {
  const char* suffix = value ? "true" : "false";
  if (!EndsWith(name, suffix)) return;
  CString conditional = CString("if") + CString(name, std::strlen(name) - std::strlen(suffix));
  TStringPool* pool = TStringPool::g_pGlobal;
  if (TBooleanProperty* property = pool->GetTyped<TBooleanProperty>(conditional, TGlobalString::g_pifval))
    property->Set_Value(value);
  else
    pool->Put(conditional, TGlobalString::g_pifval, new TBooleanProperty(value));
}

// ---- the main read -------------------------------------------------------------

TTexToken* TTexTokenSource::ReadCsname() {
  m_State = kSkipBlanks;  // blanks before the name don't count, even in a frozen read
  TNestingLevel level(m_nNesting);
  CString text;
  std::unique_ptr<TTexToken> token(NextToken(1, 0));
  m_State = kFrozen;  // blanks inside the name are part of it
  for (;;) {
    if (!token || token->IsControlSequence(TGlobalString::g_pendcsname)) break;
    AppendTokenToString(token.get(), text);
    token.reset(NextToken(0, 0));
  }
  m_State = kSkipBlanks;
  return new TTexControlSequenceToken(TStringPool::g_pGlobal->Put(text));
}

TTexToken* TTexTokenSource::NextToken(int skipBlanks, int expand) {
  if (skipBlanks) SetState(kSkipBlanks);
  for (;;) {
    std::unique_ptr<TTexToken> token(NextTokenUnexpanded());
    if (!token) return nullptr;
    const char* name = token->IsControlCharacter() ? nullptr : token->GetControlSequence();

    if (name && (name == TGlobalString::g_pbegin || name == TGlobalString::g_pend)) {
      // \begin{center} is the one control sequence "begincenter", expanded or not.
      if (const char* environment = GetRawArgument()) {
        CString joined = CString(name) + environment;
        token = std::make_unique<TTexControlSequenceToken>(TStringPool::g_pGlobal->Put(joined));
        if (name == TGlobalString::g_pbegin) SetState(kSkipBlanks);
        name = token->GetControlSequence();
      }
    } else if (name && name == TGlobalString::g_pcsname && m_DefiningMacroNames.empty()) {
      if (m_nNesting >= fg_nMaxNesting) {
        CZrError::TexParseError(60002u, 0, nullptr);
        return token.release();
      }
      token.reset(ReadCsname());
      name = token->GetControlSequence();
    }
    if (!expand) return token.release();

    if (!name && !token->IsControlCharacter()) {
      if (TTexMacroArgToken* argument = token->IsTexMacroArg()) {
        ExpandMacroArg(argument->GetArgumentNumber(), argument->GetMacroName());
        continue;
      }
      return token.release();
    }
    const char* lookupName = name ? name : token->GetControlSequence();
    if (TMacroProperty* macro = TMacroProperty::Get_Macro(lookupName)) {
      if (macro->Get_ActiveCount() >= fg_nMaxActiveExpansions) {
        CZrError::TexParseError(60002u, 0, nullptr);
        return token.release();
      }
      macro->IncrementActiveCount();
      PushMacroArgs(macro->Get_ArgumentCount(), token.release());
      if (!macro->Get_Tokens()->IsEmpty()) m_pTokens->PutBackList(macro->Get_Tokens());
      continue;
    }
    if (name && (name == TGlobalString::g_pinput || name == TGlobalString::g_pinclude || name == fg_pinputonce)) {
      token.reset();
      try {
        InsertInputFile(0);  // \inputonce too reads the file again each time, for now
      } catch (CInputFileException&) {
        if (!m_bStopAtMissingFile) throw;
        m_bWaitingForFile = 1;
      }
      continue;
    }
    return token.release();
  }
}

// ---- macro arguments -------------------------------------------------------------

void TTexTokenSource::PushMacroArgs(int n, TTexToken* token) {
  if (n <= 0) {
    delete token;
    return;
  }
  if (n > fg_nMacroArgLists - 1) n = fg_nMacroArgLists - 1;
  // The arguments are read before the level is pushed: reading them may pass
  // the end of an enclosing body, whose end mark pops that body's level, and
  // must not pop this one.
  TTexTokenStream* arguments[fg_nMacroArgLists - 1] = {};
  const char* outerCapture = m_pCapturingMacroName;
  m_pCapturingMacroName = token->GetControlSequence();
  for (int i = 0; i < n; ++i) arguments[i] = NextTokenStream();
  m_pCapturingMacroName = outerCapture;
  for (int i = 0; i < fg_nMacroArgLists - 1; ++i) m_MacroArgs[i].push_back(arguments[i]);
  m_MacroTokens.push_back(token);
}

void TTexTokenSource::PopMacroArgs(int n) {
  if (n <= 0 || m_MacroTokens.empty()) return;
  for (auto& list : m_MacroArgs) {
    delete list.back();
    list.pop_back();
  }
  delete m_MacroTokens.back();
  m_MacroTokens.pop_back();
}

int TTexTokenSource::FindMacroLevel(const char* macroName) const {
  if (!macroName) return -1;
  for (size_t level = m_MacroTokens.size(); level-- > 0;)
    if (m_MacroTokens[level]->GetControlSequence() == macroName) return static_cast<int>(level);
  return -1;
}

void TTexTokenSource::ExpandMacroArg(int number, const char* macroName) {
  int level = FindMacroLevel(macroName);
  if (level < 0 || number < 1 || number > fg_nMacroArgLists - 1) return;
  if (TTexTokenStream* stream = m_MacroArgs[number - 1][static_cast<size_t>(level)])
    m_pTokens->PutBackStream(stream->Copy());
}

bool TTexTokenSource::SubstituteMacroArg(TTexToken* token) {
  TTexMacroArgToken* argument = token->IsTexMacroArg();
  if (!argument || !argument->GetMacroName()) return false;
  const int number = argument->GetArgumentNumber();
  const char* macroName = argument->GetMacroName();
  if (FindMacroLevel(macroName) < 0) {
    // An argument naming the parameters of the very macro that reads it
    // would, once that macro is open, stand for itself for ever: it means
    // nothing, and goes. Any other stays, to be resolved when it is read.
    if (macroName != m_pCapturingMacroName) return false;
    SkipStackToken();
    return true;
  }
  SkipStackToken();
  ExpandMacroArg(number, macroName);
  return true;
}

TTexTokenStream* TTexTokenSource::NextTokenStream() {
  EState saved = m_State;
  SetState(kSkipBlanks);
  TTexToken* token = NextStackToken();
  while (token && SubstituteMacroArg(token)) token = NextStackToken();
  m_State = kFrozen;
  TTexTokenStream* result = nullptr;
  if (!token) {
    // nothing: the end of input
  } else if (token->IsCharacter('{')) {
    SkipStackToken();
    m_pTokens->StartTokenStream(0);
    int depth = 1;
    while (depth > 0) {
      TTexToken* inner = NextStackToken();
      if (!inner) {
        // The input ended inside the group: it closes itself.
        PutBack(new TTexCharacterToken('}'));
        continue;
      }
      if (SubstituteMacroArg(inner)) continue;
      if (inner->IsCharacter('{'))
        ++depth;
      else if (inner->IsCharacter('}'))
        --depth;
    }
    result = m_pTokens->FinishTokenStream(0);
    m_pTokens->SkipCurrentToken();  // the closing brace
  } else if (token->IsSequence(nullptr) && !token->IsTexMacroArg()) {
    // A word gives its first letter; "#1" in a body is an argument whole.
    const char* text = token->GetSequence();
    result = new TTexSingletonTokenStream(MakeTextToken(text, 1));
    SkipStackToken();
    PutBackRest(text);
  } else {
    result = new TTexSingletonTokenStream(m_pTokens->UseCurrentToken());
  }
  m_State = saved;
  return result;
}

void TTexTokenSource::NextTokenList(CObList* list) {
  EState saved = m_State;
  SetState(kSkipBlanks);
  TTexToken* token = NextStackToken();
  m_State = kFrozen;
  if (!token) {
    // nothing: the end of input
  } else if (token->IsCharacter('{')) {
    SkipStackToken();
    int depth = 1;
    while (depth > 0) {
      TTexToken* inner = NextStackToken();
      if (!inner) {
        // The missing closing braces; the last one is the body's own.
        for (; depth > 1; --depth) list->AddTail(new TTexCharacterToken('}'));
        break;
      }
      if (inner->IsCharacter('{')) {
        ++depth;
      } else if (inner->IsCharacter('}') && --depth == 0) {
        SkipStackToken();
        break;
      }
      // Blanks after a control word are dropped as in a file; all others kept.
      m_State = inner->IsControlSequence(nullptr) ? kSkipBlanks : kFrozen;
      list->AddTail(m_pTokens->UseCurrentToken());
    }
  } else if (token->IsSequence(nullptr) && !token->IsTexMacroArg()) {
    const char* text = token->GetSequence();
    list->AddTail(MakeTextToken(text, 1));
    SkipStackToken();
    PutBackRest(text);
  } else {
    list->AddTail(m_pTokens->UseCurrentToken());
  }
  m_State = saved;
}

const char* TTexTokenSource::GetRawArgument() {
  TTexTokenStream* stream = NextTokenStream();
  if (!stream) return nullptr;
  // A NUL character token marks the end: the input never makes one.
  PutBack(new TTexCharacterToken('\0'));
  m_pTokens->PutBackStream(stream);
  CString text;
  while (TTexToken* token = NextStackToken()) {
    if (token->IsCharacter('\0')) {
      SkipStackToken();
      break;
    }
    AppendTokenToString(token, text);
    SkipStackToken();
  }
  if (text.IsEmpty()) text = " ";
  return TStringPool::g_pGlobal->Put(text);
}

void TTexTokenSource::AppendTokenToString(TTexToken* token, CString& text) {
  if (token->IsCharacter()) {
    text += token->GetCharacter();
  } else if (token->IsControlCharacter()) {
    text += '\\';
    text += token->GetControlCharacter();
  } else if (const char* name = token->GetControlSequence()) {
    text += '\\';
    text += name;
  } else if (TTexMacroArgToken* argument = token->IsTexMacroArg()) {
    ExpandMacroArg(argument->GetArgumentNumber(), argument->GetMacroName());
  } else if (const char* sequence = token->GetSequence()) {
    text += sequence;
  }
}

void TTexTokenSource::PutBackRest(const char* text) {
  if (!text || !text[0] || !text[1]) return;
  PutBack(MakeTextToken(text + 1, std::strlen(text + 1)));
}

// ---- numbers -----------------------------------------------------------------------

void TTexTokenSource::NextPositiveInteger(CString& text) {
  std::unique_ptr<TTexToken> token(NextToken(1, 1));
  if (token && token->IsCharacter() && IsDigit(token->GetCharacter())) {
    text = CString(token->GetCharacter(), 1);
  } else if (token && token->GetSequence() && !token->IsTexMacroArg() && IsDigit(token->GetSequence()[0])) {
    text = token->GetSequence();
  } else {
    PutBack(token.release());
    text = "0";
  }
}

void TTexTokenSource::NextGeneralNumber(CString& text) {
  text.Empty();
  std::unique_ptr<TTexToken> token(NextToken(1, 1));
  if (token && token->IsCharacter('-')) {
    text = "-";
    token.reset(NextToken(1, 1));
  }
  if (token && token->IsCharacter() && IsDigit(token->GetCharacter())) {
    text += token->GetCharacter();
  } else if (token && token->GetSequence() && !token->IsTexMacroArg() &&
             (IsDigit(token->GetSequence()[0]) || token->GetSequence()[0] == '.')) {
    text += token->GetSequence();
  } else {
    PutBack(token.release());
    text = "0";
  }
}

int TTexTokenSource::NextOptionalSingleDigit() {
  std::unique_ptr<TTexToken> token(NextToken(1, 0));
  if (!token || !token->IsCharacter('[')) {
    PutBack(token.release());
    return -1;
  }
  token.reset(NextToken(1, 0));
  if (!token || !token->IsCharacter() || token->GetCharacter() < '1' || token->GetCharacter() > '9') {
    Error("Missing single digit when when parsing optional argument, possibly in a macro or environment "
          "definition.");
    PutBack(token.release());
    return -1;
  }
  int value = token->GetCharacter() - '0';
  token.reset(NextToken(1, 0));
  if (!token || !token->IsCharacter(']')) {
    Error("Missing close brace when parsing optional argument for a single digit, possibly in a macro or "
          "environment definition.");
    PutBack(token.release());
  }
  return value;
}
