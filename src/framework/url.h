// URLs as documents write them: mostly relative names merged against the URL
// of the document that names them. Pure text rules; fetching is elsewhere.
#pragma once

#include "framework/cstring.h"

class TUrl {
 public:
  TUrl() = default;
  explicit TUrl(const char* text);
  TUrl(const TUrl&) = default;
  TUrl& operator=(const TUrl&) = default;
  virtual ~TUrl() = default;

  // Scheme, host, path, file name, then "#fragment" and "?query": the query
  // is printed last, and the parser takes the two apart in that order.
  operator CString() const;  // NOLINT: the framework's idiom
  // Everything but the query compares without regard to case.
  bool operator==(const TUrl& other) const;

  // This URL as the base of other. A relative path is always appended to the
  // base's path, even one that begins with "/".
  TUrl Merge(const TUrl& other, int& ok) const;
  // Drops empty and "." pieces and folds "name/.." pairs; a leading ".." stays.
  void SimplifyPath();

  // "file://host..." (no third slash) becomes "file:///host..." with "\" as
  // "/" and ":" as "|"; anything else goes through SlashNormalize.
  static void FileUrlNormalize(const char* in, CString& out);
  // "\" to "/", "%7C" to "|", "%20" to a blank.
  static void SlashNormalize(const char* in, CString& out);

  const CString& Get_Scheme() const { return m_Scheme; }
  const CString& Get_Host() const { return m_Host; }
  const CString& Get_Path() const { return m_Path; }
  const CString& Get_FileName() const { return m_FileName; }
  const CString& Get_Fragment() const { return m_Fragment; }
  const CString& Get_Query() const { return m_Query; }

 private:
  // Splits at the last "/" into path and file name.
  void SplitPath(const CString& text);

  CString m_Scheme;
  CString m_Host;
  CString m_Path;  // no trailing "/", and no leading "/" behind a host
  CString m_FileName;
  CString m_Fragment;
  CString m_Query;
};

CString MergeUrls(const char* base, const char* relative, int& ok);
// 0 if either is null; otherwise equal after the free FileUrlNormalize,
// without regard to case.
int UrlEqual(const char* a, const char* b);
// Unlike TUrl::FileUrlNormalize, leaves "%7C" and "%20" alone and touches
// only file URLs.
void FileUrlNormalize(const char* in, CString& out);
// What follows "file:"; callers test for the scheme first (any other text
// comes back as it is).
CString FileUrlToFile(const CString& url);
// Readable by this process.
int FileExists(const char* name);
