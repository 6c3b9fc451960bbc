#include "support/tex_parse.h"

#include <cstdio>
#include <map>

#include "errors/parse_errors.h"
#include "format/leaf_nodes.h"
#include "format/tree_dump.h"
#include "math/math_node.h"
#include "math/over_node.h"
#include "math/scripted_node.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/input_file_loader.h"
#include "tex/token_source.h"

namespace ztest {
namespace {
const char* NumberedMessage(unsigned id) {
  static std::map<unsigned, std::string> texts;
  std::string& text = texts[id];
  if (text.empty()) text = "#" + std::to_string(id);
  return text.c_str();
}

void CollectNulls(const TFmtNode* node, const std::string& path, std::vector<std::string>& out) {
  if (!node) {
    out.push_back(path);
    return;
  }
  if (const TFmtCompoundNode* compound = node->IsCompoundNode()) {
    int i = 0;
    for (CObject* o : compound->Get_Children()) CollectNulls(static_cast<TFmtNode*>(o), path + "/" + std::to_string(++i), out);
    if (auto* display = dynamic_cast<const TFmtDisplayMathNode*>(node)) {
      if (!display->Get_Eqno()) out.push_back(path + "/eqno");
      else CollectNulls(display->Get_Eqno(), path + "/eqno", out);
    }
  } else if (const TFmtGenericArgumentedNode* generic = node->IsGenericArgumentedNode()) {
    if (!generic->Get_Arguments()) out.push_back(path + "/arguments");
    else CollectNulls(generic->Get_Arguments(), path + "/arguments", out);
  } else if (const TFmtScriptedNode* s = node->IsScriptedNode()) {
    CollectNulls(s->Get_Nucleus(), path + "/nucleus", out);
    CollectNulls(s->Get_Subscript(), path + "/sub", out);
    CollectNulls(s->Get_Superscript(), path + "/sup", out);
  } else if (const TFmtOverNode* o = node->IsOverNode()) {
    CollectNulls(o->Get_Top(), path + "/top", out);
    CollectNulls(o->Get_Bottom(), path + "/bottom", out);
  }
}
}  // namespace

std::unique_ptr<TFmtCompoundNode> ParseDocument(const std::string& text) {
  TFmtNode::InitializeTexParser();
  auto root = std::make_unique<TFmtCompoundNode>();
  TTexTokenSource source("test", text.c_str());
  TFmtNode* result = root->ParseTex(source);
  if (result != root.get()) root.reset(TFmtCompoundNode::CompoundIt(result));
  return root;
}

std::string PrintTexOf(const TFmtNode* node) {
  CString out;
  int column = 0;
  if (node) node->PrintTex(out, column);
  return out.c_str();
}

std::string PrintTexOf(const std::string& text) { return PrintTexOf(ParseDocument(text).get()); }

std::string TreeOf(const std::string& text) {
  CString out;
  DumpTree(ParseDocument(text).get(), out);
  return out.c_str();
}

std::vector<std::string> NullChildren(const TFmtNode* node) {
  std::vector<std::string> out;
  CollectNulls(node, "", out);
  return out;
}

std::string SquashBlanks(const std::string& text) {
  std::string out;
  bool blank = false;
  for (char c : text) {
    if (c == ' ' || c == '\n' || c == '\t') {
      blank = true;
      continue;
    }
    if (blank && !out.empty()) out += ' ';
    blank = false;
    out += c;
  }
  return out;
}

void TexParseTest::SetUp() {
  TStringPool::FreeGlobal();
  TStringPool::InitializeGlobal();
  TFmtNode::InitializeTexParser();
  CString::SetStringResourceLookup(NumberedMessage);
  CZrError::ClearParseErrors();
  CZrError::Set_DialogParent(nullptr);
  CZrError::Set_ReportParseErrors(kReportAtEnd);
  CInputFileLoader::Set_Global(nullptr);
}

void TexParseTest::TearDown() {
  CZrError::ClearParseErrors();
  CZrError::Set_ReportParseErrors(kReportNone);
  CString::SetStringResourceLookup(nullptr);
  TStringPool::FreeGlobal();
}

std::vector<std::string> TexParseTest::Errors() {
  std::vector<std::string> messages;
  for (CObject* error : CZrError::Get_SavedErrors())
    messages.push_back(static_cast<CSavedError*>(error)->m_Message.c_str());
  return messages;
}
}  // namespace ztest
