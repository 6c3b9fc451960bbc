#include "framework/url.h"

#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

#include "framework/util.h"

namespace {
bool HasPrefix(const char* text, const char* prefix) { return strnicmp(text, prefix, std::strlen(prefix)) == 0; }

// "file://" and not "file:///": the form with a drive or host in it.
bool IsTwoSlashFileUrl(const char* text) { return HasPrefix(text, "file://") && !HasPrefix(text, "file:///"); }

void RewriteTwoSlashFileUrl(const char* in, CString& out) {
  std::string result = "file:///";
  for (const char* p = in + 7; *p; ++p) result += *p == '\\' ? '/' : *p == ':' ? '|' : *p;
  out = CString(std::move(result));
}
}  // namespace

void TUrl::SlashNormalize(const char* in, CString& out) {
  std::string result;
  for (const char* p = in ? in : ""; *p; ++p) {
    if (*p == '\\') {
      result += '/';
    } else if (p[0] == '%' && p[1] == '7' && (p[2] == 'C' || p[2] == 'c')) {
      result += '|';
      p += 2;
    } else if (p[0] == '%' && p[1] == '2' && p[2] == '0') {
      result += ' ';
      p += 2;
    } else {
      result += *p;
    }
  }
  out = CString(std::move(result));
}

void TUrl::FileUrlNormalize(const char* in, CString& out) {
  if (in && IsTwoSlashFileUrl(in))
    RewriteTwoSlashFileUrl(in, out);
  else
    SlashNormalize(in, out);
}

void FileUrlNormalize(const char* in, CString& out) {
  if (!in) {
    out.Empty();
  } else if (HasPrefix(in, "file:///")) {
    std::string result(in);
    for (char& c : result)
      if (c == '\\') c = '/';
    out = CString(std::move(result));
  } else if (HasPrefix(in, "file://")) {
    RewriteTwoSlashFileUrl(in, out);
  } else {
    out = in;
  }
}

void TUrl::SplitPath(const CString& text) {
  int slash = text.ReverseFind('/');
  if (slash < 0) {
    m_FileName = text;
  } else {
    m_Path = text.Left(slash);
    m_FileName = text.Mid(slash + 1);
  }
}

TUrl::TUrl(const char* given) {
  if (!given) given = "";
  CString text;
  TUrl::FileUrlNormalize(given, text);
  int mark = text.ReverseFind('?');
  if (mark >= 0) {
    m_Query = text.Mid(mark + 1);
    text = text.Left(mark);
  }
  mark = text.ReverseFind('#');
  if (mark >= 0) {
    m_Fragment = text.Mid(mark + 1);
    text = text.Left(mark);
  }
  if (HasPrefix(text, "file://")) {
    m_Scheme = "file";
    SplitPath(text.Mid(7));
  } else if (HasPrefix(text, "file:")) {
    m_Scheme = "file";
    SplitPath(text.Mid(5));
  } else if (HasPrefix(given, "mailto:")) {
    // The address is all there is; "?" and "#" belong to it.
    m_Scheme = "mailto";
    m_FileName = given + 7;
    m_Fragment.Empty();
    m_Query.Empty();
  } else if (int separator = text.Find("://"); separator >= 0) {
    m_Scheme = text.Left(separator);
    CString rest = text.Mid(separator + 3);
    int slash = rest.Find('/');
    if (slash < 0) {
      m_Host = rest;
    } else {
      m_Host = rest.Left(slash);
      SplitPath(rest.Mid(slash + 1));
    }
  } else {
    SplitPath(text);
  }
  SimplifyPath();
}

void TUrl::SimplifyPath() {
  if (m_Path.IsEmpty()) return;
  bool absolute = m_Path[0] == '/';
  std::vector<std::string> pieces;
  const std::string& path = m_Path.str();
  size_t start = 0;
  while (start <= path.size()) {
    size_t end = path.find('/', start);
    if (end == std::string::npos) end = path.size();
    std::string piece = path.substr(start, end - start);
    if (!piece.empty() && piece != ".") pieces.push_back(std::move(piece));
    start = end + 1;
  }
  // One left-to-right pass folds every "name/.." pair, nested ones included:
  // a ".." meets the nearest name that has not yet been folded.
  std::vector<std::string> folded;
  for (std::string& piece : pieces) {
    if (piece == ".." && !folded.empty() && folded.back() != "..")
      folded.pop_back();
    else
      folded.push_back(std::move(piece));
  }
  std::string result = absolute ? "/" : "";
  for (size_t i = 0; i < folded.size(); ++i) {
    if (i) result += '/';
    result += folded[i];
  }
  m_Path = CString(std::move(result));
}

TUrl TUrl::Merge(const TUrl& other, int& ok) const {
  ok = 1;
  if (!other.m_Scheme.IsEmpty()) return other;
  TUrl result(other);
  if (!m_Path.IsEmpty()) {
    result.m_Path = other.m_Path.IsEmpty() ? m_Path : m_Path + "/" + other.m_Path;
    result.SimplifyPath();
  }
  if (result.m_Host.IsEmpty()) result.m_Host = m_Host;
  if (result.m_Scheme.IsEmpty()) result.m_Scheme = m_Scheme;
  return result;
}

TUrl::operator CString() const {
  CString text;
  if (!m_Scheme.IsEmpty()) {
    text += m_Scheme;
    text += m_Scheme == "mailto" || m_Scheme == "file" ? ":" : "://";
  }
  if (!m_Host.IsEmpty()) text += m_Host + "/";
  if (!m_Path.IsEmpty()) text += m_Path + "/";
  text += m_FileName;
  if (!m_Fragment.IsEmpty()) text += "#" + m_Fragment;
  if (!m_Query.IsEmpty()) text += "?" + m_Query;
  return text;
}

bool TUrl::operator==(const TUrl& other) const {
  return m_Scheme.CompareNoCase(other.m_Scheme) == 0 && m_Host.CompareNoCase(other.m_Host) == 0 &&
         m_Path.CompareNoCase(other.m_Path) == 0 && m_FileName.CompareNoCase(other.m_FileName) == 0 &&
         m_Fragment.CompareNoCase(other.m_Fragment) == 0 && m_Query == other.m_Query;
}

CString MergeUrls(const char* base, const char* relative, int& ok) {
  return static_cast<CString>(TUrl(base).Merge(TUrl(relative), ok));
}

int UrlEqual(const char* a, const char* b) {
  if (!a || !b) return 0;
  CString first, second;
  FileUrlNormalize(a, first);
  FileUrlNormalize(b, second);
  return first.CompareNoCase(second) == 0;
}

CString FileUrlToFile(const CString& url) {
  if (HasPrefix(url, "file:")) return url.Mid(5);
  return url;
}

int FileExists(const char* name) { return name && access(name, R_OK) == 0; }
