// Bad documents through the link: each shows what the design names (a blank
// window, the status cleared, the first page of a huge file) without a crash
// or a hang, and the same host then serves a normal document. The test is
// the browser: it owns the windows the host draws into and reads them back.
#include <gtest/gtest.h>

#include <unistd.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "host/link_records.h"
#include "support/link_shim.h"
#include "support/paths.h"
#include "support/x_windows.h"

namespace fs = std::filesystem;

namespace {
// A huge file's size here: many times what X can show in either direction
// (a drawing area stops at 32767 pixels, some 1,600 lines of text or 4,000
// letters), yet quick under the sanitizers. The 50 MB case is measured by
// bench/view_bench (BM_LargeFile).
constexpr size_t kHugeBytes = 2u << 20;
constexpr int kMaxWindowSize = 32767;
// Away from the pointer, which Xvfb puts in the middle of the screen: motion
// over a document would send "Ready" among the statuses.
constexpr int kWidth = 400, kHeight = 300;

using ztest::Children;
using ztest::WaitFor;

class ViewBadInput : public ::testing::Test {
 protected:
  void SetUp() override {
    display = XOpenDisplay(nullptr);
    ASSERT_NE(display, nullptr);
    ASSERT_TRUE(shim.Start()) << "host not ready; exit " << shim.Host().WaitExit(0);
    paintDone = XInternAtom(display, zlink::kPaintDoneAtom, False);
    white = WhitePixel(display, DefaultScreen(display));
    black = BlackPixel(display, DefaultScreen(display));
  }
  void TearDown() override {
    if (display) XCloseDisplay(display);
  }

  Window MakeWindow() {
    Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, kWidth, kHeight, 0, 0, white);
    XMapWindow(display, window);
    XSync(display, False);
    return window;
  }
  std::string MakeFile(const std::string& name, const std::string& bytes) {
    if (dir.empty()) dir = ztest::ScratchDir("bad-docs");
    std::string path = dir + "/" + name;
    EXPECT_TRUE(ztest::WriteFile(path, bytes));
    return path;
  }
  static std::string Url(const std::string& path) { return "file:" + path; }
  bool Alive() { return shim.Host().WaitExit(0) == -1; }

  // The paint-done event of the next complete paint after a load; false
  // after the time or when the host has ended.
  bool WaitPaint(Window browser, int timeoutMs = 10000) {
    bool painted = false;
    WaitFor(
        [&] {
          XEvent event;
          while (XCheckTypedWindowEvent(display, browser, ClientMessage, &event))
            if (event.xclient.message_type == paintDone) painted = true;
          return painted || !Alive();
        },
        timeoutMs);
    return painted;
  }
  // The main window once the host has made it in the browser's window.
  Window MainWindow(Window browser) {
    Window main = 0;
    WaitFor([&] {
      std::vector<Window> children = Children(display, browser);
      main = children.size() == 1 ? children[0] : 0;
      return main != 0;
    });
    return main;
  }
  // The drawing area: the one child of the main window's clip window.
  Window DrawArea(Window browser) {
    Window main = MainWindow(browser);
    if (!main) return 0;
    for (Window child : Children(display, main)) {
      std::vector<Window> inside = Children(display, child);
      if (inside.size() == 1) return inside[0];
    }
    return 0;
  }
  // Pixels of the browser's window that are not white, and of those the
  // black ones, once two reads 150 ms apart agree (exposes done).
  struct TInk {
    long other = 0, black = 0;
    bool operator==(const TInk&) const = default;
  };
  TInk Ink(Window browser) {
    auto read = [&] {
      TInk ink;
      XImage* image = XGetImage(display, browser, 0, 0, kWidth, kHeight, AllPlanes, ZPixmap);
      if (!image) return TInk{-1, -1};
      for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
          const unsigned long pixel = XGetPixel(image, x, y);
          ink.other += pixel != white;
          ink.black += pixel == black;
        }
      XDestroyImage(image);
      return ink;
    };
    TInk last = read();
    for (int i = 0; i < 40; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(150));
      TInk now = read();
      if (now == last) return now;
      last = now;
    }
    return last;
  }
  // New, SetWindow and StreamAsFile for a file; the browser's window.
  Window Open(int32_t id, const std::string& path) {
    Window browser = MakeWindow();
    EXPECT_TRUE(shim.Send(shim.NewHere(id)));
    EXPECT_TRUE(shim.Send(ztest::LinkShim::SetWindow(id, browser, kWidth, kHeight)));
    EXPECT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(id, Url(path), path)));
    return browser;
  }
  // The two statuses of a load that read its file.
  void ExpectLoadStatuses(const std::string& path, int timeoutMs = 10000) {
    EXPECT_EQ(shim.ReadStatus(timeoutMs), "zephrin reading " + Url(path) + " ...");
    EXPECT_EQ(shim.ReadStatus(timeoutMs), " ");
  }
  // The host, after whatever came before, loads and draws a plain document.
  void ExpectServesADocument(int32_t id) {
    std::string path = MakeFile("plain" + std::to_string(id) + ".tex", "Plain words after bad input.\n");
    Window browser = Open(id, path);
    ExpectLoadStatuses(path);
    EXPECT_TRUE(WaitPaint(browser));
    EXPECT_GT(Ink(browser).black, 50) << "the plain document is not drawn";
    EXPECT_TRUE(Alive());
  }
  // The first document text reply of the host (GetDocument); it comes after
  // every record sent before it has been handled.
  std::string DocumentText(int32_t id) {
    EXPECT_TRUE(shim.Send(ztest::LinkShim::Header(zlink::kGetDocument, id)));
    return ztest::RecordText(shim.ReadControl());
  }

  Display* display = nullptr;
  ztest::LinkShim shim;
  std::string dir;
  Atom paintDone = 0;
  unsigned long white = 0, black = 0;
};
}  // namespace

TEST_F(ViewBadInput, AnEmptyFileShowsABlankWindowAndClearsTheStatus) {
  std::string path = MakeFile("empty.tex", "");
  Window browser = Open(1, path);
  ExpectLoadStatuses(path);
  ASSERT_TRUE(WaitPaint(browser));
  ASSERT_NE(MainWindow(browser), 0u);
  // Paper only: no text, and no bars for an empty document.
  EXPECT_EQ(Ink(browser).other, 0);
  ExpectServesADocument(2);
}

TEST_F(ViewBadInput, ABinaryFileLoadsWithoutACrash) {
  std::string bytes(1, '\0');
  // Every byte value, NULs included, in no order a reader expects; then
  // runs of each byte from 127 to 255.
  for (int i = 0; i < 16384; ++i) bytes += static_cast<char>((i * 131 + 7) & 0xff);
  for (int c = 127; c < 256; ++c) bytes += std::string(5, static_cast<char>(c));
  std::string path = MakeFile("binary.tex", bytes);
  Window browser = Open(1, path);
  ExpectLoadStatuses(path);
  EXPECT_TRUE(WaitPaint(browser));
  // The tree prints itself back: a full reply.
  ASSERT_TRUE(shim.Send(ztest::LinkShim::Header(zlink::kGetDocument, 1)));
  EXPECT_EQ(shim.ReadControl().size(), sizeof(zlink::TTextRecord));
  ASSERT_TRUE(Alive());
  ExpectServesADocument(2);
}

TEST_F(ViewBadInput, AHugeFileDrawsItsFirstPageWithTheAreaClampedToXsLimit) {
  std::string text;
  text.reserve(kHugeBytes + 100);
  static const char* const words[] = {"a", "huge", "file", "of", "words", "in", "lines", "and", "paragraphs"};
  for (size_t line = 0; text.size() < kHugeBytes; ++line) {
    for (size_t w = 0; w < 10; ++w) text += std::string(words[(line + w * 4) % 9]) + " ";
    text += line % 8 == 7 ? "\n\n" : "\n";
  }
  std::string path = MakeFile("huge.tex", text);
  Window browser = Open(1, path);
  // Generous bounds: a hang, not a speed, is what they catch.
  ExpectLoadStatuses(path, 60000);
  ASSERT_TRUE(WaitPaint(browser, 60000));
  EXPECT_GT(Ink(browser).black, 1000) << "the first page is not drawn";
  // Far more than 32767 pixels of text: the area stops there, not wrapped
  // to 16 bits.
  XWindowAttributes area{};
  ASSERT_TRUE(XGetWindowAttributes(display, DrawArea(browser), &area));
  EXPECT_EQ(area.height, kMaxWindowSize);
  // The lines are broken for the window, whatever their number.
  EXPECT_LE(area.width, kWidth);
  ASSERT_TRUE(Alive());
  ExpectServesADocument(2);
}

TEST_F(ViewBadInput, AHugeFileOfOneLineWithoutBlanksDrawsItsStart) {
  std::string text(kHugeBytes, 'x');
  for (size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>('a' + (i * 7) % 26);
  std::string path = MakeFile("line.tex", text);
  Window browser = Open(1, path);
  ExpectLoadStatuses(path, 60000);
  ASSERT_TRUE(WaitPaint(browser, 60000));
  EXPECT_GT(Ink(browser).black, 500) << "the start of the line is not drawn";
  // One word millions of pixels wide: the area stops at X's limit.
  XWindowAttributes area{};
  ASSERT_TRUE(XGetWindowAttributes(display, DrawArea(browser), &area));
  EXPECT_EQ(area.width, kMaxWindowSize);
  ASSERT_TRUE(Alive());
  ExpectServesADocument(2);
}

TEST_F(ViewBadInput, AFileThatVanishesBeforeTheFirstPaintStaysBlankSilentAndUnretried) {
  std::string path = MakeFile("gone.tex", "This text is never shown.\n");
  Window browser = MakeWindow();
  // The file is named before the instance has a window, so nothing can
  // paint until SetWindow; the reply shows StreamAsFile has been handled.
  ASSERT_TRUE(shim.Send(shim.NewHere(1)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(1, Url(path), path)));
  EXPECT_EQ(DocumentText(1), "");
  ASSERT_TRUE(fs::remove(path));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(1, browser, kWidth, kHeight)));
  ASSERT_TRUE(WaitPaint(browser));
  EXPECT_EQ(Ink(browser).other, 0);
  EXPECT_EQ(shim.ReadStatus(1000), "") << "a status for a file that did not open";

  // The file back and the window repainted: the load is not tried again.
  MakeFile("gone.tex", "This text is never shown.\n");
  ASSERT_TRUE(shim.Send(ztest::LinkShim::Resize(1, kWidth, kHeight)));
  EXPECT_EQ(DocumentText(1), "");
  EXPECT_EQ(Ink(browser).other, 0);
  EXPECT_EQ(shim.ReadStatus(500), "");
  ASSERT_TRUE(Alive());
  ExpectServesADocument(2);
}

TEST_F(ViewBadInput, APaintBeforeAnySourceShowsTheBackgroundOnlyAndTheSourceLoadsLater) {
  Window browser = MakeWindow();
  ASSERT_TRUE(shim.Send(shim.NewHere(1)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(1, browser, kWidth, kHeight)));
  ASSERT_NE(MainWindow(browser), 0u);
  // A second paint, from a Resize, before any source as well.
  ASSERT_TRUE(shim.Send(ztest::LinkShim::Resize(1, kWidth, kHeight)));
  EXPECT_EQ(DocumentText(1), "");
  EXPECT_EQ(Ink(browser).other, 0);
  EXPECT_EQ(shim.ReadStatus(500), "");
  // Those paints loaded nothing: the source, when it comes, loads and draws.
  std::string path = MakeFile("later.tex", "Words that come later.\n");
  ASSERT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(1, Url(path), path)));
  ExpectLoadStatuses(path);
  EXPECT_TRUE(WaitPaint(browser));
  EXPECT_GT(Ink(browser).black, 50);
  EXPECT_NE(DocumentText(1).find("Words that come later."), std::string::npos);
  ExpectServesADocument(2);
}
