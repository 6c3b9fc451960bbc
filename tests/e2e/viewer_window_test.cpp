// zephrin-view on a screen: the host's widgets inside its drawing area, a
// resize of the window passed on, and the close that ends both.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <X11/Xlib.h>

#include <chrono>
#include <fstream>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/host_shim.h"
#include "support/paths.h"
#include "support/x_windows.h"

namespace fs = std::filesystem;

namespace {
using ztest::Attributes;
using ztest::Children;
using ztest::WaitFor;

// Depth first: the first window below `top` with a child of exactly this size
// that itself has children (the host's main window inside the drawing area).
Window FindHostMainWindow(Display* display, Window top, int width, int height) {
  for (Window child : Children(display, top)) {
    XWindowAttributes a = Attributes(display, child);
    if (a.width == width && a.height == height && !Children(display, child).empty() &&
        Children(display, top).size() >= 1) {
      // The drawing area of the viewer has exactly one child: the host's.
      std::vector<Window> inside = Children(display, child);
      if (inside.size() == 1 && Attributes(display, inside[0]).width == width) return inside[0];
    }
    if (Window found = FindHostMainWindow(display, child, width, height)) return found;
  }
  return 0;
}
}  // namespace

TEST(ViewerWindow, HostWidgetsFollowAResizeAndCloseEndsBoth) {
  std::string home = ztest::ScratchDir("home");
  fs::create_directories(fs::path(home) / ".zephrin" / "Cache");
  ztest::WriteFile(home + "/.zephrin/Cache/registry", "");
  std::string doc = ztest::ScratchDir("doc") + "/window.tex";
  ztest::WriteFile(doc, "A window.\n");
  std::string viewer = ztest::BuildPath("zephrin-view");
  // The host comes back to this process when the viewer ends: its exit can
  // be seen.
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  pid_t pid = fork();
  if (pid == 0) {
    setenv("HOME", home.c_str(), 1);
    execl(viewer.c_str(), viewer.c_str(), "--size", "300x200", doc.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  Display* display = XOpenDisplay(nullptr);
  ASSERT_NE(display, nullptr);
  Window shell = ztest::FindWindowByTitle(display, "zephrin-view: window.tex", 15000);
  ASSERT_NE(shell, 0u);
  Window hostMain = 0;
  EXPECT_TRUE(WaitFor([&] { return (hostMain = FindHostMainWindow(display, shell, 300, 200)) != 0; }, 15000))
      << "the host's widgets did not appear in the drawing area";

  pid_t host = 0;
  {
    std::ifstream children("/proc/" + std::to_string(pid) + "/task/" + std::to_string(pid) + "/children");
    children >> host;
  }
  ASSERT_GT(host, 0) << "the viewer has no child";

  // Wider and taller by 100: the drawing area takes all of it.
  XWindowAttributes before = Attributes(display, shell);
  XResizeWindow(display, shell, before.width + 100, before.height + 100);
  XSync(display, False);
  EXPECT_TRUE(WaitFor([&] { return FindHostMainWindow(display, shell, 400, 300) != 0; }, 15000))
      << "the host's widgets were not resized";

  ztest::SendDeleteWindow(display, shell);
  int status = 0;
  bool ended = WaitFor([&] { return waitpid(pid, &status, WNOHANG) == pid; }, 15000);
  if (!ended) {
    kill(pid, SIGKILL);
    waitpid(pid, &status, 0);
  }
  EXPECT_TRUE(ended);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  // The host ends with status 0 at its next tick once its parent has gone.
  int hostStatus = -1;
  EXPECT_TRUE(WaitFor([&] { return waitpid(host, &hostStatus, WNOHANG) == host; }, 5000));
  EXPECT_TRUE(WIFEXITED(hostStatus) && WEXITSTATUS(hostStatus) == 0);
  XCloseDisplay(display);
}
