#include "format/compound_node.h"

#include <cctype>
#include <cstring>
#include <memory>

#include "device/font_family.h"
#include "format/context.h"
#include "format/leaf_nodes.h"
#include "format/parse_depth.h"
#include "math/over_node.h"
#include "math/scripted_node.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/token_source.h"
#include "tex/tokens.h"

bool TParseDepth::Enter(TTexTokenSource& source) {
  if (fg_nDepth >= fg_nMaxParseDepth) {
    if (!fg_bReported) {
      fg_bReported = true;
      source.Error("groups and arguments nested too deep: the rest is read without structure");
    }
    return false;
  }
  ++fg_nDepth;
  return true;
}

namespace {
TFmtNode* Node(CObject* o) { return static_cast<TFmtNode*>(o); }
}  // namespace

// ---- TFmtCompoundNode -----------------------------------------------------------

TFmtCompoundNode::TFmtCompoundNode(const CObList& nodes) {
  for (CObject* o : nodes) m_Children.AddTail(Node(o)->Copy());
}

TFmtCompoundNode::TFmtCompoundNode(const TFmtCompoundNode& other) : TFmtNode(other) {
  for (CObject* o : other.m_Children) m_Children.AddTail(Node(o)->Copy());
}

TFmtCompoundNode& TFmtCompoundNode::operator=(const TFmtCompoundNode& other) {
  if (this == &other) return *this;
  TFmtNode::operator=(other);
  DeleteChildren();
  for (CObject* o : other.m_Children) m_Children.AddTail(Node(o)->Copy());
  return *this;
}

TFmtCompoundNode::~TFmtCompoundNode() { DeleteChildren(); }

void TFmtCompoundNode::DeleteChildren() {
  while (!m_Children.IsEmpty()) delete Node(m_Children.RemoveHead());
}

void TFmtCompoundNode::ApplyRecursively(void (*f)(TFmtNode*)) {
  f(this);
  ApplyRecursivelyList(m_Children, f);
}
void TFmtCompoundNode::ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) {
  f(this, a);
  ApplyRecursivelyList(m_Children, f, a);
}
void TFmtCompoundNode::ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) {
  f(this, a, b);
  ApplyRecursivelyList(m_Children, f, a, b);
}

void TFmtCompoundNode::Description(CString& out) { out = "expression"; }

TFmtNode* TFmtCompoundNode::GetNth(int n) const {
  if (n < 1 || n > m_Children.GetCount()) return nullptr;
  for (CObject* o : m_Children)
    if (--n == 0) return Node(o);
  return nullptr;
}

TFmtCompoundNode* TFmtCompoundNode::CompoundIt(TFmtNode* node) {
  if (!node) return new TFmtCompoundNode;
  if (TFmtCompoundNode* compound = node->IsCompoundNode()) return compound;
  auto* compound = new TFmtCompoundNode;
  compound->AddTailSimple(node);
  return compound;
}

void TFmtCompoundNode::RemoveLeadingWhiteSpace() {
  while (!m_Children.IsEmpty() && Node(m_Children.GetHead())->IsWhiteSpace()) delete Node(m_Children.RemoveHead());
}

void TFmtCompoundNode::RemoveTrailingWhiteSpace() {
  while (!m_Children.IsEmpty() && Node(m_Children.GetTail())->IsWhiteSpace()) delete Node(m_Children.RemoveTail());
}

int TFmtCompoundNode::RemoveChild(TFmtNode* node, int bShallow) {
  auto position = m_Children.Find(node);
  if (position == m_Children.GetEnd()) return 0;
  m_Children.RemoveAt(position);
  if (!bShallow) delete node;
  return 1;
}

int TFmtCompoundNode::OwnerOf(TFmtNode* node) const { return m_Children.Find(node) != m_Children.GetEnd(); }

void TFmtCompoundNode::AddHead(TFmtNode* node) {
  if (node) m_Children.AddHead(node);
}

void TFmtCompoundNode::AddTailSimple(TFmtNode* node) {
  if (node) m_Children.AddTail(node);
}

void TFmtCompoundNode::AddTail(TFmtNode* node) {
  if (!node) return;
  // 1. A plain list being added dissolves into this one.
  if (TFmtCompoundNode* pure = node->IsPureCompoundNode()) {
    while (TFmtNode* child = pure->RemoveHead()) AddTail(child);
    delete pure;
    return;
  }
  // 2. The first child comes as it is.
  if (m_Children.IsEmpty()) {
    m_Children.AddTail(node);
    return;
  }
  TFmtNode* tail = Node(m_Children.GetTail());
  // 3. A script binds to the atom before it.
  if (TFmtScriptedNode* scripted = node->IsScriptedNode()) {
    if (TFmtScriptedNode* previous = tail->IsScriptedNode()) {
      m_Children.RemoveTail();
      // The parts that the earlier node lacks move over to it.
      if (previous->Get_Subscript()->IsEmpty() && !scripted->Get_Subscript()->IsEmpty())
        previous->SetSubscript(scripted->ReleaseSubscript());
      if (previous->Get_Superscript()->IsEmpty() && !scripted->Get_Superscript()->IsEmpty())
        previous->SetSuperscript(scripted->ReleaseSuperscript());
      if (scripted->Get_Nucleus()->IsEmpty() && scripted->Get_Subscript()->IsEmpty() &&
          scripted->Get_Superscript()->IsEmpty()) {
        // All of the new node moved: the earlier one is the merged whole.
        m_Children.AddTail(previous);
        delete scripted;
        return;
      }
      if (scripted->Get_Nucleus()->IsEmpty()) {
        // A part given twice (x^2^3): the earlier node is the nucleus of the
        // later one, so nothing is lost and it prints back as {x^2}^3.
        scripted->SetNucleus(previous);
        m_Children.AddTail(scripted);
        return;
      }
      m_Children.AddTail(previous);
      m_Children.AddTail(scripted);
      return;
    }
    if (tail->IsCollectingOverNode()) {
      static_cast<TFmtOverNode*>(tail)->Get_Bottom()->AddTail(scripted);
      return;
    }
    if (scripted->Get_Nucleus()->IsEmpty()) {
      m_Children.RemoveTail();
      scripted->SetNucleus(tail);
    }
    m_Children.AddTail(scripted);
    return;
  }
  // 4. \over and its kin take what stood before them as their top.
  if (node->IsCollectingOverNode()) {
    auto* over = static_cast<TFmtOverNode*>(node);
    while (TFmtNode* child = RemoveTail()) over->Get_Top()->AddHead(child);
    m_Children.AddTail(over);
    return;
  }
  // 5. ... and what follows as their bottom.
  if (tail->IsCollectingOverNode()) {
    static_cast<TFmtOverNode*>(tail)->Get_Bottom()->AddTail(node);
    return;
  }
  m_Children.AddTail(node);
}

TFmtNode* TFmtCompoundNode::MakeNodeFromToken(TTexToken* token) {
  if (token->IsCharacter()) return new TFmtCharacterNode(*token);
  if (token->IsControlCharacter()) return new TFmtControlCharacterNode(*token);
  if (token->GetControlSequence()) return new TFmtControlSequenceNode(*token);
  if (token->GetSequence()) return new TFmtSequenceNode(*token);
  return nullptr;
}

TFmtNode* TFmtCompoundNode::ParseTexWithTests(TTexTokenSource& source, int& bDone, int data,
                                              TParseTest characterTest, TParseTest controlCharacterTest,
                                              TParseTest controlSequenceTest, TParseTest sequenceTest) {
  TFmtNode* result = nullptr;
  int done = 0;
  while (!done) {
    std::unique_ptr<TTexToken> token(source.NextToken(0, 1));
    if (!token) break;
    TParseTest test = nullptr;
    if (token->IsCharacter()) test = characterTest;
    else if (token->IsControlCharacter()) test = controlCharacterTest;
    else if (token->GetControlSequence()) test = controlSequenceTest;
    else if (token->GetSequence()) test = sequenceTest;
    else continue;  // a token of no node kind (a macro's own token) makes nothing
    ParseTestResult answer = test ? test(token.get(), data, source) : k_ParseTest_MakeNode;
    TFmtNode* node = nullptr;
    switch (answer) {
      case k_ParseTest_Stop: done = 1; break;
      case k_ParseTest_StopAndPutBack:
        source.PutBack(token->Copy());
        done = 1;
        break;
      case k_ParseTest_MakeNode: node = MakeNodeFromToken(token.get()); break;
      case k_ParseTest_Skip: break;
    }
    if (done) {
      result = this;
      bDone = 1;
      break;
    }
    if (!node) continue;
    TFmtNode* answerNode = node;
    {
      TParseDepthGuard guard(source);
      if (guard.Entered()) answerNode = ParseFreshNode(node, source);
    }
    if (answerNode) AddTail(answerNode);
  }
  return result ? result : this;
}

TFmtNode* TFmtCompoundNode::ParseTex(TTexTokenSource& source) {
  int done = 0;
  return ParseTexWithTests(source, done, 0, nullptr, nullptr, nullptr, nullptr);
}

void TFmtCompoundNode::PrintTex(CString& out, int& column) const {
  for (CObject* o : m_Children) Node(o)->PrintTex(out, column);
}

void TFmtCompoundNode::SimplyStringify(CString& out) {
  for (CObject* o : m_Children) Node(o)->SimplyStringify(out);
}

void TFmtCompoundNode::MustRecomputeExtent() {
  for (CObject* o : m_Children) Node(o)->MustRecomputeExtent();
}

void TFmtCompoundNode::ResetFmtExtentForReflowables() {
  m_pExtent->Reset(0, 0, 0);
  for (CObject* o : m_Children) Node(o)->ResetFmtExtentForReflowables();
}

void TFmtCompoundNode::Select(CNodeRect& rect) {
  for (CObject* o : m_Children) Node(o)->Select(rect);
}

TFmtNode* TFmtCompoundNode::Select(CPoint& point) {
  for (CObject* o : m_Children) {
    TFmtNode* child = Node(o);
    if (child->IsPointInExtentRectangle(point)) {
      TFmtNode* inner = child->Select(point);
      return inner ? inner : child;
    }
  }
  return nullptr;
}

TFmtExtent* TFmtCompoundNode::Compose(TFmtContext& context) {
  m_pExtent->Reset(0, 0, 0);
  int x = m_Position.x;
  const int y = m_Position.y;
  int atStart = 1;
  for (CObject* o : m_Children) {
    TFmtNode* child = Node(o);
    if (TFmtCharacterNode* c = child->IsCharacterNode()) {
      // Signs at the start of a list and after a sign or an opening bracket
      // are unary, which decides their spacing in math.
      if (atStart && (c->Get_Character() == '+' || c->Get_Character() == '-')) c->Set_NoExtraSpace(1);
      atStart = 0;
      if (std::strchr("+-([", c->Get_Character()) && c->Get_Character()) atStart = 1;
    } else {
      atStart = child->IsControlCharacterNode('{') ? 1 : 0;
    }
    child->m_Position = CPoint(x, y);
    TFmtExtent* e = child->Compose(context);
    if (!e) e = child->m_pExtent.get();
    x += e->m_nWidth;
    m_pExtent->m_nWidth += e->m_nWidth;
    m_pExtent->MaxHeight(e->m_nHeight);
    m_pExtent->MaxDepth(e->m_nDepth);
  }
  return m_pExtent.get();
}

void TFmtCompoundNode::Draw(TFmtContext& context) {
  DrawSelectionBackground(context);
  SetSelectionForeground(context);
  int x = m_Position.x;
  const int y = m_Position.y;
  for (CObject* o : m_Children) {
    TFmtNode* child = Node(o);
    child->m_Position = CPoint(x, y);
    child->Draw(context);
    x += child->m_pExtent->m_nWidth;
  }
  UnsetSelectionForeground(context);
}

int TFmtCompoundNode::FindCaretPosition(CPoint& point, CObList& path) {
  path.AddTail(this);
  const int inside = IsPointInExtentRectangle(point);
  for (CObject* o : m_Children)
    if (Node(o)->FindCaretPosition(point, path)) return 1;
  if (inside) return 1;
  path.RemoveTail();
  return 0;
}

int TFmtCompoundNode::FindFirstCaretPosition(CObList& path) {
  path.AddTail(this);
  for (CObject* o : m_Children)
    if (Node(o)->FindFirstCaretPosition(path)) return 1;
  return 1;
}

int TFmtCompoundNode::FindLastCaretPosition(CObList& path) {
  path.AddTail(this);
  for (auto it = m_Children.end(); it != m_Children.begin();) {
    --it;
    if (Node(*it)->FindLastCaretPosition(path)) return 1;
  }
  return 1;
}

int TFmtCompoundNode::FindNextCaretPositionInt(CObList& path, TFmtNode* from) {
  bool started = from == nullptr;
  for (CObject* o : m_Children) {
    if (!started) {
      started = Node(o) == from;
      continue;
    }
    if (Node(o)->FindFirstCaretPosition(path)) return 1;
  }
  return 0;
}

int TFmtCompoundNode::FindPrevCaretPositionInt(CObList& path, TFmtNode* from) {
  TFmtNode* candidate = nullptr;
  for (CObject* o : m_Children) {
    if (Node(o) == from) break;
    candidate = Node(o);
  }
  if (from && !OwnerOf(from)) return 0;
  return candidate ? candidate->FindLastCaretPosition(path) : 0;
}

// ---- TFmtGroupNode --------------------------------------------------------------

ParseTestResult TFmtGroupNode::CharacterTokenTest(TTexToken* token, int, TTexTokenSource&) {
  return token->IsCharacter('}') ? k_ParseTest_Stop : k_ParseTest_MakeNode;
}

TFmtNode* TFmtGroupNode::ParseTex(TTexTokenSource& source) {
  int done = 0;
  TFmtNode* result = ParseTexWithTests(source, done, 0, CharacterTokenTest, nullptr, nullptr, nullptr);
  if (!done) source.Error(25022u);
  return result;
}

void TFmtGroupNode::PrintTex(CString& out, int& column) const {
  out += '{';
  ++column;
  TFmtCompoundNode::PrintTex(out, column);
  out += '}';
  ++column;
}

TFmtExtent* TFmtGroupNode::Compose(TFmtContext& context) {
  context.PushGroupState();
  TFmtCompoundNode::Compose(context);
  context.PopGroupState();
  return m_pExtent.get();
}

void TFmtGroupNode::Draw(TFmtContext& context) {
  if (!IsDrawRequired(context)) return;
  context.PushGroupState();
  TFmtCompoundNode::Draw(context);
  context.PopGroupState();
}

TFmtNode* TFmtGroupNode::Groupify(TFmtNode* node) {
  if (!node) return new TFmtGroupNode;
  if (node->IsGroupNode()) return node;
  if (TFmtCompoundNode* pure = node->IsPureCompoundNode()) {
    pure->AddHead(new TFmtControlSequenceNode(TGlobalString::g_pBEGINGROUP));
    pure->AddTailSimple(new TFmtControlSequenceNode(TGlobalString::g_pENDGROUP));
    return pure;
  }
  auto* group = new TFmtGroupNode;
  group->AddTailSimple(node);
  return group;
}

// ---- TFmtGenericArgumentedNode --------------------------------------------------

TFmtGenericArgumentedNode::TFmtGenericArgumentedNode(const char* name)
    : m_pName(name ? name : TStringPool::g_pGlobal->Put("")), m_pArguments(std::make_unique<TFmtCompoundNode>()) {
  if (TStringPool::g_pGlobal->GetBoolean(m_pName, TGlobalString::g_pALWAYSDRAW)) m_bDrawAlways = 1;
}

TFmtGenericArgumentedNode::TFmtGenericArgumentedNode(const TFmtGenericArgumentedNode& other)
    : TFmtNode(other),
      m_nPrintedArguments(other.m_nPrintedArguments),
      m_nHandlerData0(other.m_nHandlerData0),
      m_nHandlerData1(other.m_nHandlerData1),
      m_nHandlerData2(other.m_nHandlerData2),
      m_pName(other.m_pName),
      m_nArgumentCount(other.m_nArgumentCount),
      m_pArguments(static_cast<TFmtCompoundNode*>(other.m_pArguments->Copy())),
      m_nOptionalMask(other.m_nOptionalMask),
      m_nBareMask(other.m_nBareMask) {}

TFmtGenericArgumentedNode::~TFmtGenericArgumentedNode() = default;

void TFmtGenericArgumentedNode::AddArgument(TFmtNode* node, int bOptional) {
  if (!node) node = new TFmtCompoundNode;
  const int index = m_pArguments->GetCount();
  if (bOptional && index < 32) m_nOptionalMask |= 1u << index;
  ++m_nArgumentCount;
  // Simple add: an argument is one child, whatever its class.
  m_pArguments->AddTailSimple(node);
}

void TFmtGenericArgumentedNode::AddArgumentAtFront(TFmtNode* node) {
  if (!node) node = new TFmtCompoundNode;
  ++m_nArgumentCount;
  m_nOptionalMask <<= 1;
  m_pArguments->AddHead(node);
}

void TFmtGenericArgumentedNode::RemoveFirstArgument(int bDelete) {
  TFmtNode* head = m_pArguments->RemoveHead();
  if (!head) return;
  if (bDelete) delete head;
  --m_nArgumentCount;
  m_nOptionalMask >>= 1;
}

void TFmtGenericArgumentedNode::ReplaceFirstArgument(TFmtNode* node) {
  if (!node) node = new TFmtCompoundNode;
  delete m_pArguments->RemoveHead();
  m_pArguments->AddHead(node);
}

int TFmtGenericArgumentedNode::IsOptionalArgument(int n) const {
  return n >= 1 && n <= 32 && (m_nOptionalMask >> (n - 1) & 1u);
}

void TFmtGenericArgumentedNode::ApplyRecursively(void (*f)(TFmtNode*)) {
  f(this);
  m_pArguments->ApplyRecursively(f);
}
void TFmtGenericArgumentedNode::ApplyRecursively(void (*f)(TFmtNode*, void*), void* a) {
  f(this, a);
  m_pArguments->ApplyRecursively(f, a);
}
void TFmtGenericArgumentedNode::ApplyRecursively(void (*f)(TFmtNode*, void*, void*), void* a, void* b) {
  f(this, a, b);
  m_pArguments->ApplyRecursively(f, a, b);
}

int TFmtGenericArgumentedNode::FindCaretPosition(CPoint& point, CObList& path) {
  return m_pArguments->FindCaretPosition(point, path);
}
int TFmtGenericArgumentedNode::FindFirstCaretPosition(CObList& path) { return m_pArguments->FindFirstCaretPosition(path); }
int TFmtGenericArgumentedNode::FindLastCaretPosition(CObList& path) { return m_pArguments->FindLastCaretPosition(path); }
void TFmtGenericArgumentedNode::ResetFmtExtentForReflowables() {
  m_pExtent->Reset(0, 0, 0);
  m_pArguments->ResetFmtExtentForReflowables();
}
void TFmtGenericArgumentedNode::Select(CNodeRect& rect) { m_pArguments->Select(rect); }
TFmtNode* TFmtGenericArgumentedNode::Select(CPoint& point) { return m_pArguments->Select(point); }

int TFmtGenericArgumentedNode::GoesAnywhere() const {
  return TStringPool::g_pGlobal->GetBoolean(m_pName, TGlobalString::g_pGOESANYWHERE);
}
int TFmtGenericArgumentedNode::GoesOnVerticalList() const {
  return TStringPool::g_pGlobal->GetBoolean(m_pName, TGlobalString::g_pVERTICALLIST);
}

void TFmtGenericArgumentedNode::Description(CString& out) {
  out = "\\";
  out += m_pName;
  out += " expression";
}

namespace {
bool NameIs(const char* name, const char* text) { return std::strcmp(name, text) == 0; }

void PlainText(TFmtNode* node, CString& out) {
  out.Empty();
  if (node) node->SimplyStringify(out);
}
}  // namespace

int TFmtGenericArgumentedNode::HasTransientStatusMessage() {
  return NameIs(m_pName, "statusLineAction") || NameIs(m_pName, "tipStatusAction");
}
int TFmtGenericArgumentedNode::HasTransientToolTip() {
  return NameIs(m_pName, "toolTipAction") || NameIs(m_pName, "tipStatusAction");
}
int TFmtGenericArgumentedNode::GetTransientStatusMessage(CString& out) {
  if (NameIs(m_pName, "statusLineAction")) PlainText(GetArgument(1), out);
  else if (NameIs(m_pName, "tipStatusAction")) PlainText(GetArgument(2), out);
  else return 0;
  return 1;
}
int TFmtGenericArgumentedNode::GetTransientToolTip(CString& out) {
  if (!HasTransientToolTip()) return 0;
  PlainText(GetArgument(1), out);
  return 1;
}

void TFmtGenericArgumentedNode::SimplyStringify(CString& out) {
  if (NameIs(m_pName, "color") || NameIs(m_pName, "hphantom") || NameIs(m_pName, "phantom") ||
      NameIs(m_pName, "vphantom"))
    return;
  CString text;
  m_pArguments->SimplyStringify(text);
  if (NameIs(m_pName, "lowercase") || NameIs(m_pName, "uppercase")) {
    const bool upper = m_pName[0] == 'u';
    for (int i = 0; i < text.GetLength(); ++i) {
      const auto c = static_cast<unsigned char>(text[i]);
      out += static_cast<char>(upper ? std::toupper(c) : std::tolower(c));
    }
    return;
  }
  out += text;
}

void TFmtGenericArgumentedNode::PrintTex(CString& out, int& column) const {
  if (m_pName == TGlobalString::g_pverb) {
    // The text is one raw argument: printed between delimiters it holds not.
    CString text;
    if (TFmtNode* argument = GetArgument(1)) argument->SimplyStringify(text);
    PrintVerbTex(text, out, column, 0);
    return;
  }
  out += '\\';
  if (m_pName == TGlobalString::g_pACUTE) out += '\'';
  else if (m_pName == TGlobalString::g_pGRAVE) out += '`';
  else out += m_pName;
  column += 1 + static_cast<int>(std::strlen(m_pName));
  int n = 0;
  for (CObject* o : m_pArguments->Get_Children()) {
    if (m_nPrintedArguments >= 0 && n >= m_nPrintedArguments) break;
    ++n;
    TFmtNode* argument = Node(o);
    // An empty optional argument is as good as none, and reads back the same.
    if (n <= 32 && (m_nBareMask >> (n - 1) & 1u)) {
      out += ' ';
      ++column;
      argument->PrintTex(out, column);
      out += ' ';
      ++column;
    } else if (IsOptionalArgument(n)) {
      if (!argument->IsEmpty()) argument->PrintTexOptionalArgument(out, column);
    } else {
      argument->PrintTexArgument(out, column);
    }
    // \overset a \to b: the word that ended the first argument.
    if (n == 1 && (NameIs(m_pName, "overset") || NameIs(m_pName, "underset"))) {
      out += "\\to ";
      column += 4;
    }
  }
  // \item's text follows it; a blank keeps a following word from joining the name.
  if (n == 0 || m_pName == TGlobalString::g_pitem) {
    out += ' ';
    ++column;
  }
}

TFmtExtent* TFmtGenericArgumentedNode::Compose(TFmtContext& context) {
  m_pExtent->Reset(0, 0, 0);
  if (TFunctionProperty* handler = TStringPool::g_pGlobal->GetFunction(m_pName, TGlobalString::g_pEXTENT)) {
    if (!handler->IsNull()) {
      handler->Get_Handler()(this, m_nArgumentCount, context);
      return m_pExtent.get();
    }
  }
  // Not supported: the name itself stands in the text.
  const CSize size = context.GetTextExtent(m_pName, static_cast<int>(std::strlen(m_pName)));
  TExtendedFont* font = TExtendedFont::fg_pCurrent;
  m_pExtent->Reset(font ? font->Ascent(context) : size.cy, font ? font->Descent(context) : 0, size.cx);
  return m_pExtent.get();
}

void TFmtGenericArgumentedNode::Draw(TFmtContext& context) {
  if (!IsDrawRequired(context)) return;
  if (TFunctionProperty* handler = TStringPool::g_pGlobal->GetFunction(m_pName, TGlobalString::g_pDRAW)) {
    if (!handler->IsNull()) {
      handler->Get_Handler()(this, m_nArgumentCount, context);
      return;
    }
  }
  const CColorRef previous = context.SetTextColor(TFmtContext::fg_bAllowUseOfColor ? CColorRef(255, 0, 0, "red")
                                                                                 : CColorRef(0, 0, 0, "black"));
  context.TextOut(m_Position.x, m_Position.y, m_pName, static_cast<int>(std::strlen(m_pName)));
  context.SetTextColor(previous);
}
