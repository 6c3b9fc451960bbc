// CString: an owning, growable byte string ended by a zero byte.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

class CString {
 public:
  // Fixed size of the formatting buffer; longer results are cut to fit.
  static constexpr size_t kFormatBufferSize = 5120;

  CString() = default;
  CString(const char* text) : m_s(text ? text : "") {}  // NOLINT: implicit by design
  CString(const char* text, size_t length) : m_s(text ? text : "", text ? length : 0) {}
  CString(char ch, unsigned count) : m_s(count, ch) {}
  CString(const std::string& s) : m_s(s) {}  // NOLINT
  CString(std::string&& s) : m_s(std::move(s)) {}  // NOLINT
  CString(std::string_view s) : m_s(s) {}  // NOLINT

  operator const char*() const { return m_s.c_str(); }  // NOLINT: the framework's idiom
  const char* c_str() const { return m_s.c_str(); }
  const std::string& str() const { return m_s; }
  std::string_view view() const { return m_s; }

  int GetLength() const { return static_cast<int>(m_s.size()); }
  bool IsEmpty() const { return m_s.empty(); }
  void Empty() { m_s.clear(); }

  // Character access is checked: an index outside the text throws std::out_of_range.
  char GetAt(int i) const { return m_s.at(Index(i)); }
  char operator[](int i) const { return GetAt(i); }
  void SetAt(int i, char ch) { m_s.at(Index(i)) = ch; }

  CString& operator=(const char* text) { m_s = text ? text : ""; return *this; }
  CString& operator+=(const CString& s) { m_s += s.m_s; return *this; }
  CString& operator+=(const char* s) { if (s) m_s += s; return *this; }
  CString& operator+=(char ch) { m_s += ch; return *this; }

  friend CString operator+(const CString& a, const CString& b) { return CString(a.m_s + b.m_s); }
  friend CString operator+(const CString& a, const char* b) { CString r(a); r += b; return r; }
  friend CString operator+(const char* a, const CString& b) { CString r(a); r += b; return r; }
  friend CString operator+(const CString& a, char b) { CString r(a); r += b; return r; }

  friend bool operator==(const CString& a, const CString& b) { return a.m_s == b.m_s; }
  friend bool operator==(const CString& a, const char* b) { return a.Compare(b) == 0; }
  friend bool operator!=(const CString& a, const CString& b) { return a.m_s != b.m_s; }
  friend bool operator!=(const CString& a, const char* b) { return a.Compare(b) != 0; }
  friend bool operator<(const CString& a, const CString& b) { return a.m_s < b.m_s; }
  friend bool operator<(const CString& a, const char* b) { return a.Compare(b) < 0; }
  friend bool operator>(const CString& a, const CString& b) { return a.m_s > b.m_s; }
  friend bool operator>(const CString& a, const char* b) { return a.Compare(b) > 0; }

  int Compare(const char* s) const;        // strcmp
  int CompareNoCase(const char* s) const;  // strcasecmp

  int Find(char ch) const;
  int Find(const char* s) const;
  int ReverseFind(char ch) const;

  CString Left(int n) const;
  CString Right(int n) const;
  CString Mid(int first) const;
  CString Mid(int first, int n) const;

  void MakeLower();
  void MakeUpper();
  void TrimLeft();
  void TrimRight();

  // Assigns the string resource of that id ("NO STRING" when there is none); always 1.
  int LoadString(unsigned id);
  void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void Format(unsigned id, ...);
  void FormatArgs(const char* format, va_list args);

  // The resource layer installs its table here at start; until then every id
  // reads "NO STRING".
  using StringResourceLookup = const char* (*)(unsigned id);
  static void SetStringResourceLookup(StringResourceLookup lookup);

 private:
  size_t Index(int i) const;
  std::string m_s;
};
