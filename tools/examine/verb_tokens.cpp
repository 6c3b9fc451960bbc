// zephrin-inspect tokens FILE [--expand]: what the scanner made of a
// document, one token a line: the source line, the token's class and its text.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "errors/parse_errors.h"
#include "tex/input_file_loader.h"
#include "tex/token_source.h"

namespace {
// The text with C escapes, so that blanks, line ends and bytes above 127 show.
std::string Quoted(const char* text) {
  std::string out = "\"";
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(text); *p; ++p) {
    char buffer[8];
    switch (*p) {
      case '\n': out += "\\n"; break;
      case '\t': out += "\\t"; break;
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      default:
        if (*p < 32 || *p > 126) {
          std::snprintf(buffer, sizeof buffer, "\\x%02x", *p);
          out += buffer;
        } else {
          out += static_cast<char>(*p);
        }
    }
  }
  return out + "\"";
}

void PrintToken(TTexToken* token, int line) {
  char lineText[16];
  if (line == TInputStack::kEndOfInputLine)
    std::snprintf(lineText, sizeof lineText, "end");
  else
    std::snprintf(lineText, sizeof lineText, "%d", line);
  const char* kind;
  std::string text;
  if (TTexMacroArgToken* argument = token->IsTexMacroArg()) {
    kind = "macro-argument";
    text = std::string(argument->GetSequence()) + " of " + (argument->GetMacroName() ? argument->GetMacroName() : "?");
  } else if (token->IsCharacter()) {
    kind = "character";
    const char c[2] = {token->GetCharacter(), '\0'};
    text = Quoted(c);
  } else if (token->IsControlCharacter()) {
    kind = "control-character";
    const char c[3] = {'\\', token->GetControlCharacter(), '\0'};
    text = Quoted(c);
  } else if (const char* name = token->GetControlSequence()) {
    kind = "control-sequence";
    text = Quoted((std::string("\\") + name).c_str());
  } else if (const char* sequence = token->GetSequence()) {
    kind = "sequence";
    text = Quoted(sequence);
  } else {
    kind = "other";
  }
  std::printf("%6s  %-17s %s\n", lineText, kind, text.c_str());
}
}  // namespace

int InspectVerb_tokens(int argc, char** argv) {
  const char* path = nullptr;
  int expand = 0;
  for (int i = 0; i < argc; ++i) {
    if (std::strcmp(argv[i], "--expand") == 0)
      expand = 1;
    else
      path = argv[i];
  }
  if (!path) {
    std::fprintf(stderr, "usage: zephrin-inspect tokens FILE [--expand]\n");
    return 2;
  }
  FILE* file = std::fopen(path, "r");
  if (!file) {
    std::fprintf(stderr, "zephrin-inspect: cannot open %s\n", path);
    return 1;
  }
  // Included files resolve beside the document, as they do on screen.
  CLocalInputFileLoader loader(CLocalInputFileLoader::FileUrlFromPath(path));
  CInputFileLoader::Set_Global(&loader);
  CZrError::Set_ReportParseErrors(kReportAtEnd);
  int status = 0;
  {
    TTexTokenSource source(loader.Get_CurrentUrl(), file);
    std::string sourceName = source.GetSourceName();
    std::printf("# source %s\n", sourceName.c_str());
    try {
      while (TTexToken* token = source.NextToken(0, expand)) {
        std::unique_ptr<TTexToken> owned(token);
        if (sourceName != source.GetSourceName()) {
          sourceName = source.GetSourceName();
          std::printf("# source %s\n", sourceName.c_str());
        }
        PrintToken(token, source.GetLineNumber());
      }
    } catch (CInputFileException&) {
      std::printf("# an included file could not be loaded: the parse would wait for it here\n");
      status = 1;
    }
  }
  for (CObject* object : CZrError::Get_SavedErrors()) {
    CString text;
    FormatParseError(text, *static_cast<CSavedError*>(object));
    std::fprintf(stderr, "%s\n", text.c_str());
  }
  CZrError::ClearParseErrors();
  CInputFileLoader::Set_Global(nullptr);
  return status;
}
