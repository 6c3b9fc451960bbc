// TFmtVerticalListNode: elements stacked downward, the body of a document,
// of a \vbox or \vtop, of a minipage. Build turns the parser's flat list into
// paragraphs and vertical elements. TFmtMiniPageNode is a list of a set width.
#pragma once

#include <memory>
#include <span>

#include "format/compound_node.h"
#include "format/unit_node.h"
#include "tex/families/parser_tables.h"

class TFmtVerticalListNode : public TFmtCompoundNode {
 public:
  enum KReferencePoint : int { k_RefTop = 0, k_RefBottom = 1, k_RefCentre = 2 };

  explicit TFmtVerticalListNode(KReferencePoint reference = k_RefTop);
  TFmtVerticalListNode(const TFmtVerticalListNode& other);
  TFmtVerticalListNode& operator=(const TFmtVerticalListNode&) = delete;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtVerticalListNode* CopyDerived() const { return new TFmtVerticalListNode(*this); }
  TFmtExtent* Compose(TFmtContext& context) override;
  void Description(CString& out) override { out = "vertical list"; }
  int DontBreakBefore() const override { return 1; }
  void Draw(TFmtContext& context) override;
  int FindCaretPosition(CPoint& point, CObList& path) override;
  int FindFirstCaretPosition(CObList& path) override;
  int GoesOnVerticalList() const override { return 1; }
  int IsEmpty() const override;
  TFmtCompoundNode* IsPureCompoundNode() const override { return nullptr; }
  TFmtVerticalListNode* IsVerticalListNode() const override { return const_cast<TFmtVerticalListNode*>(this); }
  void PrintTex(CString& out, int& column) const override;
  void AddHead(TFmtNode* node) override {
    if (node) m_Children.AddHead(node);
  }
  void AddTail(TFmtNode* node) override { AddTailSimple(node); }

  // Consumes source's children (and deletes source): paragraphs are made of
  // the runs of text, vertical elements stand alone. Iterative throughout:
  // nested groups and long runs cost no stack.
  void Build(TFmtCompoundNode* source);
  // The index of the element that holds y, or of the one below a gap; 0 when
  // none does.
  int GetIndexFromLogicalY(int y) const;
  TFmtNode* FindClosestNode(const CPoint& point) const;

  void Set_Verbatim(int flag) { m_bVerbatim = flag; }
  int Get_Verbatim() const { return m_bVerbatim; }
  void Set_IsDocumentBody(int flag) { m_bIsDocumentBody = flag; }
  KReferencePoint Get_ReferencePoint() const { return m_nReferencePoint; }
  int Get_ComposeCount() const { return m_nComposeCount; }

  // Loads the name tables that Build reads (_PARAGRAPHSTARTER and the rest).
  static void InitializeProperties();
  static TFmtNode* ParseTex_vbox(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_vtop(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_INNER(TFmtVerticalListNode* list, TTexTokenSource& source);
  static std::span<const TCsParserEntry> ParserTable();

 protected:
  // ---- fields, in order ----
  int m_bVerbatim = 0;
  int m_bIsDocumentBody = 0;
  int32_t m_nComposeCount = 0;
  KReferencePoint m_nReferencePoint;
  int32_t m_nYOffset = 0;

  static inline int fg_bPropertiesInitialized = 0;  // the pool generation loaded
};

class TFmtMiniPageNode : public TFmtVerticalListNode {
 public:
  // A null width is one inch.
  TFmtMiniPageNode(KReferencePoint reference, TFmtUnitNode* pWidth);
  TFmtMiniPageNode(const TFmtMiniPageNode& other);

  TFmtNode* Copy() const override { return new TFmtMiniPageNode(*this); }
  TFmtExtent* Compose(TFmtContext& context) override;
  void Description(CString& out) override { out = "minipage"; }
  void Draw(TFmtContext& context) override;
  int GoesOnVerticalList() const override { return 0; }
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;

  static TFmtNode* ParseTex_beginminipage(TFmtControlSequenceNode* node, TTexTokenSource& source);

 private:
  std::unique_ptr<TFmtUnitNode> m_pWidth;  // never null
};
