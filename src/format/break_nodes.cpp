#include "format/break_nodes.h"

#include "format/context.h"
#include "format/leaf_nodes.h"
#include "format/unit_node.h"
#include "tex/measure_args.h"

// ---- TFmtLineBreakNode ------------------------------------------------------------

TFmtLineBreakNode::TFmtLineBreakNode(const TFmtLineBreakNode& other)
    : TFmtNode(other),
      m_bHard(other.m_bHard),
      m_nType(other.m_nType),
      m_nAdvance(other.m_nAdvance),
      m_nUnused(other.m_nUnused),
      m_pOptionalSkip(other.m_pOptionalSkip ? other.m_pOptionalSkip->CopyDerived() : nullptr) {
  for (CObject* o : other.m_TextTail) m_TextTail.AddTail(static_cast<TFmtNode*>(o)->Copy());
}

TFmtLineBreakNode::~TFmtLineBreakNode() {
  while (!m_TextTail.IsEmpty()) delete static_cast<TFmtNode*>(m_TextTail.RemoveHead());
}

TFmtNode* TFmtLineBreakNode::RemoveTextHead() {
  return m_TextTail.IsEmpty() ? nullptr : static_cast<TFmtNode*>(m_TextTail.RemoveHead());
}
TFmtNode* TFmtLineBreakNode::RemoveTextTail() {
  return m_TextTail.IsEmpty() ? nullptr : static_cast<TFmtNode*>(m_TextTail.RemoveTail());
}

void TFmtLineBreakNode::SetOptionalSkip(TFmtUnitNode* skip) { m_pOptionalSkip.reset(skip); }

void TFmtLineBreakNode::ApplyRecursively(void (*f)(TFmtNode*)) {
  f(this);
  ApplyRecursivelyList(m_TextTail, f);
}
void TFmtLineBreakNode::ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) {
  f(this, a);
  ApplyRecursivelyList(m_TextTail, f, a);
}
void TFmtLineBreakNode::ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) {
  f(this, a, b);
  ApplyRecursivelyList(m_TextTail, f, a, b);
}

TFmtExtent* TFmtLineBreakNode::Compose(TFmtContext&) {
  m_pExtent->Reset(0, 0, 0);
  return m_pExtent.get();
}

void TFmtLineBreakNode::Description(CString& out) {
  out = m_bHard ? "hard" : "soft";
  out += " \\break";
}

void TFmtLineBreakNode::PrintTex(CString& out, int& column) const {
  if (!m_bHard) {
    // A soft break stands for the blank it replaced: the source comes back unwrapped.
    out += ' ';
    ++column;
    return;
  }
  if (m_nType == k_LineBreakWord) {
    out += "\\break\n";
  } else {
    out += "\\\\";
    column += 2;
    if (m_pOptionalSkip) {
      out += '[';
      ++column;
      m_pOptionalSkip->PrintTex(out, column);
      out += ']';
    }
    out += '\n';
  }
  column = 0;
}

TFmtNode* TFmtLineBreakNode::ParseTex_break(TFmtControlSequenceNode*, TTexTokenSource&) {
  return new TFmtLineBreakNode(1, k_LineBreakWord);
}

TFmtNode* TFmtLineBreakNode::ParseTex_newline(TFmtControlSequenceNode*, TTexTokenSource& source) {
  auto* node = new TFmtLineBreakNode(1, k_LineBreakBackslash);
  node->SetOptionalSkip(NextTexOptionalMeasureArg(source));
  return node;
}

namespace {
// \\ reaches the parser as "newline".
constexpr TCsParserEntry fg_LineBreaks[] = {
    {"break", TFmtLineBreakNode::ParseTex_break},
    {"newline", TFmtLineBreakNode::ParseTex_newline},
};
}  // namespace

std::span<const TCsParserEntry> TFmtLineBreakNode::ParserTable() { return fg_LineBreaks; }

// ---- TFmtPageBreakNode ------------------------------------------------------------

TFmtExtent* TFmtPageBreakNode::Compose(TFmtContext& context) {
  SetSnapShot(context.SaveState());
  m_pExtent->Reset(0, 0, 0);
  return m_pExtent.get();
}

void TFmtPageBreakNode::PrintTex(CString& out, int& column) const {
  if (m_bHard) {
    out += "\\newpage\n";
    column = 0;
  } else {
    out += ' ';
    ++column;
  }
}
