// The commands that fill the document node or change the state that text is
// set in: labels, topic neighbours, the title and window title, the page
// colour, \begin{document}'s title page, the vertical skips, the sizes and
// faces, and the names that only stand in the source (\documentclass, \author
// and the like) and draw nothing.
#pragma once

#include <span>

#include "symbols/properties.h"

struct TDrawHandlerEntry {
  const char* name;
  TFmtHandlerFunction extent;
  TFmtHandlerFunction draw;
};

// The family's one table, for the registration and its test.
std::span<const TDrawHandlerEntry> DocumentHandlerTable();
// Puts _EXTENT and _DRAW on every name of the table.
void RegisterDocumentHandlers();
