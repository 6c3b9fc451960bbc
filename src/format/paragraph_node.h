// TFmtParagraphNode: running text broken into lines, for the body's
// paragraphs and for \parbox. Lines are found by one greedy first-fit pass at
// every Compose; a line's soft end is a TFmtLineBreakNode in the child list,
// so the children always show the current lines. Only infinite glue
// stretches: there is no justification of both margins.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "format/compound_node.h"
#include "format/unit_node.h"
#include "tex/families/parser_tables.h"

class TFmtParagraphNode : public TFmtCompoundNode {
 public:
  enum KAlignment : int { k_AlignTop = 0, k_AlignCentre = 1, k_AlignBottom = 2 };

  // A null width becomes (0, 1, unit 0): the width of the margins.
  TFmtParagraphNode(KAlignment alignment = k_AlignTop, TFmtUnitNode* pWidth = nullptr);
  TFmtParagraphNode(const TFmtParagraphNode& other);
  TFmtParagraphNode& operator=(const TFmtParagraphNode&) = delete;
  ~TFmtParagraphNode() override;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtParagraphNode* CopyDerived() const { return new TFmtParagraphNode(*this); }
  int AfterSkip() const override { return 0; }
  int BeforeSkip() const override;
  TFmtExtent* Compose(TFmtContext& context) override;
  void Description(CString& out) override { out = "paragraph"; }
  void Draw(TFmtContext& context) override;
  int GoesOnVerticalList() const override { return m_pWidth->Get_Numerator() == 0; }
  TFmtParagraphNode* IsParagraphNode() const override { return const_cast<TFmtParagraphNode*>(this); }
  TFmtCompoundNode* IsPureCompoundNode() const override { return nullptr; }
  TFmtNode* ParseTex(TTexTokenSource&) override { return this; }
  void PrintTex(CString& out, int& column) const override;
  void AddHead(TFmtNode* node) override;
  void AddTail(TFmtNode* node) override { AddTailSimple(node); }
  void AddTailSimple(TFmtNode* node) override;

  // The line breaker: takes out the last run's soft breaks and program fill,
  // then breaks again at the current margins.
  void Reflow(TFmtContext& context);
  // Shares each line's free space among its highest-order fill glue.
  void ProcessHorizontalFill(TFmtContext& context);
  void Set_Justification(int value) {
    m_nJustification = value;
    m_bHasFill = value != 1;
  }
  int Get_Justification() const { return m_nJustification; }
  void Set_Width(TFmtUnitNode* width);  // owned; null: no width
  const TFmtUnitNode* Get_Width() const { return m_pWidth.get(); }
  KAlignment Get_Alignment() const { return m_nAlignment; }
  int32_t Get_VerticalShift() const { return m_nVerticalShift; }
  // The lines that the last Compose found, top down: width, height with the
  // strut, depth. Kept for tools and tests; layout does not read it.
  const std::vector<TFmtExtent>& Get_LineExtents() const { return m_LineExtents; }
  // Fills a \parbox from its argument: a group's content between group
  // markers, a plain list's children, anything else as it is.
  void Paragraphy(TFmtNode* node);

  static TFmtNode* ParseTex_parbox(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static std::span<const TCsParserEntry> ParserTable();
  // The justification declarations and environments.
  static void InitializeDrawProperties();

 private:
  int HasWidth() const { return m_pWidth->Get_Numerator() != 0; }
  // True when the list holds nothing but program fill.
  int HoldsOnlyProgramFill() const;
  // Soft breaks and program fill that a reflow took out are kept for the
  // next one: a resize then makes and frees no nodes for them.
  TFmtLineBreakNode* NewSoftBreak();
  TFmtGlueNode* NewProgramFill();

  // ---- fields, in order ----
  int m_nJustification = 1;  // 1 ragged right, 2 ragged left, 3 centred
  int m_bHasFill = 0;
  int m_bFillProcessed = 0;
  KAlignment m_nAlignment;
  std::unique_ptr<TFmtUnitNode> m_pWidth;  // never null
  int32_t m_nVerticalShift = 0;

  std::vector<TFmtExtent> m_LineExtents;
  CObList m_SpareBreaks;  // of TFmtLineBreakNode, owned, out of the list; not copied
  CObList m_SpareFills;   // of program TFmtGlueNode, owned, out of the list; not copied
};
