// TGlobalString: the canonical names that code compares against by pointer,
// and the start-up that loads the vocabulary into the global pool.
//
// Every family of names loads from one table beside its loader; adding a name
// to a family is one row. The tables are visible here so that tests and tools
// can walk them.
#pragma once

#include <span>

#include "framework/color_ref.h"
#include "symbols/string_pool.h"

// One variable of TGlobalString and the text it holds after InitStrings.
struct TGlobalStringRow {
  const char** variable;
  const char* text;
};

// Every name of the table gets a true boolean under the property.
struct TNameTable {
  const char* const* property;  // the TGlobalString variable that names it
  std::span<const char* const> names;
};

// A log-like function name and the spelling the Axiom system uses for it.
struct TAxiomSpelling {
  const char* name;
  const char* spelling;
};

// Components 0..255; the X name is tried first by the device.
struct TNamedColor {
  const char* key;
  unsigned short red, green, blue;
  const char* xName;
};

// One row of the symbol table: a code of 0 takes the glyph away from the name.
struct TSymbolFontRow {
  const char* name;
  int greek;
  KFontTag tag;
  int code;
};

class TGlobalString {
 public:
  // Idempotent: loads the strings, the math symbol tables and the colours
  // into the global pool (made here if start-up has not made it yet).
  static void Initialize();
  static void InitStrings();
  static void InitializeTexSymbolProperties();
  static void InitColors();
  // The glyph of every symbol name; again later rows win, so a second call
  // leaves the same facts.
  static void InitializeSymbolFonts() { InitializeTexSymbolFonts(); }
  static void InitializeTexSymbolFonts();

  // Tables whose loaders belong to the node classes' start-up: _ALWAYSDRAW
  // from TFmtNode::InitializeDrawProperties1, the vertical-list tables from
  // TFmtVerticalListNode::InitializeProperties.
  static void InitializeAlwaysDrawProperties();
  static void InitializeVerticalListProperties();

  // _AXIOMLOGLIKE holds a sequence node of the spelling, made by the format
  // layer once its node classes exist (TFmtNode::InitializeTexParser).
  using TSequenceNodeMaker = TCopyableNode* (*)(const char* spelling);
  static void PutAxiomLogLikeProperties(TSequenceNodeMaker makeSequence);

  static std::span<const TGlobalStringRow> StringTable();
  static std::span<const TNameTable> SymbolPropertyTables();
  static std::span<const TAxiomSpelling> AxiomSpellings();
  static std::span<const TNameTable> AlwaysDrawTables();
  static std::span<const TNameTable> VerticalListTables();
  static std::span<const TNamedColor> ColorTable();
  static std::span<const TSymbolFontRow> SymbolFontTable();

  inline static bool g_bInitialized = false;

  // Property names and internal symbols.
  inline static const char* g_pACUTE = nullptr;
  inline static const char* g_pALWAYSDRAW = nullptr;
  inline static const char* g_pAXIOMLOGLIKE = nullptr;
  inline static const char* g_pBEGINGROUP = nullptr;
  inline static const char* g_pENDGROUP = nullptr;
  inline static const char* g_pBINARYOP = nullptr;
  inline static const char* g_pCENTEREDSCRIPTS = nullptr;
  inline static const char* g_pCOLOR = nullptr;
  inline static const char* g_pDELIMITER = nullptr;
  inline static const char* g_pDRAW = nullptr;
  inline static const char* g_pEXTENT = nullptr;
  inline static const char* g_pEMPTYSTRING = nullptr;
  inline static const char* g_pEQUALS = nullptr;
  inline static const char* g_pMINUS = nullptr;
  inline static const char* g_pPLUS = nullptr;
  inline static const char* g_pGOESANYWHERE = nullptr;
  inline static const char* g_pGRAVE = nullptr;
  inline static const char* g_pGREEK = nullptr;
  inline static const char* g_pHANDDRAWER = nullptr;
  inline static const char* g_pHANDDRAWNEXTENT = nullptr;
  inline static const char* g_pINVERTED_EP = nullptr;
  inline static const char* g_pINVERTED_QM = nullptr;
  inline static const char* g_pLBRACE = nullptr;
  inline static const char* g_pRBRACE = nullptr;
  inline static const char* g_pLOGLIKE = nullptr;
  inline static const char* g_pMACRO = nullptr;
  inline static const char* g_pMENU = nullptr;
  inline static const char* g_pMML2TEX = nullptr;
  inline static const char* g_pTEX2MML = nullptr;
  inline static const char* g_pNOCARETDESCENT = nullptr;
  inline static const char* g_pNUMBER = nullptr;
  inline static const char* g_pPRINTTEX = nullptr;
  inline static const char* g_pPARSER_HTML = nullptr;
  inline static const char* g_pTRUE = nullptr;
  inline static const char* g_pOVERBARACCENT = nullptr;
  inline static const char* g_pPARAGRAPHENDER = nullptr;
  inline static const char* g_pPARAGRAPHSTARTER = nullptr;
  inline static const char* g_pPARSER_TEX = nullptr;
  inline static const char* g_pRELATION = nullptr;
  inline static const char* g_pRUNTIMEVALUE = nullptr;
  inline static const char* g_pSECRETSTRUT = nullptr;
  inline static const char* g_pSYMBOLIMAGE = nullptr;
  inline static const char* g_pTEXFONTINDEX = nullptr;
  inline static const char* g_pVARIABLESIZED = nullptr;
  inline static const char* g_pVERTICALLIST = nullptr;

  // Other spellings: '' " $$ --- -- `` \end{verbatim} ifzephrin.
  inline static const char* g_pCLOSEDOUBLEQUOTE = nullptr;
  inline static const char* g_pCS_DOUBLEQUOTE = nullptr;
  inline static const char* g_pDISPLAYMATH = nullptr;
  inline static const char* g_pEMDASH = nullptr;
  inline static const char* g_pENDASH = nullptr;
  inline static const char* g_pOPENDOUBLEQUOTE = nullptr;
  inline static const char* g_pendverbatim = nullptr;
  inline static const char* g_pifzephrin = nullptr;

  // Control-sequence names interned for comparison.
  inline static const char* g_pbackslash = nullptr;
  inline static const char* g_pbegin = nullptr;
  inline static const char* g_pbreak = nullptr;
  inline static const char* g_pcolor = nullptr;
  inline static const char* g_pcr = nullptr;
  inline static const char* g_pcsname = nullptr;
  inline static const char* g_pdownarrow = nullptr;
  inline static const char* g_pelse = nullptr;
  inline static const char* g_pend = nullptr;
  inline static const char* g_pendarray = nullptr;
  inline static const char* g_pendcsname = nullptr;
  inline static const char* g_penddirlist = nullptr;
  inline static const char* g_penddisplaymath = nullptr;
  inline static const char* g_pendequation = nullptr;
  inline static const char* g_pendgraf = nullptr;
  inline static const char* g_pendnonscrollable = nullptr;
  inline static const char* g_pendtabular = nullptr;
  inline static const char* g_peqno = nullptr;
  inline static const char* g_pfi = nullptr;
  inline static const char* g_phline = nullptr;
  inline static const char* g_pif = nullptr;
  inline static const char* g_pifcase = nullptr;
  inline static const char* g_piffalse = nullptr;
  inline static const char* g_pifmmode = nullptr;
  inline static const char* g_piftrue = nullptr;
  inline static const char* g_pifval = nullptr;
  inline static const char* g_pinclude = nullptr;
  inline static const char* g_pindent = nullptr;
  inline static const char* g_pinput = nullptr;
  inline static const char* g_pint = nullptr;
  inline static const char* g_pitem = nullptr;
  inline static const char* g_plangle = nullptr;
  inline static const char* g_plceil = nullptr;
  inline static const char* g_pleqno = nullptr;
  inline static const char* g_plfloor = nullptr;
  inline static const char* g_plq = nullptr;
  inline static const char* g_pminus = nullptr;
  inline static const char* g_pnewif = nullptr;
  inline static const char* g_pnewline = nullptr;
  inline static const char* g_pnewmenu = nullptr;
  inline static const char* g_pof = nullptr;
  inline static const char* g_por = nullptr;
  inline static const char* g_ppar = nullptr;
  inline static const char* g_pplus = nullptr;
  inline static const char* g_prangle = nullptr;
  inline static const char* g_prceil = nullptr;
  inline static const char* g_prfloor = nullptr;
  inline static const char* g_pright = nullptr;
  inline static const char* g_prq = nullptr;
  inline static const char* g_pspread = nullptr;
  inline static const char* g_pto = nullptr;
  inline static const char* g_puparrow = nullptr;
  inline static const char* g_pupdownarrow = nullptr;
  inline static const char* g_pverb = nullptr;
  inline static const char* g_pverbatim = nullptr;

 private:
  // The pool generation the strings were loaded into: a pool freed and made
  // again (tests do this) is loaded again.
  inline static int fg_nLoadedGeneration = 0;
};

// Each puts one property on a name of the global pool, interning the name.
void PutTrueProperty(const char* name, const char* propertyName);
void PutTexParserProperty(const char* name, TTexParserFunction function);
void PutDrawProperties(const char* name, TFmtHandlerFunction extentFunction, TFmtHandlerFunction drawFunction);
void PutColorProperty(const char* name, const CColorRef& color);
void PutTexFontPropertyX(const char* name, KFontTag fontTag, int code, int isGreek);

// Loads one name table; answers the number of rows put.
int PutTrueProperties(const TNameTable& table);
