#include "format/leaf_nodes.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include "device/font_family.h"
#include "format/compound_node.h"
#include "format/glue_node.h"
#include "format/parse_depth.h"
#include "format/tex_mode.h"
#include "math/math_node.h"
#include "math/scripted_node.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/arguments.h"
#include "tex/measure_args.h"
#include "tex/token_source.h"
#include "tex/tokens.h"

namespace {
const char* Intern(const char* text) { return TStringPool::g_pGlobal->Put(text); }

void Add(CString& out, int& column, const char* text) {
  out += text;
  column += static_cast<int>(std::strlen(text));
}

const char* const fg_Letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
}  // namespace

// ---- TFmtCharacterNode ----------------------------------------------------------

TFmtCharacterNode::TFmtCharacterNode(const TTexToken& token) : m_c(token.GetCharacter()) {}

void TFmtCharacterNode::Description(CString& out) {
  out = "character: ";
  out += m_c;
}

int TFmtCharacterNode::DontBreakAfter() const {
  return m_c != '\0' && (std::strchr("{([<", m_c) != nullptr || m_c == '`' || m_c == '\'');
}

int TFmtCharacterNode::DontBreakBefore() const {
  return m_c != '\0' && (std::strchr(",.?:;>!)-}]", m_c) != nullptr || m_c == '`' || m_c == '\'');
}

int TFmtCharacterNode::IsWhiteSpace() const {
  const auto u = static_cast<unsigned char>(m_c);
  return u < 128 && (m_c == ' ' || m_c == '\t' || m_c == '\n');
}

TFmtNode* TFmtCharacterNode::ParseTex(TTexTokenSource& source) {
  const bool math = source.Get_MathMode() != 0;
  switch (m_c) {
    case ' ':
    case '~': return TFmtGlueNode::GlueFromTextSpace(m_c, source);
    case '{': {
      auto* group = new TFmtGroupNode;
      TFmtNode* result = ParseFreshNode<TFmtNode>(group, source);
      return result;
    }
    case '$': {
      auto* formula = new TFmtMathNode;
      TFmtNode* result = ParseFreshNode<TFmtNode>(formula, source);
      return result;
    }
    case '_':
    case '^': return TFmtScriptedNode::ParseScript(source, m_c == '_');
    case '`': return TFmtControlSequenceNode::Make("lq");
    case '\'': return TFmtControlSequenceNode::Make(math ? "prime" : "rq");
    case ':':
      if (math) {
        std::unique_ptr<TTexToken> next(source.NextToken(1, 1));
        if (next && next->IsCharacter('=')) return ParseTexFromString("\\mathrel{\\hbox{:=}}");
        source.PutBack(next.release());
      }
      return this;
    case '=': return math ? static_cast<TFmtNode*>(new TFmtControlSequenceNode(TGlobalString::g_pEQUALS)) : this;
    case '-': return math ? static_cast<TFmtNode*>(new TFmtControlSequenceNode(TGlobalString::g_pMINUS)) : this;
    case '+': return math ? static_cast<TFmtNode*>(new TFmtControlSequenceNode(TGlobalString::g_pPLUS)) : this;
    case '}':
      source.Error(25012u);
      return this;
    default: return this;
  }
}

void TFmtCharacterNode::PrintTex(CString& out, int& column) const {
  if (m_c != '\r') out += m_c;
  ++column;
}

void TFmtCharacterNode::SimplyStringify(CString& out) {
  if (m_c == '\r') return;
  out += m_c == '~' ? ' ' : m_c;
}

// ---- TFmtControlCharacterNode ---------------------------------------------------

TFmtControlCharacterNode::TFmtControlCharacterNode(const TTexToken& token) : m_c(token.GetControlCharacter()) {}

const char* TFmtControlCharacterNode::GetControlSequence() const {
  const char name[2] = {m_c, '\0'};
  return Intern(name);
}

void TFmtControlCharacterNode::Description(CString& out) {
  out = "control character: \\";
  out += m_c;
}

TFmtNode* TFmtControlCharacterNode::ParseTex(TTexTokenSource& source) {
  switch (m_c) {
    case '[': {
      auto* display = new TFmtDisplayMathNode(k_DisplayBracket);
      TFmtNode* result = ParseFreshNode<TFmtNode>(display, source);
      return result;
    }
    case '(': {
      auto* formula = new TFmtMathNode;
      TFmtNode* result = ParseFreshNode<TFmtNode>(formula, source);
      return result;
    }
    case '{': return new TFmtControlSequenceNode(TGlobalString::g_pLBRACE);
    case '}': return new TFmtControlSequenceNode(TGlobalString::g_pRBRACE);
    case '\\':
      // \\[2pt]: the extra space is read and not kept.
      delete NextTexOptionalMeasureArg(source);
      return this;
    case ' ':
    case '!':
    case ',':
    case ':':
    case ';': return TFmtGlueNode::GlueFromControlCharacter(m_c, source);
    case '>':
      if (source.Get_Tabbing()) return this;
      return TFmtGlueNode::GlueFromControlCharacter(m_c, source);
    default: return this;
  }
}

void TFmtControlCharacterNode::PrintTex(CString& out, int& column) const {
  out += '\\';
  out += m_c;
  column += 2;
}

void TFmtControlCharacterNode::SimplyStringify(CString& out) {
  if (m_c == ' ') out += ' ';
  else if (!std::strchr("-@/,:;!>", m_c)) out += m_c;
}

// ---- TFmtSequenceNode -----------------------------------------------------------

TFmtSequenceNode::TFmtSequenceNode(const TTexToken& token) {
  const char* text = token.GetSequence();
  InitMembers(text ? text : "");
  m_pCanonical = text;
}

TFmtSequenceNode::TFmtSequenceNode(const char* text) { InitMembers(text ? text : ""); }

TFmtSequenceNode::TFmtSequenceNode(const TFmtSequenceNode& other)
    : TFmtNode(other), m_pCanonical(other.m_pCanonical) {
  CopyMembers(other);
}

TFmtSequenceNode::~TFmtSequenceNode() { DeleteMembers(); }

void TFmtSequenceNode::InitMembers(const char* text) {
  const size_t length = std::strlen(text);
  m_pText = new char[length + 1];
  std::memcpy(m_pText, text, length + 1);
  m_nLength = static_cast<int>(length);
}

void TFmtSequenceNode::DeleteMembers() {
  delete[] m_pText;
  m_pText = nullptr;
  m_nLength = 0;
}

void TFmtSequenceNode::Append(char c) {
  char* text = new char[static_cast<size_t>(m_nLength) + 2];
  std::memcpy(text, m_pText, static_cast<size_t>(m_nLength));
  text[m_nLength] = c;
  text[m_nLength + 1] = '\0';
  delete[] m_pText;
  m_pText = text;
  ++m_nLength;
  m_pCanonical = nullptr;
}

void TFmtSequenceNode::SetSequence(const char* text) {
  DeleteMembers();
  InitMembers(text ? text : "");
  m_pCanonical = nullptr;
}

void TFmtSequenceNode::Description(CString& out) {
  out = "text: ";
  out += m_pText;
}

TFmtNode* TFmtSequenceNode::ParseTex(TTexTokenSource& source) {
  if (m_pCanonical && m_pCanonical == TGlobalString::g_pDISPLAYMATH) {
    auto* display = new TFmtDisplayMathNode(k_DisplayDollars);
    TFmtNode* result = ParseFreshNode<TFmtNode>(display, source);
    return result;
  }
  return this;
}

void TFmtSequenceNode::PrintTex(CString& out, int& column) const {
  if (column > g_PrintTexRightMargin) {
    out += '\n';
    column = 0;
  }
  out += m_pText;
  column += m_nLength;
}

void TFmtSequenceNode::SimplyStringify(CString& out) { out += m_pText; }

// ---- TFmtControlSequenceNode ----------------------------------------------------

TFmtControlSequenceNode::TFmtControlSequenceNode(const TTexToken& token)
    : m_pName(token.GetControlSequence() ? token.GetControlSequence() : TGlobalString::g_pEMPTYSTRING) {}

TFmtControlSequenceNode* TFmtControlSequenceNode::Make(const char* name) {
  return new TFmtControlSequenceNode(Intern(name));
}

TFmtNode* TFmtControlSequenceNode::ParseTex(TTexTokenSource& source) {
  if (TFunctionProperty* parser = TStringPool::g_pGlobal->GetFunction(m_pName, TGlobalString::g_pPARSER_TEX))
    if (!parser->IsNull()) return parser->Get_TexParser()(this, source);
  if (m_pName == TGlobalString::g_pCLOSEDOUBLEQUOTE && source.Get_MathMode()) {
    // Math's double prime comes from the same scan as the closing quote.
    auto* primes = new TFmtCompoundNode;
    primes->AddTailSimple(Make("prime"));
    primes->AddTailSimple(Make("prime"));
    return primes;
  }
  return this;
}

int TFmtControlSequenceNode::DontBreakAfter() const {
  return m_pName == TGlobalString::g_pOPENDOUBLEQUOTE || m_pName == TGlobalString::g_plq ||
         m_pName == TGlobalString::g_prq;
}

int TFmtControlSequenceNode::DontBreakBefore() const {
  return m_pName == TGlobalString::g_pCLOSEDOUBLEQUOTE || m_pName == TGlobalString::g_plq ||
         m_pName == TGlobalString::g_prq;
}

int TFmtControlSequenceNode::GoesOnVerticalList() const {
  if (TProperty* p = TStringPool::g_pGlobal->Get(m_pName, TGlobalString::g_pVERTICALLIST)) {
    if (p->Kind() == k_PropertyBoolean) return static_cast<TBooleanProperty*>(p)->Get_Value();
    if (p->Kind() == k_PropertyInteger) return static_cast<TIntegerProperty*>(p)->Get_Value();
  }
  return 0;
}

TFontFamily* TFmtControlSequenceNode::GetFontFamilyAndCharacter(int& code) {
  TFontIndexProperty* index = TStringPool::g_pGlobal->GetFontIndex(m_pName, TGlobalString::g_pTEXFONTINDEX);
  if (!index) return nullptr;
  code = index->Get_Code();
  return TFontFamily::GetFontFamilyFromTag(index->Get_FontTag());
}

void TFmtControlSequenceNode::Description(CString& out) {
  const char* n = m_pName;
  if (n == TGlobalString::g_pBEGINGROUP || n == TGlobalString::g_pLBRACE) out = "{";
  else if (n == TGlobalString::g_pENDGROUP || n == TGlobalString::g_pRBRACE) out = "}";
  else if (n == TGlobalString::g_pOPENDOUBLEQUOTE || n == TGlobalString::g_pCLOSEDOUBLEQUOTE ||
           n == TGlobalString::g_pENDASH || n == TGlobalString::g_pEMDASH)
    out = n;
  else if (n == TGlobalString::g_plq) out = "`";
  else if (n == TGlobalString::g_prq) out = "'";
  else if (n == TGlobalString::g_pEQUALS) out = "=";
  else if (n == TGlobalString::g_pMINUS) out = "-";
  else if (n == TGlobalString::g_pPLUS) out = "+";
  else {
    out = "control sequence: \\";
    out += n;
  }
}

void PrintTexControlSequenceName(const char* name, CString& out, int& column) {
  if (std::strspn(name, fg_Letters) > 0) {
    out += '\\';
    out += name;
    out += ' ';
    column += static_cast<int>(std::strlen(name)) + 2;
  } else {
    // The blank keeps a following letter from joining \endcsname.
    out += "\\csname ";
    out += name;
    out += "\\endcsname ";
    column += static_cast<int>(std::strlen(name)) + 19;
  }
}

void TFmtControlSequenceNode::PrintTex(CString& out, int& column) const {
  const char* n = m_pName;
  if (n == TGlobalString::g_pBEGINGROUP) Add(out, column, "{");
  else if (n == TGlobalString::g_pENDGROUP) Add(out, column, "}");
  else if (n == TGlobalString::g_pOPENDOUBLEQUOTE || n == TGlobalString::g_pCLOSEDOUBLEQUOTE ||
           n == TGlobalString::g_pENDASH || n == TGlobalString::g_pEMDASH)
    Add(out, column, n);
  else if (n == TGlobalString::g_pINVERTED_EP) Add(out, column, "!`");
  else if (n == TGlobalString::g_pINVERTED_QM) Add(out, column, "?`");
  else if (n == TGlobalString::g_plq) Add(out, column, "`");
  else if (n == TGlobalString::g_prq) Add(out, column, "'");
  else if (n == TGlobalString::g_pEQUALS) Add(out, column, "=");
  else if (n == TGlobalString::g_pMINUS) Add(out, column, "-");
  else if (n == TGlobalString::g_pPLUS) Add(out, column, "+");
  else if (n == TGlobalString::g_pLBRACE) Add(out, column, "\\{");
  else if (n == TGlobalString::g_pRBRACE) Add(out, column, "\\}");
  else if (n == TGlobalString::g_pnewline) {
    out += '\\';
    out += n;
    out += '\n';
    column = 0;
  } else if (n == TGlobalString::g_pSECRETSTRUT) {
  } else {
    PrintTexControlSequenceName(n, out, column);
  }
}

void TFmtControlSequenceNode::SimplyStringify(CString& out) {
  const char* n = m_pName;
  TStringPool* pool = TStringPool::g_pGlobal;
  if (TNodeProperty* value = pool->GetNode(n, TGlobalString::g_pRUNTIMEVALUE)) {
    if (auto* node = value->Get_NodeAs<TFmtNode>()) node->SimplyStringify(out);
    return;
  }
  if (n == TGlobalString::g_pOPENDOUBLEQUOTE || n == TGlobalString::g_pCLOSEDOUBLEQUOTE) out += '"';
  else if (n == TGlobalString::g_pENDASH || n == TGlobalString::g_pEMDASH) out += n;
  else if (n == TGlobalString::g_plq) out += '`';
  else if (n == TGlobalString::g_prq) out += '\'';
  else if (std::strcmp(n, "rightarrow") == 0) out += "->";
  else if (std::strcmp(n, "leftarrow") == 0) out += "<-";
  else if (std::strcmp(n, "times") == 0) out += " x ";
  else if (n == TGlobalString::g_pEQUALS) out += '=';
  else if (n == TGlobalString::g_pMINUS) out += '-';
  else if (n == TGlobalString::g_pPLUS) out += '+';
  else if (n == TGlobalString::g_pLBRACE) out += '{';
  else if (n == TGlobalString::g_pRBRACE) out += '}';
  else if (pool->GetBoolean(n, TGlobalString::g_pGREEK) || pool->GetBoolean(n, TGlobalString::g_pLOGLIKE)) {
    out += n;
    out += ' ';
  }
}
