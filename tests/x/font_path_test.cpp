// The server's font path changed through Resource::SetFontPath, on a real X
// server with font directories of our own.
#include <gtest/gtest.h>

#include <X11/Xlib.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "host/resource.h"
#include "host/zr_server.h"
#include "support/paths.h"
#include "support/x_windows.h"

namespace fs = std::filesystem;

namespace {
using Path = std::vector<std::string>;

// A directory that the server accepts as a font directory: it has an index,
// which lists no font.
std::string FontDir(const std::string& base, const std::string& name) {
  std::string dir = base + "/" + name;
  fs::create_directories(dir);
  ztest::WriteFile(dir + "/fonts.dir", "0\n");
  return dir;
}

Path Join(Path a, const Path& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

class FontPath : public ::testing::Test {
 protected:
  void SetUp() override {
    display = XOpenDisplay(nullptr);
    ASSERT_NE(display, nullptr);
    int screen = DefaultScreen(display);
    server.SetEnv(getpid(), 1);
    server.SetGUI(nullptr, nullptr, display, screen, DefaultVisual(display, screen), DefaultDepth(display, screen),
                  255, 0, DefaultColormap(display, screen));
    resource = Resource::GetResourceObject();
    resource->SetResources(&server, nullptr);
    base = ztest::MakeTempDir("fontpath");
    a = FontDir(base, "a");
    b = FontDir(base, "b");
    c = FontDir(base, "c");
    original = ztest::GetFontPath(display);
  }
  void TearDown() override {
    if (display) {
      XSetFontPath(display, nullptr, 0);
      XCloseDisplay(display);
    }
    fs::remove_all(base);
  }
  // SetFontPath cuts its argument, so each call gets its own buffer.
  int Set(std::string path, int special, int prepend, int append) {
    return resource->SetFontPath(path.data(), special, prepend, append);
  }
  Path Now() { return ztest::GetFontPath(display); }

  Display* display = nullptr;
  ZRServer server;
  Resource* resource = nullptr;
  std::string base, a, b, c;
  Path original;
};
}  // namespace

TEST_F(FontPath, AppendPrependAndRemoveEditTheCurrentPath) {
  ASSERT_FALSE(original.empty());
  EXPECT_EQ(Set(a + "," + b, 0, 0, 1), 7);
  EXPECT_EQ(Now(), Join(original, {a, b}));
  EXPECT_EQ(Set(c, 0, 1, 0), 7);
  EXPECT_EQ(Now(), Join(Join({c}, original), {a, b}));
  EXPECT_EQ(Set(a + "," + c, 0, 0, -1), 7);
  EXPECT_EQ(Now(), Join(original, {b}));
  EXPECT_EQ(Set(c, 0, -1, 0), 11);  // not there: nothing removed
  EXPECT_EQ(Now(), Join(original, {b}));
}

TEST_F(FontPath, PlainReplaceDefaultAndRehash) {
  EXPECT_EQ(Set(a + "," + b, 0, 0, 0), 7);
  EXPECT_EQ(Now(), Path({a, b}));
  EXPECT_EQ(Set("rehash", 1, 0, 0), 7);
  EXPECT_EQ(Now(), Path({a, b}));
  EXPECT_EQ(Set("default", 1, 0, 0), 7);
  EXPECT_EQ(Now(), original);
}

TEST_F(FontPath, TheCallersTextIsCutAtItsCommas) {
  std::string text = a + "," + b;
  EXPECT_EQ(resource->SetFontPath(text.data(), 0, 0, 1), 7);
  EXPECT_EQ(std::string(text.c_str()), a);
  EXPECT_EQ(std::string(text.c_str() + a.size() + 1), b);
}

TEST_F(FontPath, ListsWithEmptyEntriesAreAnInternalError) {
  for (const std::string& bad : {"," + a, a + ",", a + ",," + b, std::string()}) {
    SCOPED_TRACE(bad);
    EXPECT_EQ(Set(bad, 0, 0, 1), 18);
    EXPECT_EQ(Now(), original);
  }
}

TEST_F(FontPath, ARefusedDirectoryIsSeenByTheErrorHandlerAfterARehash) {
  auto old = XSetErrorHandler(&ZRServer::XErrorHandler);
  resource->SetXError(0);
  // The request itself answers 7: the refusal comes back as an X error.
  EXPECT_EQ(Set(base + "/no-such-directory", 0, 0, 1), 7);
  EXPECT_EQ(Set("rehash", 1, 0, 0), 7);
  EXPECT_EQ(resource->GetXError(), 51);
  EXPECT_EQ(Now(), original);
  XSetErrorHandler(old);
}

TEST_F(FontPath, LoadFontsUndoesWhatTheServerRefused) {
  auto old = XSetErrorHandler(&ZRServer::XErrorHandler);
  // The installation directory of this test has no Fonts folder at all.
  ASSERT_EQ(setenv("ZEPHRIN_HOME", (base + "/nowhere").c_str(), 1), 0);
  server.SetEnv(getpid(), 1);
  resource->SetResources(&server, nullptr);
  XSetFontPath(display, nullptr, 0);
  std::string keep = a;
  Set(keep, 0, 0, 1);  // a change that "default" must undo
  EXPECT_EQ(server.LoadFonts(), 8);
  EXPECT_EQ(resource->GetXError(), 0);
  EXPECT_EQ(Now(), original);
  XSetErrorHandler(old);
}

TEST_F(FontPath, LoadFontsWithAnAcceptedDirectoryIsGoodAndAddsIt) {
  auto old = XSetErrorHandler(&ZRServer::XErrorHandler);
  std::string install = base + "/install";
  FontDir(install, "Fonts");
  ASSERT_EQ(setenv("ZEPHRIN_HOME", install.c_str(), 1), 0);
  server.SetEnv(getpid(), 1);
  resource->SetResources(&server, nullptr);
  EXPECT_EQ(server.CheckFontAvailability(), 0);
  EXPECT_EQ(server.LoadFonts(), 7);
  EXPECT_EQ(Now(), Join(original, {install + "/Fonts"}));
  XSetErrorHandler(old);
}

TEST_F(FontPath, TheTeamsFontsLoadOnceTheirDirectoryIsOnThePath) {
  const char* staged = std::getenv("ZEPHRIN_HOME");
  ASSERT_TRUE(staged && fs::exists(std::string(staged) + "/Fonts/fonts.dir"))
      << "the font build stages its fonts in the installation tree";
  server.SetEnv(getpid(), 1);
  resource->SetResources(&server, nullptr);
  EXPECT_EQ(server.CheckFontAvailability(), 0);
  EXPECT_EQ(server.LoadFonts(), 7);
  EXPECT_EQ(server.CheckFontAvailability(), 1);
}
