// Names that change drawing state or the shape of the page: drawn even when
// clipped away, kept off or on the vertical list, starting or ending a
// paragraph. Environments are keyed under their joined name (\begin{center}
// is "begincenter").
#include "symbols/global_strings.h"

namespace {
// _BEGINGROUP and _ENDGROUP come last: braces change state as these do.
constexpr const char* fg_AlwaysDraw[] = {
    "beginthebibliography", "begindescription", "beginenumerate", "beginitemize", "beginlist",
    "beginoutline", "beginquotation", "beginsmall", "bf", "bibitem", "bigbreak", "bigskip",
    "color", "colorbox", "colorbuttonbox", "em", "enddescription", "endenumerate", "enditemize",
    "endoutline", "endquotation", "endsmall", "endthebibliography", "footnotesize", "huge", "Huge",
    "it", "item", "large", "Large", "LARGE", "lefteqn", "llap", "mathstrut", "medbreak", "medskip",
    "mit", "nocaret", "normalsize", "putat", "raisebox", "rlap", "rm", "scriptscriptsize",
    "scriptsize", "sf", "small", "smallbreak", "smallskip", "smash", "tiny", "TrueTypeTextFont",
    "tt", "windowTitle", "_BEGINGROUP", "_ENDGROUP",
};

constexpr TNameTable fg_AlwaysDrawTables[] = {
    {&TGlobalString::g_pALWAYSDRAW, fg_AlwaysDraw},
};

constexpr const char* fg_VerticalList[] = {
    "axiomLink", "begindocument", "bigbreak", "bigskip", "documentstyle", "enddocument", "hrule",
    "maketitle", "medbreak", "medskip", "smallbreak", "smallskip", "vskip", "vspace", "vspace*",
};

constexpr const char* fg_ParagraphStarters[] = {
    "bibitem", "indent", "item", "noindent", "paragraph", "subparagraph",
};

constexpr const char* fg_ParagraphEnders[] = {
    "begincenter", "endcenter", "begindescription", "enddescription", "beginenumerate",
    "endenumerate", "beginflushleft", "endflushleft", "beginflushright", "endflushright",
    "beginitemize", "enditemize", "beginlist", "endlist", "beginoutline", "endoutline",
    "beginquotation", "endquotation", "beginquote", "endquote", "beginsloppypar", "endsloppypar",
    "begintabbing", "beginthebibliography", "endthebibliography", "bigbreak", "bigskip",
    "goodbreak", "hrule", "maketitle", "medbreak", "medskip", "smallbreak", "smallskip", "vskip",
    "vspace", "vspace*",
};

constexpr const char* fg_GoesAnywhere[] = {
    "aboveTopic", "aboveTopicUnparsed", "alias", "author", "backgroundimage", "bf", "bibfile",
    "caption", "centering", "color", "date", "em", "expandalias", "footnotesize", "hbox", "huge",
    "Huge", "includegraphics", "includevideo", "index", "it", "label", "LARGE", "Large", "large",
    "let", "linkTarget", "mit", "newmenu", "newtheorem", "nextTopic", "nextTopicUnparsed",
    "nocaret", "normalsize", "previousTopic", "previousTopicUnparsed", "raggedleft", "raggedright",
    "relax", "rm", "sc", "scriptscriptsize", "scriptsize", "sf", "sl", "small", "special", "tiny",
    "title", "TrueTypeTextFont", "tt", "usecounter", "usemenu", "windowTitle",
};

constexpr const char* fg_NoCaretDescent[] = {
    "aboveTopic", "aboveTopicUnparsed", "author", "bibitem", "buttonbox", "color", "date", "label",
    "nextTopic", "nextTopicUnparsed", "pagecolor", "previousTopic", "previousTopicUnparsed",
    "thanks", "title", "windowTitle",
};

constexpr TNameTable fg_VerticalListTables[] = {
    {&TGlobalString::g_pVERTICALLIST, fg_VerticalList},
    {&TGlobalString::g_pPARAGRAPHSTARTER, fg_ParagraphStarters},
    {&TGlobalString::g_pPARAGRAPHENDER, fg_ParagraphEnders},
    {&TGlobalString::g_pGOESANYWHERE, fg_GoesAnywhere},
    {&TGlobalString::g_pNOCARETDESCENT, fg_NoCaretDescent},
};
}  // namespace

std::span<const TNameTable> TGlobalString::AlwaysDrawTables() { return fg_AlwaysDrawTables; }
std::span<const TNameTable> TGlobalString::VerticalListTables() { return fg_VerticalListTables; }

void TGlobalString::InitializeAlwaysDrawProperties() {
  Initialize();
  for (const TNameTable& table : fg_AlwaysDrawTables) PutTrueProperties(table);
}

void TGlobalString::InitializeVerticalListProperties() {
  Initialize();
  for (const TNameTable& table : fg_VerticalListTables) PutTrueProperties(table);
}
