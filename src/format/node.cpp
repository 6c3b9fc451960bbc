#include "format/node.h"

#include <cstring>
#include <limits>

#include "device/font_family.h"
#include "format/context.h"
#include "format/break_nodes.h"
#include "format/glue_node.h"
#include "format/line_node.h"
#include "format/paragraph_node.h"
#include "format/vertical_list_node.h"
#include "format/leaf_nodes.h"
#include "math/math_node.h"
#include "math/over_node.h"
#include "math/scripted_node.h"
#include "tex/families/document_handlers.h"
#include "tex/families/parser_tables.h"
#include "framework/gdi_objects.h"
#include "framework/wnd.h"
#include "symbols/global_strings.h"

CObList TFmtNode::fg_SelectionStack;

void AddNewlineIfNeeded(CString& out, int& column) {
  if (column != 0) {
    out += '\n';
    column = 0;
  }
}

char VerbChar(const CString& text) {
  // The usual delimiters first; a text that holds all of them falls back on a
  // control character, which TeX source never holds.
  for (const char* c = "|!+/=#@\"~"; *c; ++c)
    if (!std::strchr(text, *c)) return *c;
  return '\x01';
}

TFmtNode::TFmtNode() = default;

TFmtNode::TFmtNode(const TFmtNode& other)
    : TCopyableNode(other),
      m_pExtent(other.m_pExtent),
      m_Position(other.m_Position),
      m_bDrawAlways(other.m_bDrawAlways) {}

TFmtNode& TFmtNode::operator=(const TFmtNode& other) {
  if (this != &other) {
    *m_pExtent = *other.m_pExtent;
    m_Position = other.m_Position;
    m_bDrawAlways = other.m_bDrawAlways;
    m_bIsSelected = 0;
    m_bIsHighlighted = 0;
    m_nHashCode = other.m_nHashCode;
  }
  return *this;
}

TFmtNode::~TFmtNode() {
  if (fg_pBoundedNode == this) fg_pBoundedNode = nullptr;
}

void TFmtNode::ApplyRecursively(void (*f)(TFmtNode*)) { f(this); }
void TFmtNode::ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) { f(this, a); }
void TFmtNode::ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) { f(this, a, b); }

TFmtNode* TFmtNode::Copy() const { return new TFmtNode(*this); }

void TFmtNode::Description(CString& out) {
  out.Empty();
  out = "general expression";
}

void TFmtNode::DrawBoundingBox(TFmtContext& context) {
  CRect rect;
  ExtentRectangle(rect);
  context.DrawRect(rect);
}

void TFmtNode::ExtentRectangle(CRect& rect) const {
  rect.SetRect(m_Position.x, m_Position.y + m_pExtent->m_nHeight, m_Position.x + m_pExtent->m_nWidth,
               m_Position.y - m_pExtent->m_nDepth);
}

int TFmtNode::FindCaretPosition(CPoint& point, CObList& path) {
  if (!IsPointInExtentRectangle(point)) return 0;
  path.AddTail(this);
  return 1;
}

int TFmtNode::FindFirstCaretPosition(CObList& path) {
  path.AddTail(this);
  return 1;
}

int TFmtNode::FindLastCaretPosition(CObList& path) {
  path.AddTail(this);
  return 1;
}

int TFmtNode::GetPointInExtentRectangle(CPoint& point) const {
  point = m_Position;
  if (m_pExtent->m_nWidth == 0) return 0;
  if (m_pExtent->m_nDepth != 0) return 1;
  if (m_pExtent->m_nHeight == 0) return 0;
  // The baseline itself is the bottom edge, which the box excludes.
  point.y += 1;
  return 1;
}

void TFmtNode::GiveFocus(CWnd* window) {
  if (window) window->SetFocus();
}

unsigned TFmtNode::HashCode(TFmtNode* parent) {
  if (m_nHashCode != 0) return m_nHashCode;
  const CObList* children = parent && fg_pCompoundView ? fg_pCompoundView(parent) : nullptr;
  if (!children) return m_nHashCode;
  // Object, note and glue children are not counted: overlays insert and
  // remove them, and the codes of the other siblings must not shift.
  unsigned code = 1;
  for (CObject* o : *children) {
    auto* child = static_cast<TFmtNode*>(o);
    if (!child->IsObjectNode() && !child->IsNoteNode() && !child->IsGlueNode()) ++code;
    if (child == this) break;
  }
  return code;
}

int TFmtNode::IsPointInExtentRectangle(const CPoint& point) const {
  return m_pExtent->IsPointInRectangle(m_Position, point) ? 1 : 0;
}

void TFmtNode::PrintMml(CString& out, int indent) const {
  out += '\n';
  if (indent > 0) out += CString(' ', static_cast<unsigned>(indent));
  out += "<mi>UNKNOWN</mi>";
}

void TFmtNode::PrintTexArgument(CString& out, int& column) const {
  out += '{';
  PrintTex(out, column);
  out += '}';
  column += 2;
}

void TFmtNode::PrintTexOptionalArgument(CString& out, int& column) const {
  out += '[';
  PrintTex(out, column);
  out += ']';
  column += 2;
}

void TFmtNode::SetIsHighlighted(int flag) { ApplyRecursively(SetNodeHighlight, &flag); }
void TFmtNode::SetIsSelected(int flag) { ApplyRecursively(SetNodeSelect, &flag); }

void TFmtNode::InitializeTexParser() {
  // Once per pool: a pool freed and made again (tests do this) loads again.
  TStringPool::InitializeGlobal();
  TGlobalString::Initialize();
  if (fg_bTexParserInitialized == TStringPool::Get_GlobalGeneration()) return;
  fg_bTexParserInitialized = TStringPool::Get_GlobalGeneration();
  // Each node class's parser table joins here, in a fixed order, as the
  // classes arrive; the generic readers' tables come last.
  TFmtGlueNode::InitializeTexParser();
  TFmtDisplayMathNode::InitializeTexParser();
  TFmtOverNode::InitializeTexParser();
  TFmtScriptedNode::InitializeTexParser();
  TFmtGlueNode::InitializeTexParser();
  TFmtVerticalListNode::InitializeProperties();
  RegisterParsers(TFmtLineBreakNode::ParserTable());
  RegisterParsers(TFmtParagraphNode::ParserTable());
  RegisterParsers(TFmtVerticalListNode::ParserTable());
  RegisterParsers(TFmtLineNode::ParserTable());
  TFmtParagraphNode::InitializeDrawProperties();
  RegisterParsers(TextCommandParserTable());
  RegisterParsers(ArityParserTable());
  TGlobalString::PutAxiomLogLikeProperties(
      [](const char* spelling) -> TCopyableNode* { return new TFmtSequenceNode(spelling); });
}

void TFmtNode::InitializeDrawProperties() {
  // Once per pool, like the parsers: a pool made anew loads again.
  TStringPool::InitializeGlobal();
  if (fg_bDrawPropertiesInitialized == TStringPool::Get_GlobalGeneration()) return;
  fg_bDrawPropertiesInitialized = TStringPool::Get_GlobalGeneration();
  // The handler tables of the families join here; the _ALWAYSDRAW names are
  // already ours to load.
  TGlobalString::InitializeAlwaysDrawProperties();
  TFmtParagraphNode::InitializeDrawProperties();
  RegisterDocumentHandlers();
}

void TFmtNode::ApplyRecursivelyList(CObList& list, void (*f)(TFmtNode*)) {
  for (CObject* o : list) static_cast<TFmtNode*>(o)->ApplyRecursively(f);
}
void TFmtNode::ApplyRecursivelyList(CObList& list, void (*f)(TFmtNode*, void*), void* a) {
  for (CObject* o : list) static_cast<TFmtNode*>(o)->ApplyRecursively(f, a);
}
void TFmtNode::ApplyRecursivelyList(CObList& list, void (*f)(TFmtNode*, void*, void*), void* a, void* b) {
  for (CObject* o : list) static_cast<TFmtNode*>(o)->ApplyRecursively(f, a, b);
}

TFmtNode* TFmtNode::Find(unsigned code) {
  const CObList* children = fg_pCompoundView ? fg_pCompoundView(this) : nullptr;
  if (!children) return nullptr;
  for (CObject* o : *children) {
    auto* child = static_cast<TFmtNode*>(o);
    if (child->HashCode(this) == code) return child;
  }
  return nullptr;
}

int TFmtNode::FindNextCaretPosition(CObList& path, TFmtNode* from) {
  TFmtNode* node = this;
  // Each round leaves one level, so the walk ends within the path's length.
  for (;;) {
    if (node->FindNextCaretPositionInt(path, from)) return 1;
    if (path.IsEmpty()) return 0;
    path.RemoveTail();
    if (path.IsEmpty()) return 0;
    from = node;
    node = static_cast<TFmtNode*>(path.GetTail());
  }
}

int TFmtNode::FindPrevCaretPosition(CObList& path, TFmtNode* from) {
  TFmtNode* node = this;
  for (;;) {
    if (node->FindPrevCaretPositionInt(path, from)) return 1;
    if (path.IsEmpty()) return 0;
    path.RemoveTail();
    if (path.IsEmpty()) return 0;
    from = node;
    node = static_cast<TFmtNode*>(path.GetTail());
  }
}

int TFmtNode::HasSameExtent(const TFmtNode* other) const {
  CRect mine, theirs;
  ExtentRectangle(mine);
  if (other) other->ExtentRectangle(theirs);
  // Two distinct objects: never the same, on purpose (see the header).
  return &mine == &theirs;
}

int TFmtNode::IsDrawRequired(TFmtContext& context) const {
  if (m_bDrawAlways) return 1;
  if (context.m_bForceDraw) return 1;
  static CRect rect;  // one walk at a time; not re-entrant, need not be
  ExtentRectangle(rect);
  // Six points above and below for accents and the like that stick out of
  // their box; y grows upward, so the top is raised and the bottom lowered.
  const int32_t margin = TFmtContext::fg_nUnitsPerPoint * 6;
  rect.top = static_cast<int32_t>(std::min<int64_t>(int64_t{rect.top} + margin, std::numeric_limits<int32_t>::max()));
  rect.bottom =
      static_cast<int32_t>(std::max<int64_t>(int64_t{rect.bottom} - margin, std::numeric_limits<int32_t>::min()));
  return context.IntersectsClippingRegion(rect) ? 1 : 0;
}

void TFmtNode::ComputeCharacterFmtExtent(int ch, TFmtContext& context, TExtendedFont_PI* pFont) {
  TExtendedFont_PI* previous = TExtendedFont::fg_pCurrent;
  TExtendedFont_PI* font = pFont ? pFont : previous;
  if (!font) {
    m_pExtent->Reset(0, 0, 0);
    return;
  }
  const bool swap = pFont && pFont != previous;
  if (swap) pFont->Select(context);
  m_pExtent->Reset(font->CharacterHeight(ch, context), font->CharacterDepth(ch, context),
                   font->CharacterWidth(ch, context));
  if (swap && previous) previous->Select(context);
}

// Entry 0 is plain, 1 selected, 4 highlighted, 5 an embedded object; both
// selected and highlighted is the exclusive or of 1 and 4.
CColorRef TFmtNode::StateColor(const CColorRef* colors) const {
  if (m_bIsSelected && m_bIsHighlighted) return colors[1] ^ colors[4];
  if (m_bIsSelected) return colors[1];
  if (m_bIsHighlighted) return colors[4];
  return IsObjectNode() ? colors[5] : colors[0];
}

CColorRef TFmtNode::GetForegroundColor() const { return StateColor(TFmtContext::fg_ColorForeground); }

CColorRef TFmtNode::GetBackgroundColor() const { return StateColor(TFmtContext::fg_ColorBackground); }

CColorRef TFmtNode::DelimiterColor() const {
  if (!m_bIsSelected && !m_bIsHighlighted && !IsObjectNode()) {
    if (TFmtContext::fg_bAllowUseOfColor && TFmtContext::fg_bDoColorizeExpressions)
      return TFmtContext::fg_MathColor_Delimiters;
    return TFmtContext::fg_CurrentColor;
  }
  return GetForegroundColor();
}

CColorRef TFmtNode::LineColor() const {
  if (!m_bIsSelected && !m_bIsHighlighted && !IsObjectNode()) {
    if (TFmtContext::fg_bAllowUseOfColor && TFmtContext::fg_bDoColorizeExpressions)
      return TFmtContext::fg_MathColor_Lines;
    return TFmtContext::fg_CurrentColor;
  }
  return GetForegroundColor();
}

void TFmtNode::DrawSelectionBackground(TFmtContext& context) {
  if (m_pExtent->m_nWidth == 0) return;
  if (fg_pBoundedNode == this) DrawBoundingBox(context);
  if (!m_bIsSelected && !m_bIsHighlighted) {
    if (!IsObjectNode() || context.m_bOpaqueObjects) return;
  }
  CRect rect;
  ExtentRectangle(rect);
  CBrush brush;
  brush.CreateSolidBrush(GetBackgroundColor());
  context.FillRect(&rect, &brush);
}

void TFmtNode::SetSelectionForeground(TFmtContext& context) {
  if (!m_bIsSelected && !m_bIsHighlighted && !IsObjectNode()) return;
  CColorRef color = GetForegroundColor();
  if (IsObjectNode() && context.m_bColorForced) color = context.GetTextColor();
  const CColorRef previous = context.SetTextColor(color);
  fg_SelectionStack.AddHead(
      new TSelectionData(TFmtContext::fg_bDoColorizeExpressions, context.m_bColorForced, previous));
  TFmtContext::fg_CurrentColor = color;
  TFmtContext::fg_bDoColorizeExpressions = 0;
  context.m_bColorForced = 1;
}

void TFmtNode::UnsetSelectionForeground(TFmtContext& context) {
  if (!m_bIsSelected && !m_bIsHighlighted && !IsObjectNode()) return;
  // A node whose flags changed between the two calls finds nothing to undo.
  if (fg_SelectionStack.IsEmpty()) return;
  std::unique_ptr<TSelectionData> saved(static_cast<TSelectionData*>(fg_SelectionStack.RemoveHead()));
  TFmtContext::fg_bDoColorizeExpressions = saved->m_bDoColorize;
  context.m_bColorForced = saved->m_bColorForced;
  TFmtContext::fg_CurrentColor = saved->m_Color;
  context.SetTextColor(saved->m_Color);
}

void TFmtNode::PrintVerbTex(const CString& text, CString& out, int& column, int bBlock) {
  if (!bBlock && std::strchr(text, '\n')) bBlock = 1;
  const bool hasPrefix = std::strncmp(text, "\\verb", 5) == 0;
  if (bBlock) {
    AddNewlineIfNeeded(out, column);
    out += "\\begin{verbatim}\n";
    out += text;
    out += "\n\\end{verbatim}\n";
    column = 0;
    return;
  }
  char delimiter = 0;
  if (!hasPrefix) {
    delimiter = VerbChar(text);
    out += "\\verb";
    out += delimiter;
    column += 7;  // "\verb" and both delimiters
  }
  out += text;
  column += text.GetLength();
  if (!hasPrefix) out += delimiter;
}

unsigned TFmtNode::Get_ClipboardFormat() {
  // "LaTeX Format" is the only format this process registers; X has no
  // registry of formats, so its handle is the first private number.
  if (fg_nClipboardFormat == 0) fg_nClipboardFormat = 0xC000;
  return fg_nClipboardFormat;
}

void TFmtNode::SetNodeHighlight(TFmtNode* node, void* pFlag) { node->m_bIsHighlighted = *static_cast<int*>(pFlag); }
void TFmtNode::SetNodeSelect(TFmtNode* node, void* pFlag) { node->m_bIsSelected = *static_cast<int*>(pFlag); }
