// \hspace, \hskip, \vspace, \vskip, \hfil and kin, \hss, \kern, \quad and the
// other named spaces. A parser answers a new glue node; the control-sequence
// node it stands for is deleted by the caller.
#include "tex/families/spacing.h"

#include <memory>

#include "format/glue_node.h"
#include "symbols/global_strings.h"
#include "tex/measure_args.h"
#include "tex/token_source.h"

namespace {

// A glue value in braces (\hspace{1cm plus 1fil}) or bare, as TeX writes
// \hskip 1cm plus 1fil. A missing "}" is left alone: the measure stands.
void ReadGlueArgument(TTexTokenSource& source, TFmtGlueNode* glue) {
  std::unique_ptr<TTexToken> token(source.NextToken(1, 1));
  if (!token || !token->IsCharacter('{')) {
    source.PutBack(token.release());
    TFmtGlueNode::ParseGlueDimens(source, glue);
    return;
  }
  TFmtGlueNode::ParseGlueDimens(source, glue);
  token.reset(source.NextToken(1, 1));
  if (token && !token->IsCharacter('}')) source.PutBack(token.release());
  source.SetState(TTexTokenSource::kSkipBlanks);
}

// \hspace{..}, \hskip .., \vspace{..}, \vskip .. and the glue and starred
// spellings: user-supplied glue of kind 0.
template <int bHorizontal>
TFmtNode* ParseTex_hspace(TFmtControlSequenceNode*, TTexTokenSource& source) {
  auto glue = std::make_unique<TFmtGlueNode>(1, bHorizontal);
  ReadGlueArgument(source, glue.get());
  return glue.release();
}

// \hfil, \hfill, \hfilll and the vertical ones: nothing but a stretch of one
// unit of the level.
template <int bHorizontal, KUnitType level>
TFmtNode* ParseTex_hfil(TFmtControlSequenceNode*, TTexTokenSource&) {
  auto* glue = new TFmtGlueNode(1, bHorizontal);
  glue->SetStretchability(new TFmtUnitNode(1, 1, level));
  return glue;
}

// \hss, \vss: stretch and shrink both one filll.
template <int bHorizontal>
TFmtNode* ParseTex_hss(TFmtControlSequenceNode*, TTexTokenSource&) {
  auto* glue = new TFmtGlueNode(1, bHorizontal);
  glue->SetStretchability(new TFmtUnitNode(1, 1, k_UnitFilll));
  glue->SetShrinkability(new TFmtUnitNode(1, 1, k_UnitFilll));
  return glue;
}

// \kern 3pt: a fixed width at which no line breaks.
TFmtNode* ParseTex_kern(TFmtControlSequenceNode*, TTexTokenSource& source) {
  auto* glue = new TFmtGlueNode(1, 1);
  glue->Set_Kind(k_GlueKern);
  glue->SetNormalSpace(NextTexMeasureArg(source));
  return glue;
}

// The named spaces take no argument; the kind gives their size at Compose.
template <KGlueKind kind>
TFmtNode* ParseTex_namedSpace(TFmtControlSequenceNode*, TTexTokenSource&) {
  auto* glue = new TFmtGlueNode(1, 1);
  glue->Set_Kind(kind);
  return glue;
}

constexpr TSpacingEntry fg_Spacing[] = {
    // name           parser
    {"hspace", ParseTex_hspace<1>},
    {"hspace*", ParseTex_hspace<1>},
    {"vspace", ParseTex_hspace<0>},
    {"vspace*", ParseTex_hspace<0>},
    {"hskip", ParseTex_hspace<1>},
    {"hglue", ParseTex_hspace<1>},
    {"vskip", ParseTex_hspace<0>},
    {"vglue", ParseTex_hspace<0>},
    {"hfil", ParseTex_hfil<1, k_UnitFil>},
    {"hfill", ParseTex_hfil<1, k_UnitFill>},
    {"hfilll", ParseTex_hfil<1, k_UnitFilll>},
    {"vfil", ParseTex_hfil<0, k_UnitFil>},
    {"vfill", ParseTex_hfil<0, k_UnitFill>},
    {"vfilll", ParseTex_hfil<0, k_UnitFilll>},
    {"hss", ParseTex_hss<1>},
    {"vss", ParseTex_hss<0>},
    {"kern", ParseTex_kern},
    {"enskip", ParseTex_namedSpace<k_GlueEnSkip>},
    {"enspace", ParseTex_namedSpace<k_GlueEnSpace>},
    {"negthinspace", ParseTex_namedSpace<k_GlueNegThinSpace>},
    {"negmedspace", ParseTex_namedSpace<k_GlueNegMedSpace>},
    {"negthickspace", ParseTex_namedSpace<k_GlueNegThickSpace>},
    {"qquad", ParseTex_namedSpace<k_GlueQquad>},
    {"quad", ParseTex_namedSpace<k_GlueQuad>},
    {"space", ParseTex_namedSpace<k_GlueSpace>},
    {"medspace", ParseTex_namedSpace<k_GlueMedSpace>},
    {"thickspace", ParseTex_namedSpace<k_GlueThick>},
    {"thinspace", ParseTex_namedSpace<k_GlueThinSpace>},
};

}  // namespace

std::span<const TSpacingEntry> SpacingTable() { return fg_Spacing; }

void RegisterSpacing() {
  TGlobalString::Initialize();
  for (const TSpacingEntry& entry : fg_Spacing) PutTexParserProperty(entry.name, entry.parser);
}
