// Lists of nodes: the plain horizontal box, which also carries the main parse
// loop of TeX input; the TeX group; and the node of any command with
// arguments that has no class of its own.
#pragma once

#include "format/node.h"

class TTexToken;

// The answer of a token test of ParseTexWithTests.
enum ParseTestResult : int {
  k_ParseTest_Stop = 0,              // the list is complete; the token is consumed
  k_ParseTest_StopAndPutBack = 1,    // the list is complete; a copy of the token goes back
  k_ParseTest_MakeNode = 2,          // the usual node for the token
  k_ParseTest_Skip = 3,              // the token is dropped
};
using TParseTest = ParseTestResult (*)(TTexToken* token, int data, TTexTokenSource& source);

class TFmtCompoundNode : public TFmtNode {
 public:
  TFmtCompoundNode() = default;
  explicit TFmtCompoundNode(const CObList& nodes);  // each is copied in
  TFmtCompoundNode(const TFmtCompoundNode& other);
  TFmtCompoundNode& operator=(const TFmtCompoundNode& other);
  ~TFmtCompoundNode() override;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtCompoundNode* CopyDerived() const { return new TFmtCompoundNode(*this); }

  void ApplyRecursively(void (*f)(TFmtNode*)) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) override;
  TFmtExtent* Compose(TFmtContext& context) override;
  void Description(CString& out) override;
  void Draw(TFmtContext& context) override;
  int FindCaretPosition(CPoint& point, CObList& path) override;
  int FindFirstCaretPosition(CObList& path) override;
  int FindLastCaretPosition(CObList& path) override;
  int FindNextCaretPositionInt(CObList& path, TFmtNode* from) override;
  int FindPrevCaretPositionInt(CObList& path, TFmtNode* from) override;
  TFmtCompoundNode* IsCompoundNode() const override { return const_cast<TFmtCompoundNode*>(this); }
  int IsEmpty() const override { return m_Children.IsEmpty(); }
  TFmtCompoundNode* IsPureCompoundNode() const override { return const_cast<TFmtCompoundNode*>(this); }
  void MustRecomputeExtent() override;
  int OwnerOf(TFmtNode* node) const override;
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;
  int RemoveChild(TFmtNode* node, int bShallow) override;
  void Select(CNodeRect& rect) override;
  TFmtNode* Select(CPoint& point) override;
  void SimplyStringify(CString& out) override;
  void ResetFmtExtentForReflowables() override;
  // After ResetFmtExtentForReflowables in the table of virtual operations.
  virtual void AddHead(TFmtNode* node);
  // The merging add: repairs TeX's postfix and infix forms (scripts, \over).
  virtual void AddTail(TFmtNode* node);
  virtual void AddTailSimple(TFmtNode* node);

  int GetCount() const { return m_Children.GetCount(); }
  // 1-based; null when the list is shorter.
  TFmtNode* GetNth(int n) const;
  int IsSingleton() const { return m_Children.GetCount() == 1; }
  TFmtNode* GetHead() const { return m_Children.IsEmpty() ? nullptr : static_cast<TFmtNode*>(m_Children.GetHead()); }
  TFmtNode* GetTail() const { return m_Children.IsEmpty() ? nullptr : static_cast<TFmtNode*>(m_Children.GetTail()); }
  TFmtNode* RemoveHead() { return m_Children.IsEmpty() ? nullptr : static_cast<TFmtNode*>(m_Children.RemoveHead()); }
  TFmtNode* RemoveTail() { return m_Children.IsEmpty() ? nullptr : static_cast<TFmtNode*>(m_Children.RemoveTail()); }
  const CObList& Get_Children() const { return m_Children; }
  void RemoveLeadingWhiteSpace();
  void RemoveTrailingWhiteSpace();
  void DeleteChildren();

  // The node if it is a compound, else a new compound that holds it.
  static TFmtCompoundNode* CompoundIt(TFmtNode* node);

  // Reads tokens until a test stops the list or the input ends. Tests may be
  // null: every token of that kind then makes its node.
  TFmtNode* ParseTexWithTests(TTexTokenSource& source, int& bDone, int data, TParseTest characterTest,
                              TParseTest controlCharacterTest, TParseTest controlSequenceTest,
                              TParseTest sequenceTest);

  // Makes the usual node of a token (the caller owns it); null for a token
  // of no node kind.
  static TFmtNode* MakeNodeFromToken(TTexToken* token);

 protected:
  CObList m_Children;  // of TFmtNode, owned
};

class TFmtGroupNode : public TFmtCompoundNode {
 public:
  TFmtGroupNode() = default;
  TFmtGroupNode(const TFmtGroupNode&) = default;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtGroupNode* CopyDerived() const { return new TFmtGroupNode(*this); }
  TFmtExtent* Compose(TFmtContext& context) override;
  void Draw(TFmtContext& context) override;
  TFmtGroupNode* IsGroupNode() const override { return const_cast<TFmtGroupNode*>(this); }
  TFmtGroupNode* IsPureGroupNode() const override { return const_cast<TFmtGroupNode*>(this); }
  TFmtCompoundNode* IsPureCompoundNode() const override { return nullptr; }
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;

  static ParseTestResult CharacterTokenTest(TTexToken* token, int data, TTexTokenSource& source);
  // A group as it is; a pure compound gets _BEGINGROUP and _ENDGROUP nodes at
  // its ends; anything else goes into a new group.
  static TFmtNode* Groupify(TFmtNode* node);
};

class TFmtGenericArgumentedNode : public TFmtNode {
 public:
  // A null name stands for the empty name.
  explicit TFmtGenericArgumentedNode(const char* name);
  TFmtGenericArgumentedNode(const TFmtGenericArgumentedNode& other);
  TFmtGenericArgumentedNode& operator=(const TFmtGenericArgumentedNode&) = delete;
  ~TFmtGenericArgumentedNode() override;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtGenericArgumentedNode* CopyDerived() const { return new TFmtGenericArgumentedNode(*this); }
  int AfterSkip() const override { return 0; }
  void ApplyRecursively(void (*f)(TFmtNode*)) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) override;
  int BeforeSkip() const override { return 0; }
  TFmtExtent* Compose(TFmtContext& context) override;
  const char* ContainsControlSequence() const override { return m_pName; }
  void Description(CString& out) override;
  void Draw(TFmtContext& context) override;
  int FindCaretPosition(CPoint& point, CObList& path) override;
  int FindFirstCaretPosition(CObList& path) override;
  int FindLastCaretPosition(CObList& path) override;
  int GetTransientStatusMessage(CString& out) override;
  int GetTransientToolTip(CString& out) override;
  int GoesAnywhere() const override;
  int GoesOnVerticalList() const override;
  int HasTransientStatusMessage() override;
  int HasTransientToolTip() override;
  TFmtGenericArgumentedNode* IsGenericArgumentedNode() const override {
    return const_cast<TFmtGenericArgumentedNode*>(this);
  }
  void PrintTex(CString& out, int& column) const override;
  void ResetFmtExtentForReflowables() override;
  void Select(CNodeRect& rect) override;
  TFmtNode* Select(CPoint& point) override;
  void SimplyStringify(CString& out) override;

  // A null argument becomes an empty compound. Optional arguments print in
  // brackets, the others in braces.
  void AddArgument(TFmtNode* node, int bOptional);
  void AddArgumentAtFront(TFmtNode* node);
  void RemoveFirstArgument(int bDelete);
  void ReplaceFirstArgument(TFmtNode* node);
  // 1-based; null past the end.
  TFmtNode* GetArgument(int n) const { return m_pArguments->GetNth(n); }
  int IsOptionalArgument(int n) const;
  // An integer argument prints bare, after a blank, as it was read.
  void SetBareArgument(int n) {
    if (n >= 1 && n <= 32) m_nBareMask |= 1u << (n - 1);
  }

  const char* Get_Name() const { return m_pName; }
  void Set_Name(const char* name) { m_pName = name; }
  int Get_ArgumentCount() const { return m_nArgumentCount; }
  void Set_ArgumentCount(int n) { m_nArgumentCount = n; }
  TFmtCompoundNode* Get_Arguments() const { return m_pArguments.get(); }

  // How many arguments print back: an accent keeps its glyph as a second
  // argument, which the source never wrote. -1: all.
  int m_nPrintedArguments = -1;

  // Fields kept for the compose and draw handlers.
  int32_t m_nHandlerData0 = -1;
  int32_t m_nHandlerData1 = 0;
  int32_t m_nHandlerData2 = 0;

 private:
  const char* m_pName;  // canonical
  int32_t m_nArgumentCount = 0;
  std::unique_ptr<TFmtCompoundNode> m_pArguments;  // owned, never null: one child per argument
  // Bit n set: argument n+1 was read as an optional one. Arguments past the
  // 32nd count as required.
  uint32_t m_nOptionalMask = 0;
  uint32_t m_nBareMask = 0;
};
