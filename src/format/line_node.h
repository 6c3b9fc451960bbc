// TFmtLineNode: one line of its own: \centerline, \leftline, \rightline,
// and each line of verbatim text. Verbatim blocks and \includeverbatim are
// vertical lists of such lines.
#pragma once

#include <span>

#include "format/compound_node.h"
#include "tex/families/parser_tables.h"

enum ELineType : int { k_LineCentre = 0, k_LineLeft = 1, k_LineRight = 2, k_LineVerbatim = 3 };

class TFmtLineNode : public TFmtGroupNode {
 public:
  TFmtLineNode() = default;
  TFmtLineNode(TFmtNode* pContent, ELineType type);
  TFmtLineNode(const TFmtLineNode&) = default;

  TFmtNode* Copy() const override { return new TFmtLineNode(*this); }
  int AfterSkip() const override { return 0; }
  int BeforeSkip() const override;
  TFmtExtent* Compose(TFmtContext& context) override;
  void Description(CString& out) override { out = "line"; }
  void Draw(TFmtContext& context) override;
  void ExtentRectangle(CRect& rect) const override;
  int GoesOnVerticalList() const override { return 1; }
  int IsPointInExtentRectangle(const CPoint& point) const override;
  TFmtGroupNode* IsPureGroupNode() const override { return nullptr; }
  void PrintTex(CString& out, int& column) const override;
  void SimplyStringify(CString& out) override;

  ELineType Get_Type() const { return m_nType; }
  int Get_Indent() const { return m_nIndent; }

  static TFmtNode* ParseTex_centerline(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_leftline(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_rightline(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_beginverbatim(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_includeverbatim(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static std::span<const TCsParserEntry> ParserTable();

 private:
  // ---- fields, in order ----
  ELineType m_nType = k_LineLeft;
  int32_t m_nIndent = 0;     // space left of the text, computed
  int32_t m_nTextWidth = 0;  // width of the text
  // The leading of the font in force after the last Compose: the skip above
  // the line, read by the list when it has no context at hand.
  int32_t m_nLeading = 0;
};
