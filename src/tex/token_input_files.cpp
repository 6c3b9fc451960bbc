// \input, \include and \inputonce: the file name after the command, and
// the included text pushed as a new input stream.
#include "errors/parse_errors.h"
#include "framework/url.h"
#include "framework/util.h"
#include "symbols/global_strings.h"
#include "tex/input_file_loader.h"
#include "tex/token_source.h"

void TTexTokenSource::InsertInputStream(FILE* file) { m_pInput->InsertStream(new TFileInputStream(file, "")); }

void TTexTokenSource::InsertInputStream(const char* text) {
  m_pInput->InsertStream(new TStringInputStream(text, ""));
}

void TTexTokenSource::InsertInputStream(const CString& text) {
  m_pInput->InsertStream(new TStringInputStream(text.c_str(), static_cast<size_t>(text.GetLength()), ""));
}

void TTexTokenSource::InsertInputFile(int once) {
  SetState(kSkipBlanks);
  std::unique_ptr<TTexToken> token(NextTokenUnexpanded());
  if (!token) return;  // \input at the end of the input names nothing
  CString name;
  if (token->IsCharacter('{')) {
    // \input{name}: blanks don't count; without a "." the name gets ".tex".
    bool dot = false;
    for (;;) {
      SetState(kSkipBlanks);
      token.reset(NextTokenUnexpanded());
      if (!token || token->IsCharacter('}')) break;
      if (token->IsCharacter('.')) dot = true;
      AppendTokenToString(token.get(), name);
    }
    if (!dot) name += ".tex";
  } else {
    // \input name: up to a blank or a line end, or a "." and one token of extension.
    m_State = kFrozen;
    for (;;) {
      if (token->IsCharacter('.')) {
        name += '.';
        token.reset(NextTokenUnexpanded());
        if (token) AppendTokenToString(token.get(), name);
        break;
      }
      if (token->IsCharacter(' ') || token->IsCharacter('\n')) {
        PutBack(token.release());
        name += ".tex";
        break;
      }
      AppendTokenToString(token.get(), name);
      token.reset(NextTokenUnexpanded());
      if (!token) {
        name += ".tex";
        break;
      }
    }
    m_State = kSkipBlanks;
  }
  InsertNamedInputFile(once, name);
}

void TTexTokenSource::WaitForFile() {
  if (!m_bStopAtMissingFile) throw CInputFileException();
  m_bWaitingForFile = 1;
}

void TTexTokenSource::InsertNamedInputFile(int once, CString& name) {
  CInputFileLoader* loader = CInputFileLoader::Get_Global();
  int ok = 1;
  name = MergeUrls(loader->Get_CurrentUrl(), name, ok);
  const char* url = TStringPool::g_pGlobal->Put(name);
  if (once && TStringPool::g_pGlobal->GetBoolean(url, TGlobalString::g_pinput)) return;  // in already
  if (m_pInput->GetStreamCount() > fg_nMaxInputDepth) {
    // A file that includes itself: stopped like a runaway macro.
    CZrError::TexParseError(60002u, 0, nullptr);
    return;
  }
  if (strnicmp(url, "file:", 5) == 0 && !FileExists(FileUrlToFile(name))) {
    CString message = "\\centerline{\\fbox{\\color{red}Could not locate input document \\verb(" + name + "(.}}";
    InsertInputStream(message);
    SetSourceName(url);
    return;
  }
  CString text;
  if (loader->LoadStringFromUrl(name, text, 1, m_pDocument) && !text.IsEmpty()) {
    if (!TStringPool::g_pGlobal->GetBoolean(url, TGlobalString::g_pinput)) PutTrueProperty(url, TGlobalString::g_pinput);
    InsertInputStream(text);
    SetSourceName(url);
    return;
  }
  // Not there yet: the parse stops here and runs again when the file has come.
  throw CInputFileException();
}
