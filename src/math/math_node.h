// Inline math ($...$, \(...\)) and displayed math ($$...$$, \[...\],
// displaymath), as far as parsing and printing go.
#pragma once

#include <span>

#include "tex/families/parser_tables.h"

#include "format/compound_node.h"

class TFmtMathNode : public TFmtGroupNode {
 public:
  TFmtMathNode() = default;
  TFmtMathNode(const TFmtMathNode&) = default;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtMathNode* CopyDerived() const { return new TFmtMathNode(*this); }
  TFmtMathNode* IsMathNode() const override { return const_cast<TFmtMathNode*>(this); }
  TFmtGroupNode* IsPureGroupNode() const override { return nullptr; }
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;
  // Each also makes this node always drawn when the added node is.
  void AddHead(TFmtNode* node) override;
  void AddTail(TFmtNode* node) override;
  void AddTailSimple(TFmtNode* node) override;

  static ParseTestResult CharacterTest(TTexToken* token, int data, TTexTokenSource& source);
  static ParseTestResult ControlCharacterTest(TTexToken* token, int data, TTexTokenSource& source);
  static ParseTestResult SequenceTest(TTexToken* token, int data, TTexTokenSource& source);
};

enum KDisplayMathType : int {
  k_DisplayDollars = 0,       // $$
  k_DisplayEnvironment = 1,   // displaymath (and equation)
  k_DisplaySystem = 2,        // made by the system: no printed form
  k_DisplayEquation = 3,      // equation
  k_DisplayBracket = 4,       // \[
};

class TFmtDisplayMathNode : public TFmtMathNode {
 public:
  explicit TFmtDisplayMathNode(KDisplayMathType type);
  TFmtDisplayMathNode(const TFmtDisplayMathNode& other);
  TFmtDisplayMathNode& operator=(const TFmtDisplayMathNode&) = delete;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtDisplayMathNode* CopyDerived() const { return new TFmtDisplayMathNode(*this); }
  int GoesOnVerticalList() const override { return 1; }
  int IsEmpty() const override { return TFmtMathNode::IsEmpty() && m_pEqno->IsEmpty(); }
  void MustRecomputeExtent() override { m_bRecompute = 1; }
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;
  void ApplyRecursively(void (*f)(TFmtNode*)) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) override;

  // Replaces (and deletes) the old number; null gives an empty one.
  void SetEqno(TFmtCompoundNode* number, int isLeft);
  int HasLeqno() const { return !m_pEqno->IsEmpty() && m_bLeftNumber; }
  int HasReqno() const { return !m_pEqno->IsEmpty() && !m_bLeftNumber; }
  KDisplayMathType Get_Type() const { return m_Type; }
  TFmtCompoundNode* Get_Eqno() const { return m_pEqno.get(); }

  static ParseTestResult ControlCharacterTest(TTexToken* token, int data, TTexTokenSource& source);
  static ParseTestResult ControlSequenceTest(TTexToken* token, int data, TTexTokenSource& source);
  static ParseTestResult ControlSequenceTokenTestNoEqno(TTexToken* token, int data, TTexTokenSource& source);
  static TFmtNode* ParseTex_begindisplaymath(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_beginequation(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static void InitializeTexParser();
  static std::span<const TCsParserEntry> ParserTable();

  int m_bLeftNumber = 0;
  int m_bRecompute = 1;
  KDisplayMathType m_Type;
  std::unique_ptr<TFmtCompoundNode> m_pEqno;  // owned, never null
  int m_nNumberOffset = 0;
  int m_nContentOffset = 0;
  int m_nContentWidth = 0;
};
