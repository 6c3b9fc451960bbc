// Lines of their own and verbatim text.
#include "format/line_node.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "device/font_family.h"
#include "format/context.h"
#include "format/leaf_nodes.h"
#include "format/vertical_list_node.h"
#include "framework/url.h"
#include "framework/util.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/arguments.h"
#include "tex/input_file_loader.h"
#include "tex/token_source.h"
#include "tex/tokens.h"

namespace {
// Verbatim lines are set in the fixed-width family for their scope.
void SelectFixedWidth(TFmtContext& context) {
  if (TFontFamily::fg_pFixedWidth) TFontFamily::fg_pFixedWidth->MakeCurrentAndSelect(context);
}

// "http:" and the like; "file:" and a plain path are local.
bool HasRemoteScheme(const char* url) {
  const char* p = url;
  while (std::isalpha(static_cast<unsigned char>(*p))) ++p;
  return *p == ':' && p - url > 1 && strnicmp(url, "file:", 5) != 0;
}

TFmtLineNode* VerbatimLine(const char* text) {
  return new TFmtLineNode(new TFmtSequenceNode(text), k_LineVerbatim);
}
}  // namespace

TFmtLineNode::TFmtLineNode(TFmtNode* pContent, ELineType type) : m_nType(type) {
  if (pContent) AddHead(pContent);
}

int TFmtLineNode::BeforeSkip() const { return m_nLeading; }

TFmtExtent* TFmtLineNode::Compose(TFmtContext& context) {
  context.PushGroupState();
  if (m_nType == k_LineVerbatim) SelectFixedWidth(context);
  TFmtCompoundNode::Compose(context);
  TFmtExtent& extent = *m_pExtent;
  m_nTextWidth = extent.m_nWidth;
  const int64_t free = int64_t{context.m_nRightMargin} - context.m_nLeftMargin - m_nTextWidth;
  if (m_nType == k_LineCentre) m_nIndent = static_cast<int32_t>(std::clamp<int64_t>(free / 2, 0, INT32_MAX));
  else if (m_nType == k_LineRight) m_nIndent = static_cast<int32_t>(std::clamp<int64_t>(free, 0, INT32_MAX));
  else m_nIndent = 0;
  extent.m_nWidth = static_cast<int32_t>(std::min<int64_t>(int64_t{extent.m_nWidth} + m_nIndent, INT32_MAX));
  if (extent.Sum() > 0) {
    if (TExtendedFont* font = TExtendedFont::fg_pCurrent) {
      if (m_nType == k_LineVerbatim) {
        extent.m_nHeight = font->Ascent(context);
        extent.m_nDepth = font->Descent(context);
      } else {
        extent.MaxHeight(font->Ascent(context));
        extent.MaxDepth(font->Descent(context));
      }
    }
  }
  context.PopGroupState();
  TExtendedFont* font = TExtendedFont::fg_pCurrent;
  m_nLeading = font ? font->ExternalLeading(context) : 0;
  return m_pExtent.get();
}

void TFmtLineNode::Draw(TFmtContext& context) {
  if (!IsDrawRequired(context)) return;
  context.PushGroupState();
  if (m_nType == k_LineVerbatim) SelectFixedWidth(context);
  m_Position.x += m_nIndent;
  TFmtCompoundNode::Draw(context);
  m_Position.x -= m_nIndent;
  context.PopGroupState();
}

void TFmtLineNode::ExtentRectangle(CRect& rect) const {
  // The text, not the whole width: selection shows what is there.
  rect = CRect(m_Position.x + m_nIndent, m_Position.y + m_pExtent->m_nHeight,
               m_Position.x + m_nIndent + m_nTextWidth, m_Position.y - m_pExtent->m_nDepth);
}

int TFmtLineNode::IsPointInExtentRectangle(const CPoint& point) const {
  TFmtExtent text(m_pExtent->m_nHeight, m_pExtent->m_nDepth, m_nTextWidth);
  return text.IsPointInRectangle(CPoint(m_Position.x + m_nIndent, m_Position.y), point);
}

void TFmtLineNode::SimplyStringify(CString& out) {
  TFmtCompoundNode::SimplyStringify(out);
  if (m_nType == k_LineVerbatim) out += "\r\n";
}

void TFmtLineNode::PrintTex(CString& out, int& column) const {
  if (column != 0) {
    out += "%\n";
    column = 0;
  }
  const char* opener = m_nType == k_LineCentre ? "\\centerline{" : m_nType == k_LineRight ? "\\rightline{"
                       : m_nType == k_LineLeft                    ? "\\leftline{"
                                                                  : nullptr;
  if (!opener) {
    CString text;
    const_cast<TFmtLineNode*>(this)->TFmtCompoundNode::SimplyStringify(text);
    PrintVerbTex(text, out, column, 1);
    column = 0;
    return;
  }
  out += opener;
  column += static_cast<int>(std::strlen(opener));
  TFmtCompoundNode::PrintTex(out, column);
  out += "}\n";
  column = 0;
}

namespace {
TFmtNode* LineOf(TTexTokenSource& source, ELineType type) {
  return new TFmtLineNode(NextTexMacroArg(source, 1), type);
}
}  // namespace

TFmtNode* TFmtLineNode::ParseTex_centerline(TFmtControlSequenceNode*, TTexTokenSource& source) {
  return LineOf(source, k_LineCentre);
}
TFmtNode* TFmtLineNode::ParseTex_leftline(TFmtControlSequenceNode*, TTexTokenSource& source) {
  return LineOf(source, k_LineLeft);
}
TFmtNode* TFmtLineNode::ParseTex_rightline(TFmtControlSequenceNode*, TTexTokenSource& source) {
  return LineOf(source, k_LineRight);
}

TFmtNode* TFmtLineNode::ParseTex_beginverbatim(TFmtControlSequenceNode*, TTexTokenSource& source) {
  auto list = std::make_unique<TFmtVerticalListNode>(TFmtVerticalListNode::k_RefTop);
  list->Set_Verbatim(1);
  source.StartVerbatimMode();
  // Bounded by the input: each read consumes a line.
  while (TTexToken* token = source.NextToken(0, 0)) {
    const char* text = token->GetSequence();
    if (!text) {
      source.PutBack(token);
      break;
    }
    const bool end = text == TGlobalString::g_pendverbatim;
    if (!end) list->AddTail(VerbatimLine(text));
    delete token;
    if (end) break;
  }
  source.StopVerbatimMode();
  return list.release();
}

TFmtNode* TFmtLineNode::ParseTex_includeverbatim(TFmtControlSequenceNode*, TTexTokenSource& source) {
  auto list = std::make_unique<TFmtVerticalListNode>(TFmtVerticalListNode::k_RefTop);
  list->Set_Verbatim(1);
  CString name;
  if (TFmtNode* argument = NextTexMacroArg(source, 1)) {
    argument->SimplyStringify(name);
    delete argument;
  }
  name.TrimLeft();
  name.TrimRight();
  if (name.IsEmpty()) {
    list->AddTail(VerbatimLine("Could not identify file name in \\includeverbatim."));
    return list.release();
  }
  CInputFileLoader* loader = CInputFileLoader::Get_Global();
  int ok = 1;
  const CString url = MergeUrls(loader->Get_CurrentUrl(), name, ok);
  CString text;
  if (!ok || !loader->LoadStringFromUrl(url, text, 1, source.Get_DocumentNode())) {
    // A local file (a file: URL or a plain path) that is missing will not
    // come: say so in the text. One from elsewhere is not there yet, and the
    // parse waits for it as for \input.
    if (!ok || !HasRemoteScheme(url.c_str())) {
      list->AddTail(VerbatimLine(TStringPool::g_pGlobal->Put("Could not locate input document " + url + ".")));
      return list.release();
    }
    source.WaitForFile();
    return list.release();
  }
  const char* p = text.c_str();
  const char* end = p + text.GetLength();
  while (p < end) {
    const char* lineEnd = p;
    while (lineEnd < end && *lineEnd != '\n') ++lineEnd;
    std::string line(p, lineEnd);
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t')) line.pop_back();
    if (line.empty()) line = " ";  // an empty line keeps its place
    list->AddTail(VerbatimLine(TStringPool::g_pGlobal->Put(line.c_str())));
    p = lineEnd < end ? lineEnd + 1 : end;
  }
  return list.release();
}

namespace {
constexpr TCsParserEntry fg_Lines[] = {
    {"centerline", TFmtLineNode::ParseTex_centerline},
    {"leftline", TFmtLineNode::ParseTex_leftline},
    {"rightline", TFmtLineNode::ParseTex_rightline},
    {"beginverbatim", TFmtLineNode::ParseTex_beginverbatim},
    {"includeverbatim", TFmtLineNode::ParseTex_includeverbatim},
};
}  // namespace

std::span<const TCsParserEntry> TFmtLineNode::ParserTable() { return fg_Lines; }
