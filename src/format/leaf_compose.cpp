// Measuring and drawing of the leaves. Glyphs are measured through the font
// families and drawn through the context; nothing here talks to X.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

#include "device/font_family.h"
#include "format/context.h"
#include "format/leaf_nodes.h"
#include "format/tex_mode.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

namespace {
bool InMath() { return g_CurrentTexMode == 4 || g_CurrentTexMode == 5; }
bool InScript(const TFmtContext& context) { return context.m_nScriptDepth > 0; }
bool Colorize() { return TFmtContext::fg_bAllowUseOfColor && TFmtContext::fg_bDoColorizeExpressions; }

TExtendedFont* FontOf(TFontFamily* family, TFmtContext& context) {
  return family ? static_cast<TExtendedFont*>(family->GetFontAtCurrentSize(context)) : TExtendedFont::fg_pCurrent;
}

// Makes a family current for a scope and puts the previous one back.
class TFamilyScope {
 public:
  TFamilyScope(TFontFamily* family, TFmtContext& context) : m_pPrevious(TFontFamily::fg_pCurrent), m_Context(context) {
    if (family) family->MakeCurrentAndSelect(context);
  }
  ~TFamilyScope() {
    if (m_pPrevious) m_pPrevious->MakeCurrentAndSelect(m_Context);
  }
  TFamilyScope(const TFamilyScope&) = delete;
  TFamilyScope& operator=(const TFamilyScope&) = delete;

 private:
  TFontFamily* m_pPrevious;
  TFmtContext& m_Context;
};

// The text of "\name" measured in the current font: an unknown command is
// visible on purpose.
void MeasureText(const char* text, int length, TFmtContext& context, TFmtExtent& extent) {
  const CSize size = context.GetTextExtent(text, length);
  if (TExtendedFont* font = TExtendedFont::fg_pCurrent)
    extent.Reset(font->Ascent(context), font->Descent(context), size.cx);
  else
    extent.Reset(size.cy, 0, size.cx);
}

const CColorRef fg_Red(255, 0, 0, "red");
}  // namespace

// ---- TFmtCharacterNode ----------------------------------------------------------

void TFmtCharacterNode::MathExtras(TFmtContext& context, int& extra, int& before, int& roman) const {
  extra = before = 0;
  roman = 1;
  const int thin = context.ThinSpaceWidth();
  const int thick = context.ThickSpaceWidth();
  switch (m_c) {
    case 'f':
      roman = 0;
      extra = 2 * thin;
      before = thin;
      break;
    case 'p':
      roman = 0;
      extra = thin;
      break;
    case '~': roman = 0; break;
    case ',':
      if (!m_bNoExtraSpace) extra = -1;  // its own width again, known once measured
      break;
    case '<':
    case '>':
      if (!m_bNoExtraSpace && !InScript(context)) {
        extra = 2 * thick;
        before = thick;
      }
      break;
    case '/':
    case ':':
      if (!InScript(context)) {
        extra = 2 * thin;
        before = thin;
      }
      break;
    case '(':
    case ')': extra = thin; break;
    default: break;
  }
}

TFmtExtent* TFmtCharacterNode::Compose(TFmtContext& context) {
  m_pExtent->Reset(0, 0, 0);
  char c = context.Case(m_c);
  if (!InMath()) {
    if (c != ' ' && IsWhiteSpace()) c = ' ';
    if (c != m_c && context.m_nCase == 3) {
      // Small capitals: the next smaller size for the letter made capital.
      const int oldCurrent = TFontFamily_PI::fg_CurrentFontSize;
      const int oldBase = TFontFamily_PI::fg_StyleBaseFontSize;
      TFontFamily_PI::SetNextSmallerCurrentAndBaseFontSizes();
      ComputeCharacterFmtExtent(static_cast<unsigned char>(c), context, FontOf(TFontFamily::fg_pCurrent, context));
      TFontFamily_PI::fg_CurrentFontSize = oldCurrent;
      TFontFamily_PI::fg_StyleBaseFontSize = oldBase;
      return m_pExtent.get();
    }
    ComputeCharacterFmtExtent(static_cast<unsigned char>(c), context, TExtendedFont::fg_pCurrent);
    return m_pExtent.get();
  }
  if (IsWhiteSpace()) return m_pExtent.get();
  if (std::isalpha(static_cast<unsigned char>(c)) && c != 'f' && c != 'p') {
    ComputeCharacterFmtExtent(static_cast<unsigned char>(c), context, FontOf(TFontFamily::fg_pMathItalic, context));
    return m_pExtent.get();
  }
  int extra, before, roman;
  MathExtras(context, extra, before, roman);
  TExtendedFont* font = roman ? FontOf(TFontFamily::fg_pRoman, context) : TExtendedFont::fg_pCurrent;
  ComputeCharacterFmtExtent(static_cast<unsigned char>(c == '~' ? ' ' : c), context, font);
  m_pExtent->m_nWidth += extra < 0 ? m_pExtent->m_nWidth : extra;
  return m_pExtent.get();
}

void TFmtCharacterNode::Draw(TFmtContext& context) {
  if (!IsDrawRequired(context)) return;
  DrawSelectionBackground(context);
  SetSelectionForeground(context);
  char c = context.Case(m_c);
  if (IsWhiteSpace() || (InMath() && c == '~')) {
    UnsetSelectionForeground(context);
    return;
  }
  TExtendedFont* font = TExtendedFont::fg_pCurrent;
  int before = 0;
  const CColorRef previous = context.GetTextColor();
  if (InMath()) {
    if (std::isalpha(static_cast<unsigned char>(c)) && c != 'f' && c != 'p') {
      font = FontOf(TFontFamily::fg_pMathItalic, context);
    } else {
      int extra, roman;
      MathExtras(context, extra, before, roman);
      if (roman) font = FontOf(TFontFamily::fg_pRoman, context);
      if (Colorize()) {
        if (std::isdigit(static_cast<unsigned char>(c))) context.SetTextColor(TFmtContext::fg_MathColor_Numbers);
        else if (c == '<' || c == '>') context.SetTextColor(TFmtContext::fg_MathColor_Relations);
        else if (c == '/' || c == ':') context.SetTextColor(TFmtContext::fg_MathColor_BinaryOps);
      }
    }
  }
  context.CharacterOut(c, m_Position.x + before, m_Position.y, font);
  context.SetTextColor(previous);
  UnsetSelectionForeground(context);
}

// ---- TFmtControlCharacterNode ---------------------------------------------------

TFontFamily* TFmtControlCharacterNode::GetFontFamilyAndCharacter(int& code) {
  code = static_cast<unsigned char>(m_c);
  return TFontFamily::fg_pRoman;
}

TFmtExtent* TFmtControlCharacterNode::Compose(TFmtContext& context) {
  m_pExtent->Reset(0, 0, 0);
  const bool letter = std::isalpha(static_cast<unsigned char>(m_c)) != 0;
  if (InMath() && letter) {
    ComputeCharacterFmtExtent(static_cast<unsigned char>(m_c), context, TExtendedFont::fg_pCurrent);
    return m_pExtent.get();
  }
  switch (m_c) {
    case '-':
    case '@': break;  // \- and \@ have no width
    case '/': m_pExtent->Reset(0, 0, TFmtContext::fg_nUnitsPerPoint); break;  // italic correction: a point
    case '|': {
      TFmtControlSequenceNode bar(TStringPool::g_pGlobal->Put("Vert"));
      bar.m_Position = m_Position;
      m_pExtent->Reset(bar.Compose(context));
      break;
    }
    default: ComputeCharacterFmtExtent(static_cast<unsigned char>(m_c), context, TExtendedFont::fg_pCurrent);
  }
  return m_pExtent.get();
}

void TFmtControlCharacterNode::Draw(TFmtContext& context) {
  if (!IsDrawRequired(context)) return;
  DrawSelectionBackground(context);
  SetSelectionForeground(context);
  const bool letter = std::isalpha(static_cast<unsigned char>(m_c)) != 0;
  if (m_c == '|' && !(InMath() && letter)) {
    TFmtControlSequenceNode bar(TStringPool::g_pGlobal->Put("Vert"));
    bar.m_Position = m_Position;
    bar.Compose(context);
    bar.Draw(context);
  } else if (m_c != '-' && m_c != '@' && m_c != '/' && m_c != ' ') {
    context.CharacterOut(m_c, m_Position.x, m_Position.y, TExtendedFont::fg_pCurrent);
  }
  UnsetSelectionForeground(context);
}

// ---- TFmtSequenceNode -----------------------------------------------------------

void TFmtSequenceNode::ComposeByCharacter(const char* text, TFmtContext& context) {
  // Heights and depths come from the characters; the width from the run.
  TFmtCharacterNode walker(' ');
  walker.m_Position = m_Position;
  m_pExtent->Reset(0, 0, 0);
  for (const char* p = text; *p; ++p) {
    walker.Set_Character(*p);
    TFmtExtent* e = walker.Compose(context);
    m_pExtent->m_nWidth += e->m_nWidth;
    m_pExtent->MaxHeight(e->m_nHeight);
    m_pExtent->MaxDepth(e->m_nDepth);
    walker.m_Position.x += e->m_nWidth;
  }
}

TFmtExtent* TFmtSequenceNode::Compose(TFmtContext& context) {
  int allocated = 0;
  const char* text = context.Case(m_pText, allocated);
  const int length = static_cast<int>(std::strlen(text));
  if (InMath() && (std::isdigit(static_cast<unsigned char>(text[0])) || text[0] == '.')) {
    TFamilyScope roman(TFontFamily::fg_pMathRoman, context);
    ComposeByCharacter(text, context);
    m_pExtent->m_nWidth = context.GetTextExtent(text, length).cx;
  } else {
    ComposeByCharacter(text, context);
    if (context.m_nCase != 3) m_pExtent->m_nWidth = context.GetTextExtent(text, length).cx;
  }
  if (allocated) delete[] text;
  return m_pExtent.get();
}

void TFmtSequenceNode::Draw(TFmtContext& context) {
  if (!IsDrawRequired(context)) return;
  DrawSelectionBackground(context);
  SetSelectionForeground(context);
  int allocated = 0;
  const char* text = context.Case(m_pText, allocated);
  const int length = static_cast<int>(std::strlen(text));
  if (InMath() && (std::isdigit(static_cast<unsigned char>(text[0])) || text[0] == '.')) {
    TFamilyScope roman(TFontFamily::fg_pMathRoman, context);
    const CColorRef previous = context.GetTextColor();
    if (Colorize()) context.SetTextColor(TFmtContext::fg_MathColor_Numbers);
    context.TextOut(m_Position.x, m_Position.y, text, length);
    context.SetTextColor(previous);
  } else {
    context.TextOut(m_Position.x, m_Position.y, text, length);
  }
  if (allocated) delete[] text;
  UnsetSelectionForeground(context);
}

// ---- TFmtControlSequenceNode ----------------------------------------------------

TExtendedFont_PI* TFmtControlSequenceNode::GlyphFont(TFmtContext& context, TFontFamily* family, int& bLarge) const {
  bLarge = 0;
  if (!family) return TExtendedFont::fg_pCurrent;
  if (TStringPool::g_pGlobal->GetBoolean(m_pName, TGlobalString::g_pVARIABLESIZED) &&
      TFmtContext::fg_CurrentStyle == k_StyleDisplay) {
    bLarge = 1;
    return family->GetSizedFont(context, TFontFamily_PI::GetSizeRelativeToBase(8));
  }
  return family->GetFontAtCurrentSize(context);
}

TFmtExtent* TFmtControlSequenceNode::Compose(TFmtContext& context) {
  if (!m_bActive) return m_pExtent.get();
  TStringPool* pool = TStringPool::g_pGlobal;
  if (TNodeProperty* value = pool->GetNode(m_pName, TGlobalString::g_pRUNTIMEVALUE)) {
    if (auto* node = value->Get_NodeAs<TFmtNode>()) {
      node->m_Position = m_Position;
      m_pExtent->Reset(node->Compose(context));
    }
    return m_pExtent.get();
  }
  TFontIndexProperty* index = pool->GetFontIndex(m_pName, TGlobalString::g_pTEXFONTINDEX);
  if (!index) {
    if (TFunctionProperty* handler = pool->GetFunction(m_pName, TGlobalString::g_pEXTENT)) {
      if (!handler->IsNull()) {
        handler->Get_Handler()(this, 0, context);
        return m_pExtent.get();
      }
    }
  }
  m_pExtent->Reset(0, 0, 0);
  if (index) {
    const int binary = pool->GetBoolean(m_pName, TGlobalString::g_pBINARYOP);
    const int relation = pool->GetBoolean(m_pName, TGlobalString::g_pRELATION);
    int large = 0;
    TExtendedFont_PI* font = GlyphFont(context, TFontFamily::GetFontFamilyFromTag(index->Get_FontTag()), large);
    ComputeCharacterFmtExtent(index->Get_Code(), context, font);
    // Operators are spaced by widening the symbol, not by an inter-atom table.
    if (!InScript(context)) {
      if (binary) m_pExtent->m_nWidth += 2 * context.ThinSpaceWidth();
      else if (relation) m_pExtent->m_nWidth += 2 * context.ThickSpaceWidth();
    }
    if (large && font) {
      // A big operator is centred on the axis: an eighth of its height goes down.
      const int shift = font->Height(context) / 8;
      m_pExtent->m_nHeight = std::max(0, m_pExtent->m_nHeight - shift);
      m_pExtent->m_nDepth += shift;
    }
    return m_pExtent.get();
  }
  const int length = static_cast<int>(std::strlen(m_pName));
  if (InMath() && pool->GetBoolean(m_pName, TGlobalString::g_pLOGLIKE)) {
    // A log-like name is set as its name, in roman.
    TFamilyScope roman(TFontFamily::fg_pMathRoman, context);
    MeasureText(m_pName, length, context, *m_pExtent);
    m_pExtent->m_nWidth += context.ThickSpaceWidth();
    return m_pExtent.get();
  }
  const std::string text = std::string("\\") + m_pName;
  MeasureText(text.c_str(), static_cast<int>(text.size()), context, *m_pExtent);
  return m_pExtent.get();
}

void TFmtControlSequenceNode::Draw(TFmtContext& context) {
  if (!m_bActive) {
    UnsetSelectionForeground(context);
    return;
  }
  TStringPool* pool = TStringPool::g_pGlobal;
  if (TNodeProperty* value = pool->GetNode(m_pName, TGlobalString::g_pRUNTIMEVALUE)) {
    if (auto* node = value->Get_NodeAs<TFmtNode>()) {
      node->m_Position = m_Position;
      node->Compose(context);
      node->Draw(context);
    }
    return;
  }
  DrawSelectionBackground(context);
  SetSelectionForeground(context);
  TFontIndexProperty* index = pool->GetFontIndex(m_pName, TGlobalString::g_pTEXFONTINDEX);
  if (!index) {
    if (TFunctionProperty* handler = pool->GetFunction(m_pName, TGlobalString::g_pDRAW)) {
      if (!handler->IsNull()) {
        handler->Get_Handler()(this, 0, context);
        UnsetSelectionForeground(context);
        return;
      }
    }
  }
  if (IsDrawRequired(context)) {
    const CColorRef previous = context.GetTextColor();
    const int length = static_cast<int>(std::strlen(m_pName));
    if (index) {
      int dx = 0;
      if (pool->GetBoolean(m_pName, TGlobalString::g_pBINARYOP) > 0) {
        if (!InScript(context)) dx = context.ThinSpaceWidth();
        if (Colorize()) context.SetTextColor(TFmtContext::fg_MathColor_BinaryOps);
      } else if (pool->GetBoolean(m_pName, TGlobalString::g_pRELATION) > 0) {
        if (!InScript(context)) dx = context.ThickSpaceWidth();
        if (Colorize()) context.SetTextColor(TFmtContext::fg_MathColor_Relations);
      }
      int large = 0;
      TExtendedFont_PI* font = GlyphFont(context, TFontFamily::GetFontFamilyFromTag(index->Get_FontTag()), large);
      const int dy = large && font ? -(font->Height(context) / 8) : 0;
      context.CharacterOut(static_cast<char>(index->Get_Code()), m_Position.x + dx, m_Position.y + dy,
                           static_cast<TExtendedFont*>(font));
    } else if (InMath() && pool->GetBoolean(m_pName, TGlobalString::g_pLOGLIKE)) {
      TFamilyScope roman(TFontFamily::fg_pMathRoman, context);
      if (Colorize()) context.SetTextColor(TFmtContext::fg_MathColor_LoglikeFunctions);
      context.TextOut(m_Position.x, m_Position.y, m_pName, length);
    } else {
      // Unknown: the command shows, in red, where it stands.
      const std::string text = std::string("\\") + m_pName;
      context.SetTextColor(fg_Red);
      context.TextOut(m_Position.x, m_Position.y, text.c_str(), static_cast<int>(text.size()));
    }
    context.SetTextColor(previous);
  }
  UnsetSelectionForeground(context);
}
