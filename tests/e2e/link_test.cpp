// The link driven from a test shim: records both ways, byte for byte, and the
// widgets the host reparents into the shim's window.
#include <gtest/gtest.h>

#include <unistd.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "host/link_records.h"
#include "support/link_shim.h"
#include "support/paths.h"
#include "support/x_windows.h"

namespace fs = std::filesystem;

namespace {
using ztest::Attributes;
using ztest::Children;
using ztest::WaitFor;

struct Size {
  int width = 0, height = 0;
};
Size SizeOf(Display* display, Window window) {
  XWindowAttributes attributes{};
  if (!XGetWindowAttributes(display, window, &attributes)) return {};
  return {attributes.width, attributes.height};
}

class Link : public ::testing::Test {
 protected:
  void SetUp() override {
    display = XOpenDisplay(nullptr);
    ASSERT_NE(display, nullptr);
    ASSERT_TRUE(shim.Start()) << "host not ready; exit " << shim.Host().WaitExit(0);
  }
  void TearDown() override {
    if (display) XCloseDisplay(display);
  }
  // A top-level window of this client: the "browser window".
  Window MakeWindow(int width = 320, int height = 200) {
    Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, width, height, 0, 0, 0);
    XMapWindow(display, window);
    XSync(display, False);
    return window;
  }
  // Exactly one child: the host's main window with the drawing area in it.
  Window WaitForMainWindow(Window window) {
    Window found = 0;
    WaitFor([&] {
      std::vector<Window> children = Children(display, window);
      found = children.size() == 1 ? children[0] : 0;
      return found != 0;
    });
    return found;
  }
  bool Alive() { return shim.Host().WaitExit(0) == -1; }
  std::string Url(const std::string& path) { return "file:" + path; }
  std::string MakeFile(const std::string& name, const std::string& text) {
    if (dir.empty()) dir = ztest::ScratchDir("docs");
    fs::path path = fs::path(dir) / name;
    fs::create_directories(path.parent_path());
    ztest::WriteFile(path.string(), text);
    return path.string();
  }

  Display* display = nullptr;
  ztest::LinkShim shim;
  std::string dir;
};

// A status record as the host must send it, worked out from the table.
std::string ExpectedStatus(int32_t id, const std::string& text) {
  zlink::TTextRecord record{};
  record.type = 140;
  record.length = 1020;
  record.id = id;
  std::memcpy(record.text, text.data(), text.size());
  record.sentinel = 140;
  return std::string(reinterpret_cast<const char*>(&record), sizeof record);
}
}  // namespace

TEST_F(Link, FullOrderForOneInstance) {
  Window browser = MakeWindow();
  ASSERT_TRUE(shim.Send(shim.NewHere(7)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(7, browser, 320, 200)));
  Window main = WaitForMainWindow(browser);
  ASSERT_NE(main, 0u) << "no widgets under the browser window";
  EXPECT_TRUE(WaitFor([&] { return SizeOf(display, main).width == 320 && SizeOf(display, main).height == 200; }));
  std::vector<Window> inside = Children(display, main);
  ASSERT_FALSE(inside.empty()) << "no drawing area in the main window";

  ASSERT_TRUE(shim.Send(ztest::LinkShim::Resize(7, 400, 260)));
  EXPECT_TRUE(WaitFor([&] { return SizeOf(display, main).width == 400 && SizeOf(display, main).height == 260; }));
  bool drawAreaResized = false;
  for (Window w : Children(display, main))
    if (SizeOf(display, w).width == 400 && SizeOf(display, w).height == 260) drawAreaResized = true;
  EXPECT_TRUE(drawAreaResized);

  std::string path = MakeFile("doc.tex", "Hello world.\n");
  ASSERT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(7, Url(path), path)));
  std::string record = shim.ReadData();
  EXPECT_EQ(record, ExpectedStatus(7, "zephrin reading " + Url(path) + " ..."));
  // A load ends by clearing the status line with one blank.
  EXPECT_EQ(shim.ReadStatus(), " ");

  // A reload of a document with a file reads the file again, new text or not.
  ASSERT_TRUE(shim.Send(ztest::LinkShim::Reload(7, "  other text  ")));
  EXPECT_EQ(shim.ReadStatus(), "zephrin reading " + Url(path) + " ...");
  EXPECT_EQ(shim.ReadStatus(), " ");

  ASSERT_TRUE(shim.Send(ztest::LinkShim::Header(zlink::kGetDocument, 7)));
  std::string reply = shim.ReadControl();
  ASSERT_EQ(reply.size(), 1020u);
  uint32_t words[2];
  std::memcpy(words, reply.data(), 8);
  EXPECT_EQ(words[0], 70u);
  EXPECT_EQ(words[1], 1020u);
  std::memcpy(words, reply.data() + 1012, 8);
  EXPECT_EQ(words[0], 0u);
  EXPECT_EQ(words[1], 70u);
  // The document prints itself back as TeX.
  EXPECT_NE(std::string(reply.data() + 12).find("Hello world."), std::string::npos) << reply.data() + 12;

  ASSERT_TRUE(shim.Send(ztest::LinkShim::Header(zlink::kDestroy, 7)));
  EXPECT_TRUE(WaitFor([&] { return Children(display, browser).empty(); })) << "widgets left after Destroy";
  // The id is free again, and the process goes on.
  ASSERT_TRUE(shim.Send(shim.NewHere(7)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(7, browser, 100, 80)));
  EXPECT_NE(WaitForMainWindow(browser), 0u);
  EXPECT_TRUE(Alive());
}

TEST_F(Link, UrlRequestForAnInputFileAndTheFileDelivered) {
  Window browser = MakeWindow();
  std::string part = MakeFile("part.tex", "Included.\n");
  std::string path = MakeFile("doc.tex", "Before \\input{sub/part.tex} after.\n");
  ASSERT_TRUE(shim.Send(shim.NewHere(3)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(3, browser, 200, 100)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(3, "http://example.test/d/doc.tex", path)));
  EXPECT_EQ(shim.ReadStatus(), "zephrin reading http://example.test/d/doc.tex ...");

  // The relative name resolves against the document's URL and goes to the
  // browser: no target, flag word 1.
  std::string request = shim.ReadData();
  zlink::TUrlRequest expected{};
  expected.type = 130;
  expected.length = 2024;
  expected.id = 3;
  std::strcpy(expected.url, "http://example.test/d/sub/part.tex");
  expected.noTarget = 1;
  expected.sentinel = 130;
  ASSERT_EQ(request.size(), 2024u);
  // The target field is undefined when the flag is 1: compare around it.
  EXPECT_EQ(request.substr(0, 1012), std::string(reinterpret_cast<const char*>(&expected), 1012));
  EXPECT_EQ(request.substr(2012), std::string(reinterpret_cast<const char*>(&expected) + 2012, 12));
  // The document so far shows, ending in the waiting notice.
  EXPECT_EQ(shim.ReadStatus(), " ");

  // The browser delivers it: the waiting document loads again, with it.
  ASSERT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(3, "HTTP://example.test/d/sub/part.tex", part)));
  EXPECT_EQ(shim.ReadStatus(), "zephrin reading http://example.test/d/doc.tex ...");
  EXPECT_EQ(shim.ReadStatus(), " ");
  // The file is kept: no second request went out.
  EXPECT_TRUE(shim.ReadData(500).empty());
}

TEST_F(Link, StatusTextsOf999AndOf1000Characters) {
  Window browser = MakeWindow();
  std::string path = MakeFile("doc.tex", "x\n");
  // "zephrin reading " (16) + URL + " ..." (4): URLs of 979 and 980 characters.
  std::string url999 = "http://h/" + std::string(979 - 9, 'a');
  std::string url1000 = "http://h/" + std::string(980 - 9, 'b');
  ASSERT_TRUE(shim.Send(shim.NewHere(1)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(1, browser, 100, 100)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(1, url999, path)));
  std::string text = "zephrin reading " + url999 + " ...";
  ASSERT_EQ(text.size(), 999u);
  EXPECT_EQ(shim.ReadData(), ExpectedStatus(1, text));
  shim.ReadStatus();

  ASSERT_TRUE(shim.Send(shim.NewHere(2)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(2, MakeWindow(), 100, 100)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(2, url1000, path)));
  EXPECT_EQ(shim.ReadData(), ExpectedStatus(2, "Ready"));
}

TEST_F(Link, DriveColonInTheLocalNameIsDecodedOnce) {
  // Directories named with a real colon and with a literal "%7C".
  std::string upper = MakeFile("C:/dir/file.tex", "upper\n");
  std::string both = MakeFile("A%7C/B:/f.tex", "both\n");
  std::string encodedUpper = dir + "/C%7C/dir/file.tex";
  std::string encodedBoth = dir + "/A%7C/B%7c/f.tex";  // the lower-case one is decoded
  int32_t id = 10;
  for (const std::string& local : {encodedUpper, encodedBoth}) {
    ASSERT_TRUE(shim.Send(shim.NewHere(id)));
    ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(id, MakeWindow(), 100, 100)));
    ASSERT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(id, "file:doc", local)));
    // The status comes only when the file opened.
    EXPECT_EQ(shim.ReadStatus(), "zephrin reading file:doc ...") << local;
    EXPECT_EQ(shim.ReadStatus(), " ");
    ++id;
  }
}

TEST_F(Link, TwoNewWithOneIdMakeTwoEntriesAndTheNewestIsFound) {
  ASSERT_TRUE(shim.Send(shim.NewHere(5)));
  ASSERT_TRUE(shim.Send(shim.NewHere(5)));
  Window first = MakeWindow(), second = MakeWindow(), third = MakeWindow();
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(5, first, 120, 90)));
  ASSERT_NE(WaitForMainWindow(first), 0u);
  // Destroy takes the newest; the older entry is still there for SetWindow.
  ASSERT_TRUE(shim.Send(ztest::LinkShim::Header(zlink::kDestroy, 5)));
  EXPECT_TRUE(WaitFor([&] { return Children(display, first).empty(); }));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(5, second, 120, 90)));
  EXPECT_NE(WaitForMainWindow(second), 0u);
  // With both gone, a SetWindow for the id is dropped and the host goes on.
  ASSERT_TRUE(shim.Send(ztest::LinkShim::Header(zlink::kDestroy, 5)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(5, third, 120, 90)));
  ASSERT_TRUE(shim.Send(shim.NewHere(6)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(6, third, 60, 40)));
  Window main = WaitForMainWindow(third);
  ASSERT_NE(main, 0u);
  EXPECT_EQ(SizeOf(display, main).width, 60) << "the dropped SetWindow made widgets";
  EXPECT_TRUE(Alive());
}

TEST_F(Link, SetWindowTwiceRebuildsTheWidgetsAndPaintsAgain) {
  Window browser = MakeWindow();
  Atom paintDone = XInternAtom(display, zlink::kPaintDoneAtom, False);
  std::string path = MakeFile("doc.tex", "text\n");
  ASSERT_TRUE(shim.Send(shim.NewHere(4)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(4, browser, 150, 100)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(4, Url(path), path)));
  auto waitPaint = [&] {
    return WaitFor([&] {
      while (XPending(display)) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == ClientMessage && event.xclient.message_type == paintDone &&
            event.xclient.window == browser && event.xclient.data.l[0] == 4)
          return true;
      }
      return false;
    });
  };
  EXPECT_TRUE(waitPaint());
  EXPECT_EQ(shim.ReadStatus(), "zephrin reading " + Url(path) + " ...");
  EXPECT_EQ(shim.ReadStatus(), " ");
  Window before = WaitForMainWindow(browser);
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(4, browser, 180, 120)));
  // One main window again, a new one, of the new size.
  EXPECT_TRUE(WaitFor([&] {
    std::vector<Window> children = Children(display, browser);
    return children.size() == 1 && children[0] != before && SizeOf(display, children[0]).width == 180;
  }));
  // The document stays loaded: no new load status, but a new first paint.
  EXPECT_TRUE(waitPaint());
  EXPECT_TRUE(shim.ReadData(500).empty());
}
