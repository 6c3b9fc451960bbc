#include "framework/cstring.h"

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace {
CString::StringResourceLookup fg_stringResourceLookup = nullptr;
constexpr const char* fg_whitespace = " \t\n\r";

// Clamps a caller's count or index into [0, limit].
size_t Clamp(int value, size_t limit) {
  if (value <= 0) return 0;
  return std::min(static_cast<size_t>(value), limit);
}
}  // namespace

size_t CString::Index(int i) const {
  if (i < 0) throw std::out_of_range("CString index");
  return static_cast<size_t>(i);
}

int CString::Compare(const char* s) const { return std::strcmp(m_s.c_str(), s ? s : ""); }

int CString::CompareNoCase(const char* s) const { return strcasecmp(m_s.c_str(), s ? s : ""); }

int CString::Find(char ch) const {
  size_t at = m_s.find(ch);
  return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::Find(const char* s) const {
  size_t at = m_s.find(s ? s : "");
  return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::ReverseFind(char ch) const {
  size_t at = m_s.rfind(ch);
  return at == std::string::npos ? -1 : static_cast<int>(at);
}

CString CString::Left(int n) const { return CString(m_s.substr(0, Clamp(n, m_s.size()))); }

CString CString::Right(int n) const {
  size_t count = Clamp(n, m_s.size());
  return CString(m_s.substr(m_s.size() - count));
}

CString CString::Mid(int first) const { return CString(m_s.substr(Clamp(first, m_s.size()))); }

CString CString::Mid(int first, int n) const {
  size_t start = Clamp(first, m_s.size());
  return CString(m_s.substr(start, Clamp(n, m_s.size() - start)));
}

void CString::MakeLower() {
  for (char& c : m_s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

void CString::MakeUpper() {
  for (char& c : m_s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

void CString::TrimLeft() {
  size_t first = m_s.find_first_not_of(fg_whitespace);
  m_s.erase(0, first == std::string::npos ? m_s.size() : first);
}

void CString::TrimRight() {
  size_t last = m_s.find_last_not_of(fg_whitespace);
  m_s.erase(last == std::string::npos ? 0 : last + 1);
}

void CString::SetStringResourceLookup(StringResourceLookup lookup) { fg_stringResourceLookup = lookup; }

int CString::LoadString(unsigned id) {
  const char* text = fg_stringResourceLookup ? fg_stringResourceLookup(id) : nullptr;
  m_s = text ? text : "NO STRING";
  return 1;
}

void CString::FormatArgs(const char* format, va_list args) {
  // One fixed buffer as callers expect; a longer result is cut at the buffer's
  // end instead of running past it.
  char buffer[kFormatBufferSize];
  int written = std::vsnprintf(buffer, sizeof buffer, format ? format : "", args);
  if (written < 0) buffer[0] = '\0';
  m_s = buffer;
}

void CString::Format(const char* format, ...) {
  va_list args;
  va_start(args, format);
  FormatArgs(format, args);
  va_end(args);
}

void CString::Format(unsigned id, ...) {
  CString format;
  format.LoadString(id);
  va_list args;
  va_start(args, id);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  FormatArgs(format.c_str(), args);
#pragma GCC diagnostic pop
  va_end(args);
}
