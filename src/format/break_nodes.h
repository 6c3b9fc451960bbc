// The break markers of text: a line break (hard from the source, or soft,
// made by a paragraph's line breaker and taken out again at its next run)
// and a page break, which remembers the context so that a page may start
// after it.
#pragma once

#include <memory>
#include <span>

#include "format/context_state.h"
#include "format/node.h"
#include "tex/families/parser_tables.h"

enum ELineBreakType : int {
  k_LineBreakWord = 0,       // prints as "\break"
  k_LineBreakBackslash = 1,  // prints as "\\" with its optional skip
};

class TFmtLineBreakNode : public TFmtNode {
 public:
  TFmtLineBreakNode(int bHard, ELineBreakType type, int unused = 0)
      : m_bHard(bHard), m_nType(type), m_nUnused(unused) {}
  TFmtLineBreakNode(const TFmtLineBreakNode& other);  // deep: skip and tail copied
  TFmtLineBreakNode& operator=(const TFmtLineBreakNode&) = delete;
  ~TFmtLineBreakNode() override;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtLineBreakNode* CopyDerived() const { return new TFmtLineBreakNode(*this); }
  void ApplyRecursively(void (*f)(TFmtNode*)) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) override;
  TFmtExtent* Compose(TFmtContext&) override;
  void Description(CString& out) override;
  int IsEmpty() const override { return 1; }
  TFmtLineBreakNode* IsLineBreakNode() const override { return const_cast<TFmtLineBreakNode*>(this); }
  void PrintTex(CString& out, int& column) const override;
  void SimplyStringify(CString& out) override { out += ' '; }

  // The white space that the break swallowed; the nodes are owned.
  void AddTextHead(TFmtNode* node) { m_TextTail.AddHead(node); }
  void AddTextTail(TFmtNode* node) { m_TextTail.AddTail(node); }
  TFmtNode* RemoveTextHead();  // null when the tail is empty
  TFmtNode* RemoveTextTail();
  const CObList& Get_TextTail() const { return m_TextTail; }

  int Get_Hard() const { return m_bHard; }
  ELineBreakType Get_Type() const { return m_nType; }
  void SetOptionalSkip(TFmtUnitNode* skip);  // owned; null for none
  const TFmtUnitNode* Get_OptionalSkip() const { return m_pOptionalSkip.get(); }

  static TFmtNode* ParseTex_break(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_newline(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static std::span<const TCsParserEntry> ParserTable();

  // ---- fields, in order ----
  int m_bHard;
  ELineBreakType m_nType;
  int32_t m_nAdvance = 0;  // this line's baseline to the next one's; set by the paragraph
  int32_t m_nUnused;

 private:
  std::unique_ptr<TFmtUnitNode> m_pOptionalSkip;
  CObList m_TextTail;  // of TFmtNode, owned
};

class TFmtPageBreakNode : public TFmtNode, public MSnapShot {
 public:
  explicit TFmtPageBreakNode(int bHard) : m_bHard(bHard) {}
  TFmtPageBreakNode(const TFmtPageBreakNode& other) : TFmtNode(other), MSnapShot(), m_bHard(other.m_bHard) {}

  TFmtNode* Copy() const override { return new TFmtPageBreakNode(*this); }
  TFmtExtent* Compose(TFmtContext& context) override;
  void Description(CString& out) override { out = m_bHard ? "hard page break" : "soft page break"; }
  int IsEmpty() const override { return 1; }
  TFmtPageBreakNode* IsPageBreakNode() const override { return const_cast<TFmtPageBreakNode*>(this); }
  void PrintTex(CString& out, int& column) const override;
  void SimplyStringify(CString& out) override {
    if (m_bHard) out += ' ';
  }

  int m_bHard;
};
