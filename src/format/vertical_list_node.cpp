// Vertical lists: Build from the parser's flat list, stacking with skips,
// reference points of \vbox and \vtop, and minipages.
#include "format/vertical_list_node.h"

#include <algorithm>
#include <cstdint>

#include "device/font_family.h"
#include "format/context.h"
#include "format/leaf_nodes.h"
#include "format/paragraph_node.h"
#include "format/tex_mode.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/arguments.h"
#include "tex/measure_args.h"
#include "tex/token_source.h"
#include "tex/tokens.h"

namespace {
TFmtNode* Node(CObject* o) { return static_cast<TFmtNode*>(o); }
int32_t Clamp32(int64_t v) { return static_cast<int32_t>(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX)); }
}  // namespace

TFmtVerticalListNode::TFmtVerticalListNode(KReferencePoint reference) : m_nReferencePoint(reference) {
  InitializeProperties();
}

TFmtVerticalListNode::TFmtVerticalListNode(const TFmtVerticalListNode& other)
    : TFmtCompoundNode(other),
      m_bVerbatim(other.m_bVerbatim),
      m_bIsDocumentBody(other.m_bIsDocumentBody),
      m_nComposeCount(other.m_nComposeCount),
      m_nReferencePoint(other.m_nReferencePoint),
      m_nYOffset(other.m_nYOffset) {}

void TFmtVerticalListNode::InitializeProperties() {
  if (fg_bPropertiesInitialized == TStringPool::Get_GlobalGeneration() && TStringPool::g_pGlobal) return;
  TGlobalString::InitializeVerticalListProperties();
  fg_bPropertiesInitialized = TStringPool::Get_GlobalGeneration();
}

int TFmtVerticalListNode::IsEmpty() const {
  for (CObject* o : m_Children)
    if (!Node(o)->IsEmpty()) return 0;
  return 1;
}

// ---- Build ----------------------------------------------------------------------

void TFmtVerticalListNode::Build(TFmtCompoundNode* source) {
  InitializeProperties();
  DeleteChildren();
  if (!source) return;
  TStringPool* pool = TStringPool::g_pGlobal;
  std::unique_ptr<TFmtCompoundNode> current = std::make_unique<TFmtCompoundNode>();
  bool inParagraph = false;
  // A holder that got something goes on the list; an empty one is dropped.
  auto close = [&]() {
    if (!current->IsEmpty()) m_Children.AddTail(current.release());
    current.reset();
  };
  auto startParagraph = [&]() {
    close();
    current = std::make_unique<TFmtParagraphNode>(TFmtParagraphNode::k_AlignTop, nullptr);
    inParagraph = true;
  };
  auto startHolder = [&]() {
    close();
    current = std::make_unique<TFmtCompoundNode>();
    inParagraph = false;
  };
  while (TFmtNode* child = source->RemoveHead()) {
    const char* name = child->ContainsControlSequence();
    const int starter = name && pool->GetBoolean(name, TGlobalString::g_pPARAGRAPHSTARTER);
    const int ender = name && pool->GetBoolean(name, TGlobalString::g_pPARAGRAPHENDER);
    if (child->GoesOnVerticalList()) {
      if (starter) {
        startParagraph();
        current->AddTailSimple(child);
      } else {
        startHolder();
        m_Children.AddTail(child);
      }
    } else if (child->GoesAnywhere()) {
      if (current->IsEmpty()) m_Children.AddTail(child);
      else current->AddTailSimple(child);
    } else if (child->IsControlSequence(TGlobalString::g_ppar) || child->IsControlSequence(TGlobalString::g_pendgraf)) {
      startParagraph();
      delete child;
    } else if (starter) {
      startParagraph();
      current->AddTailSimple(child);
    } else if (ender) {
      // It ends the running paragraph as its last child.
      inParagraph = false;
      if (current->IsEmpty()) {
        m_Children.AddTail(child);
      } else {
        current->AddTailSimple(child);
        m_Children.AddTail(current.release());
      }
      current = std::make_unique<TFmtCompoundNode>();
    } else if (current->IsEmpty() && child->IsWhiteSpace()) {
      delete child;  // no paragraph starts with a blank
    } else if (TFmtCompoundNode* pure = child->IsPureCompoundNode()) {
      while (TFmtNode* inner = pure->RemoveTail()) source->AddHead(inner);
      delete pure;
    } else if (TFmtGroupNode* group = child->IsPureGroupNode()) {
      // Groups in vertical mode become group markers, so that paragraphs
      // build through them.
      source->AddHead(new TFmtControlSequenceNode(TGlobalString::g_pENDGROUP));
      while (TFmtNode* inner = group->RemoveTail()) source->AddHead(inner);
      source->AddHead(new TFmtControlSequenceNode(TGlobalString::g_pBEGINGROUP));
      delete group;
    } else {
      if (!inParagraph) startParagraph();
      current->AddTailSimple(child);
    }
  }
  close();
  delete source;
}

// ---- composition ----------------------------------------------------------------

TFmtExtent* TFmtVerticalListNode::Compose(TFmtContext& context) {
  context.PushOnNodePath(this);
  const bool printingBody = m_bIsDocumentBody && context.IsPrinting();
  const char* label = TStringPool::g_pGlobal->Put("label");
  const int32_t verbatimDepth = 3 * TFmtContext::fg_nUnitsPerPoint;
  m_pExtent->Reset(0, m_bVerbatim ? verbatimDepth : 0, 0);
  if (IsEmpty()) {
    context.PopOffNodePath();
    return m_pExtent.get();
  }
  ++m_nComposeCount;
  context.PushGroupState();
  int64_t y = static_cast<int64_t>(m_Position.y) + m_nYOffset;
  int64_t depth = m_pExtent->m_nDepth;
  bool atTop = true;
  int32_t lastDepth = 0;
  auto position = m_Children.GetHeadPosition();
  if (printingBody && position != m_Children.GetEnd()) ++position;
  for (; position != m_Children.GetEnd(); ++position) {
    TFmtNode* child = Node(*position);
    if (m_bIsDocumentBody && child->ContainsControlSequence() != label) context.SetMostRecentLabelSite(child);
    child->m_Position = CPoint(context.m_nLeftMargin, Clamp32(y));
    TFmtExtent* composed = child->Compose(context);
    const TFmtExtent e = composed ? *composed : *child->m_pExtent;
    y -= e.m_nHeight;
    m_pExtent->MaxWidth(e.m_nWidth);
    depth += static_cast<int64_t>(e.m_nHeight) + e.m_nDepth;
    const bool lastOfBody = m_bIsDocumentBody && std::next(position) == m_Children.GetEnd();
    if (!lastOfBody) depth += child->AfterSkip();
    if (!atTop) {
      y -= child->BeforeSkip();
      depth += child->BeforeSkip();
    } else if (e.Sum() != 0) {
      atTop = false;  // the first element with any size has no skip above it
    }
    child->m_Position = CPoint(context.m_nLeftMargin, Clamp32(y));
    y -= static_cast<int64_t>(e.m_nDepth) + child->AfterSkip();
    lastDepth = e.m_nDepth;
  }
  m_pExtent->m_nDepth = Clamp32(depth);
  TFmtExtent& extent = *m_pExtent;
  if (m_nReferencePoint == k_RefBottom) {
    m_nYOffset = extent.m_nDepth - lastDepth;
    extent.Reset(Clamp32(int64_t{extent.m_nHeight} + m_nYOffset), lastDepth, extent.m_nWidth);
  } else if (m_nReferencePoint == k_RefCentre) {
    const int32_t half = Clamp32((int64_t{extent.m_nHeight} + extent.m_nDepth) / 2);
    m_nYOffset = half;
    extent.Reset(half, half, extent.m_nWidth);
  }
  context.PopGroupState();
  context.PopOffNodePath();
  return m_pExtent.get();
}

void TFmtVerticalListNode::Draw(TFmtContext& context) {
  if (!IsDrawRequired(context) || IsEmpty()) return;
  context.PushGroupState();
  const char* label = TStringPool::g_pGlobal->Put("label");
  int64_t y = static_cast<int64_t>(m_Position.y) + m_nYOffset;
  if (m_bVerbatim) y -= 3 * TFmtContext::fg_nUnitsPerPoint;
  bool atTop = true;
  // Every element draws, even off screen: font and colour changes in one
  // reach those after it, and an element off screen returns by itself.
  for (CObject* o : m_Children) {
    TFmtNode* child = Node(o);
    if (m_bIsDocumentBody && child->ContainsControlSequence() != label) context.SetMostRecentLabelSite(child);
    y -= child->m_pExtent->m_nHeight;
    if (!atTop) y -= child->BeforeSkip();
    else if (child->m_pExtent->Sum() != 0) atTop = false;
    child->m_Position = CPoint(context.m_nLeftMargin, Clamp32(y));
    child->Draw(context);
    y = static_cast<int64_t>(child->m_Position.y) - child->m_pExtent->m_nDepth - child->AfterSkip();
  }
  context.PopGroupState();
}

int TFmtVerticalListNode::GetIndexFromLogicalY(int y) const {
  int index = 0;
  for (CObject* o : m_Children) {
    const TFmtNode* child = Node(o);
    if (y >= int64_t{child->m_Position.y} - child->m_pExtent->m_nDepth) return index;
    ++index;
  }
  return 0;
}

TFmtNode* TFmtVerticalListNode::FindClosestNode(const CPoint& point) const {
  for (CObject* o : m_Children) {
    TFmtNode* child = Node(o);
    if (int64_t{child->m_Position.y} - child->m_pExtent->m_nDepth <= point.y) return child;
  }
  return nullptr;
}

int TFmtVerticalListNode::FindCaretPosition(CPoint& point, CObList& path) {
  // Elements stand one below the other: only the one whose band holds the
  // point is searched, so a pointer motion costs the depth of one element,
  // not the whole document.
  path.AddTail(this);
  for (CObject* o : m_Children) {
    TFmtNode* child = Node(o);
    const int64_t top = int64_t{child->m_Position.y} + child->m_pExtent->m_nHeight;
    const int64_t bottom = int64_t{child->m_Position.y} - child->m_pExtent->m_nDepth;
    if (point.y > top) break;  // above this element, so above all that follow
    if (point.y < bottom) continue;
    if (child->FindCaretPosition(point, path)) return 1;
    break;
  }
  if (IsPointInExtentRectangle(point)) return 1;
  path.RemoveTail();
  return 0;
}

int TFmtVerticalListNode::FindFirstCaretPosition(CObList& path) {
  path.AddTail(this);
  for (CObject* o : m_Children)
    if (Node(o)->FindFirstCaretPosition(path)) return 1;
  path.RemoveTail();
  return 0;
}

void TFmtVerticalListNode::PrintTex(CString& out, int& column) const {
  if (!m_bVerbatim) {
    TFmtCompoundNode::PrintTex(out, column);
    return;
  }
  if (IsEmpty() && m_Children.IsEmpty()) return;
  AddNewlineIfNeeded(out, column);
  out += "\\begin{verbatim}\n";
  for (CObject* o : m_Children) {
    if (TFmtCompoundNode* line = Node(o)->IsCompoundNode()) {
      CString text;
      line->TFmtCompoundNode::SimplyStringify(text);
      out += text;
    }
    out += '\n';
  }
  out += "\\end{verbatim}\n";
  column = 0;
}

// ---- \vbox and \vtop ------------------------------------------------------------

TFmtNode* TFmtVerticalListNode::ParseTex_INNER(TFmtVerticalListNode* list, TTexTokenSource& source) {
  TFmtNode* argument = NextTexMacroArg(source, 1);
  TFmtCompoundNode* body = argument ? argument->IsPureCompoundNode() : nullptr;
  if (!body) {
    body = new TFmtCompoundNode;
    body->AddTailSimple(argument);
  }
  list->Build(body);
  return list;
}

TFmtNode* TFmtVerticalListNode::ParseTex_vbox(TFmtControlSequenceNode*, TTexTokenSource& source) {
  return ParseTex_INNER(new TFmtVerticalListNode(k_RefBottom), source);
}

TFmtNode* TFmtVerticalListNode::ParseTex_vtop(TFmtControlSequenceNode*, TTexTokenSource& source) {
  return ParseTex_INNER(new TFmtVerticalListNode(k_RefTop), source);
}

namespace {
constexpr TCsParserEntry fg_VerticalLists[] = {
    {"vbox", TFmtVerticalListNode::ParseTex_vbox},
    {"vtop", TFmtVerticalListNode::ParseTex_vtop},
    {"beginminipage", TFmtMiniPageNode::ParseTex_beginminipage},
};
}  // namespace

std::span<const TCsParserEntry> TFmtVerticalListNode::ParserTable() { return fg_VerticalLists; }

// ---- TFmtMiniPageNode -----------------------------------------------------------

TFmtMiniPageNode::TFmtMiniPageNode(KReferencePoint reference, TFmtUnitNode* pWidth)
    : TFmtVerticalListNode(reference), m_pWidth(pWidth ? pWidth : new TFmtUnitNode(1, 1, k_UnitIn)) {}

TFmtMiniPageNode::TFmtMiniPageNode(const TFmtMiniPageNode& other)
    : TFmtVerticalListNode(other), m_pWidth(other.m_pWidth->CopyDerived()) {}

TFmtExtent* TFmtMiniPageNode::Compose(TFmtContext& context) {
  const int oldLeft = context.m_nLeftMargin, oldRight = context.m_nRightMargin;
  const int32_t width = static_cast<int32_t>(m_pWidth->GetInternalValue(context));
  context.m_nLeftMargin = m_Position.x;
  context.m_nRightMargin = Clamp32(int64_t{m_Position.x} + width);
  context.PushGroupState();
  const int oldMode = g_CurrentTexMode;
  if ((oldMode == 4 || oldMode == 5) && TFontFamily::fg_pRoman) TFontFamily::fg_pRoman->MakeCurrentAndSelect(context);
  g_CurrentTexMode = 3;
  TFmtVerticalListNode::Compose(context);
  g_CurrentTexMode = oldMode;
  context.PopGroupState();
  context.m_nLeftMargin = oldLeft;
  context.m_nRightMargin = oldRight;
  int32_t shown = width;
  // A tabbing environment first shows its own width when that is smaller.
  if (TFmtNode* head = GetHead())
    if (TFmtParagraphNode* paragraph = head->IsParagraphNode(); paragraph && !paragraph->IsEmpty())
      if (TFmtNode* first = paragraph->GetHead(); first && first->IsTabbingNode())
        shown = std::min(shown, first->m_pExtent->m_nWidth);
  m_pExtent->m_nWidth = shown;
  return m_pExtent.get();
}

void TFmtMiniPageNode::Draw(TFmtContext& context) {
  const int oldLeft = context.m_nLeftMargin, oldRight = context.m_nRightMargin;
  context.m_nLeftMargin = m_Position.x;
  context.m_nRightMargin = Clamp32(int64_t{m_Position.x} + m_pWidth->GetInternalValue(context));
  context.PushGroupState();
  const int oldMode = g_CurrentTexMode;
  if ((oldMode == 4 || oldMode == 5) && TFontFamily::fg_pRoman) TFontFamily::fg_pRoman->MakeCurrentAndSelect(context);
  g_CurrentTexMode = 3;
  TFmtVerticalListNode::Draw(context);
  g_CurrentTexMode = oldMode;
  context.PopGroupState();
  context.m_nLeftMargin = oldLeft;
  context.m_nRightMargin = oldRight;
}

namespace {
ParseTestResult EndMiniPageTest(TTexToken* token, int, TTexTokenSource&) {
  static const char* endName = nullptr;
  static int generation = -1;
  if (generation != TStringPool::Get_GlobalGeneration()) {
    generation = TStringPool::Get_GlobalGeneration();
    endName = TStringPool::g_pGlobal->Put("endminipage");
  }
  return token->IsControlSequence(endName) ? k_ParseTest_Stop : k_ParseTest_MakeNode;
}
}  // namespace

TFmtNode* TFmtMiniPageNode::ParseTex(TTexTokenSource& source) {
  auto* body = new TFmtCompoundNode;
  int done = 0;
  body->ParseTexWithTests(source, done, 0, nullptr, nullptr, EndMiniPageTest, nullptr);
  Build(body);
  return this;
}

TFmtNode* TFmtMiniPageNode::ParseTex_beginminipage(TFmtControlSequenceNode*, TTexTokenSource& source) {
  KReferencePoint reference = k_RefCentre;
  if (TFmtNode* option = NextTexOptionalMacroArg(source, 1)) {
    CString letters;
    option->SimplyStringify(letters);
    delete option;
    if (letters.GetLength() > 0 && letters[0] == 't') reference = k_RefTop;
    else if (letters.GetLength() > 0 && letters[0] == 'b') reference = k_RefBottom;
    else source.Error(25070u);  // the centre stays
  }
  auto minipage = std::make_unique<TFmtMiniPageNode>(reference, NextTexMeasureArg(source));
  minipage->ParseTex(source);
  return minipage.release();
}

void TFmtMiniPageNode::PrintTex(CString& out, int& column) const {
  out += "\\begin{minipage}";
  if (m_nReferencePoint == k_RefTop) out += "[t]";
  else if (m_nReferencePoint == k_RefBottom) out += "[b]";
  out += '{';
  column = 1;
  m_pWidth->PrintTex(out, column);
  out += "}\n";
  column = 0;
  TFmtCompoundNode::PrintTex(out, column);
  AddNewlineIfNeeded(out, column);
  out += "\\end{minipage}\n";
  column = 0;
}
