// The layout of a composed body as text, one row per element and per line,
// for zephrin-inspect layout and for tests that compare compositions:
//   width W
//   E k CLASS y h d w
//   L k.n KIND POS w h d adv |TEXT|
// KIND is soft, hard or end; POS the break's child index (for end the
// child count); TEXT the line's plain text with fill glue as [fill N].
#pragma once

#include "framework/cstring.h"

class TFmtNode;
class TFmtParagraphNode;
class TFmtVerticalListNode;

void DumpLayout(TFmtVerticalListNode* body, int width, CString& out);
// The rows of one paragraph's lines, numbered k.0, k.1, ...
void DumpLines(int k, TFmtParagraphNode* paragraph, CString& out);
// The node's C++ class name (the tree dump names only the classes it knows).
CString LayoutClassName(const TFmtNode* node);
