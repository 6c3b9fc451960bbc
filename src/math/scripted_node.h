// A nucleus with a subscript and a superscript (x_1^2), as far as parsing and
// printing go.
#pragma once

#include <span>

#include "tex/families/parser_tables.h"

#include "format/node.h"

class TFmtScriptedNode : public TFmtNode {
 public:
  // Null parts become new empty groups.
  TFmtScriptedNode(TFmtNode* nucleus, TFmtNode* sub, TFmtNode* sup);
  TFmtScriptedNode(const TFmtScriptedNode& other);
  TFmtScriptedNode& operator=(const TFmtScriptedNode&) = delete;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtScriptedNode* CopyDerived() const { return new TFmtScriptedNode(*this); }
  void ApplyRecursively(void (*f)(TFmtNode*)) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) override;
  void Description(CString& out) override { out = "scripted expression"; }
  int IsEmpty() const override;
  TFmtScriptedNode* IsScriptedNode() const override { return const_cast<TFmtScriptedNode*>(this); }
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;
  void SimplyStringify(CString& out) override;

  // Each deletes what it replaces; null gives an empty group.
  void SetNucleus(TFmtNode* node);
  void SetSubscript(TFmtNode* node);
  void SetSuperscript(TFmtNode* node);
  // Hands a part over to the caller, leaving an empty group in its place.
  TFmtNode* ReleaseNucleus();
  TFmtNode* ReleaseSubscript();
  TFmtNode* ReleaseSuperscript();
  TFmtNode* Get_Nucleus() const { return m_pNucleus.get(); }
  TFmtNode* Get_Subscript() const { return m_pSubscript.get(); }
  TFmtNode* Get_Superscript() const { return m_pSuperscript.get(); }

  // A script read after "_", "^", \sb or \sp, on an empty nucleus.
  static TFmtNode* ParseScript(TTexTokenSource& source, int subscript);
  static TFmtNode* ParseTex_sb(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static TFmtNode* ParseTex_sp(TFmtControlSequenceNode* node, TTexTokenSource& source);
  static void InitializeTexParser();
  static std::span<const TCsParserEntry> ParserTable();

  // Whether the next ParseTex reads a subscript (the source's flag): set by
  // "_" and \sb, cleared by "^" and \sp.
  static inline int fg_bSubscript = 0;

 private:
  std::unique_ptr<TFmtNode> m_pNucleus;      // owned, never null
  std::unique_ptr<TFmtNode> m_pSubscript;    // owned, never null
  std::unique_ptr<TFmtNode> m_pSuperscript;  // owned, never null
  int m_nSubscriptShift = 0;
  int m_nSuperscriptShift = 0;
  int m_bCentered = 0;
};
