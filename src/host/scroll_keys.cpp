#include "host/scroll_keys.h"

#include <Xm/Xm.h>
#include <X11/keysym.h>

namespace {
struct TScrollBinding {
  KeySym keysym;      // 0 for a wheel button
  unsigned button;    // the wheel's button, else 0
  int vertical;
  const char* action;  // of the scroll bar
  int repeat;
};

constexpr TScrollBinding kBindings[] = {
    {XK_Down, 0, 1, "IncrementDownOrRight", 1},
    {XK_Up, 0, 1, "IncrementUpOrLeft", 1},
    {XK_Right, 0, 0, "IncrementDownOrRight", 1},
    {XK_Left, 0, 0, "IncrementUpOrLeft", 1},
    {XK_KP_Down, 0, 1, "IncrementDownOrRight", 1},
    {XK_KP_Up, 0, 1, "IncrementUpOrLeft", 1},
    {XK_space, 0, 1, "PageDownOrRight", 1},
    {XK_BackSpace, 0, 1, "PageUpOrLeft", 1},
    {0, Button4, 1, "IncrementUpOrLeft", 3},
    {0, Button5, 1, "IncrementDownOrRight", 3},
    {0, 6, 0, "IncrementUpOrLeft", 3},
    {0, 7, 0, "IncrementDownOrRight", 3},
};

void OnScrollEvent(Widget, XtPointer client, XEvent* event, Boolean*) {
  auto main = static_cast<Widget>(client);
  const TScrollBinding* binding = nullptr;
  if (event->type == KeyPress) {
    KeySym keysym = XLookupKeysym(&event->xkey, 0);
    for (const TScrollBinding& b : kBindings)
      if (b.keysym && b.keysym == keysym) binding = &b;
  } else if (event->type == ButtonPress) {
    for (const TScrollBinding& b : kBindings)
      if (b.button && b.button == event->xbutton.button) binding = &b;
  }
  if (!binding) return;
  Widget bar = nullptr;
  XtVaGetValues(main, binding->vertical ? XmNverticalScrollBar : XmNhorizontalScrollBar, &bar, nullptr);
  // A bar that is not shown has nothing to scroll.
  if (!bar || !XtIsManaged(bar)) return;
  String parameter = const_cast<String>(binding->vertical ? "0" : "1");
  for (int i = 0; i < binding->repeat; ++i) XtCallActionProc(bar, binding->action, event, &parameter, 1);
}
}  // namespace

void AddScrollKeys(Widget main) {
  Widget clip = nullptr;
  XtVaGetValues(main, XmNclipWindow, &clip, nullptr);
  if (!clip) return;
  Display* display = XtDisplay(clip);
  for (const TScrollBinding& b : kBindings) {
    if (b.keysym) {
      const KeyCode code = XKeysymToKeycode(display, b.keysym);
      if (code) XtGrabKey(clip, code, AnyModifier, False, GrabModeAsync, GrabModeAsync);
    } else {
      XtGrabButton(clip, static_cast<int>(b.button), AnyModifier, False, ButtonPressMask, GrabModeAsync,
                   GrabModeAsync, None, None);
    }
  }
  XtAddEventHandler(clip, KeyPressMask | ButtonPressMask, False, OnScrollEvent, main);
}
