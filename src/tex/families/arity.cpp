// The generic readers by arity: a generic argumented node with the command's
// name and its arguments, read in order. Most commands are a row here.
#include <iterator>

#include "format/compound_node.h"
#include "format/leaf_nodes.h"
#include "symbols/global_strings.h"
#include "format/unit_node.h"
#include "tex/arguments.h"
#include "tex/measure_args.h"
#include "tex/families/parser_tables.h"
#include "tex/token_source.h"
#include "tex/tokens.h"

namespace {
TFmtGenericArgumentedNode* Generic(TFmtControlSequenceNode* node) {
  return new TFmtGenericArgumentedNode(node->Get_Name());
}

TFmtNode* Args(TFmtControlSequenceNode* node, TTexTokenSource& source, int count) {
  TFmtGenericArgumentedNode* generic = Generic(node);
  for (int i = 0; i < count; ++i) generic->AddArgument(NextTexMacroArg(source, 1), 0);
  return generic;
}

void AddOptional(TFmtGenericArgumentedNode* generic, TTexTokenSource& source) {
  if (TFmtNode* optional = NextTexOptionalMacroArg(source, 1)) generic->AddArgument(optional, 1);
}
}  // namespace

TFmtNode* ParseTex_1_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source) { return Args(node, source, 1); }
TFmtNode* ParseTex_2_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source) { return Args(node, source, 2); }
TFmtNode* ParseTex_3_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source) { return Args(node, source, 3); }
TFmtNode* ParseTex_4_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source) { return Args(node, source, 4); }

TFmtNode* ParseTex_1_RAWARG(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node);
  generic->AddArgument(NextTexMacroRawArg(source), 0);
  return generic;
}

TFmtNode* ParseTex_1_INTARG(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node);
  generic->AddArgument(NextTexIntegerArg(source), 0);
  generic->SetBareArgument(1);
  return generic;
}

TFmtNode* ParseTex_1_INTPARMARG(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  // \looseness=2 and \looseness 2 are one thing.
  if (TTexToken* token = source.NextToken(1, 1)) {
    if (token->IsCharacter('=')) delete token;
    else source.PutBack(token);
  }
  return ParseTex_1_INTARG(node, source);
}

TFmtNode* ParseTex_1_OPTARG(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node);
  AddOptional(generic, source);
  return generic;
}

TFmtNode* ParseTex_1_ARG_1_OPTARG(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node);
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  AddOptional(generic, source);
  return generic;
}

TFmtNode* ParseTex_1_OPTARG_1_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node);
  AddOptional(generic, source);
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  return generic;
}

TFmtNode* ParseTex_1_OPTARG_2_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node);
  AddOptional(generic, source);
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  return generic;
}

TFmtNode* ParseTex_1_MEASURE_1_ARG(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node);
  generic->AddArgument(NextTexMeasureArg(source), 0);
  generic->SetBareArgument(1);  // \raise 2pt: a measure reads back bare
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  return generic;
}

namespace {
constexpr TCsParserEntry fg_Arity[] = {
    // ParseTex_1_ARG
    {"TrueTypeTextFont", ParseTex_1_ARG}, {"aboveTopic", ParseTex_1_ARG}, {"b", ParseTex_1_ARG},
    {"bar", ParseTex_1_ARG}, {"Bbb", ParseTex_1_ARG}, {"beginthebibliography", ParseTex_1_ARG},
    {"bibliographystyle", ParseTex_1_ARG}, {"cal", ParseTex_1_ARG}, {"check", ParseTex_1_ARG},
    {"cline", ParseTex_1_ARG}, {"color", ParseTex_1_ARG}, {"fbox", ParseTex_1_ARG},
    {"fontencoding", ParseTex_1_ARG}, {"fontfamily", ParseTex_1_ARG}, {"fontseries", ParseTex_1_ARG},
    {"fontshape", ParseTex_1_ARG}, {"footnotetext", ParseTex_1_ARG}, {"hphantom", ParseTex_1_ARG},
    {"hyphenation", ParseTex_1_ARG}, {"index", ParseTex_1_ARG}, {"lefteqn", ParseTex_1_ARG},
    {"llap", ParseTex_1_ARG}, {"lowercase", ParseTex_1_ARG}, {"markright", ParseTex_1_ARG},
    {"mathbf", ParseTex_1_ARG}, {"mathbin", ParseTex_1_ARG}, {"mathcal", ParseTex_1_ARG},
    {"mathclose", ParseTex_1_ARG}, {"mathit", ParseTex_1_ARG}, {"mathop", ParseTex_1_ARG},
    {"mathopen", ParseTex_1_ARG}, {"mathord", ParseTex_1_ARG}, {"mathrm", ParseTex_1_ARG},
    {"mathrel", ParseTex_1_ARG}, {"mathsf", ParseTex_1_ARG}, {"mathtt", ParseTex_1_ARG},
    {"newif", ParseTex_1_ARG}, {"nextTopic", ParseTex_1_ARG}, {"not", ParseTex_1_ARG},
    {"operatorname", ParseTex_1_ARG}, {"_OVERBARACCENT", ParseTex_1_ARG}, {"overbrace", ParseTex_1_ARG},
    {"overbracket", ParseTex_1_ARG}, {"overleftarrow", ParseTex_1_ARG}, {"overleftrightarrow", ParseTex_1_ARG},
    {"overline", ParseTex_1_ARG}, {"overrightarrow", ParseTex_1_ARG}, {"pagecolor", ParseTex_1_ARG},
    {"phantom", ParseTex_1_ARG}, {"previousTopic", ParseTex_1_ARG}, {"rlap", ParseTex_1_ARG},
    {"shadowbox", ParseTex_1_ARG}, {"typeout", ParseTex_1_ARG}, {"underbrace", ParseTex_1_ARG},
    {"underbracket", ParseTex_1_ARG}, {"underleftarrow", ParseTex_1_ARG}, {"underleftrightarrow", ParseTex_1_ARG},
    {"underline", ParseTex_1_ARG}, {"underrightarrow", ParseTex_1_ARG}, {"uppercase", ParseTex_1_ARG},
    {"usecounter", ParseTex_1_ARG}, {"v", ParseTex_1_ARG}, {"vec", ParseTex_1_ARG},
    {"verb", ParseTex_1_ARG}, {"vphantom", ParseTex_1_ARG},
    // ParseTex_1_RAWARG
    {"aboveTopicUnparsed", ParseTex_1_RAWARG}, {"backgroundimage", ParseTex_1_RAWARG},
    {"bibfile", ParseTex_1_RAWARG}, {"nextTopicUnparsed", ParseTex_1_RAWARG}, {"nocite", ParseTex_1_RAWARG},
    {"previousTopicUnparsed", ParseTex_1_RAWARG}, {"special", ParseTex_1_RAWARG},
    // ParseTex_2_ARG .. ParseTex_4_ARG
    {"beginlist", ParseTex_2_ARG}, {"colorbox", ParseTex_2_ARG}, {"fontsize", ParseTex_2_ARG},
    {"markboth", ParseTex_2_ARG}, {"stackrel", ParseTex_2_ARG}, {"statusLineAction", ParseTex_2_ARG},
    {"toolTipAction", ParseTex_2_ARG},
    {"fcolorbox", ParseTex_3_ARG}, {"multicolumn", ParseTex_3_ARG}, {"tipStatusAction", ParseTex_3_ARG},
    {"mathchoice", ParseTex_4_ARG}, {"usefont", ParseTex_4_ARG},
    // ParseTex_1_INTARG, ParseTex_1_INTPARMARG
    {"brokenpenalty", ParseTex_1_INTARG}, {"clubpenalty", ParseTex_1_INTARG},
    {"displaywidowpenalty", ParseTex_1_INTARG}, {"floatingpenalty", ParseTex_1_INTARG},
    {"interlinepenalty", ParseTex_1_INTARG}, {"postdisplaypenalty", ParseTex_1_INTARG},
    {"predisplaypenalty", ParseTex_1_INTARG}, {"widowpenalty", ParseTex_1_INTARG},
    {"looseness", ParseTex_1_INTPARMARG},
    // Optional arguments
    {"linebreak", ParseTex_1_OPTARG}, {"nolinebreak", ParseTex_1_OPTARG}, {"nopagebreak", ParseTex_1_OPTARG},
    {"pagebreak", ParseTex_1_OPTARG},
    {"buttonbox", ParseTex_1_OPTARG_1_ARG}, {"caption", ParseTex_1_OPTARG_1_ARG},
    {"dialogbox", ParseTex_1_OPTARG_1_ARG}, {"documentclass", ParseTex_1_OPTARG_1_ARG},
    {"documentstyle", ParseTex_1_OPTARG_1_ARG}, {"smash", ParseTex_1_OPTARG_1_ARG},
    {"usepackage", ParseTex_1_OPTARG_1_ARG},
    {"colorbuttonbox", ParseTex_1_OPTARG_2_ARG},
    {"newcounter", ParseTex_1_ARG_1_OPTARG},
    {"lower", ParseTex_1_MEASURE_1_ARG}, {"raise", ParseTex_1_MEASURE_1_ARG},
};
}  // namespace

std::span<const TCsParserEntry> ArityParserTable() { return fg_Arity; }
