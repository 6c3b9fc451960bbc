#include "symbols/global_strings.h"

namespace {
// In the order of interning; the text is what the variable holds.
constexpr TGlobalStringRow fg_GlobalStrings[] = {
    // Property names and internal symbols.
    {&TGlobalString::g_pACUTE, "_ACUTE"},
    {&TGlobalString::g_pALWAYSDRAW, "_ALWAYSDRAW"},
    {&TGlobalString::g_pAXIOMLOGLIKE, "_AXIOMLOGLIKE"},
    {&TGlobalString::g_pBEGINGROUP, "_BEGINGROUP"},
    {&TGlobalString::g_pENDGROUP, "_ENDGROUP"},
    {&TGlobalString::g_pBINARYOP, "_BINARYOP"},
    {&TGlobalString::g_pCENTEREDSCRIPTS, "_CENTEREDSCRIPTS"},
    {&TGlobalString::g_pCOLOR, "_COLOR"},
    {&TGlobalString::g_pDELIMITER, "_DELIMITER"},
    {&TGlobalString::g_pDRAW, "_DRAW"},
    {&TGlobalString::g_pEXTENT, "_EXTENT"},
    {&TGlobalString::g_pEMPTYSTRING, "_EMPTYSTRING"},
    {&TGlobalString::g_pEQUALS, "_EQUALS"},
    {&TGlobalString::g_pMINUS, "_MINUS"},
    {&TGlobalString::g_pPLUS, "_PLUS"},
    {&TGlobalString::g_pGOESANYWHERE, "_GOESANYWHERE"},
    {&TGlobalString::g_pGRAVE, "_GRAVE"},
    {&TGlobalString::g_pGREEK, "_GREEK"},
    {&TGlobalString::g_pHANDDRAWER, "_HANDDRAWER"},
    {&TGlobalString::g_pHANDDRAWNEXTENT, "_HANDDRAWNEXTENT"},
    {&TGlobalString::g_pINVERTED_EP, "_INVERTED_EP"},
    {&TGlobalString::g_pINVERTED_QM, "_INVERTED_QM"},
    {&TGlobalString::g_pLBRACE, "_LBRACE"},
    {&TGlobalString::g_pRBRACE, "_RBRACE"},
    {&TGlobalString::g_pLOGLIKE, "_LOGLIKE"},
    {&TGlobalString::g_pMACRO, "_MACRO"},
    {&TGlobalString::g_pMENU, "_MENU"},
    {&TGlobalString::g_pMML2TEX, "_MML2TEX"},
    {&TGlobalString::g_pTEX2MML, "_TEX2MML"},
    {&TGlobalString::g_pNOCARETDESCENT, "_NOCARETDESCENT"},
    {&TGlobalString::g_pNUMBER, "_NUMBER"},
    {&TGlobalString::g_pPRINTTEX, "_PRINTTEX"},
    {&TGlobalString::g_pPARSER_HTML, "_PARSER_HTML"},
    {&TGlobalString::g_pTRUE, "_\"TRUE\"_"},
    {&TGlobalString::g_pOVERBARACCENT, "_OVERBARACCENT"},
    {&TGlobalString::g_pPARAGRAPHENDER, "_PARAGRAPHENDER"},
    {&TGlobalString::g_pPARAGRAPHSTARTER, "_PARAGRAPHSTARTER"},
    {&TGlobalString::g_pPARSER_TEX, "_PARSER_TEX"},
    {&TGlobalString::g_pRELATION, "_RELATION"},
    {&TGlobalString::g_pRUNTIMEVALUE, "_RUNTIMEVALUE"},
    {&TGlobalString::g_pSECRETSTRUT, "_SECRETSTRUT"},
    {&TGlobalString::g_pSYMBOLIMAGE, "_SYMBOLIMAGE"},
    {&TGlobalString::g_pTEXFONTINDEX, "_TEXFONTINDEX"},
    {&TGlobalString::g_pVARIABLESIZED, "_VARIABLESIZED"},
    {&TGlobalString::g_pVERTICALLIST, "_VERTICALLIST"},
    // Other spellings.
    {&TGlobalString::g_pCLOSEDOUBLEQUOTE, "''"},
    {&TGlobalString::g_pCS_DOUBLEQUOTE, "\""},
    {&TGlobalString::g_pDISPLAYMATH, "$$"},
    {&TGlobalString::g_pEMDASH, "---"},
    {&TGlobalString::g_pENDASH, "--"},
    {&TGlobalString::g_pOPENDOUBLEQUOTE, "``"},
    {&TGlobalString::g_pendverbatim, "\\end{verbatim}"},
    {&TGlobalString::g_pifzephrin, "ifzephrin"},
    // Control-sequence names.
    {&TGlobalString::g_pbackslash, "backslash"},
    {&TGlobalString::g_pbegin, "begin"},
    {&TGlobalString::g_pbreak, "break"},
    {&TGlobalString::g_pcolor, "color"},
    {&TGlobalString::g_pcr, "cr"},
    {&TGlobalString::g_pcsname, "csname"},
    {&TGlobalString::g_pdownarrow, "downarrow"},
    {&TGlobalString::g_pelse, "else"},
    {&TGlobalString::g_pend, "end"},
    {&TGlobalString::g_pendarray, "endarray"},
    {&TGlobalString::g_pendcsname, "endcsname"},
    {&TGlobalString::g_penddirlist, "enddirlist"},
    {&TGlobalString::g_penddisplaymath, "enddisplaymath"},
    {&TGlobalString::g_pendequation, "endequation"},
    {&TGlobalString::g_pendgraf, "endgraf"},
    {&TGlobalString::g_pendnonscrollable, "endnonscrollable"},
    {&TGlobalString::g_pendtabular, "endtabular"},
    {&TGlobalString::g_peqno, "eqno"},
    {&TGlobalString::g_pfi, "fi"},
    {&TGlobalString::g_phline, "hline"},
    {&TGlobalString::g_pif, "if"},
    {&TGlobalString::g_pifcase, "ifcase"},
    {&TGlobalString::g_piffalse, "iffalse"},
    {&TGlobalString::g_pifmmode, "ifmmode"},
    {&TGlobalString::g_piftrue, "iftrue"},
    {&TGlobalString::g_pifval, "ifval"},
    {&TGlobalString::g_pinclude, "include"},
    {&TGlobalString::g_pindent, "indent"},
    {&TGlobalString::g_pinput, "input"},
    {&TGlobalString::g_pint, "int"},
    {&TGlobalString::g_pitem, "item"},
    {&TGlobalString::g_plangle, "langle"},
    {&TGlobalString::g_plceil, "lceil"},
    {&TGlobalString::g_pleqno, "leqno"},
    {&TGlobalString::g_plfloor, "lfloor"},
    {&TGlobalString::g_plq, "lq"},
    {&TGlobalString::g_pminus, "minus"},
    {&TGlobalString::g_pnewif, "newif"},
    {&TGlobalString::g_pnewline, "newline"},
    {&TGlobalString::g_pnewmenu, "newmenu"},
    {&TGlobalString::g_pof, "of"},
    {&TGlobalString::g_por, "or"},
    {&TGlobalString::g_ppar, "par"},
    {&TGlobalString::g_pplus, "plus"},
    {&TGlobalString::g_prangle, "rangle"},
    {&TGlobalString::g_prceil, "rceil"},
    {&TGlobalString::g_prfloor, "rfloor"},
    {&TGlobalString::g_pright, "right"},
    {&TGlobalString::g_prq, "rq"},
    {&TGlobalString::g_pspread, "spread"},
    {&TGlobalString::g_pto, "to"},
    {&TGlobalString::g_puparrow, "uparrow"},
    {&TGlobalString::g_pupdownarrow, "updownarrow"},
    {&TGlobalString::g_pverb, "verb"},
    {&TGlobalString::g_pverbatim, "verbatim"},
};
}  // namespace

std::span<const TGlobalStringRow> TGlobalString::StringTable() { return fg_GlobalStrings; }

void TGlobalString::Initialize() {
  TStringPool::InitializeGlobal();  // no-op when start-up already made it
  if (g_bInitialized && fg_nLoadedGeneration == TStringPool::Get_GlobalGeneration()) return;
  g_bInitialized = true;
  fg_nLoadedGeneration = TStringPool::Get_GlobalGeneration();
  InitStrings();
  InitializeTexSymbolProperties();
  InitColors();
}

void TGlobalString::InitStrings() {
  for (const TGlobalStringRow& row : fg_GlobalStrings) *row.variable = TStringPool::g_pGlobal->Put(row.text);
}

void PutTrueProperty(const char* name, const char* propertyName) {
  TStringPool::g_pGlobal->Put(name, propertyName, new TBooleanProperty(1));
}

void PutTexParserProperty(const char* name, TTexParserFunction function) {
  TStringPool::g_pGlobal->Put(name, TGlobalString::g_pPARSER_TEX, new TFunctionProperty(function));
}

void PutDrawProperties(const char* name, TFmtHandlerFunction extentFunction, TFmtHandlerFunction drawFunction) {
  TStringPool& pool = *TStringPool::g_pGlobal;
  const char* canonical = pool.Put(name, TGlobalString::g_pEXTENT, new TFunctionProperty(extentFunction));
  pool.Put(canonical, TGlobalString::g_pDRAW, new TFunctionProperty(drawFunction));
}

void PutColorProperty(const char* name, const CColorRef& color) {
  TStringPool::g_pGlobal->Put(name, TGlobalString::g_pCOLOR, new TColorProperty(color));
}

void PutTexFontPropertyX(const char* name, KFontTag fontTag, int code, int isGreek) {
  TStringPool::g_pGlobal->Put(name, TGlobalString::g_pTEXFONTINDEX, new TFontIndexProperty(fontTag, code));
  if (isGreek) PutTrueProperty(name, TGlobalString::g_pGREEK);
}

int PutTrueProperties(const TNameTable& table) {
  int rows = 0;
  for (const char* name : table.names) {
    PutTrueProperty(name, *table.property);
    ++rows;
  }
  return rows;
}
