// Stacked character sources with line accounting: files through a 4096-byte
// buffer, in-memory texts, and the stack that nests them for \input.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "framework/cstring.h"
#include "framework/objects.h"

class TInputStream : public CObject {
 public:
  ~TInputStream() override;
  // 1 with the next byte, 0 at the end. Carriage returns are dropped whole.
  // The common case (a plain byte in the buffer) stays inline: this is the
  // innermost loop of every parse.
  int GetCharacter(char& c) {
    if (m_nReadIndex < m_nBytesInBuffer) [[likely]] {
      char next = m_pBuffer[m_nReadIndex];
      if (next != '\r' && next != '\0') [[likely]] {
        ++m_nReadIndex;
        c = next;
        Count(next);
        return 1;
      }
    }
    return GetCharacterSlow(c);
  }
  void SetSourceName(const char* name) { m_SourceName = name ? name : ""; }
  const char* GetSourceName() const { return m_SourceName; }
  int GetExpectedLength() const { return m_nExpectedLength; }
  int GetCharactersRead() const { return m_nCharactersRead; }
  int GetLineNumber() const { return m_nLineNumber; }

 protected:
  explicit TInputStream(const char* name) : m_SourceName(name) {}
  // Refills the buffer; a byte count of 0 afterwards is the end of the stream.
  virtual void GetBuffer() = 0;
  [[gnu::noinline]] int GetCharacterSlow(char& c);
  void Count(char c) {
    ++m_nCharactersRead;
    m_nLineNumber += c == '\n';
    if (m_nCharactersRead == m_nExpectedLength) m_nExpectedLength = -1;
  }

  CString m_SourceName;
  int m_nExpectedLength = -1;  // -1 when unknown or reached
  int m_nCharactersRead = 0;
  int m_nLineNumber = 1;
  char* m_pBuffer = nullptr;  // owned
  int m_nBytesInBuffer = 0;
  int m_nReadIndex = 0;
};

class TFileInputStream : public TInputStream {
 public:
  static constexpr int kBufferSize = 4096;
  // Takes ownership of the file, which may be null: an unreadable file simply
  // ends at once.
  TFileInputStream(FILE* file, const char* name);
  ~TFileInputStream() override;

 protected:
  void GetBuffer() override;

 private:
  FILE* m_pFile;
};

class TStringInputStream : public TInputStream {
 public:
  TStringInputStream(const char* text, const char* name);
  TStringInputStream(const char* text, size_t length, const char* name);

 protected:
  // The text is delivered from the first read on; a refill is its end.
  void GetBuffer() override;
};

class TInputStack : public CObject {
 public:
  static constexpr int kEndOfInputLine = 0x7FFFFFFF;

  TInputStack() = default;
  TInputStack(const TInputStack&) = delete;
  TInputStack& operator=(const TInputStack&) = delete;
  ~TInputStack() override = default;

  // The new stream is read to its end, then reading resumes in the one below.
  void InsertStream(TInputStream* stream);
  void DeleteStream();
  bool HasStream() const { return !m_Streams.empty(); }
  int GetStreamCount() const { return static_cast<int>(m_Streams.size()); }

  // 1 with the next character, 0 at the end of all input (the last character
  // is then 0, which callers use to see the end).
  int GetCharacter(char& c) {
    if (!m_cPushedBack && m_pHead && m_pHead->GetCharacter(c)) [[likely]] {
      Deliver(c);
      return 1;
    }
    return GetCharacterSlow(c);
  }
  // Gives back the last character; one slot only.
  void PutBackCharacter();
  // Reads one character and keeps it only if it is c.
  int IsCharacter(char c);
  char GetLastCharacter() const { return m_cLast; }

  // Token collection: StartToken(1) starts with the last character, (0) empty;
  // every later character is appended until FinishToken, which gives back the
  // ending character unless keep is set and returns the collected text. The
  // text lives until the next StartToken.
  void StartToken(int withLast);
  const char* FinishToken(int keep);
  bool IsCollecting() const { return m_bCollecting; }
  // The start of text in the collected text when the text ends with it, else null.
  const char* FindString(const char* text) const;

  int GetCharacterTotal() const { return m_nCharacterTotal; }
  int GetCharacterCount() const { return m_nCharacterCount; }
  int GetLineCount() const { return m_nLineCount; }
  int GetLineNumber() const;
  const char* GetSourceName() const;
  void SetSourceName(const char* name);
  void SetShowProgress(int show) { m_bShowProgress = show; }
  int GetShowProgress() const { return m_bShowProgress; }
  void UpdateProgress() {}

 private:
  TInputStream* Head() const { return m_pHead; }
  [[gnu::noinline]] int GetCharacterSlow(char& c);
  void Deliver(char c) {
    m_cLast = c;
    if (m_bCollecting) m_Token += c;
    ++m_nCharacterCount;
    if (c == '\n') {
      ++m_nLineCount;
      UpdateProgress();
    }
    m_nCharacterTotal += m_pHead && m_pHead->GetExpectedLength() < 0;
  }

  CString m_FallbackName;
  std::vector<std::unique_ptr<TInputStream>> m_Streams;  // back() is read first
  TInputStream* m_pHead = nullptr;                        // m_Streams.back(), cached
  char m_cLast = 0;
  char m_cPushedBack = 0;
  int m_nCharacterTotal = 0;
  int m_nCharacterCount = 0;
  int m_nLineCount = 0;
  // Grows as needed, so a word, number or verbatim line of any length is
  // collected without a fixed limit.
  std::string m_Token;
  bool m_bCollecting = false;
  int m_bShowProgress = 0;
};
