// Token streams and the token stack that replays, records and owns tokens.
//
// Ownership is explicit: tokens read from a file are owned by the stack until
// a caller takes them; tokens replayed from a macro body are borrowed (the
// macro keeps its body) and are copied only when a caller must own them.
#pragma once

#include <vector>

#include "framework/collections.h"
#include "framework/objects.h"
#include "tex/tokens.h"

class TTexTokenStream : public CObject {
 public:
  explicit TTexTokenStream(bool ownsTokens) : m_bOwnsTokens(ownsTokens) {}
  virtual TTexTokenStream* Copy() const = 0;
  virtual bool IsEmpty() const = 0;
  virtual TTexToken* NextToken() = 0;
  bool OwnsTokens() const { return m_bOwnsTokens; }

 protected:
  bool m_bOwnsTokens;
};

class TTexSingletonTokenStream : public TTexTokenStream {
 public:
  explicit TTexSingletonTokenStream(TTexToken* token) : TTexTokenStream(true), m_pToken(token) {}
  TTexSingletonTokenStream(const TTexSingletonTokenStream& other)
      : TTexTokenStream(true), m_pToken(other.m_pToken ? other.m_pToken->Copy() : nullptr) {}
  TTexSingletonTokenStream& operator=(const TTexSingletonTokenStream&) = delete;
  ~TTexSingletonTokenStream() override { delete m_pToken; }
  TTexTokenStream* Copy() const override { return new TTexSingletonTokenStream(*this); }
  bool IsEmpty() const override { return m_pToken == nullptr; }
  TTexToken* NextToken() override;

 private:
  TTexToken* m_pToken;
};

// Replays a list that someone else owns (a macro body) without copying it.
class TTexListTokenStream : public TTexTokenStream {
 public:
  explicit TTexListTokenStream(const CObList* list);
  TTexTokenStream* Copy() const override { return new TTexListTokenStream(*this); }
  bool IsEmpty() const override { return m_pList == nullptr; }
  TTexToken* NextToken() override;

 private:
  const CObList* m_pList;  // not owned; null once read through
  CObList::POSITION m_Position;
};

class TTexBufferTokenStream : public TTexTokenStream {
 public:
  TTexBufferTokenStream(std::vector<TTexToken*> tokens, bool ownsTokens)
      : TTexTokenStream(ownsTokens), m_Tokens(std::move(tokens)) {}
  TTexBufferTokenStream(const TTexBufferTokenStream& other);
  TTexBufferTokenStream& operator=(const TTexBufferTokenStream&) = delete;
  ~TTexBufferTokenStream() override;
  TTexTokenStream* Copy() const override { return new TTexBufferTokenStream(*this); }
  bool IsEmpty() const override { return m_nIndex >= m_Tokens.size(); }
  TTexToken* NextToken() override { return IsEmpty() ? nullptr : m_Tokens[m_nIndex++]; }
  size_t GetCount() const { return m_Tokens.size(); }

 private:
  std::vector<TTexToken*> m_Tokens;
  size_t m_nIndex = 0;
};

class TTexTokenStack : public CObject {
 public:
  TTexTokenStack() = default;
  TTexTokenStack(const TTexTokenStack&) = delete;
  TTexTokenStack& operator=(const TTexTokenStack&) = delete;
  ~TTexTokenStack() override;

  // Makes the next token current and returns it (null when nothing is left).
  // The caller then skips it, uses it or puts it back.
  TTexToken* NextToken();
  TTexToken* GetCurrentToken() const { return m_pCurrent; }
  // A token fresh from the scanner becomes current, owned by the stack and
  // recorded like any other when recording is on.
  void MakeCurrentToken(TTexToken* token) {
    m_pCurrent = token;
    m_bCurrentOwned = token != nullptr;
    if (m_bRecording && m_pCurrent) StackCurrentToken();
  }
  bool IsCurrentTokenOwned() const { return m_bCurrentOwned; }
  void SkipCurrentToken();
  // The caller owns the result: the token itself if the stack owned it, else a copy.
  TTexToken* UseCurrentToken();

  // The stack takes ownership of what is put back; put-back tokens are read
  // last-in, first-out, and a list or stream is read through before what lay
  // under it.
  void PutBackToken(TTexToken* token);
  void PutBackList(const CObList* list);
  void PutBackStream(TTexTokenStream* stream);
  bool IsEmpty() const { return !m_pPutBack && m_Streams.empty(); }

  // Recording, to capture a macro's argument without copying file tokens.
  void StartTokenStream(int withCurrent);
  TTexTokenStream* FinishTokenStream(int withCurrent);  // owned by the caller; null if empty
  void StackCurrentToken();
  void UnstackCurrentToken();
  bool IsRecording() const { return m_bRecording; }
  size_t GetRecordCount() const { return m_Record.size(); }

 private:
  void ParkPutBackToken();
  void DeleteRecord();

  bool m_bCurrentOwned = false;
  TTexToken* m_pCurrent = nullptr;
  TTexToken* m_pPutBack = nullptr;  // owned
  std::vector<TTexTokenStream*> m_Streams;  // owned; back() is read first
  // Grows as needed: an argument of any length is recorded without a fixed limit.
  std::vector<TTexToken*> m_Record;
  bool m_bRecording = false;
  bool m_bRecordOwns = false;
};
