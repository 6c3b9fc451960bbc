#include "format/glue_node.h"

#include <cstdio>
#include <cstring>

#include "device/font_family.h"
#include "format/context.h"
#include "symbols/global_strings.h"
#include "tex/families/spacing.h"
#include "tex/measure_args.h"
#include "tex/token_source.h"

namespace {
std::unique_ptr<TFmtUnitNode> CopyUnit(const std::unique_ptr<TFmtUnitNode>& unit) {
  return unit ? std::unique_ptr<TFmtUnitNode>(unit->CopyDerived()) : nullptr;
}

int IsZeroOrNull(const TFmtUnitNode* unit) { return !unit || unit->Get_Numerator() == 0; }

// The width of a blank in the current extended font; 0 with none selected.
int BlankWidth(TFmtContext& context) {
  TExtendedFont* font = TExtendedFont::fg_pCurrent;
  return font ? font->CharacterWidth(' ', context) : 0;
}
}  // namespace

TFmtGlueNode::TFmtGlueNode(int bUserSupplied, int bHorizontal)
    : m_bUserSupplied(bUserSupplied), m_bHorizontal(bHorizontal) {}

TFmtGlueNode::TFmtGlueNode(const TFmtGlueNode& other)
    : TFmtNode(other),
      m_bUserSupplied(other.m_bUserSupplied),
      m_bHorizontal(other.m_bHorizontal),
      m_pActualSpace(CopyUnit(other.m_pActualSpace)),
      m_pNormalSpace(CopyUnit(other.m_pNormalSpace)),
      m_pStretch(CopyUnit(other.m_pStretch)),
      m_pShrink(CopyUnit(other.m_pShrink)),
      m_nKind(other.m_nKind) {}

TFmtGlueNode& TFmtGlueNode::operator=(const TFmtGlueNode& other) {
  if (this != &other) {
    TFmtNode::operator=(other);
    m_bUserSupplied = other.m_bUserSupplied;
    m_bHorizontal = other.m_bHorizontal;
    m_pActualSpace = CopyUnit(other.m_pActualSpace);
    m_pNormalSpace = CopyUnit(other.m_pNormalSpace);
    m_pStretch = CopyUnit(other.m_pStretch);
    m_pShrink = CopyUnit(other.m_pShrink);
    m_nKind = other.m_nKind;
  }
  return *this;
}

TFmtGlueNode::~TFmtGlueNode() = default;

TFmtUnitNode* TFmtGlueNode::GetNormalSpace() {
  if (!m_pNormalSpace) m_pNormalSpace = std::make_unique<TFmtUnitNode>(0, 1, k_UnitNone);
  return m_pNormalSpace.get();
}

TFmtUnitNode* TFmtGlueNode::GetActualSpace() { return m_pActualSpace ? m_pActualSpace.get() : GetNormalSpace(); }

void TFmtGlueNode::SetNormalSpace(TFmtUnitNode* unit) { m_pNormalSpace.reset(unit); }
void TFmtGlueNode::SetActualSpace(TFmtUnitNode* unit) { m_pActualSpace.reset(unit); }
void TFmtGlueNode::SetStretchability(TFmtUnitNode* unit) { m_pStretch.reset(unit); }
void TFmtGlueNode::SetShrinkability(TFmtUnitNode* unit) { m_pShrink.reset(unit); }
void TFmtGlueNode::SetActualSpaceToBeNormalSpace() { m_pActualSpace.reset(); }

int TFmtGlueNode::IsFillOfUnit(KUnitType level) const {
  return IsZeroOrNull(m_pShrink.get()) && IsZeroOrNull(m_pNormalSpace.get()) && m_pStretch &&
         m_pStretch->OfForm(1, 1, level) && m_nKind == k_GlueSkip;
}

int TFmtGlueNode::IsSs() const {
  return IsZeroOrNull(m_pNormalSpace.get()) && m_pStretch && m_pStretch->OfForm(1, 1, k_UnitFilll) && m_pShrink &&
         m_pShrink->OfForm(1, 1, k_UnitFilll) && m_nKind == k_GlueSkip;
}

int TFmtGlueNode::FillLevel() const {
  if (IsFil()) return 1;
  if (IsFill()) return 2;
  if (IsFilll()) return 3;
  return 0;
}

int TFmtNode::IsHorizontalFillGlue() const {
  const TFmtGlueNode* glue = IsGlueNode();
  return glue && glue->Get_Horizontal() && glue->FillLevel() != 0;
}

TFmtExtent* TFmtGlueNode::Compose(TFmtContext& context) {
  m_pExtent->Reset(0, 0, 0);
  if (!m_bHorizontal) {
    m_pExtent->m_nHeight = static_cast<int>(GetActualSpace()->GetInternalValue(context));
    return m_pExtent.get();
  }
  const int Q = context.Get_QuadWidth();
  int normal = 0;
  bool named = true;
  switch (m_nKind) {
    case k_GlueControlSpace:
    case k_GlueSpace:
    case k_GlueTextBlank:
    case k_GlueTie: normal = BlankWidth(context); break;
    case k_GlueMedSpace: normal = context.MediumSpaceWidth(); break;
    case k_GlueNegMedSpace: normal = -context.MediumSpaceWidth(); break;
    case k_GlueNegThickSpace: normal = -context.ThickSpaceWidth(); break;
    case k_GlueNegThin:
    case k_GlueNegThinSpace: normal = -context.ThinSpaceWidth(); break;
    case k_GlueThick: normal = context.ThickSpaceWidth(); break;
    case k_GlueThin:
    case k_GlueThinSpace: normal = context.ThinSpaceWidth(); break;
    case k_GlueEnSkip:
    case k_GlueEnSpace: normal = Q / 2; break;
    case k_GlueQquad: normal = 2 * Q; break;
    case k_GlueQuad: normal = Q; break;
    default: named = false; break;  // 0, 3, 20 and unknown kinds keep what they have
  }
  if (named) {
    // The width of a named space comes from the context each time: no unit
    // is kept for it, for a long document has millions of blanks, and a
    // reflow must not make and free one for each.
    m_pNormalSpace.reset();
    SetActualSpaceToBeNormalSpace();
    m_pExtent->m_nWidth = normal;
    return m_pExtent.get();
  }
  m_pExtent->m_nWidth = static_cast<int>(GetActualSpace()->GetInternalValue(context));
  return m_pExtent.get();
}

void TFmtGlueNode::Draw(TFmtContext& context) {
  if (!IsDrawRequired(context)) return;
  DrawSelectionBackground(context);
}

void TFmtGlueNode::Description(CString& out) {
  // The second word replaces the first: only "horizontal" or "vertical" stays.
  out = m_bUserSupplied ? "user-supplied " : "program-supplied ";
  out = m_bHorizontal ? "horizontal " : "vertical ";
  out += "glue";
}

int TFmtGlueNode::DontBreakAfter() const { return m_nKind == k_GlueKern || m_nKind == k_GlueTie; }

int TFmtGlueNode::DontBreakBefore() const {
  switch (m_nKind) {
    case k_GlueKern:
    case k_GlueEnSpace:
    case k_GlueNegThinSpace:
    case k_GlueThinSpace:
    case k_GlueTie: return 1;
    default: return 0;
  }
}

void TFmtGlueNode::ResetFmtExtentForReflowables() {
  m_pExtent->Reset(0, 0, 0);
  SetActualSpaceToBeNormalSpace();
}

void TFmtGlueNode::SimplyStringify(CString& out) {
  if (m_bUserSupplied && m_bHorizontal) out += ' ';
}

void TFmtGlueNode::PrintTex(CString& out, int& column) const {
  auto put = [&](const char* text) {
    out += text;
    column += static_cast<int>(std::strlen(text));
  };
  switch (m_nKind) {
    case k_GlueSkip:
    case k_GlueKern:
    case k_GlueParsed: break;
    case k_GlueControlSpace: put("\\ "); return;
    case k_GlueTextBlank: put(" "); return;
    case k_GlueTie: put("~"); return;
    case k_GlueNegThin: put("\\!"); return;
    case k_GlueThick: put("\\;"); return;
    case k_GlueThin: put("\\,"); return;
    // A named space is a control word: the blank after it keeps a following
    // letter from joining the name when the text is read back.
    case k_GlueMedSpace: put("\\medspace "); return;
    case k_GlueNegMedSpace: put("\\negmedspace "); return;
    case k_GlueNegThickSpace: put("\\negthickspace "); return;
    case k_GlueSpace: put("\\space "); return;
    case k_GlueEnSkip: put("\\enskip "); return;
    case k_GlueEnSpace: put("\\enspace "); return;
    case k_GlueNegThinSpace: put("\\negthinspace "); return;
    case k_GlueQquad: put("\\qquad "); return;
    case k_GlueQuad: put("\\quad "); return;
    case k_GlueThinSpace: put("\\thinspace "); return;
    default: return;  // the unused numbers print nothing
  }
  const char h = m_bHorizontal ? 'h' : 'v';
  char text[16];
  auto putLevel = [&](const char* level) {
    std::snprintf(text, sizeof text, "\\%c%s ", h, level);
    put(text);
  };
  if (IsFil()) return putLevel("fil");
  if (IsFill()) return putLevel("fill");
  if (IsFilll()) return putLevel("filll");
  if (IsSs()) return putLevel("ss");
  if (m_nKind == k_GlueKern) put("\\kern ");
  if (m_nKind == k_GlueSkip) putLevel("skip");
  if (m_pNormalSpace)
    m_pNormalSpace->PrintTex(out, column);
  else
    TFmtUnitNode(0, 1, k_UnitNone).PrintTex(out, column);
  // Negative stretch and shrink are not printed.
  if (m_pStretch && m_pStretch->Get_Numerator() >= 1) {
    put(" plus ");
    m_pStretch->PrintTex(out, column);
  }
  if (m_pShrink && m_pShrink->Get_Numerator() >= 1) {
    put(" minus ");
    m_pShrink->PrintTex(out, column);
  }
  put(" ");
}

TFmtGlueNode* TFmtGlueNode::New_hfilll() {
  auto* glue = new TFmtGlueNode(0, 1);
  glue->SetStretchability(new TFmtUnitNode(1, 1, k_UnitFilll));
  return glue;
}

TFmtGlueNode* TFmtGlueNode::GlueFromControlCharacter(char c) {
  auto* glue = new TFmtGlueNode(1, 1);
  switch (c) {
    case '!': glue->m_nKind = k_GlueNegThin; break;
    case ',': glue->m_nKind = k_GlueThin; break;
    case ':':
    case '>': glue->m_nKind = k_GlueMedSpace; break;
    case ';': glue->m_nKind = k_GlueThick; break;
    case ' ': glue->m_nKind = k_GlueControlSpace; break;
    default: break;
  }
  return glue;
}

TFmtGlueNode* TFmtGlueNode::GlueFromTextSpace(char c) {
  auto* glue = new TFmtGlueNode(1, 1);
  if (c == ' ') glue->m_nKind = k_GlueTextBlank;
  if (c == '~') glue->m_nKind = k_GlueTie;
  return glue;
}

void TFmtGlueNode::ParseGlueDimensInner(TTexTokenSource& source, TFmtGlueNode* glue) {
  // "plus" sets the stretch and "minus" the shrink, in either order, at most two.
  for (int clause = 0; clause < 2; ++clause) {
    std::unique_ptr<TTexToken> token(source.NextToken(1, 1));
    if (!token) return;
    if (token->IsSequence(TGlobalString::g_pplus)) {
      auto unit = std::make_unique<TFmtUnitNode>(0, 1, k_UnitNone);
      unit->ParseTex(source);
      glue->SetStretchability(unit.release());
    } else if (token->IsSequence(TGlobalString::g_pminus)) {
      auto unit = std::make_unique<TFmtUnitNode>(0, 1, k_UnitNone);
      unit->ParseTex(source);
      glue->SetShrinkability(unit.release());
    } else {
      source.PutBack(token.release());
      return;
    }
  }
}

void TFmtGlueNode::ParseGlueDimens(TTexTokenSource& source, TFmtGlueNode* glue) {
  TMeasureReadingScope raw(source);
  ParseGlueDimensRaw(source, glue);
}

void TFmtGlueNode::ParseGlueDimensRaw(TTexTokenSource& source, TFmtGlueNode* glue) {
  auto unit = std::make_unique<TFmtUnitNode>(0, 1, k_UnitNone);
  unit->ParseTex(source);
  if (unit->Get_UnitType() == k_UnitFill) {
    glue->SetStretchability(unit.release());
    return;
  }
  glue->SetNormalSpace(unit.release());
  ParseGlueDimensInner(source, glue);
  source.SetState(TTexTokenSource::kSkipBlanks);
}

TFmtNode* TFmtGlueNode::ParseTex(TTexTokenSource& source) {
  ParseGlueDimens(source, this);
  m_nKind = k_GlueParsed;
  return this;
}

void TFmtGlueNode::InitializeTexParser() { RegisterSpacing(); }

void ExpandInfinitelyStretchableGlue(CObList* nodes, int available, TFmtContext& context) {
  if (!nodes || nodes->IsEmpty() || available < 1) return;
  CObList kept;  // not owned: the glue of nodes that may share
  int lowest = 0, highest = 0;
  for (CObject* o : *nodes) {
    auto* node = static_cast<TFmtNode*>(o);
    if (!node || !node->IsHorizontalFillGlue()) continue;
    const int level = node->IsGlueNode()->FillLevel();
    if (level < highest) continue;  // a lower order than one already met
    if (lowest == 0 || level < lowest) lowest = level;
    if (level > highest) highest = level;
    kept.AddTail(node);
  }
  if (kept.IsEmpty()) return;
  // Only the highest order of infinity takes the space.
  if (lowest != highest)
    while (!kept.IsEmpty() && static_cast<TFmtGlueNode*>(kept.GetHead())->FillLevel() != highest)
      kept.RemoveHead();
  const int count = kept.GetCount();
  const int q = available / count;
  int r = available % count;
  for (CObject* o : kept) {
    auto* glue = static_cast<TFmtGlueNode*>(o);
    if (q <= 0 && r < 1) continue;
    int extra = q;
    if (r > 0) {
      ++extra;
      --r;
    }
    TFmtUnitNode share(extra, 1, k_UnitNone);
    glue->SetActualSpace(share.Add(glue->GetNormalSpace(), 1, context));
    glue->Compose(context);
  }
}
