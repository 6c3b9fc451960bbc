// Parse errors of every input language: dropped, shown one by one in a modal
// dialog, or collected for one dialog at the end of the parse, by one user
// setting (the report mode).
#pragma once

#include "framework/collections.h"
#include "framework/cstring.h"

// Xt's widget handle, declared as Xt does so that this header pulls in no X macros.
typedef struct _WidgetRec* Widget;

enum KDocumentTypes { kHtml = 0, kMml = 1, kOpenMath = 2, kSgml = 3, kTexLatex = 4, kXml = 5 };

// Report modes.
enum { kReportNone = 0, kReportEach = 1, kReportAtEnd = 2 };

class CSavedError : public CObject {
 public:
  CSavedError(KDocumentTypes type, const char* message, long line, const char* source);
  CString m_Language;
  CString m_Message;
  CString m_Line;
  CString m_Source;
};

// Appends "Line <line> of <source>  [<language>]:\r\n\t<message>".
void FormatParseError(CString& out, const CSavedError& error);

class CZrError {
 public:
  static void TexParseError(unsigned id, long line, const char* source) { ParseError(kTexLatex, id, line, source); }
  static void TexParseError(const char* message, long line, const char* source) {
    ParseError(kTexLatex, message, line, source);
  }
  static void HtmlParseError(unsigned id, long line, const char* source) { ParseError(kHtml, id, line, source); }
  static void HtmlParseError(const char* message, long line, const char* source) {
    ParseError(kHtml, message, line, source);
  }
  static void MML_ParseError(unsigned id, long line, const char* source) { ParseError(kMml, id, line, source); }
  static void MML_ParseError(const char* message, long line, const char* source) {
    ParseError(kMml, message, line, source);
  }
  static void OpenMathParseError(unsigned id, long line, const char* source) {
    ParseError(kOpenMath, id, line, source);
  }
  static void OpenMathParseError(const char* message, long line, const char* source) {
    ParseError(kOpenMath, message, line, source);
  }
  static void SGML_ParseError(unsigned id, long line, const char* source) { ParseError(kSgml, id, line, source); }
  static void SGML_ParseError(const char* message, long line, const char* source) {
    ParseError(kSgml, message, line, source);
  }
  static void XML_ParseError(unsigned id, long line, const char* source) { ParseError(kXml, id, line, source); }
  static void XML_ParseError(const char* message, long line, const char* source) {
    ParseError(kXml, message, line, source);
  }

  static void ParseError(KDocumentTypes type, unsigned id, long line, const char* source);
  static void ParseError(KDocumentTypes type, const char* message, long line, const char* source);
  static void GeneralError(unsigned) {}
  static void GeneralError(const char*) {}

  // At the end of a parse: the collected errors in one dialog (mode 2), then cleared.
  static void ReportParseErrors();
  static void ClearParseErrors();
  static int Get_ReportParseErrors() { return fg_nReportParseErrors; }
  static void Set_ReportParseErrors(int mode) { fg_nReportParseErrors = mode; }
  static const CObList& Get_SavedErrors() { return fg_Errors; }

  static void ReadRegistryValues();
  static void SaveRegistryValues();

  // The shell that parents the dialogs (the host's top-level shell). Without
  // one, nothing is shown, and errors are only collected.
  static void Set_DialogParent(Widget parent) { fg_DialogParent = parent; }
  static Widget Get_DialogParent() { return fg_DialogParent; }

 private:
  static int fg_nReportParseErrors;
  static CObList fg_Errors;  // of CSavedError, owned
  static Widget fg_DialogParent;
};
