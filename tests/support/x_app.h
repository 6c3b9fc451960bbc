// One Xt application and top-level shell per test process. Motif keeps
// per-display caches that do not survive closing a display, so X tests share
// this one instead of opening and closing their own.
#pragma once

#include <X11/Intrinsic.h>

class CWnd;
class ZRServer;

namespace ztest {
struct XApp {
  XtAppContext app;
  Widget shell;  // realized, 100x100
  Display* display;
};
// Opens the display named by DISPLAY on first use; fails the test (and
// returns null) when there is none.
XApp* SharedXApp();
// Processes pending events until none are left.
void PumpXEvents();
// Puts the installation's fonts (ZEPHRIN_HOME/Fonts) on the test server's
// path; fails the test (and answers false) without the installation.
bool UseInstalledFonts(Display* display);
// A plain unmapped window of the screen and a GC on it, described to `wnd`
// as the drawing device needs it; DestroyDrawWindow undoes it.
void CreateDrawWindow(XApp* x, int width, int height, Window* window, GC* gc, CWnd* wnd);
void DestroyDrawWindow(Display* display, Window window, GC gc);
// The host's start-up as far as drawing needs it: the server knows this
// process and the screen's default visual and colormap, and the resources
// are set on it.
void SetUpHostResources(ZRServer& server, XApp* x);
}  // namespace ztest
