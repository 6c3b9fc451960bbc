// Documents on screen, driven as a person would: the test is the browser,
// it owns the window the host draws into, reads the pixels back, and moves
// the pointer and presses keys through XTest. Pixel values are worked from
// the margin m (one em of the 13 pt text font) and the screen's resolution.
#include <gtest/gtest.h>

#include <unistd.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xfixes.h>
#include <X11/keysym.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
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

struct Rgb {
  int r = 0, g = 0, b = 0;
  bool operator==(const Rgb&) const = default;
};

// The window's pixels as the screen shows them, children included.
struct Image {
  int width = 0, height = 0;
  std::vector<Rgb> pixels;
  Rgb At(int x, int y) const { return pixels[static_cast<size_t>(y) * width + x]; }
  bool IsInk(int x, int y) const { return !(At(x, y) == Rgb{255, 255, 255}); }
  // The first and last row with ink in columns [x0, x1); -1 without any.
  std::pair<int, int> InkRows(int x0, int x1) const {
    int first = -1, last = -1;
    for (int y = 0; y < height; ++y)
      for (int x = x0; x < x1; ++x)
        if (IsInk(x, y)) {
          if (first < 0) first = y;
          last = y;
          break;
        }
    return {first, last};
  }
  // Runs of rows with ink: the text lines.
  int InkBands(int x0, int x1) const {
    int bands = 0;
    bool inside = false;
    for (int y = 0; y < height; ++y) {
      bool ink = false;
      for (int x = x0; x < x1 && !ink; ++x) ink = IsInk(x, y);
      if (ink && !inside) ++bands;
      inside = ink;
    }
    return bands;
  }
  bool RowEquals(const Image& other, int y, int otherY, int x1) const {
    for (int x = 0; x < x1; ++x)
      if (!(At(x, y) == other.At(x, otherY))) return false;
    return true;
  }
};

Image Capture(Display* display, Window window) {
  XWindowAttributes a = Attributes(display, window);
  Image image;
  XImage* x = XGetImage(display, window, 0, 0, a.width, a.height, AllPlanes, ZPixmap);
  if (!x) return image;
  image.width = a.width;
  image.height = a.height;
  image.pixels.resize(static_cast<size_t>(a.width) * a.height);
  auto channel = [](unsigned long pixel, unsigned long mask) {
    int shift = 0;
    while (mask && !(mask & 1)) {
      mask >>= 1;
      ++shift;
    }
    return static_cast<int>(((pixel >> shift) & mask) * 255 / (mask ? mask : 1));
  };
  for (int y = 0; y < a.height; ++y)
    for (int xx = 0; xx < a.width; ++xx) {
      unsigned long p = XGetPixel(x, xx, y);
      image.pixels[static_cast<size_t>(y) * a.width + xx] = {channel(p, x->red_mask), channel(p, x->green_mask),
                                                            channel(p, x->blue_mask)};
    }
  XDestroyImage(x);
  return image;
}

class View : public ::testing::Test {
 protected:
  void SetUp() override {
    // The glyphs of the cursor font itself, here and in the host: a cursor
    // theme would put animated pictures in their place.
    setenv("XCURSOR_CORE", "1", 1);
    display = XOpenDisplay(nullptr);
    ASSERT_NE(display, nullptr);
    int event, error, major, minor;
    ASSERT_TRUE(XTestQueryExtension(display, &event, &error, &major, &minor));
    ASSERT_TRUE(shim.Start(Registry())) << "host not ready; exit " << shim.Host().WaitExit(0);
    paintDone = XInternAtom(display, zlink::kPaintDoneAtom, False);
  }
  // The profile store the host starts with.
  virtual std::string Registry() { return ""; }
  void TearDown() override {
    if (display) XCloseDisplay(display);
  }

  Window MakeWindow(int width, int height, int x = 0) {
    Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), x, 0, width, height, 0, 0,
                                        WhitePixel(display, DefaultScreen(display)));
    XMapWindow(display, window);
    XSync(display, False);
    return window;
  }
  std::string MakeFile(const std::string& name, const std::string& text) {
    if (dir.empty()) dir = ztest::ScratchDir("views");
    fs::path path = fs::path(dir) / name;
    ztest::WriteFile(path.string(), text);
    return path.string();
  }
  std::string Url(const std::string& path) { return "file:" + path; }

  // The paint-done event that the host sends after a document's first paint.
  bool WaitPaint(Window browser) {
    return WaitFor([&] {
      XEvent event;
      while (XCheckTypedWindowEvent(display, browser, ClientMessage, &event))
        if (event.xclient.message_type == paintDone) return true;
      return false;
    });
  }
  // New, SetWindow and StreamAsFile for one document; answers the browser
  // window once the document is loaded and painted.
  Window Open(int32_t id, const std::string& path, int width, int height, int x = 0) {
    Window browser = MakeWindow(width, height, x);
    EXPECT_TRUE(shim.Send(shim.NewHere(id)));
    EXPECT_TRUE(shim.Send(ztest::LinkShim::SetWindow(id, browser, width, height)));
    EXPECT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(id, Url(path), path)));
    EXPECT_EQ(StatusBesidesReady(), "zephrin reading " + Url(path) + " ...");
    EXPECT_EQ(StatusBesidesReady(), " ");
    EXPECT_TRUE(WaitPaint(browser));
    Settle(browser);
    return browser;
  }
  // What the window shows once it has changed from `before` and settled;
  // `before` itself if nothing changes within the time.
  Image SettleAfterChange(Window window, const Image& before) {
    WaitFor([&] { return Capture(display, window).pixels != before.pixels; }, 5000);
    return Settle(window);
  }
  // The pointer over an earlier document may have sent "Ready" meanwhile.
  std::string StatusBesidesReady() {
    std::string status;
    while ((status = shim.ReadStatus()) == "Ready") {
    }
    return status;
  }
  // Until two captures 150 ms apart agree: exposes have been painted.
  Image Settle(Window window) {
    Image last = Capture(display, window);
    for (int i = 0; i < 40; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(150));
      Image now = Capture(display, window);
      if (now.pixels == last.pixels) return now;
      last = std::move(now);
    }
    return last;
  }
  // Device pixels of the margin: 13 pt = 26 logical units, through the
  // screen's ratio as the device converts (multiply, then truncate).
  int MarginPx() const {
    const int screen = DefaultScreen(display);
    const long logical = static_cast<long>(DisplayWidthMM(display, screen)) * 1440 / 254;
    return static_cast<int>(26L * DisplayWidth(display, screen) / logical);
  }
  int LogicalFromPx(int px) const {
    const int screen = DefaultScreen(display);
    const long logical = static_cast<long>(DisplayWidthMM(display, screen)) * 1440 / 254;
    return static_cast<int>(static_cast<long>(px) * logical / DisplayWidth(display, screen));
  }
  // The host's vertical or horizontal scroll bar inside the browser window,
  // if one shows. The scrolled window keeps a bar that is not needed mapped
  // but outside its area.
  Window Bar(Window browser, int width, int height, bool vertical) {
    std::function<Window(Window)> find = [&](Window w) -> Window {
      for (Window child : Children(display, w)) {
        XWindowAttributes a = Attributes(display, child);
        const bool shaped = vertical
                                ? a.width < 40 && a.height > height / 2 && a.x > width / 2 && a.x + a.width <= width
                                : a.height < 40 && a.width > width / 2 && a.y > height / 2 && a.y + a.height <= height;
        if (a.map_state == IsViewable && shaped) return child;
        if (Window found = find(child)) return found;
      }
      return 0;
    };
    return find(browser);
  }
  Window VerticalBar(Window browser, int width, int height) { return Bar(browser, width, height, true); }
  Window HorizontalBar(Window browser, int width, int height) { return Bar(browser, width, height, false); }
  // The server may take faked input in a thread of its own: the move is
  // waited for, so that what is read next sees the pointer there.
  void MovePointer(int x, int y) {
    XTestFakeMotionEvent(display, -1, x, y, 0);
    XSync(display, False);
    WaitFor([&] {
      Window root, child;
      int rx = -1, ry = -1, wx, wy;
      unsigned mask;
      XQueryPointer(display, DefaultRootWindow(display), &root, &child, &rx, &ry, &wx, &wy, &mask);
      return rx == x && ry == y;
    }, 2000);
  }
  void Click(unsigned button) {
    XTestFakeButtonEvent(display, button, True, 0);
    XTestFakeButtonEvent(display, button, False, 0);
    XSync(display, False);
  }
  void Key(KeySym keysym, KeySym modifier = NoSymbol) {
    if (modifier != NoSymbol) XTestFakeKeyEvent(display, XKeysymToKeycode(display, modifier), True, 0);
    XTestFakeKeyEvent(display, XKeysymToKeycode(display, keysym), True, 0);
    XTestFakeKeyEvent(display, XKeysymToKeycode(display, keysym), False, 0);
    if (modifier != NoSymbol) XTestFakeKeyEvent(display, XKeysymToKeycode(display, modifier), False, 0);
    XSync(display, False);
  }
  // The area that shows the document: the main window's child that holds
  // the drawing area, in the browser window's coordinates.
  XRectangle ClipArea(Window browser) {
    XRectangle area{};
    std::vector<Window> mains = Children(display, browser);
    if (mains.size() != 1) return area;
    for (Window child : Children(display, mains[0])) {
      if (Children(display, child).empty()) continue;
      XWindowAttributes a = Attributes(display, child);
      area = {static_cast<short>(a.x), static_cast<short>(a.y), static_cast<unsigned short>(a.width),
              static_cast<unsigned short>(a.height)};
    }
    return area;
  }
  // Whether every row of the clip area in `after` is the row `shift` below
  // it in `before`.
  static bool LiftedBy(const Image& before, const Image& after, int shift, const XRectangle& clip) {
    const int right = clip.x + clip.width;
    for (int y = clip.y; y + shift < clip.y + clip.height; ++y)
      if (!after.RowEquals(before, y, y + shift, right)) return false;
    return true;
  }
  std::string Lines(int count, const char* word = "Line") {
    std::string text;
    for (int i = 1; i <= count; ++i) text += std::string(word) + " " + std::to_string(i) + ".\\\\\n";
    return text;
  }

  Display* display = nullptr;
  ztest::LinkShim shim;
  std::string dir;
  Atom paintDone = 0;
};
}  // namespace

TEST_F(View, InkStaysInsideTheMarginsAndAnUnknownCommandIsRed) {
  const int width = 400, height = 300;
  Window browser = Open(1, MakeFile("red.tex", "aaa \\foo bbb\n"), width, height);
  Image image = Settle(browser);
  const int m = MarginPx();
  int left = width, right = -1, redLeft = width, redRight = -1, blackLeft = width, blackRight = -1;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      if (!image.IsInk(x, y)) continue;
      left = std::min(left, x);
      right = std::max(right, x);
      Rgb c = image.At(x, y);
      if (c == Rgb{255, 0, 0}) redLeft = std::min(redLeft, x), redRight = std::max(redRight, x);
      if (c == Rgb{0, 0, 0}) blackLeft = std::min(blackLeft, x), blackRight = std::max(blackRight, x);
    }
  auto [top, bottom] = image.InkRows(0, width);
  ASSERT_GE(top, 0) << "nothing drawn";
  EXPECT_GE(left, m);
  EXPECT_GE(top, m);
  EXPECT_LE(right, width - 2 * m);
  ASSERT_GE(redRight, 0) << "no red ink";
  EXPECT_LT(blackLeft, redLeft);
  EXPECT_GT(blackRight, redRight);
}

TEST_F(View, ArrowClickAndDownKeyEachLiftTheTextOneStepAndCtrlEndShowsTheEnd) {
  const int width = 400, height = 300;
  std::string words;
  for (int i = 0; i < 200; ++i) words += "word ";
  Window browser = Open(2, MakeFile("long.tex", words + "\n\n" + Lines(120)), width, height);
  Window bar = VerticalBar(browser, width, height);
  ASSERT_NE(bar, 0u) << "a long document has a vertical bar";
  XWindowAttributes b = Attributes(display, bar);
  Window unused;
  int barX = 0, barY = 0;
  XTranslateCoordinates(display, bar, DefaultRootWindow(display), 0, 0, &barX, &barY, &unused);
  const XRectangle clip = ClipArea(browser);
  const int textRight = clip.x + clip.width;
  // The text is broken for what shows beside the bar: no horizontal bar,
  // and the right margin of 2 m is kept from the bar.
  EXPECT_EQ(HorizontalBar(browser, width, height), 0u);
  // A step is twice the text font's 13 points: 26 pixels.
  Image before = Settle(browser);
  int inkRight = -1;
  for (int y = clip.y; y < clip.y + clip.height; ++y)
    for (int x = 0; x < textRight; ++x)
      if (before.IsInk(x, y)) inkRight = std::max(inkRight, x);
  EXPECT_LE(inkRight, textRight - 2 * MarginPx());
  MovePointer(barX + b.width / 2, barY + b.height - b.width / 2);
  Click(Button1);
  Image afterArrow = SettleAfterChange(browser, before);
  EXPECT_TRUE(LiftedBy(before, afterArrow, 26, clip)) << "the bar's down arrow";

  MovePointer(width / 3, height / 2);
  Key(XK_Down);
  Image afterKey = SettleAfterChange(browser, afterArrow);
  EXPECT_TRUE(LiftedBy(afterArrow, afterKey, 26, clip)) << "the Down key";

  // The end: the last line stands in the window and Down moves nothing more.
  Key(XK_End, XK_Control_L);
  Image atEnd = SettleAfterChange(browser, afterKey);
  Key(XK_Down);
  Image stillAtEnd = Settle(browser);
  EXPECT_EQ(atEnd.pixels, stillAtEnd.pixels);
  auto [top, bottom] = atEnd.InkRows(0, textRight);
  EXPECT_GT(bottom, height / 2);
  EXPECT_NE(atEnd.pixels, afterKey.pixels);

  // A short document shows no bar at all.
  Window shortOne = Open(3, MakeFile("short.tex", "Just a line.\n"), width, height);
  EXPECT_EQ(VerticalBar(shortOne, width, height), 0u);
}

TEST_F(View, FortyWordsBreakForTheWindowsWidthAlsoAfterAResize) {
  std::string words;
  for (int i = 0; i < 40; ++i) words += "mmmm ";
  const std::string path = MakeFile("mmmm.tex", words + "\n");
  // The layout's own line count for a line width of window - 3 m, worked in
  // logical units as the view does.
  auto expectedLines = [&](int windowPx) {
    const int m = 26;
    const int lineWidth = LogicalFromPx(windowPx) - 3 * m;
    std::string command = ztest::BuildPath("zephrin-inspect") + " layout " + path + " --width " +
                          std::to_string(lineWidth) + " 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    int lines = 0;
    char buffer[512];
    while (pipe && std::fgets(buffer, sizeof buffer, pipe))
      if (buffer[0] == 'L') ++lines;
    if (pipe) pclose(pipe);
    return lines;
  };
  const int wide = expectedLines(800), narrow = expectedLines(350);
  ASSERT_GT(wide, 0);
  ASSERT_GT(narrow, wide);
  const int m = MarginPx();
  Window browser = Open(4, path, 800, 400);
  EXPECT_EQ(Settle(browser).InkBands(0, 800 - 2 * m), wide);

  XResizeWindow(display, browser, 350, 400);
  ASSERT_TRUE(shim.Send(ztest::LinkShim::Resize(4, 350, 400)));
  EXPECT_TRUE(WaitFor([&] { return Settle(browser).InkBands(0, 350 - 2 * m) == narrow; }));
  XResizeWindow(display, browser, 800, 400);
  ASSERT_TRUE(shim.Send(ztest::LinkShim::Resize(4, 800, 400)));
  EXPECT_TRUE(WaitFor([&] { return Settle(browser).InkBands(0, 800 - 2 * m) == wide; }));

  Window fresh = Open(5, path, 350, 400);
  EXPECT_EQ(Settle(fresh).InkBands(0, 350 - 2 * m), narrow);
}

TEST_F(View, ReadyIsSentOnceOverManyMotions) {
  Window browser = Open(6, MakeFile("ready.tex", Lines(5)), 300, 200);
  (void)browser;
  for (int i = 0; i < 20; ++i) MovePointer(40 + i * 5, 60 + (i % 3) * 7);
  EXPECT_EQ(shim.ReadStatus(), "Ready");
  EXPECT_EQ(shim.ReadStatus(700), "") << "a second status after the first Ready";
}

TEST_F(View, TheCursorIsTheWatchWhileLoadingAndTheIbeamAfter) {
  int event, error;
  ASSERT_TRUE(XFixesQueryExtension(display, &event, &error));
  // The two font cursors as the server shows them, on a window of our own.
  Window probe = MakeWindow(50, 50);
  auto imageOf = [&](unsigned shape) {
    Cursor cursor = XCreateFontCursor(display, shape);
    XDefineCursor(display, probe, cursor);
    MovePointer(25, 25);
    XSync(display, False);
    // The same image twice, 100 ms apart: the sprite has settled.
    std::vector<unsigned long> pixels, last;
    WaitFor([&] {
      XFixesCursorImage* image = XFixesGetCursorImage(display);
      if (!image) return false;
      pixels.assign(image->pixels, image->pixels + image->width * image->height);
      XFree(image);
      const bool settled = pixels == last;
      last = pixels;
      if (!settled) std::this_thread::sleep_for(std::chrono::milliseconds(100));
      return settled;
    });
    return pixels;
  };
  const auto watch = imageOf(150), ibeam = imageOf(152);
  ASSERT_NE(watch, ibeam);
  XUnmapWindow(display, probe);

  // A long document: its load takes long enough to see the watch.
  std::string text;
  for (int i = 0; i < 40000; ++i) text += "Words and more words in a long paragraph. ";
  const std::string path = MakeFile("slow.tex", text);
  Window browser = MakeWindow(400, 300);
  MovePointer(200, 150);
  ASSERT_TRUE(shim.Send(shim.NewHere(7)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::SetWindow(7, browser, 400, 300)));
  ASSERT_TRUE(shim.Send(ztest::LinkShim::StreamAsFile(7, Url(path), path)));
  auto current = [&] {
    std::vector<unsigned long> pixels;
    if (XFixesCursorImage* image = XFixesGetCursorImage(display)) {
      pixels.assign(image->pixels, image->pixels + image->width * image->height);
      XFree(image);
    }
    return pixels;
  };
  EXPECT_TRUE(WaitFor([&] { return current() == watch; }, 20000)) << "no watch while loading";
  EXPECT_TRUE(WaitPaint(browser));
  EXPECT_TRUE(WaitFor([&] { return current() == ibeam; })) << "no I-beam after the load";
}

TEST_F(View, ThePopupComesOnReleaseAndNextTopicOpensTheNeighbour) {
  const std::string path = MakeFile("topics.tex", "\\nextTopic{next.tex}\nA document with a neighbour.\n");
  Window browser = Open(8, path, 400, 300);
  (void)browser;
  // Popup menus are override-redirect windows of the root; some toolkit
  // windows of that kind are there before.
  auto popups = [&] {
    std::vector<Window> shown;
    for (Window w : Children(display, DefaultRootWindow(display))) {
      XWindowAttributes a = Attributes(display, w);
      if (a.override_redirect && a.map_state == IsViewable) shown.push_back(w);
    }
    return shown;
  };
  const std::vector<Window> before = popups();
  auto menuShown = [&] { return popups() != before; };
  MovePointer(100, 100);
  XTestFakeButtonEvent(display, Button3, True, 0);
  XSync(display, False);
  std::this_thread::sleep_for(std::chrono::milliseconds(400));
  EXPECT_FALSE(menuShown()) << "a menu on the press";
  XTestFakeButtonEvent(display, Button3, False, 0);
  XSync(display, False);
  ASSERT_TRUE(WaitFor(menuShown)) << "no menu on the release";
  // "Previous topic" has no name: its mnemonic does nothing. "Next topic"
  // asks the browser for the neighbour, in this window.
  // The menu takes the keyboard once it is up: a grab of our own then
  // fails, and the keys below reach it.
  EXPECT_TRUE(WaitFor([&] {
    const int status = XGrabKeyboard(display, DefaultRootWindow(display), False, GrabModeAsync, GrabModeAsync,
                                      CurrentTime);
    if (status == GrabSuccess) XUngrabKeyboard(display, CurrentTime);
    XSync(display, False);
    return status == AlreadyGrabbed;
  }));
  Key(XK_p);
  Key(XK_n);
  std::string request;
  for (std::string record; !(record = shim.ReadData(3000)).empty();)
    if (record.size() == sizeof(zlink::TUrlRequest)) request = record;
  ASSERT_EQ(request.size(), sizeof(zlink::TUrlRequest));
  zlink::TUrlRequest r;
  std::memcpy(&r, request.data(), sizeof r);
  EXPECT_EQ(r.id, 8);
  EXPECT_EQ(std::string(r.url), Url(fs::path(path).parent_path().string() + "/next.tex"));
  EXPECT_EQ(r.noTarget, 0u);
  EXPECT_EQ(std::string(r.target), "_self");
}

namespace {
// Forty one-line paragraphs; labels after the 15th and the 40th, and the
// profile store's bookmark naming one of them for the document's URL.
class Bookmark : public View {
 protected:
  static std::string Path() {
    static const std::string path = [] {
      std::string text;
      for (int i = 1; i <= 40; ++i) {
        text += "Para " + std::to_string(i) + ".\n";
        if (i == 15) text += "\\label{middle}\n";
        if (i == 40) text += "\\label{last}\n";
        text += "\n";
      }
      const std::string file = ztest::ScratchDir("bookmark") + "/paras.tex";
      ztest::WriteFile(file, text);
      return file;
    }();
    return path;
  }
  std::string Registry() override {
    const char* label = ::testing::UnitTest::GetInstance()->current_test_info()->name();
    return "Corvane.Bookmark.URL: file:" + Path() + "\nCorvane.Bookmark.label: " +
           (std::string(label).find("End") != std::string::npos ? "last" : "middle") + "\n";
  }
  // y and height of body element k, composed at the top 0 (logical units).
  static std::pair<int, int> Element(int k) {
    std::string command = ztest::BuildPath("zephrin-inspect") + " layout " + Path() + " --width 500 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    char buffer[512];
    std::pair<int, int> found{0, 0};
    while (pipe && std::fgets(buffer, sizeof buffer, pipe)) {
      int index, y, h;
      char kind[64];
      if (std::sscanf(buffer, "E %d %63s %d %d", &index, kind, &y, &h) == 4 && index == k) found = {y, h};
    }
    if (pipe) pclose(pipe);
    return found;
  }
  int DeviceY(int logical) const {
    const int screen = DefaultScreen(display);
    const long height = static_cast<long>(DisplayHeightMM(display, screen)) * 1440 / 254;
    return static_cast<int>(static_cast<long>(logical) * DisplayHeight(display, screen) / height);
  }
  // The drawing area's height: the main window's clip holds it.
  int DrawingHeight(Window browser) {
    for (Window main : Children(display, browser))
      for (Window clip : Children(display, main))
        for (Window draw : Children(display, clip)) return Attributes(display, draw).height;
    return 0;
  }
  // The same document, without the bookmark, in a window beside the first
  // that shows it all.
  Image Whole(int32_t id) {
    Window whole = Open(id, Path(), 300, 1000, 400);
    return Settle(whole);
  }
  // Whether the clip shows the whole picture from row `offset` on.
  static bool ShowsFrom(const Image& scrolled, const XRectangle& clip, const Image& whole, int offset) {
    for (int r = 0; r < clip.height; ++r)
      for (int x = 0; x < 250; ++x)
        if (!(scrolled.At(x, clip.y + r) == whole.At(x, offset + r))) return false;
    return true;
  }
};
}  // namespace

TEST_F(Bookmark, ALabelInTheMiddleScrollsItsParagraphToTheTop) {
  Window browser = Open(1, Path(), 300, 200);
  const XRectangle clip = ClipArea(browser);
  // The 15th paragraph's top with its 12-unit skip above it, the view's top
  // margin being 26 units: value = its device y.
  auto [y, h] = Element(14);
  const int value = DeviceY(-(y - 26 + h + 12));
  const Image whole = Whole(2);
  EXPECT_TRUE(WaitFor([&] { return ShowsFrom(Settle(browser), clip, whole, value); })) << "value " << value;
}

TEST_F(Bookmark, ALabelNearTheEndScrollsToTheEnd) {
  Window browser = Open(1, Path(), 300, 200);
  const XRectangle clip = ClipArea(browser);
  // Too near the end for the top: maximum - slider - 1.
  const int value = DrawingHeight(browser) - clip.height - 1;
  const Image whole = Whole(2);
  EXPECT_TRUE(WaitFor([&] { return ShowsFrom(Settle(browser), clip, whole, value); })) << "value " << value;
}

TEST_F(View, AWordWiderThanTheWindowBringsOnlyTheHorizontalBar) {
  const int width = 400, height = 300;
  Window browser = Open(9, MakeFile("wide.tex", std::string(600, 'x') + "\n"), width, height);
  EXPECT_NE(HorizontalBar(browser, width, height), 0u);
  EXPECT_EQ(VerticalBar(browser, width, height), 0u);
}
