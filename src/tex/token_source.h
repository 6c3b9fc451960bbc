// TTexTokenSource: the one reader of TeX input. It scans characters into
// tokens and expands macros, conditionals, \csname, \input and the
// \begin/\end pairs.
//
// The dialect is not TeX: there are no category codes (a character's class
// is fixed here), a word or number is one sequence token, ligatures are made
// by the scanner, macro parameters are undelimited, and conditionals are
// evaluated at every read, expanded or not. The scanner's tokens depend on
// whether the parse is in math or in tabbing, which the parsers tell it.
#pragma once

#include <memory>
#include <vector>

#include "framework/collections.h"
#include "framework/cstring.h"
#include "framework/objects.h"
#include "tex/input_stream.h"
#include "tex/token_stack.h"
#include "tex/tokens.h"

class TFmtDocumentNode;
class TMacroProperty;

class TTexTokenSource : public CObject {
 public:
  // The scanner's states, in place of TeX's: a blank line ends a paragraph
  // only from the start of a line, and a frozen source (3) keeps every blank
  // for raw arguments and macro bodies.
  enum EState { kStartOfLine = 0, kInsideLine = 1, kSkipBlanks = 2, kFrozen = 3 };

  // A macro may be open this many times at once; the next expansion of it is
  // reported (60002) and the name stands unexpanded.
  static constexpr int fg_nMaxActiveExpansions = 11;
  // Conditionals and \csname nest by recursion: past this depth the token is
  // reported like a runaway macro, so that no input can exhaust the stack.
  static constexpr int fg_nMaxNesting = 48;
  // \input files open at once: a file that includes itself stops here.
  static constexpr int fg_nMaxInputDepth = 64;
  static constexpr const char* fg_pInternalSourceName = "INTERNAL STRING";

  // The source owns the file and closes it.
  TTexTokenSource(const char* sourceName, FILE* file);
  TTexTokenSource(const char* sourceName, const char* text);
  TTexTokenSource(const TTexTokenSource&) = delete;
  TTexTokenSource& operator=(const TTexTokenSource&) = delete;
  ~TTexTokenSource() override;

  // Names that the source compares against, interned once per pool.
  static void Init();

  // ---- reading --------------------------------------------------------------
  // The main read: the caller owns the result; null at the end of input.
  TTexToken* NextToken(int skipBlanks, int expand);
  // Conditionals and \newif dealt with, no macro expansion.
  TTexToken* NextTokenUnexpanded();
  // One macro argument, unexpanded: a brace group without its outer braces,
  // the first letter of a word, or one token. Owned by the caller; null at
  // the end of input.
  TTexTokenStream* NextTokenStream();
  // A macro body in the same shapes, into list (tokens owned by the list).
  void NextTokenList(CObList* list);
  // One argument as interned text (a blank for an empty one); null at the end.
  const char* GetRawArgument();
  void NextGeneralNumber(CString& text);
  void NextPositiveInteger(CString& text);
  // [d] with d from 1 to 9: d; no bracket: -1.
  int NextOptionalSingleDigit();
  // Takes ownership; null is ignored.
  void PutBack(TTexToken* token) { m_pTokens->PutBackToken(token); }
  // Puts back the part of text after its first character.
  void PutBackRest(const char* text);

  // ---- control --------------------------------------------------------------
  // Does nothing while the state is frozen: only a direct assignment leaves it.
  void SetState(EState state) {
    if (m_State != kFrozen) m_State = state;
  }
  EState GetState() const { return m_State; }
  int ObeyLines(int obey) {
    int old = m_nObeyLines;
    m_nObeyLines = obey;
    return old;
  }
  // Set by the math parsers while they read: changes dashes, words, \ifmmode
  // and the end of a macro.
  void Set_MathMode(int on) { m_nMathMode = on; }
  int Get_MathMode() const { return m_nMathMode; }
  // Set by the tabbing parser: \' \` \= and \a become tabbing commands.
  void Set_Tabbing(int on) { m_nTabbing = on; }
  int Get_Tabbing() const { return m_nTabbing; }
  void StartVerbatimMode();
  void StopVerbatimMode();
  void SetShowProgress() { m_pInput->SetShowProgress(1); }
  void SetSourceName(const char* name) { m_pInput->SetSourceName(name); }
  const char* GetSourceName() const { return m_pInput->GetSourceName(); }
  int GetLineNumber() const { return m_pInput->GetLineNumber(); }
  void InsertInputStream(FILE* file);
  void InsertInputStream(const char* text);
  void InsertInputStream(const CString& text);
  // Reads the file name after \input and includes the file.
  void InsertInputFile(int once);
  // Includes name, merged with the current URL: a missing local file puts a
  // message into the text; a file that isn't there yet throws
  // CInputFileException. name becomes the merged URL.
  void InsertNamedInputFile(int once, CString& name);
  // A document's parse stops where a file has to be waited for: the source
  // then answers end of input, and Get_WaitingForFile says why. Without this
  // the wait unwinds as CInputFileException. The stop keeps every parser on
  // its ordinary end-of-input path, so nothing half built is lost.
  void Set_StopAtMissingFile(int stop) { m_bStopAtMissingFile = stop; }
  int Get_WaitingForFile() const { return m_bWaitingForFile; }
  // Called by a reader outside the token stream (a verbatim file) whose file
  // is not there yet: stops as an \input would.
  void WaitForFile();
  void Set_DocumentNode(TFmtDocumentNode* document) { m_pDocument = document; }
  TFmtDocumentNode* Get_DocumentNode() const { return m_pDocument; }
  // \bibitem without a label numbers its items per source: 1, 2, ...
  int NextBibItemNumber() { return ++m_nBibItemCounter; }

  // The macro whose body is being read, so that "#1" in it is bound to it.
  void PushDefiningMacroName(const char* name) { m_DefiningMacroNames.push_back(name); }
  void PopDefiningMacroName() {
    if (!m_DefiningMacroNames.empty()) m_DefiningMacroNames.pop_back();
  }
  const char* PeekDefiningMacroName() const {
    return m_DefiningMacroNames.empty() ? nullptr : m_DefiningMacroNames.back();
  }
  // One macro level: reads n arguments, keeps the macro's token (owned).
  void PushMacroArgs(int n, TTexToken* token);
  void PopMacroArgs(int n);
  // Puts back a copy of argument number of the innermost open macro named
  // macroName; nothing if there is none.
  void ExpandMacroArg(int number, const char* macroName);
  void AppendTokenToString(TTexToken* token, CString& text);

  // Reports with the current source name and line.
  void Error(unsigned id) const;
  void Error(const char* message) const;

 private:
  using TInputReader = TTexToken* (TTexTokenSource::*)();
  static constexpr int fg_nMacroArgLists = 10;  // 0..8 arguments, 9 the macro's token

  void InitMembers();

  // ---- layers ---------------------------------------------------------------
  // The stack's next token, or a scanned one, as the token stack's current
  // token; end marks of macro bodies are dealt with here. Null at the end.
  TTexToken* NextStackToken();
  // A skipped stack token leaves no trace in a recording.
  void SkipStackToken();
  // A new token from the characters (owned by the caller), or null at the end.
  TTexToken* NextInputToken() { return (this->*m_pInputReader)(); }

  // ---- the scanner (token_scanner.cpp) ----------------------------------------
  TTexToken* NextNormalInputToken();
  // 1 when the character was white space or a comment and was dealt with; a
  // token made from it is in token. 0 with c the next character to scan.
  int NextWhiteSpace(char& c, TTexToken*& token);
  TTexToken* NextBackSlash();
  TTexToken* NextControlSequence();
  TTexToken* NextVerb();
  TTexToken* NextSequence();
  TTexToken* NextNumber();
  TTexToken* NextSharp();
  TTexToken* NextDollar();
  TTexToken* NextDash();
  TTexToken* NextBackQuote();
  TTexToken* NextQuote();
  TTexToken* NextQuestionMark();
  TTexToken* NextExclamationPoint();
  TTexToken* NextVerbatim();
  TTexToken* NextSpecial(const char* endText);
  // A character token, or a sequence token of the interned text.
  static TTexToken* MakeTextToken(const char* text, size_t length);

  // The innermost open level of that macro, or -1.
  int FindMacroLevel(const char* macroName) const;
  // An argument being captured holds no "#n" of an open macro: it is replaced
  // by that macro's argument at once, as a body's text is substituted before
  // it is read. Left for later, the inner use of a macro that passes its own
  // argument on (\a{#1} in the body of \a) would find only itself. True when
  // token was such a "#n", or one of the macro being read (it is then skipped).
  bool SubstituteMacroArg(TTexToken* token);

  // ---- conditionals -----------------------------------------------------------
  void IfCaseElseFi(int k);
  void DefineNewIf(const char* name);
  void SwitchNewIf(const char* name, int value);
  // The \csname ... \endcsname name.
  TTexToken* ReadCsname();

  std::unique_ptr<TInputStack> m_pInput;
  std::unique_ptr<TTexTokenStack> m_pTokens;
  int m_nObeyLines = 0;
  int m_nMathMode = 0;
  int m_nTabbing = 0;
  // Lists 0..8: per open macro, the stream of argument 1..9 or null (owned);
  // list 9: the macro's token (owned). The innermost level is at the back.
  std::vector<TTexTokenStream*> m_MacroArgs[fg_nMacroArgLists - 1];
  std::vector<TTexToken*> m_MacroTokens;
  std::vector<const char*> m_DefiningMacroNames;  // canonical, innermost last
  EState m_State = kStartOfLine;
  TInputReader m_pInputReader = &TTexTokenSource::NextNormalInputToken;
  TFmtDocumentNode* m_pDocument = nullptr;  // not owned
  int m_bStopAtMissingFile = 0;
  int m_bWaitingForFile = 0;
  int m_nBibItemCounter = 0;
  int m_nNesting = 0;  // open conditionals and \csname reads
  const char* m_pCapturingMacroName = nullptr;  // the macro whose arguments are being read

  // Interned by Init, with the pool generation they belong to.
  static int fg_nInitGeneration;
  inline static const char* fg_pinputonce = nullptr;
  inline static const char* fg_pdot = nullptr;
  inline static const char* fg_phat = nullptr;
  inline static const char* fg_ptilde = nullptr;
  inline static const char* fg_pa = nullptr;
};
