// Caches keyed by a Display pointer must forget it when the display closes:
// a later connection may get the same address, and on colormapped screens
// the closed client's colour cells are gone.
#pragma once

#include <X11/Xlib.h>

using DisplayCloseHook = void (*)(Display*);
// Runs `hook` once when `display` closes; registering it again is harmless.
void CallWhenDisplayCloses(Display* display, DisplayCloseHook hook);
