#include "framework/display_hooks.h"

#include <algorithm>
#include <map>
#include <vector>

// XESetCloseDisplay lives with the extension interface, whose header defines
// min and max as macros.
#include <X11/Xlibint.h>
#undef min
#undef max

namespace {
std::map<Display*, std::vector<DisplayCloseHook>>& Hooks() {
  static std::map<Display*, std::vector<DisplayCloseHook>> hooks;
  return hooks;
}

int OnCloseDisplay(Display* display, XExtCodes*) {
  auto found = Hooks().find(display);
  if (found == Hooks().end()) return 0;
  std::vector<DisplayCloseHook> hooks = std::move(found->second);
  Hooks().erase(found);
  for (DisplayCloseHook hook : hooks) hook(display);
  return 0;
}
}  // namespace

void CallWhenDisplayCloses(Display* display, DisplayCloseHook hook) {
  if (!display || !hook) return;
  std::vector<DisplayCloseHook>& hooks = Hooks()[display];
  if (hooks.empty()) {
    // A private extension record of this connection carries the close call.
    XExtCodes* codes = XAddExtension(display);
    if (codes) XESetCloseDisplay(display, codes->extension, OnCloseDisplay);
  }
  if (std::find(hooks.begin(), hooks.end(), hook) == hooks.end()) hooks.push_back(hook);
}
