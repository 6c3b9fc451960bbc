#include "support/x_windows.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>

#include <chrono>
#include <thread>

namespace ztest {
namespace {
int IgnoreErrors(Display*, XErrorEvent*) { return 0; }

void Search(Display* display, Window window, const std::string& title, std::vector<Window>* found) {
  char* name = nullptr;
  if (XFetchName(display, window, &name) && name) {
    if (title == name) found->push_back(window);
    XFree(name);
  }
  Window root, parent, *children = nullptr;
  unsigned count = 0;
  if (!XQueryTree(display, window, &root, &parent, &children, &count)) return;
  for (unsigned i = 0; i < count; ++i) Search(display, children[i], title, found);
  if (children) XFree(children);
}
}  // namespace

Window FindWindowByTitle(Display* display, const std::string& title, int timeoutMs) {
  // Windows of another client may vanish while the tree is walked.
  auto old = XSetErrorHandler(IgnoreErrors);
  auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  Window found = 0;
  for (;;) {
    std::vector<Window> all = FindWindowsByTitle(display, title);
    found = all.empty() ? 0 : all.front();
    if (found || std::chrono::steady_clock::now() >= end) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  XSync(display, False);
  XSetErrorHandler(old);
  return found;
}

std::vector<Window> FindWindowsByTitle(Display* display, const std::string& title) {
  auto old = XSetErrorHandler(IgnoreErrors);
  std::vector<Window> found;
  Search(display, DefaultRootWindow(display), title, &found);
  XSync(display, False);
  XSetErrorHandler(old);
  return found;
}

void SendDeleteWindow(Display* display, Window window) {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
  event.xclient.data.l[1] = CurrentTime;
  XSendEvent(display, window, False, NoEventMask, &event);
  XFlush(display);
}

std::vector<std::string> GetFontPath(Display* display) {
  int count = 0;
  char** path = XGetFontPath(display, &count);
  std::vector<std::string> result;
  for (int i = 0; i < count; ++i) result.emplace_back(path[i]);
  if (path) XFreeFontPath(path);
  return result;
}

bool WaitUnmapped(Display* display, Window window, int timeoutMs) {
  auto old = XSetErrorHandler(IgnoreErrors);
  auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  bool unmapped = false;
  for (;;) {
    XWindowAttributes attributes{};
    unmapped = !XGetWindowAttributes(display, window, &attributes) || attributes.map_state == IsUnmapped;
    if (unmapped || std::chrono::steady_clock::now() >= end) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  XSetErrorHandler(old);
  return unmapped;
}
void AppendFontDirectory(Display* display, const std::string& directory) {
  int count = 0;
  char** old = XGetFontPath(display, &count);
  std::vector<char*> path(old, old + count);
  std::string entry = directory;
  path.push_back(entry.data());
  XSetFontPath(display, path.data(), static_cast<int>(path.size()));
  XSync(display, False);
  if (old) XFreeFontPath(old);
}
bool WaitFor(const std::function<bool()>& condition, int timeoutMs) {
  auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  while (std::chrono::steady_clock::now() < end) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return condition();
}

std::vector<Window> Children(Display* display, Window window) {
  Window root, parent, *children = nullptr;
  unsigned count = 0;
  std::vector<Window> result;
  if (XQueryTree(display, window, &root, &parent, &children, &count)) {
    result.assign(children, children + count);
    if (children) XFree(children);
  }
  return result;
}

XWindowAttributes Attributes(Display* display, Window window) {
  XWindowAttributes attributes{};
  XGetWindowAttributes(display, window, &attributes);
  return attributes;
}

}  // namespace ztest
