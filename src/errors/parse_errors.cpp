#include "errors/parse_errors.h"

#include <cstdio>

#include "errors/parse_error_dialogs.h"
#include "framework/util.h"
#include "host/np_zephrin_app.h"

int CZrError::fg_nReportParseErrors = kReportNone;
CObList CZrError::fg_Errors;
Widget CZrError::fg_DialogParent = nullptr;

namespace {
constexpr long kEndOfInputLine = 0x7FFFFFFF;
const char* const fg_LanguageTexts[] = {"HTML", "MML", "OpenMath", "SGML", "TeX/LaTeX", "XML"};
}  // namespace

CSavedError::CSavedError(KDocumentTypes type, const char* message, long line, const char* source)
    : m_Message(message ? message : "<missing message>"), m_Source(source ? source : "<unknown>") {
  if (type >= kHtml && type <= kXml) m_Language = fg_LanguageTexts[type];
  if (line < kEndOfInputLine)
    m_Line.Format("%ld", line);
  else
    m_Line = "<end of input>";
}

void FormatParseError(CString& out, const CSavedError& error) {
  out += "Line ";
  out += error.m_Line;
  out += " of ";
  out += error.m_Source;
  out += "  [";
  out += error.m_Language;
  out += "]:\r\n\t";
  out += error.m_Message;
}

void CZrError::ParseError(KDocumentTypes type, unsigned id, long line, const char* source) {
  if (fg_nReportParseErrors == kReportNone) return;  // not even the text is fetched
  CString text;
  text.LoadString(id);
  if (text.IsEmpty()) text = "Missing error message";
  ParseError(type, text, line, source);
}

void CZrError::ParseError(KDocumentTypes type, const char* message, long line, const char* source) {
  if (fg_nReportParseErrors == kReportNone) return;
  if (fg_nReportParseErrors == kReportEach) {
    CSavedError error(type, message, line, source);
    // The dialog may change the mode for every later error.
    if (fg_DialogParent) CParseErrorDialog(error, &fg_nReportParseErrors, fg_DialogParent).DoModal();
  }
  if (fg_nReportParseErrors != kReportEach && fg_nReportParseErrors != kReportAtEnd) return;
  // Saved in mode 1 too, so that "Show Errors When Finished" lists it.
  fg_Errors.AddTail(new CSavedError(type, message, line, source));
}

void CZrError::ReportParseErrors() {
  if (!fg_Errors.IsEmpty() && fg_nReportParseErrors == kReportAtEnd && fg_DialogParent)
    CParseErrorsDialog(fg_Errors, fg_DialogParent).DoModal();
  ClearParseErrors();
}

void CZrError::ClearParseErrors() {
  int count = 0;
  while (!fg_Errors.IsEmpty()) {
    delete static_cast<CSavedError*>(fg_Errors.RemoveTail());
    ++count;
  }
  TRACE("Deleted %d saved messages\n", count);
  (void)count;
}

void CZrError::ReadRegistryValues() {
  fg_nReportParseErrors = AfxGetApp()->GetProfileInt("Settings", "ReportParseErrors", kReportNone);
}

void CZrError::SaveRegistryValues() {
  ClearParseErrors();
  AfxGetApp()->WriteProfileInt("Settings", "ReportParseErrors", fg_nReportParseErrors);
}
