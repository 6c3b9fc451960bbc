#include "tex/input_stream.h"

#include <cstring>

TInputStream::~TInputStream() { delete[] m_pBuffer; }

int TInputStream::GetCharacterSlow(char& c) {
  for (;;) {
    if (m_nReadIndex >= m_nBytesInBuffer) {
      GetBuffer();
      if (m_nBytesInBuffer == 0) return 0;
    }
    c = m_pBuffer[m_nReadIndex++];
    // Carriage returns vanish, so "\r\n" and "\n" read alike. NUL bytes go the
    // same way: a 0 character means the end of input to every reader above.
    if (c != '\r' && c != '\0') break;
  }
  Count(c);
  return 1;
}

TFileInputStream::TFileInputStream(FILE* file, const char* name) : TInputStream(name), m_pFile(file) {
  m_pBuffer = new char[kBufferSize];
  if (m_pFile && std::fseek(m_pFile, 0, SEEK_END) == 0) {
    long length = std::ftell(m_pFile);
    if (length >= 0 && length <= 0x7FFFFFFF) m_nExpectedLength = static_cast<int>(length);
    std::fseek(m_pFile, 0, SEEK_SET);
  }
}

TFileInputStream::~TFileInputStream() {
  if (m_pFile) std::fclose(m_pFile);
}

void TFileInputStream::GetBuffer() {
  m_nReadIndex = 0;
  m_nBytesInBuffer = m_pFile ? static_cast<int>(std::fread(m_pBuffer, 1, kBufferSize, m_pFile)) : 0;
}

TStringInputStream::TStringInputStream(const char* text, const char* name)
    : TStringInputStream(text, text ? std::strlen(text) : 0, name) {}

TStringInputStream::TStringInputStream(const char* text, size_t length, const char* name) : TInputStream(name) {
  if (length > 0x7FFFFFFF) length = 0x7FFFFFFF;
  m_nBytesInBuffer = static_cast<int>(length);
  m_nExpectedLength = m_nBytesInBuffer;
  m_pBuffer = new char[length ? length : 1];
  if (length) std::memcpy(m_pBuffer, text, length);
}

void TStringInputStream::GetBuffer() {
  delete[] m_pBuffer;
  m_pBuffer = nullptr;
  m_nBytesInBuffer = 0;
  m_nReadIndex = 0;
}

void TInputStack::InsertStream(TInputStream* stream) {
  if (!stream) return;
  if (m_cPushedBack) {
    // The character given back belongs to the stream being read: it must
    // come after the new stream, not before it. A stream of its own under
    // the new one keeps it in its place.
    const char kept[1] = {m_cPushedBack};
    m_cPushedBack = 0;
    auto* rest = new TStringInputStream(kept, 1, m_pHead ? m_pHead->GetSourceName() : "");
    m_Streams.emplace_back(rest);  // the totals already count it
  }
  m_Streams.emplace_back(stream);
  m_pHead = stream;
  if (stream->GetExpectedLength() >= 0) m_nCharacterTotal += stream->GetExpectedLength();
}

void TInputStack::DeleteStream() {
  if (m_Streams.empty()) return;
  TInputStream* head = Head();
  // A stream that ended early (or held carriage returns) leaves part of its
  // expected length uncounted; take that back out of the total.
  if (head->GetExpectedLength() >= 0) m_nCharacterTotal += head->GetCharactersRead() - head->GetExpectedLength();
  m_Streams.pop_back();
  m_pHead = m_Streams.empty() ? nullptr : m_Streams.back().get();
}

int TInputStack::GetCharacterSlow(char& c) {
  m_cLast = 0;
  if (m_cPushedBack) {
    c = m_cPushedBack;
    m_cPushedBack = 0;
  } else {
    for (;;) {
      TInputStream* head = Head();
      if (!head) return 0;
      if (head->GetCharacter(c)) break;
      DeleteStream();
    }
  }
  Deliver(c);
  return 1;
}

void TInputStack::PutBackCharacter() {
  if (!m_cLast) return;  // nothing was read: the end of input stays the end
  m_cPushedBack = m_cLast;
  --m_nCharacterCount;
  if (m_bCollecting && !m_Token.empty()) m_Token.pop_back();
  if (m_cLast == '\n') --m_nLineCount;
  if (Head() && Head()->GetExpectedLength() < 0) --m_nCharacterTotal;
  m_cLast = 0;
}

int TInputStack::IsCharacter(char c) {
  char next;
  if (!GetCharacter(next)) return 0;
  if (next == c) return 1;
  PutBackCharacter();
  return 0;
}

void TInputStack::StartToken(int withLast) {
  m_Token.clear();
  if (withLast && m_cLast) m_Token += m_cLast;
  m_bCollecting = true;
}

const char* TInputStack::FinishToken(int keep) {
  if (!keep && m_cLast) PutBackCharacter();
  m_bCollecting = false;
  return m_Token.c_str();
}

const char* TInputStack::FindString(const char* text) const {
  size_t n = text ? std::strlen(text) : 0;
  if (n > m_Token.size() || m_Token.compare(m_Token.size() - n, n, text ? text : "") != 0) return nullptr;
  return m_Token.c_str() + (m_Token.size() - n);
}

int TInputStack::GetLineNumber() const {
  const TInputStream* head = Head();
  // A line end given back is not yet read: its line has not begun.
  return head ? head->GetLineNumber() - (m_cPushedBack == '\n') : kEndOfInputLine;
}

const char* TInputStack::GetSourceName() const {
  if (const TInputStream* head = Head()) return head->GetSourceName();
  return m_FallbackName.IsEmpty() ? "<unknown>" : m_FallbackName.c_str();
}

void TInputStack::SetSourceName(const char* name) {
  if (TInputStream* head = Head()) {
    head->SetSourceName(name);
  } else if (m_FallbackName.IsEmpty()) {
    m_FallbackName = name;
  }
}
