#include "math/over_node.h"

#include <cstring>

#include "format/leaf_nodes.h"
#include "symbols/global_strings.h"
#include "format/unit_node.h"
#include "tex/arguments.h"
#include "tex/measure_args.h"
#include "tex/token_source.h"

namespace {
TFmtCompoundNode* OrEmpty(TFmtCompoundNode* node) { return node ? node : new TFmtCompoundNode; }

// How each type prints: infix for the collecting ones, a command before two
// arguments for the others.
const char* const fg_OverNames[] = {"\\atop ", "\\cfrac", "\\choose ", "\\choose ", "\\dfrac",  "\\frac",
                                    "\\cfrac[l]", "\\over ", "\\cfrac[r]", "\\tfrac", "\\zag", "\\zig"};
}  // namespace

TFmtOverNode::TFmtOverNode(KOverType type, int bCollecting, TFmtCompoundNode* top, TFmtCompoundNode* bottom)
    : m_bCollecting(bCollecting), m_pTop(OrEmpty(top)), m_pBottom(OrEmpty(bottom)), m_Type(type) {}

TFmtOverNode::TFmtOverNode(const TFmtOverNode& other)
    : TFmtNode(other),
      m_bCollecting(other.m_bCollecting),
      // Copy, not CopyDerived: a part may be a math node, whose class must stay.
      m_pTop(static_cast<TFmtCompoundNode*>(other.m_pTop->Copy())),
      m_pBottom(static_cast<TFmtCompoundNode*>(other.m_pBottom->Copy())),
      m_pThickness(other.m_pThickness ? other.m_pThickness->Copy() : nullptr),
      m_Type(other.m_Type),
      m_nTopShift(other.m_nTopShift),
      m_nBottomShift(other.m_nBottomShift),
      m_nTopOffset(other.m_nTopOffset),
      m_nBottomOffset(other.m_nBottomOffset) {}

void TFmtOverNode::SetTop(TFmtCompoundNode* top) { m_pTop.reset(OrEmpty(top)); }
void TFmtOverNode::SetBottom(TFmtCompoundNode* bottom) { m_pBottom.reset(OrEmpty(bottom)); }

void TFmtOverNode::ApplyRecursively(void (*f)(TFmtNode*)) {
  f(this);
  m_pTop->ApplyRecursively(f);
  m_pBottom->ApplyRecursively(f);
}
void TFmtOverNode::ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) {
  f(this, a);
  m_pTop->ApplyRecursively(f, a);
  m_pBottom->ApplyRecursively(f, a);
}
void TFmtOverNode::ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) {
  f(this, a, b);
  m_pTop->ApplyRecursively(f, a, b);
  m_pBottom->ApplyRecursively(f, a, b);
}

void TFmtOverNode::PrintTex(CString& out, int& column) const {
  const int type = m_Type >= 0 && m_Type <= k_OverZig ? m_Type : k_OverFrac;
  const char* name = fg_OverNames[type];
  if (m_Type == k_OverChooseComposed) {
    // The bottom keeps the \choose as it was read; the top is its layout.
    m_pBottom->PrintTex(out, column);
    return;
  }
  if (m_bCollecting) {
    m_pTop->PrintTex(out, column);
    out += name;
    column += static_cast<int>(std::strlen(name));
    m_pBottom->PrintTex(out, column);
    return;
  }
  out += name;
  column += static_cast<int>(std::strlen(name));
  if (m_pThickness) m_pThickness->PrintTexOptionalArgument(out, column);
  m_pTop->PrintTexArgument(out, column);
  m_pBottom->PrintTexArgument(out, column);
}

void TFmtOverNode::SimplyStringify(CString& out) {
  out += '(';
  m_pTop->SimplyStringify(out);
  out += ")/(";
  m_pBottom->SimplyStringify(out);
  out += ')';
}

namespace {
// The optional rule thickness, "[2pt]": a unit node.
TFmtNode* ReadThickness(TTexTokenSource& source) { return NextTexOptionalMeasureArg(source); }

TFmtNode* Collecting(KOverType type) { return new TFmtOverNode(type, 1, nullptr, nullptr); }

TFmtNode* TwoArguments(KOverType type, TTexTokenSource& source, TFmtNode* thickness) {
  auto* over = new TFmtOverNode(type, 0, nullptr, nullptr);
  over->SetThickness(thickness);
  over->SetTop(TFmtCompoundNode::CompoundIt(NextTexMacroArg(source, 1)));
  over->SetBottom(TFmtCompoundNode::CompoundIt(NextTexMacroArg(source, 1)));
  return over;
}
}  // namespace

TFmtNode* TFmtOverNode::ParseTex_atop(TFmtControlSequenceNode*, TTexTokenSource&) { return Collecting(k_OverAtop); }
TFmtNode* TFmtOverNode::ParseTex_choose(TFmtControlSequenceNode*, TTexTokenSource&) {
  return Collecting(k_OverChoose);
}
TFmtNode* TFmtOverNode::ParseTex_over(TFmtControlSequenceNode*, TTexTokenSource&) { return Collecting(k_OverOver); }
TFmtNode* TFmtOverNode::ParseTex_frac(TFmtControlSequenceNode*, TTexTokenSource& source) {
  TFmtNode* thickness = ReadThickness(source);
  return TwoArguments(k_OverFrac, source, thickness);
}
TFmtNode* TFmtOverNode::ParseTex_dfrac(TFmtControlSequenceNode*, TTexTokenSource& source) {
  TFmtNode* thickness = ReadThickness(source);
  return TwoArguments(k_OverDfrac, source, thickness);
}
TFmtNode* TFmtOverNode::ParseTex_tfrac(TFmtControlSequenceNode*, TTexTokenSource& source) {
  TFmtNode* thickness = ReadThickness(source);
  return TwoArguments(k_OverTfrac, source, thickness);
}
TFmtNode* TFmtOverNode::ParseTex_cfrac(TFmtControlSequenceNode*, TTexTokenSource& source) {
  KOverType type = k_OverCfrac;
  if (TFmtNode* side = NextTexOptionalMacroArg(source, 1)) {
    if (side->IsCharacter('l')) type = k_OverCfracLeft;
    else if (side->IsCharacter('r')) type = k_OverCfracRight;
    delete side;
  }
  return TwoArguments(type, source, nullptr);
}
TFmtNode* TFmtOverNode::ParseTex_zig(TFmtControlSequenceNode*, TTexTokenSource& source) {
  return TwoArguments(k_OverZig, source, nullptr);
}
TFmtNode* TFmtOverNode::ParseTex_zag(TFmtControlSequenceNode*, TTexTokenSource& source) {
  return TwoArguments(k_OverZag, source, nullptr);
}

namespace {
constexpr TCsParserEntry fg_Parsers[] = {
    {"atop", TFmtOverNode::ParseTex_atop},
    {"cfrac", TFmtOverNode::ParseTex_cfrac},
    {"choose", TFmtOverNode::ParseTex_choose},
    {"dfrac", TFmtOverNode::ParseTex_dfrac},
    {"frac", TFmtOverNode::ParseTex_frac},
    {"over", TFmtOverNode::ParseTex_over},
    {"tfrac", TFmtOverNode::ParseTex_tfrac},
    {"zag", TFmtOverNode::ParseTex_zag},
    {"zig", TFmtOverNode::ParseTex_zig},
};
}  // namespace

std::span<const TCsParserEntry> TFmtOverNode::ParserTable() { return fg_Parsers; }

void TFmtOverNode::InitializeTexParser() {
  RegisterParsers(fg_Parsers);
  delete ParseTexFromString("\\def\\lcfrac#1{\\cfrac[l]{#1}}");
  delete ParseTexFromString("\\def\\rcfrac#1{\\cfrac[r]{#1}}");
}
