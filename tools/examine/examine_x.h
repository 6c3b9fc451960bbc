// The X start of the font and colour verbs: the host's resources (paths,
// the profile store's settings when there is one, colours, the font path as
// LoadFonts sets it) and an unmapped window whose context measures.
#pragma once

#include <X11/Intrinsic.h>

#include "device/context_xwin.h"
#include "framework/wnd.h"
#include "host/zr_server.h"

struct TInspectX {
  XtAppContext app = nullptr;
  Widget shell = nullptr;
  Display* display = nullptr;
  ZRServer server;
  CWnd window;
  TFmtContext_XWin context;
};

// False (after a line on stderr) when there is no display.
bool OpenInspectX(TInspectX* x, const char* verb);

// A whole decimal number, optionally signed; a long digit run saturates.
bool ParseInspectInt(const char* text, int* value);
