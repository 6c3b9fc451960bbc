// TFmtDocumentNode: the root of a format tree and the record of what belongs
// to the document as a whole: its body (one vertical list that it owns), the
// title data, labels, topic neighbours, page colour, caret, the lists of live
// controls and of nodes waiting for evaluation, and the composition status.
// It is not a compound: most tree operations forward to the body.
#pragma once

#include "format/node.h"
#include "framework/collections.h"
#include "framework/color_ref.h"
#include "framework/cstring.h"
#include "framework/geometry.h"

class CMenu;
class CNodePath;
class TFmtCompoundNode;
class TFmtVerticalListNode;
class ZRDocument;

// How much of a document must be composed again.
enum KCompositionStatus : int {
  k_Composed = 0,          // extents and positions stand
  k_LinksChanged = 1,      // only marked link and alternate content recompose
  k_WidthChanged = 2,      // only the width changed: character-like nodes keep their extent
  k_ComposeEverything = 3,
};

// The kind of text a document came from; no decision reads it.
enum KSourceType : int { k_SourceTex = 0, k_SourceMathMl = 1 };

class TFmtDocumentNode : public TFmtNode {
 public:
  explicit TFmtDocumentNode(ZRDocument* instance = nullptr);
  // Moves the body to the deletion store instead of deleting it: a large
  // tree goes away in slices while the user works on.
  ~TFmtDocumentNode() override;
  TFmtDocumentNode(const TFmtDocumentNode&) = delete;
  TFmtDocumentNode& operator=(const TFmtDocumentNode&) = delete;

  // ---- node protocol ----
  // A document is never copied into another tree: a copy is an empty one.
  TFmtNode* Copy() const override { return new TFmtDocumentNode(m_pDocumentInstance); }
  TFmtExtent* Compose(TFmtContext& context) override;
  void Draw(TFmtContext& context) override;
  TFmtDocumentNode* IsDocumentNode() const override { return const_cast<TFmtDocumentNode*>(this); }
  int IsEmpty() const override;
  void Description(CString& out) override { out += "document node"; }
  void PrintTex(CString& out, int& column) const override;
  void SimplyStringify(CString& out) override;
  void ApplyRecursively(void (*f)(TFmtNode*)) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) override;
  void ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) override;
  int FindCaretPosition(CPoint& point, CObList& path) override;
  int FindFirstCaretPosition(CObList& path) override;
  int FindLastCaretPosition(CObList& path) override;
  int FindNextCaretPositionInt(CObList& path, TFmtNode* node) override;
  int FindPrevCaretPositionInt(CObList& path, TFmtNode* node) override;
  // Loads the document's popup menu (119) into menu; always serves.
  int ContextMenuInto(CMenu& menu);

  // ---- body ----
  // Builds the body from the parser's list (consumed) and asks for a full
  // composition.
  void Build(TFmtCompoundNode* source);
  void AppendToBottom(TFmtNode* node);
  TFmtVerticalListNode* Get_VerticalList() const { return m_pVerticalList; }
  // Deletes the old body and takes list, marked as a document body.
  void Set_VerticalList(TFmtVerticalListNode* list);

  // ---- the host ----
  ZRDocument* Get_DocumentInstance() const { return m_pDocumentInstance; }
  void Set_DocumentInstance(ZRDocument* instance) { m_pDocumentInstance = instance; }
  KSourceType Get_SourceType() const { return m_nSourceType; }
  void Set_SourceType(KSourceType type) { m_nSourceType = type; }

  // ---- composition status ----
  KCompositionStatus Get_CompositionStatus() const { return m_nCompositionStatus; }
  // Merges: the same value changes nothing; 0 and 3 always take, and so does
  // anything while composed; 1 and 2 pending together need everything (3).
  void Set_CompositionStatus(KCompositionStatus status);
  // Stores without merging: for a scope that raised the status and puts
  // back what it found.
  void Replace_CompositionStatus(KCompositionStatus status) { m_nCompositionStatus = status; }

  // ---- names of the document and its neighbours ----
  const CString& Get_AboveTopicPathName() const { return m_AboveTopicPathName; }
  void Set_AboveTopicPathName(const char* name) { m_AboveTopicPathName = name; }
  const CString& Get_BibliographyPathName() const { return m_BibliographyPathName; }
  void Set_BibliographyPathName(const char* name) { m_BibliographyPathName = name; }
  // The URL that relative names in the document resolve against.
  const CString& Get_DocumentSource() const { return m_DocumentSource; }
  void Set_DocumentSource(const char* url) { m_DocumentSource = url; }
  const CString& Get_NextTopicPathName() const { return m_NextTopicPathName; }
  void Set_NextTopicPathName(const char* name) { m_NextTopicPathName = name; }
  const CString& Get_PreviousTopicPathName() const { return m_PreviousTopicPathName; }
  void Set_PreviousTopicPathName(const char* name) { m_PreviousTopicPathName = name; }
  const CString& Get_WindowTitle() const { return m_WindowTitle; }
  void Set_WindowTitle(const char* title) { m_WindowTitle = title; }

  // ---- labels ----
  // Maps the interned text of labelNode (a sequence node's) to site; a null
  // site changes nothing. Later definitions replace earlier ones.
  void UpdateLabelDatabase(TFmtNode* labelNode, TFmtNode* site);
  void UpdateLabelDatabase(const char* name, TFmtNode* site);
  TFmtNode* ResolveLabel(const char* name) const;
  int Get_LabelCount() const { return m_Labels.GetCount(); }

  // ---- title page ----
  int GetMakeTitle() const { return m_bMakeTitle; }
  void SetMakeTitle(int flag) { m_bMakeTitle = flag; }
  // Each deletes the old node and takes the new one (null: an empty compound).
  void Set_Title(TFmtNode* node);
  void Set_Author(TFmtNode* node);
  void Set_Date(TFmtNode* node);
  TFmtNode* Get_Title() const { return m_pTitle; }
  TFmtNode* Get_Author() const { return m_pAuthor; }
  TFmtNode* Get_Date() const { return m_pDate; }
  // The title page from title, authors and date, made once: centred lines in
  // LARGE, large and small, then a medium skip.
  TFmtNode* Generate_TitlePage();
  TFmtNode* Get_TitlePage() const { return m_pTitlePage; }

  // ---- page colour ----
  void Get_PageColor(CColorRef& color, int& bIsSet) const {
    color = m_PageColor;
    bIsSet = m_bHasPageColor;
  }
  void Set_PageColor(const CColorRef& color) {
    m_PageColor = color;
    m_bHasPageColor = 1;
  }
  void Unset_PageColor() {
    m_PageColor = CColorRef();
    m_bHasPageColor = 0;
  }

  // ---- controls and evaluation, in reading order ----
  void InsertInControlList(TFmtNode* node);
  void RemoveFromControlList(TFmtNode* node);
  // The next control after point (bForward) or the one before it; point
  // moves to the answer. Null on an empty list or none in that direction.
  TFmtNode* LocateControl(int bForward, CPoint& point) const;
  const CObList& Get_ControlList() const { return m_Controls; }
  void RegisterForEvaluation(TFmtNode* node);
  void UnRegisterForEvaluation(TFmtNode* node);
  const CObList& Get_EvaluationList() const { return m_EvaluationList; }
  void AddImmediateDeleteItem(TFmtNode* node) { m_ImmediateDeleteList.AddTail(node); }
  void RemoveImmediateDeleteItem(TFmtNode* node);

  // ---- pages, for a print run ----
  void AddPage(CNodePath* path);
  int FitsOnPage(int y, int height, TFmtContext& context) const;
  void RemoveAllPages();
  CNodePath* Get_Page(int n, TFmtContext& context) const;
  int Get_PageCount() const { return m_Pages.GetCount(); }
  CSize Get_PrintableArea() const { return m_PrintableArea; }
  void Set_PrintableArea(const CSize& area) { m_PrintableArea = area; }
  int GetIsBusyPrinting() const { return m_bIsBusyPrinting; }
  void SetIsBusyPrinting(int busy) { m_bIsBusyPrinting = busy; }
  int Get_PageTop() const { return m_nPageTop; }

  // ---- caret ----
  // The caret at the document's first caret position.
  void FindFirstCaretPosition0();
  void Set_CaretPosition(const CPoint& point);
  void Set_CaretPosition(TFmtNode* node);
  TFmtNode* Get_CaretNode() const;
  // The body element that holds the caret, or null.
  TFmtNode* Get_CaretVListNode() const;
  // The nearest link on the caret's path, or null.
  TFmtLinkNode* Get_CaretLinkNode() const;
  void Get_CaretDescription(CString& out) const;
  int Get_ShowCaret() const { return m_bShowCaret; }
  void Set_ShowCaret(int show) { m_bShowCaret = show; }
  // Forgets the caret (the tree under it is going).
  void ResetNodes();

  // ---- temporary documents and deferred deletion (class-wide) ----
  static void ReadRegistryValues();
  static void SaveRegistryValues();
  static void AddTemporaryDocument(const CString& name);
  // At process end: removes every recorded file, newest first, unless they
  // are to be kept.
  static void DeleteTemporaryDocuments();
  // TMP, else TEMP, a backslash unless the directory ends in one, and name;
  // recorded. Empty (and nothing recorded) with neither variable set.
  static CString MakeTemporaryFileName(const char* name);
  static int SaveTemporaryDocuments() { return fg_bSaveTemporaryDocuments; }
  static void SetSaveTemporaryDocuments(int save) { fg_bSaveTemporaryDocuments = save; }
  static int Get_TemporaryDocumentCount() { return fg_TemporaryDocuments.GetCount(); }
  // Deletes every stored body: after each paint and at exit.
  static void DeleteDocumentStorage();
  // One slice while idle: a whole empty list, or else the last child of the
  // oldest list. Answers whether work remains.
  static int PartiallyDeleteDocumentStorage();
  static int Get_DocumentStorageCount() { return fg_DocumentStorage.GetCount(); }

 private:
  void ReplaceOwned(TFmtNode*& field, TFmtNode* node);
  // Adds the lines of item (split at \\ and \and) to list, each centred and
  // opening with a copy of fontNode.
  static void ProcessTitlePageLines(TFmtVerticalListNode* list, TFmtNode* item, TFmtNode* fontNode);
  static void InsertInReadingOrder(CObList& list, TFmtNode* node);

  // ---- fields, in order ----
  CObList m_ImmediateDeleteList;  // of TFmtNode, owned
  int m_nPageTop = 0;
  CSize m_PrintableArea;
  int m_bIsBusyPrinting = 0;
  int m_bShowCaret = 1;
  int m_bMakeTitle = 0;
  int m_bHasPageColor = 0;
  CColorRef m_PageColor;  // black when unset
  KCompositionStatus m_nCompositionStatus = k_ComposeEverything;
  KSourceType m_nSourceType = k_SourceTex;
  ZRDocument* m_pDocumentInstance;        // not owned
  TFmtVerticalListNode* m_pVerticalList;  // owned
  CNodePath* m_pCaretPath;                // owned; starts at this node
  CString m_AboveTopicPathName;
  CString m_BibliographyPathName;
  CString m_DocumentSource;
  CString m_NextTopicPathName;
  CString m_PreviousTopicPathName;
  CString m_WindowTitle;
  CObList m_Controls;        // of TFmtNode, not owned, reading order
  CObList m_EvaluationList;  // of TFmtNode, not owned, reading order
  CObList m_Pages;           // of CNodePath, owned
  CMap<const char*, TFmtNode*> m_Labels;  // interned name to site, not owned
  TFmtNode* m_pTitle;      // owned
  TFmtNode* m_pTitlePage;  // owned
  TFmtNode* m_pAuthor;     // owned
  TFmtNode* m_pDate;       // owned

  // Of TFmtVerticalListNode, owned; what is left at exit goes with the list.
  struct TDocumentStorage : CObList {
    TDocumentStorage() = default;
    TDocumentStorage(const TDocumentStorage&) = delete;
    TDocumentStorage& operator=(const TDocumentStorage&) = delete;
    ~TDocumentStorage();
  };
  static inline TDocumentStorage fg_DocumentStorage;
  static inline CStringList fg_TemporaryDocuments;
  static inline int fg_bSaveTemporaryDocuments = 0;
};
