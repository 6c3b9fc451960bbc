#include "math/math_node.h"

#include <memory>

#include "format/leaf_nodes.h"
#include "format/parse_depth.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/token_source.h"
#include "tex/tokens.h"

namespace {
// Set by a test that stopped the list on "$$", which leaves one "$" open.
int fg_bClosedByDisplayDollars = 0;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
}  // namespace

// ---- TFmtMathNode ---------------------------------------------------------------

ParseTestResult TFmtMathNode::CharacterTest(TTexToken* token, int data, TTexTokenSource& source) {
  const char c = token->GetCharacter();
  if (c == '$' && data == 0) return k_ParseTest_Stop;
  if (c == '}') {
    source.Error(25052u);
    return k_ParseTest_Skip;
  }
  if (IsBlank(c)) return k_ParseTest_Skip;
  return k_ParseTest_MakeNode;
}

ParseTestResult TFmtMathNode::ControlCharacterTest(TTexToken* token, int data, TTexTokenSource&) {
  return data == 0 && token->GetControlCharacter() == ')' ? k_ParseTest_Stop : k_ParseTest_MakeNode;
}

ParseTestResult TFmtMathNode::SequenceTest(TTexToken* token, int, TTexTokenSource&) {
  if (!token->IsSequence(TGlobalString::g_pDISPLAYMATH)) return k_ParseTest_MakeNode;
  fg_bClosedByDisplayDollars = 1;
  return k_ParseTest_Stop;
}

TFmtNode* TFmtMathNode::ParseTex(TTexTokenSource& source) {
  const int saved = source.Get_MathMode();
  source.Set_MathMode(1);
  fg_bClosedByDisplayDollars = 0;
  int done = 0;
  TFmtNode* result = ParseTexWithTests(source, done, 0, CharacterTest, ControlCharacterTest, nullptr, SequenceTest);
  if (done && fg_bClosedByDisplayDollars) source.PutBack(new TTexCharacterToken('$'));
  fg_bClosedByDisplayDollars = 0;
  source.Set_MathMode(saved);
  if (!saved) source.SetState(TTexTokenSource::kInsideLine);
  return result;
}

void TFmtMathNode::PrintTex(CString& out, int& column) const {
  out += " $";
  column += 2;
  TFmtCompoundNode::PrintTex(out, column);
  out += "$ ";
  column += 2;
}

void TFmtMathNode::AddHead(TFmtNode* node) {
  if (node && node->m_bDrawAlways) m_bDrawAlways = 1;
  TFmtGroupNode::AddHead(node);
}
void TFmtMathNode::AddTail(TFmtNode* node) {
  if (node && node->m_bDrawAlways) m_bDrawAlways = 1;
  TFmtGroupNode::AddTail(node);
}
void TFmtMathNode::AddTailSimple(TFmtNode* node) {
  if (node && node->m_bDrawAlways) m_bDrawAlways = 1;
  TFmtGroupNode::AddTailSimple(node);
}

// ---- TFmtDisplayMathNode --------------------------------------------------------

TFmtDisplayMathNode::TFmtDisplayMathNode(KDisplayMathType type)
    : m_Type(type), m_pEqno(std::make_unique<TFmtCompoundNode>()) {}

TFmtDisplayMathNode::TFmtDisplayMathNode(const TFmtDisplayMathNode& other)
    : TFmtMathNode(other),
      m_bLeftNumber(other.m_bLeftNumber),
      m_bRecompute(1),
      m_Type(other.m_Type),
      m_pEqno(static_cast<TFmtCompoundNode*>(other.m_pEqno->Copy())),
      m_nNumberOffset(other.m_nNumberOffset),
      m_nContentOffset(other.m_nContentOffset),
      m_nContentWidth(other.m_nContentWidth) {}

void TFmtDisplayMathNode::SetEqno(TFmtCompoundNode* number, int isLeft) {
  m_pEqno.reset(number ? number : new TFmtCompoundNode);
  m_bLeftNumber = isLeft;
}

void TFmtDisplayMathNode::ApplyRecursively(void (*f)(TFmtNode*)) {
  TFmtMathNode::ApplyRecursively(f);
  m_pEqno->ApplyRecursively(f);
}
void TFmtDisplayMathNode::ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) {
  TFmtMathNode::ApplyRecursively(f, a);
  m_pEqno->ApplyRecursively(f, a);
}
void TFmtDisplayMathNode::ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) {
  TFmtMathNode::ApplyRecursively(f, a, b);
  m_pEqno->ApplyRecursively(f, a, b);
}

ParseTestResult TFmtDisplayMathNode::ControlCharacterTest(TTexToken* token, int, TTexTokenSource&) {
  return token->GetControlCharacter() == ']' ? k_ParseTest_StopAndPutBack : k_ParseTest_MakeNode;
}

namespace {
ParseTestResult DisplayCharacterTest(TTexToken* token, int, TTexTokenSource& source) {
  // "$" is no end here: a display ends with "$$" or its own closing.
  return TFmtMathNode::CharacterTest(token, 1, source);
}

ParseTestResult DisplaySequenceTest(TTexToken* token, int, TTexTokenSource&) {
  return token->IsSequence(TGlobalString::g_pDISPLAYMATH) ? k_ParseTest_StopAndPutBack : k_ParseTest_MakeNode;
}
}  // namespace

ParseTestResult TFmtDisplayMathNode::ControlSequenceTest(TTexToken* token, int data, TTexTokenSource& source) {
  if (token->IsControlSequence(TGlobalString::g_peqno) || token->IsControlSequence(TGlobalString::g_pleqno))
    return k_ParseTest_StopAndPutBack;
  return ControlSequenceTokenTestNoEqno(token, data, source);
}

ParseTestResult TFmtDisplayMathNode::ControlSequenceTokenTestNoEqno(TTexToken* token, int, TTexTokenSource&) {
  if (token->IsControlSequence(TGlobalString::g_penddisplaymath) ||
      token->IsControlSequence(TGlobalString::g_pendequation))
    return k_ParseTest_StopAndPutBack;
  return k_ParseTest_MakeNode;
}

TFmtNode* TFmtDisplayMathNode::ParseTex(TTexTokenSource& source) {
  const int saved = source.Get_MathMode();
  source.Set_MathMode(1);
  int done = 0;
  TFmtNode* result = ParseTexWithTests(source, done, 0, DisplayCharacterTest, ControlCharacterTest,
                                       ControlSequenceTest, DisplaySequenceTest);
  if (done) {
    std::unique_ptr<TTexToken> end(source.NextToken(0, 1));
    if (end && (end->IsControlSequence(TGlobalString::g_peqno) || end->IsControlSequence(TGlobalString::g_pleqno))) {
      auto* number = new TFmtCompoundNode;
      int numberDone = 0;
      number->ParseTexWithTests(source, numberDone, 0, DisplayCharacterTest, ControlCharacterTest,
                                ControlSequenceTokenTestNoEqno, DisplaySequenceTest);
      SetEqno(number, end->IsControlSequence(TGlobalString::g_pleqno));
      if (numberDone) delete source.NextToken(0, 1);  // the closing token
    }
  }
  source.Set_MathMode(saved);
  if (!saved) source.SetState(TTexTokenSource::kStartOfLine);
  return result;
}

namespace {
struct TDisplayForm {
  const char* opening;
  const char* closing;
};
constexpr TDisplayForm fg_DisplayForms[] = {
    {"%\n$$\n", "$$\n"},
    {"%\n\\begin{displaymath}\n", "%\\end{displaymath}\n"},
    {"", ""},
    {"%\n\\begin{equation}\n", "%\n\\end{equation}\n"},
    {"%\n\\[\n", "\\]\n"},
};
}  // namespace

void TFmtDisplayMathNode::PrintTex(CString& out, int& column) const {
  const int type = m_Type >= 0 && m_Type <= 4 ? m_Type : k_DisplaySystem;
  out += fg_DisplayForms[type].opening;
  column = 0;
  TFmtCompoundNode::PrintTex(out, column);
  if (!m_pEqno->IsEmpty()) {
    out += '\n';
    out += m_bLeftNumber ? "\\leqno " : "\\eqno ";
    column = 6;
    m_pEqno->PrintTex(out, column);
  }
  AddNewlineIfNeeded(out, column);
  out += fg_DisplayForms[type].closing;
  column = 0;
}

TFmtNode* TFmtDisplayMathNode::ParseTex_begindisplaymath(TFmtControlSequenceNode*, TTexTokenSource& source) {
  auto* display = new TFmtDisplayMathNode(k_DisplayEnvironment);
  TFmtNode* result = ParseFreshNode<TFmtNode>(display, source);
  return result;
}

TFmtNode* TFmtDisplayMathNode::ParseTex_beginequation(TFmtControlSequenceNode*, TTexTokenSource& source) {
  auto* display = new TFmtDisplayMathNode(k_DisplayEquation);
  TFmtNode* result = ParseFreshNode<TFmtNode>(display, source);
  return result;
}

namespace {
constexpr TCsParserEntry fg_Parsers[] = {
    {"begindisplaymath", TFmtDisplayMathNode::ParseTex_begindisplaymath},
    {"beginequation", TFmtDisplayMathNode::ParseTex_begindisplaymath},
};
}  // namespace

std::span<const TCsParserEntry> TFmtDisplayMathNode::ParserTable() { return fg_Parsers; }

void TFmtDisplayMathNode::InitializeTexParser() {
  RegisterParsers(fg_Parsers);
  // Both environments parse as displaymath: an equation prints back as one.
}
