// TFmtNode: the root of the format tree. A node is built by a parser, measured
// by Compose, painted by Draw, printed back by PrintTex/PrintMml and searched
// by the caret, selection and link code.
//
// Nodes keep no parent pointer: the way down from the root is a CNodePath.
// A node owns its children outright; Copy is a deep copy of the subtree.
#pragma once

#include <cstdint>
#include <memory>

#include "format/extent.h"
#include "framework/collections.h"
#include "framework/color_ref.h"
#include "framework/cstring.h"
#include "framework/geometry.h"
#include "symbols/copyable_node.h"

class CNodeMenu;
class CNodePath;
class CNodeRect;
class COverlayNodeInfo;
class CWnd;
class TFmtContext;
class TFontFamily;
class TExtendedFont_PI;
class TTexTokenSource;

class TFmtArrayNode;
class TFmtAudioNode;
class TFmtCharacterNode;
class TFmtCompoundNode;
class TFmtControlCharacterNode;
class TFmtControlSequenceNode;
class TFmtDocumentNode;
class TFmtGenericArgumentedNode;
class TFmtGlueNode;
class TFmtGroupNode;
class TFmtLeftRightNode;
class TFmtLineBreakNode;
class TFmtLinkNode;
class TFmtMathNode;
class TFmtMenuNode;
class TFmtNoteNode;
class TFmtObjectNode;
class TFmtOverNode;
class TFmtPageBreakNode;
class TFmtParagraphNode;
class TFmtRootNode;
class TFmtRuleNode;
class TFmtScriptedNode;
class TFmtSequenceNode;
class TFmtTabbingNode;
class TFmtUnitNode;
class TFmtVideoNode;
class TFmtVerticalListNode;

// One entry of the selection colour stack: what SetSelectionForeground changed.
class TSelectionData : public CObject {
 public:
  TSelectionData(int doColorize, int colorForced, const CColorRef& color)
      : m_bDoColorize(doColorize), m_bColorForced(colorForced), m_Color(color) {}
  int m_bDoColorize;
  int m_bColorForced;
  CColorRef m_Color;
};

// TeX printing helpers shared by the node classes: a newline unless the
// column is already 0; a \verb delimiter that the text does not contain.
void AddNewlineIfNeeded(CString& out, int& column);
char VerbChar(const CString& text);

// A node's extent, kept inside the node and used like the pointer to it
// that it once was: one allocation fewer for each of the millions of nodes
// of a large document. Reading through a const node may still change the
// extent, as composition caches do.
class TFmtExtentSlot {
 public:
  TFmtExtentSlot() : m_Extent(0, 0, 0) {}
  TFmtExtent* get() const { return &m_Extent; }
  TFmtExtent* operator->() const { return &m_Extent; }
  TFmtExtent& operator*() const { return m_Extent; }

 private:
  mutable TFmtExtent m_Extent;
};

class TFmtNode : public TCopyableNode {
 public:
  TFmtNode();
  // Copies position, draw-always flag and extent; clears selection,
  // highlight and the hash code (a copy is a new node among its siblings).
  TFmtNode(const TFmtNode& other);
  // Unlike the copy constructor, keeps the source's hash code: assignment
  // replaces a node in place, and its address across a re-parse must hold.
  TFmtNode& operator=(const TFmtNode& other);

  // ---- the virtual table, in its order ----
  ~TFmtNode() override;
  void AssertValid() const override {}
  void Serialize(CArchive&) override {}  // the tree is never archived
  virtual int AfterSkip() const { return 0; }
  virtual void ApplyRecursively(void (*f)(TFmtNode*));
  virtual void ApplyRecursively(void (*f)(TFmtNode*, void*), void* a);
  virtual void ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b);
  virtual int BeforeSkip() const { return 0; }
  virtual CPoint CaretPosition() const { return m_Position; }
  virtual const char* ContainsControlSequence() const { return nullptr; }
  virtual int ContextMenu(CNodeMenu*) { return 0; }
  TFmtNode* Copy() const override;
  virtual void Description(CString& out);
  virtual int DontBreakAfter() const { return 0; }
  virtual int DontBreakBefore() const { return 0; }
  virtual void Draw(TFmtContext&) {}
  virtual void DrawBoundingBox(TFmtContext& context);
  // A hook that nothing calls.
  virtual int DrawFromNode(TFmtContext&, CNodePath*) { return 0; }
  virtual int DrawnFmtExtent(TFmtExtent*) const { return 0; }
  // (x, y + height, x + width, y - depth): logical y grows upward.
  virtual void ExtentRectangle(CRect& rect) const;
  virtual int FindCaretPosition(CPoint& point, CObList& path);
  virtual int FindFirstCaretPosition(CObList& path);
  virtual int FindLastCaretPosition(CObList& path);
  virtual int FindNextCaretPositionInt(CObList&, TFmtNode*) { return 0; }
  virtual int FindPrevCaretPositionInt(CObList&, TFmtNode*) { return 0; }
  virtual TFontFamily* GetFontFamilyAndCharacter(int&) { return nullptr; }
  virtual COverlayNodeInfo* GetOverlayInfo() const { return nullptr; }
  virtual int GetPointInExtentRectangle(CPoint& point) const;
  virtual int GetTransientBackgroundColor(CColorRef&) { return 0; }
  virtual int GetTransientForegroundColor(CColorRef&) { return 0; }
  virtual int GetTransientStatusMessage(CString&) { return 0; }
  virtual int GetTransientToolTip(CString&) { return 0; }
  virtual void GiveFocus(CWnd* window);
  virtual int GoesAnywhere() const { return 0; }
  virtual int GoesOnVerticalList() const { return 0; }
  virtual int HasTransientBackgroundColor() { return 0; }
  virtual int HasTransientForegroundColor() { return 0; }
  virtual int HasTransientStatusMessage() { return 0; }
  virtual int HasTransientToolTip() { return 0; }
  virtual void HandDraw(TFmtContext&) {}
  virtual unsigned HashCode(TFmtNode* parent);
  virtual void ClearNodeData() {}

  // Kind tests: each IsXNode() is also the checked cast, null here and `this`
  // in the class that it names and below.
  virtual TFmtArrayNode* IsArrayNode() const { return nullptr; }
  virtual TFmtAudioNode* IsAudioNode() const { return nullptr; }
  virtual int IsCharacter(char) const { return 0; }
  virtual TFmtCharacterNode* IsCharacterNode() const { return nullptr; }
  virtual int IsCollectingOverNode() const { return 0; }
  virtual TFmtCompoundNode* IsCompoundNode() const { return nullptr; }
  virtual int IsControlCharacterNode(char) const { return 0; }
  virtual TFmtControlCharacterNode* IsControlCharacterNode() const { return nullptr; }
  virtual int IsControlSequence(const char*) const { return 0; }  // interned name, by pointer
  virtual TFmtControlSequenceNode* IsControlSequenceNode() const { return nullptr; }
  virtual TFmtDocumentNode* IsDocumentNode() const { return nullptr; }
  virtual int IsEmpty() const { return 0; }
  virtual int IsEqual(char) const { return 0; }
  virtual TFmtGenericArgumentedNode* IsGenericArgumentedNode() const { return nullptr; }
  virtual TFmtGlueNode* IsGlueNode() const { return nullptr; }
  virtual TFmtGroupNode* IsGroupNode() const { return nullptr; }
  virtual TFmtLeftRightNode* IsLeftRightNode() const { return nullptr; }
  virtual TFmtLineBreakNode* IsLineBreakNode() const { return nullptr; }
  virtual TFmtLinkNode* IsLinkNode() const { return nullptr; }
  virtual TFmtMathNode* IsMathNode() const { return nullptr; }
  virtual TFmtMenuNode* IsMenuNode() const { return nullptr; }
  virtual TFmtNoteNode* IsNoteNode() const { return nullptr; }
  virtual TFmtObjectNode* IsObjectNode() const { return nullptr; }
  virtual TFmtOverNode* IsOverNode() const { return nullptr; }
  virtual TFmtPageBreakNode* IsPageBreakNode() const { return nullptr; }
  virtual TFmtParagraphNode* IsParagraphNode() const { return nullptr; }
  virtual int IsPointInExtentRectangle(const CPoint& point) const;
  // "Pure" lists are the plain classes, the only ones that may be dissolved
  // into their parent when lists merge.
  virtual TFmtCompoundNode* IsPureCompoundNode() const { return nullptr; }
  virtual TFmtGroupNode* IsPureGroupNode() const { return nullptr; }
  virtual TFmtRootNode* IsRootNode() const { return nullptr; }
  virtual TFmtRuleNode* IsRuleNode() const { return nullptr; }
  virtual TFmtScriptedNode* IsScriptedNode() const { return nullptr; }
  virtual TFmtSequenceNode* IsSequenceNode() const { return nullptr; }
  virtual TFmtTabbingNode* IsTabbingNode() const { return nullptr; }
  virtual TFmtUnitNode* IsUnitNode() const { return nullptr; }
  virtual TFmtVideoNode* IsVideoNode() const { return nullptr; }
  virtual TFmtVerticalListNode* IsVerticalListNode() const { return nullptr; }
  virtual int IsWhiteSpace() const { return 0; }

  virtual void Notify() {}
  virtual int OwnerOf(TFmtNode*) const { return 0; }
  // The node that is to stand in the tree: this, a replacement (the caller
  // deletes the node it made), or null for nothing.
  virtual TFmtNode* ParseTex(TTexTokenSource&) { return this; }
  virtual void PrintHtml(CString&, int&) const {}
  virtual void PrintMml(CString& out, int indent) const;
  // The column is the output column, kept true by every writer.
  virtual void PrintTex(CString&, int&) const {}
  virtual void PrintTexArgument(CString& out, int& column) const;
  virtual void PrintTexOptionalArgument(CString& out, int& column) const;
  virtual int RemoveChild(TFmtNode*, int /*bShallow*/) { return 0; }
  virtual void Select(CNodeRect&) {}
  virtual TFmtNode* Select(CPoint&) { return nullptr; }
  virtual void SetIsHighlighted(int flag);
  virtual void SetIsSelected(int flag);
  virtual void SetOverlayInfo(COverlayNodeInfo*) {}
  virtual void SimplyStringify(CString&) {}
  virtual TFmtExtent* Compose(TFmtContext&) { return m_pExtent.get(); }
  virtual void MustRecomputeExtent() {}
  virtual void ResetFmtExtentForReflowables() {}

  // ---- non-virtual ----
  static void InitializeTexParser();
  static void InitializeDrawProperties();
  // Each element of the list must be a node.
  static void ApplyRecursivelyList(CObList& list, void (*f)(TFmtNode*));
  static void ApplyRecursivelyList(CObList& list, void (*f)(TFmtNode*, void*), void* a);
  static void ApplyRecursivelyList(CObList& list, void (*f)(TFmtNode*, void*, void*), void* a, void* b);

  // The first child (of this node seen as a list) whose HashCode is `code`.
  TFmtNode* Find(unsigned code);
  int FindNextCaretPosition(CObList& path, TFmtNode* from);
  int FindPrevCaretPosition(CObList& path, TFmtNode* from);
  // Always false: the two rectangles are compared as objects, and the path
  // and range code that asks relies on every pair counting as different.
  int HasSameExtent(const TFmtNode* other) const;
  int IsDrawRequired(TFmtContext& context) const;
  // Defined with the glue node.
  int IsHorizontalFillGlue() const;
  void ComputeCharacterFmtExtent(int ch, TFmtContext& context, TExtendedFont_PI* pFont);

  void DrawSelectionBackground(TFmtContext& context);
  void SetSelectionForeground(TFmtContext& context);
  void UnsetSelectionForeground(TFmtContext& context);
  CColorRef GetForegroundColor() const;
  CColorRef GetBackgroundColor() const;
  // The colour of a node's selection state in a table of the context's colours.
  CColorRef StateColor(const CColorRef* colors) const;
  CColorRef DelimiterColor() const;
  CColorRef LineColor() const;

  static void PrintVerbTex(const CString& text, CString& out, int& column, int bBlock);
  static unsigned Get_ClipboardFormat();
  static void SetNodeHighlight(TFmtNode* node, void* pFlag);
  static void SetNodeSelect(TFmtNode* node, void* pFlag);

  // Children of a node seen as a list (the selection code's compound view):
  // null when the node is no list. Installed by the list classes; until then
  // no node has children to count.
  using TCompoundView = const CObList* (*)(TFmtNode* node);
  static inline TCompoundView fg_pCompoundView = nullptr;

  // ---- fields, in order ----
  TFmtExtentSlot m_pExtent;  // inside the node, never null
  CPoint m_Position;                      // left edge, baseline; logical units
  int m_bDrawAlways = 0;
  int m_bIsSelected = 0;
  int m_bIsHighlighted = 0;
  uint32_t m_nHashCode = 0;  // 0: not fixed yet

  // ---- class-level ----
  static inline int fg_bTexParserInitialized = 0;
  static inline int fg_bDrawPropertiesInitialized = 0;  // the pool generation loaded
  static inline int fg_bHtmlParserInitialized = 0;
  static inline TFmtNode* fg_pBoundedNode = nullptr;  // debugging box; nothing sets it
  static inline unsigned fg_nClipboardFormat = 0;
  static CObList fg_SelectionStack;  // of TSelectionData, owned, newest at the head
};
