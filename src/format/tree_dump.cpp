#include "format/tree_dump.h"

#include <cstdio>
#include <string>

#include "format/compound_node.h"
#include "format/glue_node.h"
#include "format/unit_node.h"
#include "format/leaf_nodes.h"
#include "math/math_node.h"
#include "math/over_node.h"
#include "math/scripted_node.h"

const char* NodeClassName(const TFmtNode* node) {
  if (!node) return "(null)";
  if (dynamic_cast<const TFmtDisplayMathNode*>(node)) return "TFmtDisplayMathNode";
  if (node->IsMathNode()) return "TFmtMathNode";
  if (node->IsGroupNode()) return "TFmtGroupNode";
  if (node->IsCompoundNode()) return node->IsPureCompoundNode() ? "TFmtCompoundNode" : "compound";
  if (node->IsCharacterNode()) return "TFmtCharacterNode";
  if (node->IsControlCharacterNode()) return "TFmtControlCharacterNode";
  if (node->IsSequenceNode()) return "TFmtSequenceNode";
  if (node->IsControlSequenceNode()) return "TFmtControlSequenceNode";
  if (node->IsGenericArgumentedNode()) return "TFmtGenericArgumentedNode";
  if (node->IsScriptedNode()) return "TFmtScriptedNode";
  if (node->IsOverNode()) return "TFmtOverNode";
  if (node->IsGlueNode()) return "TFmtGlueNode";
  if (node->IsUnitNode()) return "TFmtUnitNode";
  return "TFmtNode";
}

namespace {
std::string Quoted(const char* text) {
  std::string out = "\"";
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(text); *p; ++p) {
    if (*p == '\n') out += "\\n";
    else if (*p == '"' || *p == '\\') (out += '\\') += static_cast<char>(*p);
    else if (*p < 32 || *p > 126) {
      char buffer[8];
      std::snprintf(buffer, sizeof buffer, "\\x%02x", *p);
      out += buffer;
    } else {
      out += static_cast<char>(*p);
    }
  }
  return out + "\"";
}

void Dump(const TFmtNode* node, const char* label, int depth, CString& out) {
  std::string line(static_cast<size_t>(depth) * 2, ' ');
  if (label) (line += label) += ": ";
  line += NodeClassName(node);
  if (!node) {
    out += line.c_str();
    out += '\n';
    return;
  }
  if (const TFmtCharacterNode* c = node->IsCharacterNode()) {
    const char text[2] = {c->Get_Character(), '\0'};
    line += " " + Quoted(text);
  } else if (const TFmtControlCharacterNode* c = node->IsControlCharacterNode()) {
    const char text[3] = {'\\', c->Get_Character(), '\0'};
    line += " " + Quoted(text);
  } else if (const TFmtSequenceNode* s = node->IsSequenceNode()) {
    line += " " + Quoted(s->Get_Sequence());
  } else if (const TFmtControlSequenceNode* cs = node->IsControlSequenceNode()) {
    line += std::string(" \\") + cs->Get_Name();
  } else if (const TFmtGenericArgumentedNode* g = node->IsGenericArgumentedNode()) {
    line += std::string(" \\") + g->Get_Name();
  } else if (const TFmtOverNode* o = node->IsOverNode()) {
    line += " type " + std::to_string(o->Get_Type());
    if (o->IsCollectingOverNode()) line += " collecting";
  } else if (auto* d = dynamic_cast<const TFmtDisplayMathNode*>(node)) {
    line += " type " + std::to_string(d->Get_Type());
  } else if (const TFmtGlueNode* glue = node->IsGlueNode()) {
    line += " kind " + std::to_string(glue->Get_Kind());
  } else if (const TFmtUnitNode* unit = node->IsUnitNode()) {
    line += " " + std::to_string(unit->Get_Numerator()) + "/" + std::to_string(unit->Get_Denominator()) + " " +
            TFmtUnitNode::UnitName(unit->Get_UnitType());
  }
  out += line.c_str();
  out += '\n';
  if (const TFmtCompoundNode* compound = node->IsCompoundNode()) {
    for (CObject* o : compound->Get_Children()) Dump(static_cast<TFmtNode*>(o), nullptr, depth + 1, out);
    if (auto* d = dynamic_cast<const TFmtDisplayMathNode*>(node); d && !d->Get_Eqno()->IsEmpty())
      Dump(d->Get_Eqno(), d->m_bLeftNumber ? "leqno" : "eqno", depth + 1, out);
  } else if (const TFmtGenericArgumentedNode* g = node->IsGenericArgumentedNode()) {
    int n = 0;
    for (CObject* o : g->Get_Arguments()->Get_Children()) {
      ++n;
      const std::string name = (g->IsOptionalArgument(n) ? "optional " : "argument ") + std::to_string(n);
      Dump(static_cast<TFmtNode*>(o), name.c_str(), depth + 1, out);
    }
  } else if (const TFmtScriptedNode* s = node->IsScriptedNode()) {
    Dump(s->Get_Nucleus(), "nucleus", depth + 1, out);
    Dump(s->Get_Subscript(), "subscript", depth + 1, out);
    Dump(s->Get_Superscript(), "superscript", depth + 1, out);
  } else if (const TFmtGlueNode* glue = node->IsGlueNode()) {
    if (glue->Get_NormalSpace()) Dump(glue->Get_NormalSpace(), "normal", depth + 1, out);
    if (glue->Get_Stretch()) Dump(glue->Get_Stretch(), "stretch", depth + 1, out);
    if (glue->Get_Shrink()) Dump(glue->Get_Shrink(), "shrink", depth + 1, out);
  } else if (const TFmtOverNode* o = node->IsOverNode()) {
    if (o->Get_Thickness()) Dump(o->Get_Thickness(), "thickness", depth + 1, out);
    Dump(o->Get_Top(), "top", depth + 1, out);
    Dump(o->Get_Bottom(), "bottom", depth + 1, out);
  }
}
}  // namespace

void DumpTree(const TFmtNode* node, CString& out) { Dump(node, nullptr, 0, out); }
