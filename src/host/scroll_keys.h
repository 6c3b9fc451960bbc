// The keys and the wheel that scroll a document with the pointer on it,
// besides the page keys the scrolled window has of its own: arrows step,
// space and BackSpace page, the wheel steps three times a notch. Each is a
// passive grab on the clip window that calls the scroll bar's own action, so
// a scroll looks to the view exactly like one made with the bar.
#pragma once

#include <X11/Intrinsic.h>

// main: the scrolled main window; its clip window takes the grabs.
void AddScrollKeys(Widget main);
