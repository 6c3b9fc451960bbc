#include "tex/token_stack.h"

TTexToken* TTexSingletonTokenStream::NextToken() {
  TTexToken* token = m_pToken;
  m_pToken = nullptr;
  return token;
}

TTexListTokenStream::TTexListTokenStream(const CObList* list)
    : TTexTokenStream(false), m_pList(list && !list->IsEmpty() ? list : nullptr) {
  if (m_pList) m_Position = m_pList->GetHeadPosition();
}

TTexToken* TTexListTokenStream::NextToken() {
  if (!m_pList) return nullptr;
  auto* token = static_cast<TTexToken*>(m_pList->GetNext(m_Position));
  if (m_Position == m_pList->GetEnd()) m_pList = nullptr;
  return token;
}

TTexBufferTokenStream::TTexBufferTokenStream(const TTexBufferTokenStream& other)
    : TTexTokenStream(other.m_bOwnsTokens), m_nIndex(other.m_nIndex) {
  m_Tokens.resize(other.m_Tokens.size(), nullptr);
  for (size_t i = m_nIndex; i < other.m_Tokens.size(); ++i)
    m_Tokens[i] = m_bOwnsTokens ? other.m_Tokens[i]->Copy() : other.m_Tokens[i];
}

TTexBufferTokenStream::~TTexBufferTokenStream() {
  if (m_bOwnsTokens)
    for (size_t i = m_nIndex; i < m_Tokens.size(); ++i) delete m_Tokens[i];
}

TTexTokenStack::~TTexTokenStack() {
  if (m_bCurrentOwned) delete m_pCurrent;
  delete m_pPutBack;
  for (TTexTokenStream* stream : m_Streams) delete stream;
  DeleteRecord();
}

void TTexTokenStack::DeleteRecord() {
  if (m_bRecordOwns)
    for (TTexToken* token : m_Record) delete token;
  m_Record.clear();
}

TTexToken* TTexTokenStack::NextToken() {
  m_pCurrent = nullptr;
  m_bCurrentOwned = false;
  if (m_pPutBack) {
    m_pCurrent = m_pPutBack;
    m_bCurrentOwned = true;
    m_pPutBack = nullptr;
  } else {
    while (!m_pCurrent && !m_Streams.empty()) {
      TTexTokenStream* stream = m_Streams.back();
      m_pCurrent = stream->NextToken();
      m_bCurrentOwned = stream->OwnsTokens();
      if (stream->IsEmpty()) {
        m_Streams.pop_back();
        delete stream;
      }
    }
  }
  if (m_bRecording && m_pCurrent) StackCurrentToken();
  return m_pCurrent;
}

void TTexTokenStack::SkipCurrentToken() {
  if (m_bCurrentOwned) delete m_pCurrent;
  m_pCurrent = nullptr;
  m_bCurrentOwned = false;
}

TTexToken* TTexTokenStack::UseCurrentToken() {
  if (!m_pCurrent) return nullptr;
  if (m_bCurrentOwned) {
    // Handed over: the stack forgets it, so that the caller putting it back
    // later is not taken for putting back the current token.
    TTexToken* token = m_pCurrent;
    m_bCurrentOwned = false;
    m_pCurrent = nullptr;
    return token;
  }
  return m_pCurrent->Copy();
}

void TTexTokenStack::ParkPutBackToken() {
  if (!m_pPutBack) return;
  m_Streams.push_back(new TTexSingletonTokenStream(m_pPutBack));
  m_pPutBack = nullptr;
}

void TTexTokenStack::PutBackToken(TTexToken* token) {
  if (!token) return;
  if (token == m_pCurrent) {
    // Putting back the current token: the slot must own what it holds, so a
    // borrowed token (from a macro body) goes back as a copy.
    if (!m_bCurrentOwned) token = token->Copy();
    m_bCurrentOwned = false;
    m_pCurrent = nullptr;
  }
  ParkPutBackToken();
  m_pPutBack = token;
}

void TTexTokenStack::PutBackList(const CObList* list) {
  ParkPutBackToken();
  m_Streams.push_back(new TTexListTokenStream(list));
}

void TTexTokenStack::PutBackStream(TTexTokenStream* stream) {
  if (!stream) return;
  ParkPutBackToken();
  m_Streams.push_back(stream);
}

void TTexTokenStack::StartTokenStream(int withCurrent) {
  DeleteRecord();
  m_bRecording = true;
  m_bRecordOwns = false;
  if (withCurrent && m_pCurrent) StackCurrentToken();
}

void TTexTokenStack::StackCurrentToken() {
  if (!m_pCurrent) return;
  // A record holds only owned or only borrowed tokens, so that one flag says
  // what to free. File tokens are recorded as they are; copies are made only
  // when owned and borrowed tokens would mix.
  if (m_Record.empty()) {
    m_bRecordOwns = m_bCurrentOwned;
    m_Record.push_back(m_pCurrent);
  } else if (m_bCurrentOwned && !m_bRecordOwns) {
    for (TTexToken*& recorded : m_Record) recorded = recorded->Copy();
    m_bRecordOwns = true;
    m_Record.push_back(m_pCurrent);
  } else if (!m_bCurrentOwned && m_bRecordOwns) {
    m_Record.push_back(m_pCurrent->Copy());
  } else {
    m_Record.push_back(m_pCurrent);
  }
  m_bCurrentOwned = false;
}

void TTexTokenStack::UnstackCurrentToken() {
  if (m_Record.empty()) return;
  m_pCurrent = m_Record.back();
  m_Record.pop_back();
  m_bCurrentOwned = m_bRecordOwns;
}

TTexTokenStream* TTexTokenStack::FinishTokenStream(int withCurrent) {
  if (!withCurrent && m_pCurrent) UnstackCurrentToken();
  TTexTokenStream* result = nullptr;
  if (!m_Record.empty()) result = new TTexBufferTokenStream(std::move(m_Record), m_bRecordOwns);
  m_Record.clear();
  m_bRecording = false;
  m_bRecordOwns = false;
  return result;
}
