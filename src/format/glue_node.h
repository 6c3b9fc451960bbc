// TFmtGlueNode: a space with a natural size, a stretch and a shrink, and the
// size that a line actually gives it. The kind says where it came from and
// fixes its natural size for the named spaces (\quad, \, and the rest).
#pragma once

#include <memory>

#include "format/node.h"
#include "format/unit_node.h"

class TTexTokenSource;

// What a glue is; 2 and 10 are unused numbers.
enum KGlueKind : int {
  k_GlueSkip = 0,  // \hskip, \hspace, \vskip, fil glue: as parsed
  k_GlueControlSpace = 1,   // "\ "
  k_GlueKern = 3,           // \kern
  k_GlueMedSpace = 4,       // \medspace, \: and \>
  k_GlueNegMedSpace = 5,    // \negmedspace
  k_GlueNegThickSpace = 6,  // \negthickspace
  k_GlueNegThin = 7,        // \!
  k_GlueThick = 8,          // \; and \thickspace
  k_GlueThin = 9,           // \,
  k_GlueSpace = 11,         // \space
  k_GlueEnSkip = 12,        // \enskip
  k_GlueEnSpace = 13,       // \enspace
  k_GlueNegThinSpace = 14,  // \negthinspace
  k_GlueQquad = 15,         // \qquad
  k_GlueQuad = 16,          // \quad
  k_GlueTextBlank = 17,     // a blank in text
  k_GlueThinSpace = 18,     // \thinspace
  k_GlueTie = 19,           // ~
  k_GlueParsed = 20,        // a glue value read by ParseTex (style parameters)
};

class TFmtGlueNode : public TFmtNode {
 public:
  TFmtGlueNode(int bUserSupplied, int bHorizontal);
  TFmtGlueNode(const TFmtGlueNode& other);  // deep: the units are copied
  TFmtGlueNode& operator=(const TFmtGlueNode& other);
  ~TFmtGlueNode() override;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtGlueNode* CopyDerived() const { return new TFmtGlueNode(*this); }
  TFmtExtent* Compose(TFmtContext& context) override;
  void Draw(TFmtContext& context) override;
  void Description(CString& out) override;
  int DontBreakAfter() const override;
  int DontBreakBefore() const override;
  int GoesOnVerticalList() const override { return !m_bHorizontal; }
  TFmtGlueNode* IsGlueNode() const override { return const_cast<TFmtGlueNode*>(this); }
  int IsWhiteSpace() const override { return m_nKind == k_GlueTextBlank; }
  // A glue value: a measure, then "plus" and "minus" clauses; kind 20.
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;
  void ResetFmtExtentForReflowables() override;
  void SimplyStringify(CString& out) override;

  // The normal space is made (0, 1, unit 0) on first read.
  TFmtUnitNode* GetNormalSpace();
  // The actual space, or the normal space when none is set.
  TFmtUnitNode* GetActualSpace();
  // Each takes ownership and deletes what was there.
  void SetNormalSpace(TFmtUnitNode* unit);
  void SetActualSpace(TFmtUnitNode* unit);
  void SetStretchability(TFmtUnitNode* unit);
  void SetShrinkability(TFmtUnitNode* unit);
  void SetActualSpaceToBeNormalSpace();

  const TFmtUnitNode* Get_NormalSpace() const { return m_pNormalSpace.get(); }  // may be null
  const TFmtUnitNode* Get_ActualSpace() const { return m_pActualSpace.get(); }  // may be null
  const TFmtUnitNode* Get_Stretch() const { return m_pStretch.get(); }
  const TFmtUnitNode* Get_Shrink() const { return m_pShrink.get(); }
  int Get_Kind() const { return m_nKind; }
  void Set_Kind(int kind) { m_nKind = kind; }
  int Get_UserSupplied() const { return m_bUserSupplied; }
  int Get_Horizontal() const { return m_bHorizontal; }

  int IsFil() const { return IsFillOfUnit(k_UnitFil); }
  int IsFill() const { return IsFillOfUnit(k_UnitFill); }
  int IsFilll() const { return IsFillOfUnit(k_UnitFilll); }
  int IsSs() const;
  // 1, 2, 3 for fil, fill, filll glue; 0 for any other.
  int FillLevel() const;

  // Program-supplied horizontal glue with stretch (1, 1, filll).
  static TFmtGlueNode* New_hfilll();
  // User-supplied horizontal glue: "!" 7, "," 9, ":" and ">" 4, ";" 8,
  // blank 1; any other character leaves kind 0.
  static TFmtGlueNode* GlueFromControlCharacter(char c);
  static TFmtGlueNode* GlueFromControlCharacter(char c, TTexTokenSource&) { return GlueFromControlCharacter(c); }
  // A blank in text is kind 17, "~" kind 19.
  static TFmtGlueNode* GlueFromTextSpace(char c);
  static TFmtGlueNode* GlueFromTextSpace(char c, TTexTokenSource&) { return GlueFromTextSpace(c); }
  // Reads a glue value into glue: a measure (a `fill` measure is the stretch
  // and ends it), else the normal space and up to two plus/minus clauses.
  static void ParseGlueDimens(TTexTokenSource& source, TFmtGlueNode* glue);

  // Registers the spacing commands (src/tex/families/spacing.cpp).
  static void InitializeTexParser();

 private:
  int IsFillOfUnit(KUnitType level) const;
  static void ParseGlueDimensRaw(TTexTokenSource& source, TFmtGlueNode* glue);
  static void ParseGlueDimensInner(TTexTokenSource& source, TFmtGlueNode* glue);

  // ---- fields, in order ----
  int m_bUserSupplied;  // from the source; program glue may be deleted and made again
  int m_bHorizontal;
  std::unique_ptr<TFmtUnitNode> m_pActualSpace;  // owned; null: the normal space
  std::unique_ptr<TFmtUnitNode> m_pNormalSpace;  // owned; made as 0 on first read
  std::unique_ptr<TFmtUnitNode> m_pStretch;      // owned, may be null
  std::unique_ptr<TFmtUnitNode> m_pShrink;       // owned, may be null
  int m_nKind = k_GlueSkip;
};

// Shares available logical units among the highest-order fill glue of nodes
// (a list of TFmtNode*): q each, the remainder one by one from the first.
void ExpandInfinitelyStretchableGlue(CObList* nodes, int available, TFmtContext& context);
