// Reading one argument of a command as a node, and parsing a text whole.
// Every result is owned by the caller.
#pragma once

class TFmtNode;
class TTexTokenSource;

// One argument: a group without its braces, or one character of a word, or
// one token with its own arguments. An empty compound at the end of input.
TFmtNode* NextTexMacroArg(TTexTokenSource& source, int expand);
// "[...]" read to the closing bracket at depth 0, or null without "[".
TFmtNode* NextTexOptionalMacroArg(TTexTokenSource& source, int expand);
// One argument's text, unparsed, as a sequence node.
TFmtNode* NextTexMacroRawArg(TTexTokenSource& source);
TFmtNode* NextTexMacroRawArgObeyLines(TTexTokenSource& source);
// A signed integer as a sequence node ("" at the end of input).
TFmtNode* NextTexIntegerArg(TTexTokenSource& source);
// The whole text parsed against the global pool: definitions made in it hold
// for everything parsed later.
TFmtNode* ParseTexFromString(const char* text);
// Decimal, octal after "'", hexadecimal after "\"", with a leading "-".
long NumberStringValue(const char* text);
// The plain text of a node (its SimplyStringify).
void StringifyNode(TFmtNode* node, class CString& out);
