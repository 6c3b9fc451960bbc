// Commands whose reading has logic of its own: accents, quotes, labels,
// bibliography items, definitions made through text, and the like. Each
// still builds a generic argumented node unless it says otherwise.
#include <cstdio>
#include <ctime>
#include <memory>

#include "format/compound_node.h"
#include "format/document_node.h"
#include "format/leaf_nodes.h"
#include "math/math_node.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "format/unit_node.h"
#include "tex/arguments.h"
#include "tex/measure_args.h"
#include "tex/families/parser_tables.h"
#include "tex/token_source.h"
#include "tex/tokens.h"

namespace {
const char* Intern(const char* text) { return TStringPool::g_pGlobal->Put(text); }

TFmtGenericArgumentedNode* Generic(const char* name) { return new TFmtGenericArgumentedNode(name); }

CString Stringified(TFmtNode* node) {
  CString text;
  StringifyNode(node, text);
  return text;
}

// The accented argument, and the glyph to set over it when the symbol table
// has one (a blank otherwise). Only the argument prints back.
TFmtNode* ParseTex_ACCENT0(const char* name, const char* glyph, TFmtNode* argument) {
  TFmtGenericArgumentedNode* generic = Generic(name);
  generic->AddArgument(argument, 0);
  const char* canonical = Intern(glyph);
  if (TStringPool::g_pGlobal->GetFontIndex(canonical, TGlobalString::g_pTEXFONTINDEX))
    generic->AddArgument(new TFmtControlSequenceNode(canonical), 0);
  else
    generic->AddArgument(new TFmtCharacterNode(' '), 0);
  generic->m_nPrintedArguments = 1;
  return generic;
}

TFmtNode* ParseTex_ACCENT(const char* glyph, TFmtControlSequenceNode* node, TTexTokenSource& source) {
  return ParseTex_ACCENT0(node->Get_Name(), glyph, NextTexMacroArg(source, 1));
}

TFmtNode* ParseTex_acute(TFmtControlSequenceNode* n, TTexTokenSource& s) { return ParseTex_ACCENT("_acute", n, s); }
TFmtNode* ParseTex_dot(TFmtControlSequenceNode* n, TTexTokenSource& s) { return ParseTex_ACCENT("_dot", n, s); }
TFmtNode* ParseTex_ddot(TFmtControlSequenceNode* n, TTexTokenSource& s) { return ParseTex_ACCENT("_ddot", n, s); }
TFmtNode* ParseTex_grave(TFmtControlSequenceNode* n, TTexTokenSource& s) { return ParseTex_ACCENT("_grave", n, s); }
TFmtNode* ParseTex_H(TFmtControlSequenceNode* n, TTexTokenSource& s) { return ParseTex_ACCENT("_H", n, s); }
TFmtNode* ParseTex_hat(TFmtControlSequenceNode* n, TTexTokenSource& s) { return ParseTex_ACCENT("_hat", n, s); }
TFmtNode* ParseTex_tilde(TFmtControlSequenceNode* n, TTexTokenSource& s) { return ParseTex_ACCENT("_tilde", n, s); }
TFmtNode* ParseTex_ACUTE(TFmtControlSequenceNode* n, TTexTokenSource& s) { return ParseTex_ACCENT("_acute", n, s); }
TFmtNode* ParseTex_GRAVE(TFmtControlSequenceNode* n, TTexTokenSource& s) { return ParseTex_ACCENT("_grave", n, s); }

// \"a is the symbol named "a (the symbol table resolves it if it can).
TFmtNode* ParseTex_CS_DOUBLEQUOTE(TFmtControlSequenceNode*, TTexTokenSource& source) {
  TFmtNode* argument = NextTexMacroArg(source, 1);
  const CString text = Stringified(argument);
  if (text.GetLength() == 1) {
    delete argument;
    const char name[3] = {'"', text[0], '\0'};
    return new TFmtControlSequenceNode(Intern(name));
  }
  auto* compound = new TFmtCompoundNode;
  compound->AddTailSimple(new TFmtControlSequenceNode(TGlobalString::g_pCS_DOUBLEQUOTE));
  compound->AddTailSimple(argument);
  return compound;
}

TFmtNode* ParseTex_bibitem(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  if (TFmtNode* label = NextTexOptionalMacroArg(source, 1)) {
    generic->AddArgument(label, 1);
  } else {
    const int number = source.NextBibItemNumber();
    char text[16];
    std::snprintf(text, sizeof text, "%d", number);
    // The number is the source's own: it does not print back.
    generic->AddArgument(number < 10 ? static_cast<TFmtNode*>(new TFmtCharacterNode(text[0]))
                                     : new TFmtSequenceNode(text),
                         1);
  }
  generic->AddArgument(NextTexMacroRawArg(source), 0);
  generic->Set_ArgumentCount(2);
  source.SetState(TTexTokenSource::kSkipBlanks);
  return generic;
}

TFmtNode* ParseTex_cite(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  TFmtNode* note = NextTexOptionalMacroArg(source, 1);
  generic->AddArgument(note ? note : new TFmtCompoundNode, note != nullptr);
  generic->AddArgument(NextTexMacroRawArg(source), 0);
  return generic;
}

TFmtNode* ParseTex_DeclareMathOperator(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  TFmtNode* name = NextTexMacroRawArg(source);
  TFmtNode* text = NextTexMacroRawArg(source);
  CString definition;
  definition.Format("\\def%s{{\\mathop{\\mbox{\\rm %s}}}}", Stringified(name).c_str(), Stringified(text).c_str());
  generic->AddArgument(name, 0);
  generic->AddArgument(text, 0);
  delete ParseTexFromString(definition);
  return generic;
}

TFmtNode* ParseTex_errmessage(TFmtControlSequenceNode*, TTexTokenSource& source) {
  std::unique_ptr<TFmtNode> argument(NextTexMacroRawArg(source));
  source.Error(Stringified(argument.get()).c_str());
  return new TFmtGroupNode;
}

TFmtNode* ParseTex_ensuremath(TFmtControlSequenceNode*, TTexTokenSource& source) {
  if (source.Get_MathMode()) return NextTexMacroArg(source, 1);
  auto* formula = new TFmtMathNode;
  formula->AddTail(NextTexMacroArg(source, 1));
  return formula;
}

// One argument read as text, whatever mode the source is in.
TFmtNode* TextArgument(TTexTokenSource& source) {
  const int saved = source.Get_MathMode();
  source.Set_MathMode(0);
  TFmtNode* argument = NextTexMacroArg(source, 1);
  source.Set_MathMode(saved);
  return argument;
}

TFmtNode* ParseTex_mbox(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  generic->AddArgument(TextArgument(source), 0);
  return generic;
}

// \hbox to 3cm{...} and \hbox spread 1em{...}: the word and the measure come
// first; the text is text whatever mode surrounds it.
TFmtNode* ParseTex_hbox(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  if (TTexToken* token = source.NextToken(1, 1)) {
    if (token->IsSequence(TGlobalString::g_pto) || token->IsSequence(TGlobalString::g_pspread)) {
      generic->AddArgument(new TFmtSequenceNode(token->GetSequence()), 0);
      generic->SetBareArgument(1);
      generic->AddArgument(NextTexMeasureArg(source), 0);
      generic->SetBareArgument(2);
      delete token;
    } else {
      source.PutBack(token);
    }
  }
  generic->AddArgument(TextArgument(source), 0);
  return generic;
}

// \makebox[width][position]{text} and \framebox alike.
TFmtNode* ParseTex_makebox(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  if (TFmtNode* width = NextTexOptionalMeasureArg(source)) generic->AddArgument(width, 1);
  if (TFmtNode* position = NextTexOptionalMacroArg(source, 1)) generic->AddArgument(position, 1);
  generic->AddArgument(TextArgument(source), 0);
  return generic;
}

// \putat{x}{y}{text}: two measures and the text.
TFmtNode* ParseTex_putat(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  generic->AddArgument(NextTexMeasureArg(source), 0);
  generic->AddArgument(NextTexMeasureArg(source), 0);
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  return generic;
}

// \raisebox{lift}[height][depth]{text}.
TFmtNode* ParseTex_raisebox(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  generic->AddArgument(NextTexMeasureArg(source), 0);
  if (TFmtNode* height = NextTexOptionalMeasureArg(source)) {
    generic->AddArgument(height, 1);
    if (TFmtNode* depth = NextTexOptionalMeasureArg(source)) generic->AddArgument(depth, 1);
  }
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  return generic;
}

TFmtNode* ParseTex_item(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  source.SetState(TTexTokenSource::kSkipBlanks);
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  if (TFmtNode* label = NextTexOptionalMacroArg(source, 1)) generic->AddArgument(label, 1);
  // An item without text still gets a line's height.
  auto* compound = new TFmtCompoundNode;
  compound->AddTailSimple(generic);
  compound->AddTailSimple(new TFmtControlSequenceNode(TGlobalString::g_pSECRETSTRUT));
  return compound;
}

TFmtNode* ParseTex_label(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  std::unique_ptr<TFmtNode> argument(NextTexMacroArg(source, 1));
  CString text = Stringified(argument.get());
  if (text.IsEmpty()) text = "_illegal_label_or_link_target";
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  generic->AddArgument(new TFmtSequenceNode(text), 0);
  return generic;
}

// \let\a=\b is read and kept, and defines nothing: \def is for that.
TFmtNode* ParseTex_let(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  if (TTexToken* token = source.NextToken(1, 1)) {
    if (token->IsCharacter('=')) delete token;
    else source.PutBack(token);
  }
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  return generic;
}

TFmtNode* ParseTex_newtheorem(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  TFmtNode* name = NextTexMacroArg(source, 1);
  generic->AddArgument(name, 0);
  if (TFmtNode* counter = NextTexOptionalMacroArg(source, 1)) generic->AddArgument(counter, 1);
  TFmtNode* title = NextTexMacroArg(source, 1);
  generic->AddArgument(title, 0);
  if (TFmtNode* counter = NextTexOptionalMacroArg(source, 1)) generic->AddArgument(counter, 1);
  const CString nameText = Stringified(name);
  const CString titleText = Stringified(title);
  CString begin = "\\def\\begin";
  begin += nameText;
  begin += "{\\par{\\bf ";
  begin += titleText;
  begin += ".}\\quad\\bgroup\\it";
  delete ParseTexFromString(begin);
  CString end = "\\def\\end";
  end += nameText;
  end += "{\\egroup\\par}";
  delete ParseTexFromString(end);
  return generic;
}

TFmtNode* ParseTex_rgb(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  auto* generic = static_cast<TFmtGenericArgumentedNode*>(ParseTex_3_ARG(node, source));
  const CString red = Stringified(generic->GetArgument(1));
  const CString green = Stringified(generic->GetArgument(2));
  const CString blue = Stringified(generic->GetArgument(3));
  CString name = red;
  name += green;
  name += blue;
  auto component = [](const CString& text) {
    const long value = NumberStringValue(text);
    return static_cast<unsigned char>(value < 0 ? 0 : value > 255 ? 255 : value);
  };
  PutColorProperty(name, CColorRef(component(red), component(green), component(blue), ""));
  return generic;
}

TFmtNode* ParseTex_setstyle(TFmtControlSequenceNode*, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(Intern("setstyle"));
  // Read as an ordinary argument, so printed as one: brackets would not read back.
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  return generic;
}

TFmtNode* ParseTex_symbol(TFmtControlSequenceNode*, TTexTokenSource& source) {
  std::unique_ptr<TFmtNode> argument(NextTexMacroRawArg(source));
  char name[32];
  std::snprintf(name, sizeof name, "symbol%ld", NumberStringValue(Stringified(argument.get())));
  return new TFmtControlSequenceNode(Intern(name));
}

TFmtNode* ParseTex_today(TFmtControlSequenceNode* node, TTexTokenSource&) {
  static const char* const months[] = {"January", "February", "March",     "April",   "May",      "June",
                                       "July",    "August",   "September", "October", "November", "December"};
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[64];
  std::snprintf(text, sizeof text, "%s %d, %d", months[local.tm_mon % 12], local.tm_mday, local.tm_year + 1900);
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  generic->AddArgument(new TFmtSequenceNode(text), 0);
  generic->m_nPrintedArguments = 0;  // the date is the day's, not the source's
  return generic;
}

// \overset a \to b: arguments up to \to are the script.
TFmtNode* ParseTex_underOverset(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  auto* script = new TFmtCompoundNode;
  for (;;) {
    TTexToken* next = source.NextToken(1, 1);
    if (!next) break;  // no \to before the end of input
    source.PutBack(next);
    TFmtNode* argument = NextTexMacroArg(source, 1);
    if (argument->IsControlSequence(TGlobalString::g_pto)) {
      delete argument;
      break;
    }
    script->AddTail(argument);
  }
  generic->AddArgument(script, 0);
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  return generic;
}

// The command keeps its argument, and the document, when the source has one,
// a copy of it for the title page.
TFmtNode* ParseTex_titleLike(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  const char* name = node->Get_Name();
  const char* title = Intern("title");
  TFmtGenericArgumentedNode* generic = Generic(name);
  if (name == title)
    if (TFmtNode* optional = NextTexOptionalMacroArg(source, 1)) generic->AddArgument(optional, 1);
  generic->AddArgument(NextTexMacroArg(source, 1), 0);
  if (TFmtDocumentNode* document = source.Get_DocumentNode()) {
    TFmtNode* text = generic->Get_Arguments()->GetTail();
    if (name == title) document->Set_Title(text->Copy());
    else if (name == Intern("author")) document->Set_Author(text->Copy());
    else if (name == Intern("date")) document->Set_Date(text->Copy());
  }
  return generic;
}

TFmtNode* ParseTex_maketitle(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  if (TFmtDocumentNode* document = source.Get_DocumentNode()) document->SetMakeTitle(1);
  return node;
}

TFmtNode* ParseTex_windowTitle(TFmtControlSequenceNode* node, TTexTokenSource& source) {
  std::unique_ptr<TFmtNode> argument(NextTexMacroArg(source, 1));
  CString text = Stringified(argument.get());
  if (text.IsEmpty()) text = "<INVALID TITLE TEXT>";
  TFmtGenericArgumentedNode* generic = Generic(node->Get_Name());
  generic->AddArgument(new TFmtSequenceNode(text), 0);
  return generic;
}

constexpr TCsParserEntry fg_TextCommands[] = {
    // name                 parser
    {"\"", ParseTex_CS_DOUBLEQUOTE},
    {"_ACUTE", ParseTex_ACUTE},
    {"_GRAVE", ParseTex_GRAVE},
    {"acute", ParseTex_acute},
    {"ddot", ParseTex_ddot},
    {"dot", ParseTex_dot},
    {"grave", ParseTex_grave},
    {"H", ParseTex_H},
    {"hat", ParseTex_hat},
    {"widehat", ParseTex_hat},
    {"tilde", ParseTex_tilde},
    {"widetilde", ParseTex_tilde},
    {"author", ParseTex_titleLike},
    {"bibitem", ParseTex_bibitem},
    {"boxed", ParseTex_mbox},
    {"cite", ParseTex_cite},
    {"date", ParseTex_titleLike},
    {"DeclareMathOperator", ParseTex_DeclareMathOperator},
    {"ensuremath", ParseTex_ensuremath},
    {"errmessage", ParseTex_errmessage},
    {"framebox", ParseTex_makebox},
    {"makebox", ParseTex_makebox},
    {"hbox", ParseTex_hbox},
    {"putat", ParseTex_putat},
    {"raisebox", ParseTex_raisebox},
    {"item", ParseTex_item},
    {"label", ParseTex_label},
    {"linkTarget", ParseTex_label},
    {"let", ParseTex_let},
    {"maketitle", ParseTex_maketitle},
    {"mbox", ParseTex_mbox},
    {"text", ParseTex_mbox},
    {"newtheorem", ParseTex_newtheorem},
    {"overset", ParseTex_underOverset},
    {"underset", ParseTex_underOverset},
    {"rgb", ParseTex_rgb},
    {"setstyle", ParseTex_setstyle},
    {"symbol", ParseTex_symbol},
    {"title", ParseTex_titleLike},
    {"today", ParseTex_today},
    {"windowTitle", ParseTex_windowTitle},
};
}  // namespace

std::span<const TCsParserEntry> TextCommandParserTable() { return fg_TextCommands; }
