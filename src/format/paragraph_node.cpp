// Paragraphs: first-fit line breaking, fill share-out, line geometry, and
// the \parbox and justification commands.
#include "format/paragraph_node.h"

#include <cstdint>
#include <iterator>

#include "device/font_family.h"
#include "format/break_nodes.h"
#include "format/context.h"
#include "format/document_node.h"
#include "format/glue_node.h"
#include "format/leaf_nodes.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/arguments.h"
#include "tex/measure_args.h"
#include "tex/token_source.h"

namespace {
TFmtNode* Node(CObject* o) { return static_cast<TFmtNode*>(o); }

// Fill glue, tested cheaply first: every blank of the text is glue, and the
// full test reads its units.
const TFmtGlueNode* FillGlue(const TFmtNode* node) {
  const TFmtGlueNode* glue = node->IsGlueNode();
  return glue && glue->Get_Kind() == k_GlueSkip && glue->Get_Stretch() && node->IsHorizontalFillGlue() ? glue
                                                                                                       : nullptr;
}

int IsProgramFill(const TFmtNode* node) {
  const TFmtGlueNode* glue = FillGlue(node);
  return glue && !glue->Get_UserSupplied();
}

// Children that take the height of their line, so that selection and
// highlight show as bars as high as the line.
int TakesLineHeight(const TFmtNode* node) {
  return node->IsSequenceNode() || node->IsGlueNode() || node->IsCharacterNode() || node->IsControlSequenceNode() ||
         node->IsControlCharacterNode() || node->IsGroupNode();
}

// Raises a reflow-only status to "everything" for a scope: a reflow must
// measure anew, so words compose again even on a change of width.
class TStatusRaise {
 public:
  explicit TStatusRaise(TFmtContext& context) : m_pDocument(context.Get_DocumentNode()) {
    if (m_pDocument && m_pDocument->Get_CompositionStatus() == k_WidthChanged)
      m_pDocument->Replace_CompositionStatus(k_ComposeEverything);
    else
      m_pDocument = nullptr;
  }
  ~TStatusRaise() {
    if (m_pDocument) m_pDocument->Replace_CompositionStatus(k_WidthChanged);
  }
  TStatusRaise(const TStatusRaise&) = delete;
  TStatusRaise& operator=(const TStatusRaise&) = delete;

 private:
  TFmtDocumentNode* m_pDocument;
};

class TMathModeOff {
 public:
  explicit TMathModeOff(TTexTokenSource& source) : m_Source(source), m_nOld(source.Get_MathMode()) {
    source.Set_MathMode(0);
  }
  ~TMathModeOff() { m_Source.Set_MathMode(m_nOld); }
  TMathModeOff(const TMathModeOff&) = delete;
  TMathModeOff& operator=(const TMathModeOff&) = delete;

 private:
  TTexTokenSource& m_Source;
  int m_nOld;
};
}  // namespace

TFmtParagraphNode::TFmtParagraphNode(KAlignment alignment, TFmtUnitNode* pWidth)
    : m_nAlignment(alignment), m_pWidth(pWidth ? pWidth : new TFmtUnitNode(0, 1, k_UnitNone)) {}

TFmtParagraphNode::TFmtParagraphNode(const TFmtParagraphNode& other)
    : TFmtCompoundNode(other),
      m_nJustification(other.m_nJustification),
      m_bHasFill(other.m_bHasFill),
      m_bFillProcessed(0),
      m_nAlignment(other.m_nAlignment),
      m_pWidth(other.m_pWidth->CopyDerived()),
      m_nVerticalShift(other.m_nVerticalShift) {}

int TFmtParagraphNode::BeforeSkip() const { return TFmtContext::fg_nParSkip; }

void TFmtParagraphNode::Set_Width(TFmtUnitNode* width) {
  m_pWidth.reset(width ? width : new TFmtUnitNode(0, 1, k_UnitNone));
}

void TFmtParagraphNode::AddHead(TFmtNode* node) {
  if (!node) return;
  if (!m_bHasFill && FillGlue(node)) m_bHasFill = 1;
  m_Children.AddHead(node);
}

void TFmtParagraphNode::AddTailSimple(TFmtNode* node) {
  if (!node) return;
  if (!m_bHasFill && FillGlue(node)) m_bHasFill = 1;
  m_Children.AddTail(node);
}

TFmtParagraphNode::~TFmtParagraphNode() {
  while (!m_SpareBreaks.IsEmpty()) delete Node(m_SpareBreaks.RemoveHead());
  while (!m_SpareFills.IsEmpty()) delete Node(m_SpareFills.RemoveHead());
}

TFmtLineBreakNode* TFmtParagraphNode::NewSoftBreak() {
  if (m_SpareBreaks.IsEmpty()) return new TFmtLineBreakNode(0, k_LineBreakBackslash);
  auto* spare = static_cast<TFmtLineBreakNode*>(m_SpareBreaks.RemoveTail());
  spare->m_nAdvance = 0;
  spare->m_pExtent->Reset(0, 0, 0);
  return spare;
}

TFmtGlueNode* TFmtParagraphNode::NewProgramFill() {
  if (m_SpareFills.IsEmpty()) return TFmtGlueNode::New_hfilll();
  auto* spare = static_cast<TFmtGlueNode*>(m_SpareFills.RemoveTail());
  spare->SetActualSpaceToBeNormalSpace();
  spare->m_pExtent->Reset(0, 0, 0);
  return spare;
}

int TFmtParagraphNode::HoldsOnlyProgramFill() const {
  for (CObject* o : m_Children)
    if (!IsProgramFill(Node(o))) return 0;
  return 1;
}

void TFmtParagraphNode::Paragraphy(TFmtNode* node) {
  if (!node) return;
  if (TFmtGroupNode* group = node->IsPureGroupNode()) {
    AddTailSimple(new TFmtControlSequenceNode(TGlobalString::g_pBEGINGROUP));
    while (TFmtNode* child = group->RemoveHead()) AddTailSimple(child);
    delete group;
    AddTailSimple(new TFmtControlSequenceNode(TGlobalString::g_pENDGROUP));
  } else if (TFmtCompoundNode* pure = node->IsPureCompoundNode()) {
    while (TFmtNode* child = pure->RemoveHead()) AddTailSimple(child);
    delete pure;
  } else {
    AddTail(node);
  }
}

// ---- line breaking --------------------------------------------------------------

void TFmtParagraphNode::Reflow(TFmtContext& context) {
  TStringPool* pool = TStringPool::g_pGlobal;
  const char* centering = pool->Put("centering");
  const char* raggedleft = pool->Put("raggedleft");
  const char* raggedright = pool->Put("raggedright");
  bool seenDeclaration = false;
  using POSITION = CObList::POSITION;
  const POSITION end = m_Children.GetEnd();

restart:
  m_bFillProcessed = 0;
  // 64 bits: a hostile width or a long line of wide nodes must not wrap.
  int64_t x = context.m_nLeftMargin;
  int64_t lineStart = x;
  TFmtNode* prev = nullptr;
  POSITION breakPos = end;
  int64_t tailWidth = 0;
  const int64_t limit = HasWidth() ? m_pWidth->GetInternalValue(context) : 0;

  POSITION position = m_Children.GetHeadPosition();
  while (position != end) {
    const POSITION curPos = position;
    TFmtNode* cur = Node(m_Children.GetNext(position));  // position: the child after cur

    // 1. Breaks: hard ones stay and start a line; soft ones of the last run go.
    if (TFmtLineBreakNode* lineBreak = cur->IsLineBreakNode()) {
      breakPos = end;
      tailWidth = 0;
      if (!lineBreak->Get_Hard()) {
        // The swallowed white space comes back, in order, and is walked next.
        while (TFmtNode* white = lineBreak->RemoveTextTail()) m_Children.InsertAfter(curPos, white);
        position = std::next(curPos);
        m_Children.RemoveAt(curPos);
        m_SpareBreaks.AddTail(lineBreak);
        continue;
      }
      x = context.m_nLeftMargin;
      if (m_nJustification == 3) {
        m_Children.InsertBefore(curPos, NewProgramFill());
        m_Children.InsertAfter(curPos, NewProgramFill());
        m_bHasFill = 1;
      } else if (m_nJustification == 2) {
        m_Children.InsertAfter(curPos, NewProgramFill());
        m_bHasFill = 1;
      }
      if (m_nJustification != 1 && curPos == m_Children.GetHeadPosition()) AddHead(NewProgramFill());
      lineBreak->Compose(context);
      // What follows a hard break starts a line as a paragraph's first child
      // does: a break before it would only make an empty line.
      prev = nullptr;
      lineStart = x;
      continue;
    }
    // 2. The first declaration rules the whole paragraph: start again.
    if (!seenDeclaration && cur->IsControlSequenceNode()) {
      const int declared = cur->IsControlSequence(centering) ? 3 : cur->IsControlSequence(raggedleft) ? 2
                           : cur->IsControlSequence(raggedright)  ? 1
                                                                  : 0;
      if (declared) {
        seenDeclaration = true;
        Set_Justification(declared);
        goto restart;
      }
    }
    // 3. User fill starts from nothing; program fill of the last run goes.
    if (FillGlue(cur)) {
      TFmtGlueNode* glue = cur->IsGlueNode();
      if (!glue->Get_UserSupplied()) {
        m_Children.RemoveAt(curPos);
        m_SpareFills.AddTail(glue);
        continue;
      }
      glue->SetActualSpace(new TFmtUnitNode(0, 1, k_UnitNone));
      m_bHasFill = 1;
    }
    // 4. Flush right and centred lines start with fill.
    if ((m_nJustification == 2 || m_nJustification == 3) && curPos == m_Children.GetHeadPosition())
      AddHead(NewProgramFill());
    // 5.
    cur->m_pExtent->Reset(0, 0, 0);
    TFmtExtent* composed = cur->Compose(context);
    const int64_t width = (composed ? composed : cur->m_pExtent.get())->m_nWidth;
    // 6. A list item's label moves the margin while it composes.
    if (x == lineStart) x = lineStart = context.m_nLeftMargin;
    // 7.
    const int64_t right = limit != 0 ? context.m_nLeftMargin + limit : context.m_nRightMargin;
    // 8. The last place where a break is allowed wins.
    if (prev && !prev->DontBreakAfter() && !cur->DontBreakBefore()) {
      breakPos = curPos;
      tailWidth = 0;
    }
    // 9. Too long, and there is somewhere to break: break there.
    if (x + width > right && breakPos != end) {
      TFmtLineBreakNode* soft = NewSoftBreak();
      x = context.m_nLeftMargin + tailWidth;
      if (m_nJustification == 3) {
        m_Children.InsertBefore(breakPos, NewProgramFill());
        m_bHasFill = 1;
      }
      m_Children.InsertBefore(breakPos, soft);
      if (m_nJustification == 2 || m_nJustification == 3) {
        m_Children.InsertBefore(breakPos, NewProgramFill());
        m_bHasFill = 1;
      }
      const bool atBreak = breakPos == curPos;
      breakPos = end;
      tailWidth = 0;
      // A blank that overflows goes into the break and counts twice toward
      // the next line: that is the rule of this layout. Only the blank at the
      // break itself is taken, so that the text keeps its order when the
      // tail comes back.
      // The new line holds nothing yet, so nothing on it is a place to
      // break: a long word after the blank stays, overfull, rather than
      // leave a line of nothing but the blank.
      if (atBreak && cur->IsWhiteSpace()) {
        m_Children.RemoveAt(curPos);
        soft->AddTextTail(cur);
        x += 2 * width;
        prev = nullptr;
        continue;
      }
      x += width;
    } else {
      // 10. A line with no allowed break overflows rather than split a word.
      if (breakPos != end) tailWidth += width;
      x += width;
    }
    prev = cur;
  }
  // 11. Centred text ends with fill, an empty paragraph included.
  if (m_nJustification == 3) AddTailSimple(NewProgramFill());
}

void TFmtParagraphNode::ProcessHorizontalFill(TFmtContext& context) {
  if (!m_bHasFill || m_bFillProcessed) return;
  m_bFillProcessed = 1;
  const int64_t available = static_cast<int64_t>(context.m_nRightMargin) - context.m_nLeftMargin;
  // Only fill glue takes a share, so only fill glue is listed; the widths of
  // all of a line's children count.
  CObList fills;  // not owned: the current line's fill glue
  int64_t width = 0;
  auto share = [&]() {
    const int64_t free = available - width;
    if (!fills.IsEmpty() && free >= 1)
      ExpandInfinitelyStretchableGlue(&fills, static_cast<int>(std::min<int64_t>(free, INT32_MAX)), context);
    fills.RemoveAll();
    width = 0;
  };
  for (CObject* o : m_Children) {
    TFmtNode* child = Node(o);
    if (child->IsLineBreakNode()) {
      share();
      continue;
    }
    width += child->m_pExtent->m_nWidth;
    if (FillGlue(child)) fills.AddTail(child);
  }
  share();
}

// ---- composition ----------------------------------------------------------------

TFmtExtent* TFmtParagraphNode::Compose(TFmtContext& context) {
  context.PushOnNodePath(this);
  Set_Justification(context.m_nJustification);
  const int oldRight = context.m_nRightMargin;
  const bool pushed = HasWidth();
  if (pushed) {
    context.PushGroupState();
    const int64_t right = static_cast<int64_t>(context.m_nLeftMargin) + m_pWidth->GetInternalValue(context);
    context.m_nRightMargin = static_cast<int>(std::clamp<int64_t>(right, INT32_MIN, INT32_MAX));
  }
  {
    TStatusRaise raise(context);
    Reflow(context);
  }
  m_pExtent->Reset(0, 0, 0);
  m_nVerticalShift = 0;
  m_LineExtents.clear();
  if (HoldsOnlyProgramFill()) {
    ProcessHorizontalFill(context);
  } else {
    // The fill share-out of ProcessHorizontalFill, line by line in the same
    // walk that measures the lines: one pass over the children, not two.
    const bool shareFill = m_bHasFill && !m_bFillProcessed;
    if (shareFill) m_bFillProcessed = 1;
    const int64_t available = static_cast<int64_t>(context.m_nRightMargin) - context.m_nLeftMargin;
    CObList fills;  // not owned: the current line's fill glue
    TExtendedFont* font = TExtendedFont::fg_pCurrent;
    const int gap = font ? font->ExternalLeading(context) : 0;
    // The strut: "M" high and "p" deep in the current font, measured once.
    bool strutReady = false;
    TFmtExtent strut;
    auto applyStrut = [&](TFmtExtent& line) {
      if (!strutReady) {
        strutReady = true;
        TFmtCharacterNode probe('M');
        probe.ComputeCharacterFmtExtent('M', context, font);
        strut.m_nHeight = probe.m_pExtent->m_nHeight;
        probe.ComputeCharacterFmtExtent('p', context, font);
        strut.m_nDepth = probe.m_pExtent->m_nDepth;
      }
      line.MaxHeight(strut.m_nHeight);
      line.MaxDepth(strut.m_nDepth);
    };
    TFmtExtent first, last, line;
    bool isFirst = true;
    TFmtLineBreakNode* prev = nullptr;
    auto addLine = [&]() {
      m_LineExtents.push_back(line);
      if (isFirst) {
        first = line;
        isFirst = false;
      } else {
        first.m_nDepth += line.m_nHeight + line.m_nDepth + gap;
        first.MaxWidth(line.m_nWidth);
      }
    };
    // Leaves take the height and depth of their line, so that selection and
    // highlight show as bars of the line's height. Each line's children are
    // raised as soon as the line is known, while they are still in cache.
    auto raise = [](CObList::POSITION from, CObList::POSITION to, const TFmtExtent& of) {
      for (; from != to; ++from) {
        TFmtNode* child = Node(*from);
        if (TakesLineHeight(child)) {
          child->m_pExtent->MaxHeight(of.m_nHeight);
          child->m_pExtent->MaxDepth(of.m_nDepth);
        }
      }
    };
    auto shareOut = [&]() {
      const int64_t free = available - line.m_nWidth;
      if (!fills.IsEmpty() && free >= 1) {
        int64_t before = 0, after = 0;
        for (CObject* o : fills) before += Node(o)->m_pExtent->m_nWidth;
        ExpandInfinitelyStretchableGlue(&fills, static_cast<int>(std::min<int64_t>(free, INT32_MAX)), context);
        for (CObject* o : fills) after += Node(o)->m_pExtent->m_nWidth;
        line.m_nWidth = static_cast<int32_t>(line.m_nWidth + after - before);
      }
      fills.RemoveAll();
    };
    bool lineInk = false, anyInk = false;
    auto lineStart = m_Children.GetHeadPosition();
    for (auto position = m_Children.GetHeadPosition(); position != m_Children.GetEnd(); ++position) {
      TFmtNode* child = Node(*position);
      child->m_Position = m_Position;
      TFmtLineBreakNode* lineBreak = child->IsLineBreakNode();
      if (!lineBreak) {
        const TFmtExtent& e = *child->m_pExtent;
        line.m_nWidth += e.m_nWidth;
        line.MaxHeight(e.m_nHeight);
        line.MaxDepth(e.m_nDepth);
        // Blanks and commands of no size show nothing: a line of only those
        // is empty (a LaTeX preamble makes one).
        // A glue of the source counts, whatever its width so far (a fill
        // gets its share below).
        if (!child->IsWhiteSpace()) {
          const TFmtGlueNode* glue = child->IsGlueNode();
          if (glue ? glue->Get_UserSupplied() != 0 : e.Sum() != 0) lineInk = anyInk = true;
        }
        if (shareFill && FillGlue(child)) fills.AddTail(child);
        continue;
      }
      if (shareFill) shareOut();
      if (lineInk) applyStrut(line);  // an empty line gets none
      lineInk = false;
      addLine();
      lineBreak->m_nAdvance = line.m_nDepth;
      if (prev) prev->m_nAdvance += line.m_nHeight + gap;
      lineBreak->m_pExtent->Reset(0, 0, 0);
      raise(lineStart, position, line);
      lineStart = std::next(position);
      last = line;
      line.Reset(0, 0, 0);
      prev = lineBreak;
    }
    if (shareFill) shareOut();
    // The last line takes its strut before its height joins the advance
    // above it, as every other line does.
    if (lineInk) {
      applyStrut(line);
      last = line;
    }
    if (prev && GetTail() != prev) prev->m_nAdvance += line.m_nHeight + gap;
    raise(lineStart, m_Children.GetEnd(), last);
    addLine();
    *m_pExtent = first;

    TFmtExtent& extent = *m_pExtent;
    if (m_nAlignment == k_AlignCentre) {
      const int half = static_cast<int>((static_cast<int64_t>(extent.m_nHeight) + extent.m_nDepth) / 2);
      m_nVerticalShift = half - extent.m_nHeight;
      extent.Reset(half, half, extent.m_nWidth);
    } else if (m_nAlignment == k_AlignBottom) {
      m_nVerticalShift = extent.m_nDepth - last.m_nDepth;
      extent.Reset(extent.m_nHeight + m_nVerticalShift, last.m_nDepth, extent.m_nWidth);
    }
    if (HasWidth()) extent.MaxWidth(static_cast<int32_t>(m_pWidth->GetInternalValue(context)));
    else if (!anyInk) extent.Reset(0, 0, 0);  // takes no room at all, nor a skip above what follows
  }
  context.m_nRightMargin = oldRight;
  if (pushed) context.PopGroupState();
  context.PopOffNodePath();
  return m_pExtent.get();
}

void TFmtParagraphNode::Draw(TFmtContext& context) {
  // No clip test: children carry state, and each tests for itself.
  DrawSelectionBackground(context);
  SetSelectionForeground(context);
  const int oldLeft = context.m_nLeftMargin, oldRight = context.m_nRightMargin;
  const bool pushed = HasWidth();
  if (pushed) {
    context.PushGroupState();
    context.m_nLeftMargin = m_Position.x;
    context.m_nRightMargin = static_cast<int>(m_Position.x + m_pWidth->GetInternalValue(context));
  }
  int x = m_Position.x;
  int y = m_Position.y + m_nVerticalShift;
  for (CObject* o : m_Children) {
    TFmtNode* child = Node(o);
    if (TFmtLineBreakNode* lineBreak = child->IsLineBreakNode()) {
      lineBreak->m_Position = CPoint(x, y);
      x = m_Position.x;
      y -= lineBreak->m_nAdvance;
    } else {
      if (x == m_Position.x) x = m_Position.x = context.m_nLeftMargin;
      child->m_Position = CPoint(x, y);
      x += child->m_pExtent->m_nWidth;
    }
    child->Draw(context);
  }
  context.m_nLeftMargin = oldLeft;
  context.m_nRightMargin = oldRight;
  if (pushed) context.PopGroupState();
  UnsetSelectionForeground(context);
}

// ---- printing and parsing -------------------------------------------------------

void TFmtParagraphNode::PrintTex(CString& out, int& column) const {
  // Program fill prints nothing: the source comes back as it was written.
  auto printChildren = [&]() {
    for (CObject* o : m_Children)
      if (!IsProgramFill(Node(o))) Node(o)->PrintTex(out, column);
  };
  if (HasWidth()) {
    out += column != 0 ? "\n\\parbox" : "\\parbox";
    column = 0;
    if (m_nAlignment == k_AlignTop) {
      out += "[t]";
      column += 3;
    } else if (m_nAlignment == k_AlignBottom) {
      out += "[b]";
      column += 3;
    }
    out += '{';
    ++column;
    m_pWidth->PrintTex(out, column);
    out += "}{";
    column += 2;
    printChildren();
    out += '}';
    ++column;
    AddNewlineIfNeeded(out, column);
    return;
  }
  AddNewlineIfNeeded(out, column);
  bool startsItself = false;
  if (TFmtNode* head = GetHead())
    if (TFmtControlSequenceNode* cs = head->IsControlSequenceNode())
      startsItself = TStringPool::g_pGlobal->GetBoolean(cs->Get_Name(), TGlobalString::g_pPARAGRAPHSTARTER);
  if (!HoldsOnlyProgramFill() && !startsItself) {
    out += "\\par\n";
    column = 0;
  }
  printChildren();
  AddNewlineIfNeeded(out, column);
}

TFmtNode* TFmtParagraphNode::ParseTex_parbox(TFmtControlSequenceNode*, TTexTokenSource& source) {
  TMathModeOff text(source);
  KAlignment alignment = k_AlignCentre;
  if (TFmtNode* option = NextTexOptionalMacroArg(source, 1)) {
    CString letters;
    option->SimplyStringify(letters);
    delete option;
    if (letters.GetLength() > 0 && letters[0] == 't') alignment = k_AlignTop;
    else if (letters.GetLength() > 0 && letters[0] == 'b') alignment = k_AlignBottom;
    else source.Error(25056u);  // the centre stays
  }
  auto paragraph = std::make_unique<TFmtParagraphNode>(alignment, NextTexMeasureArg(source));
  paragraph->Paragraphy(NextTexMacroArg(source, 1));
  return paragraph.release();
}

namespace {
constexpr TCsParserEntry fg_Paragraphs[] = {
    {"parbox", TFmtParagraphNode::ParseTex_parbox},
};

// The environments open a group state and set the justification; their
// ends close it. The declarations set it for the rest of the group.
void Handle_Justify(TFmtNode* node, TFmtContext& context, int justification, bool push) {
  node->m_pExtent->Reset(0, 0, 0);
  if (push) context.PushGroupState();
  context.m_nJustification = justification;
}
void Compose_begincenter(TFmtNode* n, int, TFmtContext& c) { Handle_Justify(n, c, 3, true); }
void Compose_beginflushleft(TFmtNode* n, int, TFmtContext& c) { Handle_Justify(n, c, 1, true); }
void Compose_beginflushright(TFmtNode* n, int, TFmtContext& c) { Handle_Justify(n, c, 2, true); }
void Compose_centering(TFmtNode* n, int, TFmtContext& c) { Handle_Justify(n, c, 3, false); }
void Compose_raggedleft(TFmtNode* n, int, TFmtContext& c) { Handle_Justify(n, c, 2, false); }
void Compose_raggedright(TFmtNode* n, int, TFmtContext& c) { Handle_Justify(n, c, 1, false); }
// The group markers that Build and \parbox make of braces: a group state
// opens and closes as the braces would.
void Compose_BEGINGROUP(TFmtNode* n, int, TFmtContext& c) {
  n->m_pExtent->Reset(0, 0, 0);
  c.PushGroupState();
}
void Compose_ENDGROUP(TFmtNode* n, int, TFmtContext& c) {
  n->m_pExtent->Reset(0, 0, 0);
  c.PopGroupState();
}

struct TJustifyEntry {
  const char* name;
  TFmtHandlerFunction handler;  // the same at compose and at draw: state must agree
};
constexpr TJustifyEntry fg_Justification[] = {
    {"begincenter", Compose_begincenter},       {"endcenter", Compose_ENDGROUP},
    {"beginflushleft", Compose_beginflushleft}, {"endflushleft", Compose_ENDGROUP},
    {"beginflushright", Compose_beginflushright}, {"endflushright", Compose_ENDGROUP},
    {"centering", Compose_centering},           {"raggedleft", Compose_raggedleft},
    {"raggedright", Compose_raggedright},
    {"_BEGINGROUP", Compose_BEGINGROUP},        {"_ENDGROUP", Compose_ENDGROUP},
};
int fg_nDrawGeneration = 0;
}  // namespace

std::span<const TCsParserEntry> TFmtParagraphNode::ParserTable() { return fg_Paragraphs; }

void TFmtParagraphNode::InitializeDrawProperties() {
  // Once per pool, like the parsers: a pool made anew loads again.
  if (fg_nDrawGeneration == TStringPool::Get_GlobalGeneration()) return;
  fg_nDrawGeneration = TStringPool::Get_GlobalGeneration();
  for (const TJustifyEntry& entry : fg_Justification) PutDrawProperties(entry.name, entry.handler, entry.handler);
}
