#include "tex/arguments.h"

#include <memory>
#include <string>

#include "format/compound_node.h"
#include "format/leaf_nodes.h"
#include "format/parse_depth.h"
#include "framework/cstring.h"
#include "tex/token_source.h"
#include "tex/tokens.h"

namespace {
// A group's braces go, and with them its font and colour scope, which is
// right for an argument; a compound loses its leading blanks.
TFmtNode* Unwrap(TFmtNode* result) {
  if (TFmtGroupNode* group = result->IsPureGroupNode()) {
    group->RemoveLeadingWhiteSpace();
    TFmtNode* answer;
    if (group->IsSingleton()) {
      answer = group->RemoveHead();
    } else {
      auto* compound = new TFmtCompoundNode;
      while (TFmtNode* child = group->RemoveTail()) compound->AddHead(child);
      answer = compound;
    }
    delete group;
    return answer;
  }
  if (TFmtCompoundNode* compound = result->IsCompoundNode()) compound->RemoveLeadingWhiteSpace();
  return result;
}
}  // namespace

TFmtNode* NextTexMacroArg(TTexTokenSource& source, int expand) {
  std::unique_ptr<TTexToken> token(source.NextToken(1, expand));
  if (!token) return new TFmtCompoundNode;
  TFmtNode* node = nullptr;
  if (token->IsCharacter()) {
    node = new TFmtCharacterNode(*token);
  } else if (token->IsControlCharacter()) {
    node = new TFmtControlCharacterNode(*token);
  } else if (token->GetControlSequence()) {
    node = new TFmtControlSequenceNode(*token);
  } else if (const char* text = token->GetSequence()) {
    // An unbraced argument is one character of a word, as in TeX.
    if (!*text) return new TFmtCompoundNode;
    node = new TFmtCharacterNode(text[0]);
    source.PutBackRest(text);
  } else {
    return new TFmtCompoundNode;
  }
  token.reset();
  TFmtNode* result = node;
  {
    TParseDepthGuard guard(source);
    if (guard.Entered()) result = ParseFreshNode(node, source);
  }
  if (!result) return new TFmtCompoundNode;
  return Unwrap(result);
}

namespace {
ParseTestResult ClosingBracketTest(TTexToken* token, int, TTexTokenSource&) {
  return token->IsCharacter(']') ? k_ParseTest_Stop : k_ParseTest_MakeNode;
}
}  // namespace

TFmtNode* NextTexOptionalMacroArg(TTexTokenSource& source, int expand) {
  std::unique_ptr<TTexToken> token(source.NextToken(1, expand));
  if (!token) return nullptr;
  if (!token->IsCharacter('[')) {
    source.PutBack(token.release());
    return nullptr;
  }
  auto* compound = new TFmtCompoundNode;
  int done = 0;
  compound->ParseTexWithTests(source, done, 0, ClosingBracketTest, nullptr, nullptr, nullptr);
  source.SetState(TTexTokenSource::kSkipBlanks);
  if (compound->IsSingleton()) {
    TFmtNode* child = compound->RemoveHead();
    delete compound;
    return child;
  }
  return compound;
}

TFmtNode* NextTexMacroRawArg(TTexTokenSource& source) {
  const char* text = source.GetRawArgument();
  return new TFmtSequenceNode(text ? text : "");
}

TFmtNode* NextTexMacroRawArgObeyLines(TTexTokenSource& source) {
  const int old = source.ObeyLines(1);
  TFmtNode* result = NextTexMacroRawArg(source);
  source.ObeyLines(old);
  return result;
}

TFmtNode* NextTexIntegerArg(TTexTokenSource& source) {
  std::unique_ptr<TTexToken> token(source.NextToken(1, 1));
  if (!token) return new TFmtSequenceNode("");
  const bool negative = token->IsCharacter('-');
  if (!negative) source.PutBack(token.release());
  CString digits;
  source.NextPositiveInteger(digits);
  std::string text(negative ? 1 : 0, '-');
  text.append(digits.c_str());
  return new TFmtSequenceNode(text.c_str());
}

TFmtNode* ParseTexFromString(const char* text) {
  auto* compound = new TFmtCompoundNode;
  TFmtNode* result;
  {
    TTexTokenSource source(TTexTokenSource::fg_pInternalSourceName, text ? text : "");
    result = ParseFreshNode<TFmtNode>(compound, source);
  }
  if (result != compound) return result;
  if (compound->IsSingleton()) {
    TFmtNode* child = compound->RemoveHead();
    delete compound;
    return child;
  }
  return compound;
}

long NumberStringValue(const char* text) {
  if (!text) return 0;
  bool negative = false;
  if (*text == '-') {
    negative = true;
    ++text;
  }
  long base = 10;
  if (*text == '\'') {
    base = 8;
    ++text;
  } else if (*text == '"') {
    base = 16;
    ++text;
  }
  long value = 0;
  for (; *text; ++text) {
    long digit;
    const char c = *text;
    if (c >= '0' && c <= '9') digit = c - '0';
    else if (c >= 'a' && c <= 'f') digit = c - 'a' + 10;
    else break;
    // Stays within a character code's range however long the text.
    if (value > 0x7fffffffL / base) break;
    value = value * base + digit;
  }
  return negative ? -value : value;
}

void StringifyNode(TFmtNode* node, CString& out) {
  out.Empty();
  if (node) node->SimplyStringify(out);
}
