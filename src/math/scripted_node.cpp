#include "math/scripted_node.h"

#include "format/compound_node.h"
#include "format/parse_depth.h"
#include "format/leaf_nodes.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/arguments.h"
#include "tex/token_source.h"

namespace {
TFmtNode* OrEmpty(TFmtNode* node) { return node ? node : new TFmtGroupNode; }

// A single character or symbol prints bare after "_" or "^"; a group prints
// its own braces; anything else is braced so that it reads back as one part.
void PrintPart(const TFmtNode* part, CString& out, int& column) {
  if (part->IsCharacterNode() || part->IsControlSequenceNode() || part->IsControlCharacterNode() ||
      part->IsPureGroupNode()) {
    part->PrintTex(out, column);
    return;
  }
  part->PrintTexArgument(out, column);
}
}  // namespace

TFmtScriptedNode::TFmtScriptedNode(TFmtNode* nucleus, TFmtNode* sub, TFmtNode* sup)
    : m_pNucleus(OrEmpty(nucleus)), m_pSubscript(OrEmpty(sub)), m_pSuperscript(OrEmpty(sup)) {}

TFmtScriptedNode::TFmtScriptedNode(const TFmtScriptedNode& other)
    : TFmtNode(other),
      m_pNucleus(other.m_pNucleus->Copy()),
      m_pSubscript(other.m_pSubscript->Copy()),
      m_pSuperscript(other.m_pSuperscript->Copy()),
      m_nSubscriptShift(other.m_nSubscriptShift),
      m_nSuperscriptShift(other.m_nSuperscriptShift),
      m_bCentered(other.m_bCentered) {}

void TFmtScriptedNode::SetNucleus(TFmtNode* node) { m_pNucleus.reset(OrEmpty(node)); }
void TFmtScriptedNode::SetSubscript(TFmtNode* node) {
  m_pSubscript.reset(OrEmpty(node));
  m_nSubscriptShift = 0;
}
void TFmtScriptedNode::SetSuperscript(TFmtNode* node) {
  m_pSuperscript.reset(OrEmpty(node));
  m_nSuperscriptShift = 0;
}

TFmtNode* TFmtScriptedNode::ReleaseNucleus() {
  TFmtNode* part = m_pNucleus.release();
  m_pNucleus.reset(new TFmtGroupNode);
  return part;
}
TFmtNode* TFmtScriptedNode::ReleaseSubscript() {
  TFmtNode* part = m_pSubscript.release();
  m_pSubscript.reset(new TFmtGroupNode);
  return part;
}
TFmtNode* TFmtScriptedNode::ReleaseSuperscript() {
  TFmtNode* part = m_pSuperscript.release();
  m_pSuperscript.reset(new TFmtGroupNode);
  return part;
}

int TFmtScriptedNode::IsEmpty() const {
  return m_pNucleus->IsEmpty() && m_pSubscript->IsEmpty() && m_pSuperscript->IsEmpty();
}

void TFmtScriptedNode::ApplyRecursively(void (*f)(TFmtNode*)) {
  f(this);
  m_pNucleus->ApplyRecursively(f);
  m_pSubscript->ApplyRecursively(f);
  m_pSuperscript->ApplyRecursively(f);
}
void TFmtScriptedNode::ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) {
  f(this, a);
  m_pNucleus->ApplyRecursively(f, a);
  m_pSubscript->ApplyRecursively(f, a);
  m_pSuperscript->ApplyRecursively(f, a);
}
void TFmtScriptedNode::ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) {
  f(this, a, b);
  m_pNucleus->ApplyRecursively(f, a, b);
  m_pSubscript->ApplyRecursively(f, a, b);
  m_pSuperscript->ApplyRecursively(f, a, b);
}

TFmtNode* TFmtScriptedNode::ParseTex(TTexTokenSource& source) {
  TFmtNode* argument = NextTexMacroArg(source, 1);
  if (!source.Get_MathMode()) {
    // A script outside math shows in red where it stands.
    source.Error(25060u);
    auto* color = new TFmtGenericArgumentedNode(TGlobalString::g_pcolor);
    color->AddArgument(new TFmtSequenceNode("red"), 0);
    auto* group = new TFmtGroupNode;
    group->AddTailSimple(color);
    group->AddTailSimple(argument);
    argument = group;
  }
  if (fg_bSubscript) SetSubscript(argument);
  else SetSuperscript(argument);
  return this;
}

TFmtNode* TFmtScriptedNode::ParseScript(TTexTokenSource& source, int subscript) {
  struct Restore {
    int saved = fg_bSubscript;
    ~Restore() { fg_bSubscript = saved; }
  } restore;
  fg_bSubscript = subscript;
  return ParseFreshNode<TFmtNode>(new TFmtScriptedNode(nullptr, nullptr, nullptr), source);
}

TFmtNode* TFmtScriptedNode::ParseTex_sb(TFmtControlSequenceNode*, TTexTokenSource& source) {
  return ParseScript(source, 1);
}
TFmtNode* TFmtScriptedNode::ParseTex_sp(TFmtControlSequenceNode*, TTexTokenSource& source) {
  return ParseScript(source, 0);
}

namespace {
constexpr TCsParserEntry fg_Parsers[] = {
    {"sb", TFmtScriptedNode::ParseTex_sb},
    {"sp", TFmtScriptedNode::ParseTex_sp},
};
}  // namespace

std::span<const TCsParserEntry> TFmtScriptedNode::ParserTable() { return fg_Parsers; }

void TFmtScriptedNode::InitializeTexParser() {
  RegisterParsers(fg_Parsers);
}

void TFmtScriptedNode::PrintTex(CString& out, int& column) const {
  PrintPart(m_pNucleus.get(), out, column);
  if (!m_pSubscript->IsEmpty()) {
    out += '_';
    ++column;
    PrintPart(m_pSubscript.get(), out, column);
  }
  if (!m_pSuperscript->IsEmpty()) {
    out += '^';
    ++column;
    PrintPart(m_pSuperscript.get(), out, column);
  }
}

void TFmtScriptedNode::SimplyStringify(CString& out) {
  m_pNucleus->SimplyStringify(out);
  if (!m_pSubscript->IsEmpty()) {
    out += '_';
    m_pSubscript->SimplyStringify(out);
  }
  if (!m_pSuperscript->IsEmpty()) {
    out += '^';
    m_pSuperscript->SimplyStringify(out);
  }
}
