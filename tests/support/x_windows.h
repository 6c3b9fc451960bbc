// Looking at an X server from a test: windows by title, the font path.
#pragma once

#include <X11/Xlib.h>

#include <functional>
#include <string>
#include <vector>

namespace ztest {
// The first window (depth first from the root) whose WM_NAME is `title`,
// polled until `timeoutMs` has passed; 0 when there is none.
Window FindWindowByTitle(Display* display, const std::string& title, int timeoutMs);
// Every window whose WM_NAME is `title`, depth first from the root.
std::vector<Window> FindWindowsByTitle(Display* display, const std::string& title);
// Asks a window to close as a window manager would (WM_DELETE_WINDOW).
void SendDeleteWindow(Display* display, Window window);
std::vector<std::string> GetFontPath(Display* display);
// Puts a font directory at the end of the server's font path and waits until
// the server has taken it.
void AppendFontDirectory(Display* display, const std::string& directory);
// Waits until the window is unmapped (or gone); false after `timeoutMs`.
bool WaitUnmapped(Display* display, Window window, int timeoutMs);
// Polls every 20 ms until the condition holds; false after `timeoutMs`.
bool WaitFor(const std::function<bool()>& condition, int timeoutMs = 10000);
// The window's children, bottom first; empty for a window that is gone.
std::vector<Window> Children(Display* display, Window window);
// Zeros for a window that is gone.
XWindowAttributes Attributes(Display* display, Window window);
}  // namespace ztest
