// One Xt application and top-level shell per test process. Motif keeps
// per-display caches that do not survive closing a display, so X tests share
// this one instead of opening and closing their own.
#pragma once

#include <X11/Intrinsic.h>

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
}  // namespace ztest
