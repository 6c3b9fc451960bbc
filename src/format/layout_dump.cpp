#include "format/layout_dump.h"

#include <cxxabi.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <typeinfo>
#include <vector>

#include "format/break_nodes.h"
#include "format/paragraph_node.h"
#include "format/vertical_list_node.h"

CString LayoutClassName(const TFmtNode* node) {
  if (!node) return "null";
  int status = 0;
  char* name = abi::__cxa_demangle(typeid(*node).name(), nullptr, nullptr, &status);
  CString result = status == 0 && name ? name : typeid(*node).name();
  std::free(name);
  return result;
}

void DumpLines(int k, TFmtParagraphNode* paragraph, CString& out) {
  const std::vector<TFmtExtent>& extents = paragraph->Get_LineExtents();
  int n = 0, index = 0;
  CString text;
  auto line = [&](const char* kind, int position, int advance) {
    const TFmtExtent e = n < static_cast<int>(extents.size()) ? extents[n] : TFmtExtent();
    char row[160];
    std::snprintf(row, sizeof row, "L %d.%d %s %d %d %d %d %d |", k, n, kind, position, e.m_nWidth, e.m_nHeight,
                  e.m_nDepth, advance);
    out += row;
    out += text;
    out += "|\n";
    ++n;
    text.Empty();
  };
  for (CObject* o : paragraph->Get_Children()) {
    auto* child = static_cast<TFmtNode*>(o);
    if (TFmtLineBreakNode* lineBreak = child->IsLineBreakNode()) {
      line(lineBreak->Get_Hard() ? "hard" : "soft", index, lineBreak->m_nAdvance);
    } else if (child->IsHorizontalFillGlue()) {
      text += ("[fill " + std::to_string(child->m_pExtent->m_nWidth) + "]").c_str();
    } else {
      child->SimplyStringify(text);
    }
    ++index;
  }
  line("end", index, 0);
}

void DumpLayout(TFmtVerticalListNode* body, int width, CString& out) {
  char row[200];
  std::snprintf(row, sizeof row, "width %d\n", width);
  out += row;
  int k = 0;
  for (CObject* o : body->Get_Children()) {
    auto* element = static_cast<TFmtNode*>(o);
    const TFmtExtent& e = *element->m_pExtent;
    std::snprintf(row, sizeof row, "E %d %s %d %d %d %d\n", k, LayoutClassName(element).c_str(), element->m_Position.y,
                  e.m_nHeight, e.m_nDepth, e.m_nWidth);
    out += row;
    if (TFmtParagraphNode* paragraph = element->IsParagraphNode()) DumpLines(k, paragraph, out);
    ++k;
  }
}
