// Compose and draw handlers of the document family. A handler that changes
// state is the same function at compose and at draw, so that both walks see
// the same fonts; the enclosing group's PopGroupState undoes it.
#include "tex/families/document_handlers.h"

#include "device/font_family.h"
#include "format/compound_node.h"
#include "format/context.h"
#include "format/document_node.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/arguments.h"

namespace {
constexpr int U = TFmtContext::fg_nUnitsPerPoint;

void Draw_NOOP(TFmtNode*, int, TFmtContext&) {}

void NoExtent(TFmtNode* node) { node->m_pExtent->Reset(0, 0, 0); }

// The argument that carries the text: the last one, after any optional
// argument. Null for a node that has none (a bare control sequence).
TFmtNode* TextArgument(TFmtNode* node) {
  TFmtGenericArgumentedNode* generic = node->IsGenericArgumentedNode();
  return generic ? generic->Get_Arguments()->GetTail() : nullptr;
}

CString TextOf(TFmtNode* node) {
  CString text;
  StringifyNode(TextArgument(node), text);
  return text;
}

// ---- labels and the document's names -------------------------------------------

// The site is the body element that the vertical list last walked past.
void Compose_label(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  if (TFmtNode* name = TextArgument(node)) context.UpdateLabelDatabase(name);
}

// The neighbours named for the navigation entries of the document's menu.
template <void (TFmtDocumentNode::*setter)(const char*)>
void Compose_topic(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  if (TFmtDocumentNode* document = context.Get_DocumentNode()) (document->*setter)(TextOf(node));
}

// \title names the window as well; the title page takes the title itself
// from the parser.
void Compose_title(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  TFmtGenericArgumentedNode* generic = node->IsGenericArgumentedNode();
  if (generic && generic->Get_Arguments()->IsEmpty()) generic->AddArgument(new TFmtCompoundNode, 0);
  if (TFmtDocumentNode* document = context.Get_DocumentNode()) document->Set_WindowTitle(TextOf(node));
}

// ---- page colour -----------------------------------------------------------------

// The colour that the argument's text names under _COLOR; false if none.
bool NamedColor(TFmtNode* node, CColorRef& color) {
  const CString name = TextOf(node);
  if (name.IsEmpty()) return false;
  TColorProperty* property = TStringPool::g_pGlobal->GetColor(name, TGlobalString::g_pCOLOR);
  if (!property) return false;
  color = property->Get_Color();
  return true;
}

// At compose the document learns its colour, so that the view paints the
// right background before the first draw; the draw colours the window too.
void Compose_pagecolor(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  CColorRef color;
  TFmtDocumentNode* document = context.Get_DocumentNode();
  if (document && NamedColor(node, color)) document->Set_PageColor(color);
}

void Draw_pagecolor(TFmtNode* node, int, TFmtContext& context) {
  CColorRef color;
  if (NamedColor(node, color)) context.SetPageColor(color);
}

// ---- \begin{document}: the title page ------------------------------------------

// The title page stands where the document begins, once \maketitle has
// been seen anywhere in the source.
TFmtNode* TitlePage(TFmtContext& context, bool generate) {
  TFmtDocumentNode* document = context.Get_DocumentNode();
  if (!document || !document->GetMakeTitle()) return nullptr;
  return generate ? document->Generate_TitlePage() : document->Get_TitlePage();
}

// A title that holds \begin{document} would put the title page inside
// itself: inside the page, the command stands for nothing.
bool fg_bInTitlePage = false;

class TTitlePageScope {
 public:
  TTitlePageScope() { fg_bInTitlePage = true; }
  ~TTitlePageScope() { fg_bInTitlePage = false; }
  TTitlePageScope(const TTitlePageScope&) = delete;
  TTitlePageScope& operator=(const TTitlePageScope&) = delete;
};

void Compose_begindocument(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  if (fg_bInTitlePage) return;
  TFmtNode* page = TitlePage(context, true);
  if (!page) return;
  TTitlePageScope scope;
  page->m_Position = node->m_Position;
  node->m_pExtent->Reset(page->Compose(context));
}

void Draw_begindocument(TFmtNode* node, int, TFmtContext& context) {
  if (fg_bInTitlePage) return;
  TFmtNode* page = TitlePage(context, false);
  if (!page) return;
  TTitlePageScope scope;
  page->m_Position = node->m_Position;
  page->Draw(context);
}

// ---- vertical skips: items of the vertical list --------------------------------

template <int points>
void Compose_skip(TFmtNode* node, int, TFmtContext&) {
  node->m_pExtent->Reset(points * U, 0, 1);
}

// ---- sizes and faces -------------------------------------------------------------

void SelectSize(TFmtContext& context, int size) {
  TFontFamily_PI::fg_StyleBaseFontSize = size;
  TFontFamily_PI::fg_CurrentFontSize = size;
  if (TFontFamily::fg_pCurrent) TFontFamily::fg_pCurrent->MakeCurrentAndSelect(context);
}

template <int size>
void Draw_size(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  SelectSize(context, size);
}

void Draw_beginsmall(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  context.PushGroupState();
  SelectSize(context, TFontFamily_PI::k_Small);
}

void Draw_endsmall(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  context.PopGroupState();
}

void SelectFace(TFmtContext& context, TFontFamily* family, bool clearSmallCapitals) {
  if (clearSmallCapitals && context.m_nCase == 3) context.m_nCase = 0;
  if (family) family->MakeCurrentAndSelect(context);
}

// The families are made when the fonts are, after the table is loaded: each
// handler reads its family at the time it runs.
template <TFontFamily** family>
void Draw_face(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  SelectFace(context, *family, true);
}

// Sans serif keeps small capitals on.
void Draw_sf(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  SelectFace(context, TFontFamily::fg_pSansSerif, false);
}

void Draw_sc(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  context.m_nCase = 3;
}

// Emphasis toggles between italic and roman; there is no italic correction.
void Draw_em(TFmtNode* node, int, TFmtContext& context) {
  NoExtent(node);
  const bool italic = TFontFamily::fg_pCurrent && TFontFamily::fg_pCurrent == TFontFamily::fg_pItalic;
  SelectFace(context, italic ? TFontFamily::fg_pRoman : TFontFamily::fg_pItalic, true);
}

constexpr TDrawHandlerEntry fg_DocumentHandlers[] = {
    // name                     extent                                          draw
    {"label", Compose_label, Compose_label},
    {"aboveTopic", Compose_topic<&TFmtDocumentNode::Set_AboveTopicPathName>, Draw_NOOP},
    {"aboveTopicUnparsed", Compose_topic<&TFmtDocumentNode::Set_AboveTopicPathName>, Draw_NOOP},
    {"nextTopic", Compose_topic<&TFmtDocumentNode::Set_NextTopicPathName>, Draw_NOOP},
    {"nextTopicUnparsed", Compose_topic<&TFmtDocumentNode::Set_NextTopicPathName>, Draw_NOOP},
    {"previousTopic", Compose_topic<&TFmtDocumentNode::Set_PreviousTopicPathName>, Draw_NOOP},
    {"previousTopicUnparsed", Compose_topic<&TFmtDocumentNode::Set_PreviousTopicPathName>, Draw_NOOP},
    {"title", Compose_title, Draw_NOOP},
    // The same at draw: it is drawn even off screen, and must agree.
    {"windowTitle", Compose_title, Compose_title},
    {"pagecolor", Compose_pagecolor, Draw_pagecolor},
    {"begindocument", Compose_begindocument, Draw_begindocument},
    {"bigskip", Compose_skip<12>, Draw_NOOP},
    {"bigbreak", Compose_skip<12>, Draw_NOOP},
    {"medskip", Compose_skip<6>, Draw_NOOP},
    {"medbreak", Compose_skip<6>, Draw_NOOP},
    {"smallskip", Compose_skip<3>, Draw_NOOP},
    {"smallbreak", Compose_skip<3>, Draw_NOOP},
    {"scriptscriptsize", Draw_size<TFontFamily_PI::k_ScriptScriptSize>, Draw_size<TFontFamily_PI::k_ScriptScriptSize>},
    {"tiny", Draw_size<TFontFamily_PI::k_Tiny>, Draw_size<TFontFamily_PI::k_Tiny>},
    {"scriptsize", Draw_size<TFontFamily_PI::k_ScriptSize>, Draw_size<TFontFamily_PI::k_ScriptSize>},
    {"footnotesize", Draw_size<TFontFamily_PI::k_FootnoteSize>, Draw_size<TFontFamily_PI::k_FootnoteSize>},
    {"small", Draw_size<TFontFamily_PI::k_Small>, Draw_size<TFontFamily_PI::k_Small>},
    {"normalsize", Draw_size<TFontFamily_PI::k_NormalSize>, Draw_size<TFontFamily_PI::k_NormalSize>},
    {"large", Draw_size<TFontFamily_PI::k_Large>, Draw_size<TFontFamily_PI::k_Large>},
    {"Large", Draw_size<TFontFamily_PI::k_Large2>, Draw_size<TFontFamily_PI::k_Large2>},
    {"LARGE", Draw_size<TFontFamily_PI::k_Large3>, Draw_size<TFontFamily_PI::k_Large3>},
    {"huge", Draw_size<TFontFamily_PI::k_Huge>, Draw_size<TFontFamily_PI::k_Huge>},
    {"Huge", Draw_size<TFontFamily_PI::k_Huge2>, Draw_size<TFontFamily_PI::k_Huge2>},
    {"beginsmall", Draw_beginsmall, Draw_beginsmall},
    {"endsmall", Draw_endsmall, Draw_endsmall},
    {"rm", Draw_face<&TFontFamily::fg_pRoman>, Draw_face<&TFontFamily::fg_pRoman>},
    {"it", Draw_face<&TFontFamily::fg_pItalic>, Draw_face<&TFontFamily::fg_pItalic>},
    {"sl", Draw_face<&TFontFamily::fg_pItalic>, Draw_face<&TFontFamily::fg_pItalic>},
    {"bf", Draw_face<&TFontFamily::fg_pBold>, Draw_face<&TFontFamily::fg_pBold>},
    {"tt", Draw_face<&TFontFamily::fg_pFixedWidth>, Draw_face<&TFontFamily::fg_pFixedWidth>},
    {"mit", Draw_face<&TFontFamily::fg_pMathItalic>, Draw_face<&TFontFamily::fg_pMathItalic>},
    {"sf", Draw_sf, Draw_sf},
    {"sc", Draw_sc, Draw_sc},
    {"em", Draw_em, Draw_em},
    // Names that only stand in the source: a preamble shows nothing.
    {"_InvisibleTimes", Draw_NOOP, Draw_NOOP},
    {"allowbreak", Draw_NOOP, Draw_NOOP},
    {"and", Draw_NOOP, Draw_NOOP},
    {"author", Draw_NOOP, Draw_NOOP},
    {"beginsloppypar", Draw_NOOP, Draw_NOOP},
    {"begintitlepage", Draw_NOOP, Draw_NOOP},
    {"bibliographystyle", Draw_NOOP, Draw_NOOP},
    {"boldmath", Draw_NOOP, Draw_NOOP},
    {"break", Draw_NOOP, Draw_NOOP},
    {"brokenpenalty", Draw_NOOP, Draw_NOOP},
    {"bye", Draw_NOOP, Draw_NOOP},
    {"clearpage", Draw_NOOP, Draw_NOOP},
    {"cline", Draw_NOOP, Draw_NOOP},
    {"clubpenalty", Draw_NOOP, Draw_NOOP},
    {"date", Draw_NOOP, Draw_NOOP},
    {"DeclareMathOperator", Draw_NOOP, Draw_NOOP},
    {"displaywidowpenalty", Draw_NOOP, Draw_NOOP},
    {"documentclass", Draw_NOOP, Draw_NOOP},
    {"documentstyle", Draw_NOOP, Draw_NOOP},
    {"end", Draw_NOOP, Draw_NOOP},
    {"enddocument", Draw_NOOP, Draw_NOOP},
    {"endsloppypar", Draw_NOOP, Draw_NOOP},
    {"endtitlepage", Draw_NOOP, Draw_NOOP},
    {"floatingpenalty", Draw_NOOP, Draw_NOOP},
    {"fontencoding", Draw_NOOP, Draw_NOOP},
    {"fontfamily", Draw_NOOP, Draw_NOOP},
    {"fontseries", Draw_NOOP, Draw_NOOP},
    {"fontshape", Draw_NOOP, Draw_NOOP},
    {"fontsize", Draw_NOOP, Draw_NOOP},
    {"footnotetext", Draw_NOOP, Draw_NOOP},
    {"frenchspacing", Draw_NOOP, Draw_NOOP},
    {"fussy", Draw_NOOP, Draw_NOOP},
    {"goodbreak", Draw_NOOP, Draw_NOOP},
    {"hline", Draw_NOOP, Draw_NOOP},
    {"hyphenation", Draw_NOOP, Draw_NOOP},
    {"interlinepenalty", Draw_NOOP, Draw_NOOP},
    {"let", Draw_NOOP, Draw_NOOP},
    {"limits", Draw_NOOP, Draw_NOOP},
    {"linebreak", Draw_NOOP, Draw_NOOP},
    {"looseness", Draw_NOOP, Draw_NOOP},
    {"maketitle", Draw_NOOP, Draw_NOOP},
    {"markboth", Draw_NOOP, Draw_NOOP},
    {"markright", Draw_NOOP, Draw_NOOP},
    {"newblock", Draw_NOOP, Draw_NOOP},
    {"newif", Draw_NOOP, Draw_NOOP},
    {"newcounter", Draw_NOOP, Draw_NOOP},
    {"newline", Draw_NOOP, Draw_NOOP},
    {"newmenu", Draw_NOOP, Draw_NOOP},
    {"newtheorem", Draw_NOOP, Draw_NOOP},
    {"noalign", Draw_NOOP, Draw_NOOP},
    {"nocite", Draw_NOOP, Draw_NOOP},
    {"nocorr", Draw_NOOP, Draw_NOOP},
    {"nofrenchspacing", Draw_NOOP, Draw_NOOP},
    {"noindent", Draw_NOOP, Draw_NOOP},
    {"nolimits", Draw_NOOP, Draw_NOOP},
    {"nolinebreak", Draw_NOOP, Draw_NOOP},
    {"nomargins", Draw_NOOP, Draw_NOOP},
    {"nonumber", Draw_NOOP, Draw_NOOP},
    {"nopagebreak", Draw_NOOP, Draw_NOOP},
    {"nopagenumbers", Draw_NOOP, Draw_NOOP},
    {"null", Draw_NOOP, Draw_NOOP},
    {"pagebreak", Draw_NOOP, Draw_NOOP},
    {"par", Draw_NOOP, Draw_NOOP},
    {"postdisplaypenalty", Draw_NOOP, Draw_NOOP},
    {"predisplaypenalty", Draw_NOOP, Draw_NOOP},
    {"protect", Draw_NOOP, Draw_NOOP},
    {"putat", Draw_NOOP, Draw_NOOP},
    {"raggedbottom", Draw_NOOP, Draw_NOOP},
    {"relax", Draw_NOOP, Draw_NOOP},
    {"rgb", Draw_NOOP, Draw_NOOP},
    {"selectfont", Draw_NOOP, Draw_NOOP},
    {"sloppy", Draw_NOOP, Draw_NOOP},
    {"special", Draw_NOOP, Draw_NOOP},
    {"zephrinfalse", Draw_NOOP, Draw_NOOP},
    {"zephrintrue", Draw_NOOP, Draw_NOOP},
    {"typeout", Draw_NOOP, Draw_NOOP},
    {"unboldmath", Draw_NOOP, Draw_NOOP},
    {"usefont", Draw_NOOP, Draw_NOOP},
    {"usepackage", Draw_NOOP, Draw_NOOP},
    {"widowpenalty", Draw_NOOP, Draw_NOOP},
};
}  // namespace

std::span<const TDrawHandlerEntry> DocumentHandlerTable() { return fg_DocumentHandlers; }

void RegisterDocumentHandlers() {
  TGlobalString::Initialize();
  for (const TDrawHandlerEntry& entry : fg_DocumentHandlers) PutDrawProperties(entry.name, entry.extent, entry.draw);
}
