// A tree as text, a node a line, indented by depth: for zephrin-inspect and
// for tests that compare trees.
#pragma once

#include "framework/cstring.h"

class TFmtNode;

// The class name of a node, as its kind tests and class tell it.
const char* NodeClassName(const TFmtNode* node);
// Each line: the part label if any, the class, then the character, text,
// name, glue kind or unit value of the node.
void DumpTree(const TFmtNode* node, CString& out);
