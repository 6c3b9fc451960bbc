// The round trip that the fuzzer drives and that its saved crash inputs
// replay as ordinary tests: bytes, parse, check the tree for null children,
// print, parse the print, copy, delete. Answers a description of the first
// fault found, or an empty string.
#pragma once

#include <memory>
#include <string>

#include "errors/parse_errors.h"
#include "format/compound_node.h"
#include "format/leaf_nodes.h"
#include "math/math_node.h"
#include "math/over_node.h"
#include "math/scripted_node.h"
#include "tex/token_source.h"

namespace zfuzz {
inline bool HasNullChild(const TFmtNode* node) {
  if (!node) return true;
  if (const TFmtCompoundNode* compound = node->IsCompoundNode()) {
    for (CObject* o : compound->Get_Children())
      if (HasNullChild(static_cast<TFmtNode*>(o))) return true;
    if (auto* display = dynamic_cast<const TFmtDisplayMathNode*>(node)) return HasNullChild(display->Get_Eqno());
    return false;
  }
  if (const TFmtGenericArgumentedNode* generic = node->IsGenericArgumentedNode())
    return HasNullChild(generic->Get_Arguments());
  if (const TFmtScriptedNode* s = node->IsScriptedNode())
    return HasNullChild(s->Get_Nucleus()) || HasNullChild(s->Get_Subscript()) || HasNullChild(s->Get_Superscript());
  if (const TFmtOverNode* o = node->IsOverNode()) return HasNullChild(o->Get_Top()) || HasNullChild(o->Get_Bottom());
  return false;
}

inline std::unique_ptr<TFmtCompoundNode> Parse(const std::string& text) {
  auto root = std::make_unique<TFmtCompoundNode>();
  TTexTokenSource source("fuzz", text.c_str());
  // As a document loads: an \input that would wait ends the parse there.
  source.Set_StopAtMissingFile(1);
  TFmtNode* result = root->ParseTex(source);
  if (result != root.get()) root.reset(TFmtCompoundNode::CompoundIt(result));
  return root;
}

inline std::string Print(const TFmtNode* node) {
  CString out;
  int column = 0;
  node->PrintTex(out, column);
  return out.c_str();
}

inline std::string RoundTrip(const uint8_t* data, size_t size) {
  TFmtNode::InitializeTexParser();
  const std::string text(reinterpret_cast<const char*>(data), size);
  auto first = Parse(text);
  if (HasNullChild(first.get())) return "null child after the first parse";
  const std::string printed = Print(first.get());
  auto second = Parse(printed);
  if (HasNullChild(second.get())) return "null child after parsing the print";
  std::unique_ptr<TFmtNode> copy(second->Copy());
  if (Print(copy.get()) != Print(second.get())) return "a copy prints differently";
  CZrError::ClearParseErrors();
  return "";
}
}  // namespace zfuzz
