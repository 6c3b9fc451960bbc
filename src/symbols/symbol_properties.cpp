// The math symbol families: which names are delimiters, log-like
// functions, big operators, binary operators and relations. A name's family
// is nothing but these flags and its row in the symbol table.
#include "symbols/global_strings.h"

namespace {
constexpr const char* fg_Delimiters[] = {
    "backslash", "downarrow", "Downarrow", "langle", "lceil", "lfloor", "rangle", "rceil",
    "rfloor", "uparrow", "Uparrow", "updownarrow", "Updownarrow", "_LBRACE", "_RBRACE",
};

constexpr const char* fg_LogLike[] = {
    "arccos", "arcsin", "arctan", "arg", "bmod", "cos", "cosh", "cot", "coth", "csc", "csch",
    "deg", "det", "dim", "erf", "exp", "gcd", "hom", "inf", "ker", "lcm", "lg", "lim", "liminf",
    "limsup", "ln", "log", "max", "min", "Pr", "sec", "sech", "sin", "sinh", "sup", "tan", "tanh",
    "minimize", "Minimize", "maximize", "Maximize",
};

constexpr const char* fg_CenteredScripts[] = {
    "arg", "bigcap", "bigcup", "bigodot", "bigoplus", "bigotimes", "bigsqcup", "biguplus",
    "bigvee", "bigwedge", "coprod", "det", "gcd", "inf", "lcm", "lim", "liminf", "limsup", "max",
    "min", "Pr", "prod", "sum", "minimize", "Minimize", "maximize", "Maximize",
};

constexpr const char* fg_VariableSized[] = {
    "bigcap", "bigcup", "bigodot", "bigoplus", "bigotimes", "bigsqcup", "biguplus", "bigvee",
    "bigwedge", "coprod", "int", "oint", "prod", "sum",
};

constexpr const char* fg_BinaryOps[] = {
    "amalg", "ast", "backslash", "bigcirc", "bigtriangledown", "bigtriangleup", "bmod", "bullet",
    "cap", "cdot", "circ", "cup", "dagger", "ddagger", "diamond", "div", "lhd", "mp", "odot",
    "ominus", "oplus", "oslash", "otimes", "pm", "rhd", "setminus", "sqcap", "sqcup", "star",
    "times", "triangleleft", "triangleright", "unlhd", "unrhd", "uplus", "vee", "wedge", "wr",
    "_MINUS", "_PLUS",
};

constexpr const char* fg_Relations[] = {
    "approx", "asymp", "bowtie", "cong", "dashv", "doteq", "equiv", "frown", "ge", "geq", "gg",
    "in", "Join", "land", "le", "leq", "lesssim", "ll", "lor", "mid", "models", "ne", "neq", "ni",
    "parallel", "perp", "prec", "preceq", "propto", "sim", "simeq", "smile", "sqsubset",
    "sqsubseteq", "sqsupset", "sqsupseteq", "subset", "subseteq", "succ", "succeq", "supset",
    "supseteq", "vdash", "_EQUALS",
};

// Walked in this order; a name may stand in several tables (bmod is log-like
// and binary, backslash a delimiter and binary).
constexpr TNameTable fg_SymbolTables[] = {
    {&TGlobalString::g_pDELIMITER, fg_Delimiters},
    {&TGlobalString::g_pLOGLIKE, fg_LogLike},
    {&TGlobalString::g_pCENTEREDSCRIPTS, fg_CenteredScripts},
    {&TGlobalString::g_pVARIABLESIZED, fg_VariableSized},
    {&TGlobalString::g_pBINARYOP, fg_BinaryOps},
    {&TGlobalString::g_pRELATION, fg_Relations},
};

// Only these log-like names have an Axiom spelling of their own.
constexpr TAxiomSpelling fg_AxiomSpellings[] = {
    {"arccos", "acos"},
    {"arcsin", "asin"},
    {"arctan", "atan"},
};
}  // namespace

std::span<const TNameTable> TGlobalString::SymbolPropertyTables() { return fg_SymbolTables; }
std::span<const TAxiomSpelling> TGlobalString::AxiomSpellings() { return fg_AxiomSpellings; }

void TGlobalString::InitializeTexSymbolProperties() {
  for (const TNameTable& table : fg_SymbolTables) PutTrueProperties(table);
  // Interned now so the spellings are canonical before any node holds them.
  for (const TAxiomSpelling& row : fg_AxiomSpellings) TStringPool::g_pGlobal->Put(row.spelling);
}

void TGlobalString::PutAxiomLogLikeProperties(TSequenceNodeMaker makeSequence) {
  for (const TAxiomSpelling& row : fg_AxiomSpellings) {
    const char* spelling = TStringPool::g_pGlobal->Put(row.spelling);
    TStringPool::g_pGlobal->Put(row.name, g_pAXIOMLOGLIKE, new TNodeProperty(makeSequence(spelling)));
  }
}
