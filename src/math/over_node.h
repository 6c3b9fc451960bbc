// Fractions and their relatives (\over, \atop, \choose, \frac, \cfrac, ...),
// as far as parsing and printing go.
#pragma once

#include <span>

#include "tex/families/parser_tables.h"

#include "format/compound_node.h"

enum KOverType : int {
  k_OverAtop = 0,
  k_OverCfrac = 1,
  k_OverChoose = 2,
  k_OverChooseComposed = 3,
  k_OverDfrac = 4,
  k_OverFrac = 5,
  k_OverCfracLeft = 6,
  k_OverOver = 7,
  k_OverCfracRight = 8,
  k_OverTfrac = 9,
  k_OverZag = 10,
  k_OverZig = 11,
};

class TFmtOverNode : public TFmtNode {
 public:
  // Null parts become empty compounds.
  TFmtOverNode(KOverType type, int bCollecting, TFmtCompoundNode* top, TFmtCompoundNode* bottom);
  TFmtOverNode(const TFmtOverNode& other);
  TFmtOverNode& operator=(const TFmtOverNode&) = delete;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtOverNode* CopyDerived() const { return new TFmtOverNode(*this); }
  void ApplyRecursively(void (*f)(TFmtNode*)) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) override;
  void Description(CString& out) override { out = "fraction"; }
  int IsCollectingOverNode() const override { return m_bCollecting; }
  int IsEmpty() const override { return m_pTop->IsEmpty() && m_pBottom->IsEmpty(); }
  TFmtOverNode* IsOverNode() const override { return const_cast<TFmtOverNode*>(this); }
  void PrintTex(CString& out, int& column) const override;
  void SimplyStringify(CString& out) override;

  void SetTop(TFmtCompoundNode* top);
  void SetBottom(TFmtCompoundNode* bottom);
  // Owned; null for the default rule.
  void SetThickness(TFmtNode* thickness) { m_pThickness.reset(thickness); }
  TFmtCompoundNode* Get_Top() const { return m_pTop.get(); }
  TFmtCompoundNode* Get_Bottom() const { return m_pBottom.get(); }
  TFmtNode* Get_Thickness() const { return m_pThickness.get(); }
  KOverType Get_Type() const { return m_Type; }

  static TFmtNode* ParseTex_atop(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_choose(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_over(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_frac(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_dfrac(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_tfrac(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_cfrac(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_zig(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_zag(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static void InitializeTexParser();
  static std::span<const TCsParserEntry> ParserTable();

 private:
  int m_bCollecting;
  std::unique_ptr<TFmtCompoundNode> m_pTop;     // owned, never null
  std::unique_ptr<TFmtCompoundNode> m_pBottom;  // owned, never null
  std::unique_ptr<TFmtNode> m_pThickness;       // owned, may be null: a unit node
  KOverType m_Type;
  int m_nTopShift = 0;
  int m_nBottomShift = 0;
  int m_nTopOffset = 0;
  int m_nBottomOffset = 0;
};
