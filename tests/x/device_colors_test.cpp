// The X drawing device on a real window: pixels read back with XGetImage, on
// a 24-bit screen and again on an 8-bit PseudoColor one.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <unistd.h>

#include <climits>
#include <map>
#include <string>
#include <tuple>

#include "device/context_xwin.h"
#include "framework/gdi_objects.h"
#include "framework/wnd.h"
#include "host/resource.h"
#include "host/zr_server.h"
#include "support/x_app.h"

namespace {
constexpr int kWidth = 200;
constexpr int kHeight = 150;

struct TInk {
  long count = 0;
  int left = INT_MAX, top = INT_MAX, right = -1, bottom = -1;
};
using TInkMap = std::map<std::tuple<int, int, int>, TInk>;

class DeviceColors : public ::testing::Test {
 protected:
  void SetUp() override {
    ztest::XApp* x = ztest::SharedXApp();
    ASSERT_NE(x, nullptr);
    display = x->display;
    int screen = DefaultScreen(display);
    colormap = DefaultColormap(display, screen);
    setenv("HOME", "/tmp", 0);
    ztest::SetUpHostResources(server, x);
    Resource::GetResourceObject()->SetColors();

    white = Alloc(0xffff, 0xffff, 0xffff);
    black = Alloc(0, 0, 0);
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.background_pixel = white;
    drawWindow = XCreateWindow(display, RootWindow(display, screen), 0, 0, kWidth, kHeight, 0, CopyFromParent,
                               InputOutput, CopyFromParent, CWOverrideRedirect | CWBackPixel, &attributes);
    XSelectInput(display, drawWindow, ExposureMask);
    XMapWindow(display, drawWindow);
    XEvent event;
    XWindowEvent(display, drawWindow, ExposureMask, &event);
    // From here on only the repaint requests' mask: a sent Expose reaches us
    // only if it goes out under button press and release.
    XSelectInput(display, drawWindow, ButtonPressMask | ButtonReleaseMask);
    XGCValues values{};
    values.foreground = black;
    values.background = white;
    gc = XCreateGC(display, drawWindow, GCForeground | GCBackground, &values);
    window.SetInfo(nullptr, nullptr, nullptr, nullptr, nullptr, drawWindow, 0, 0, 0, kWidth, kHeight, display, gc,
                   DefaultVisual(display, screen), screen, DefaultDepth(display, screen), 255, 0, &colormap);
    context.Set_Window(&window);
  }
  void TearDown() override {
    if (!display) return;
    XFreeGC(display, gc);
    XDestroyWindow(display, drawWindow);
    XSync(display, False);
  }
  unsigned long Alloc(unsigned short r, unsigned short g, unsigned short b) {
    XColor color{};
    color.red = r, color.green = g, color.blue = b;
    color.flags = DoRed | DoGreen | DoBlue;
    EXPECT_TRUE(XAllocColor(display, colormap, &color));
    return color.pixel;
  }
  // Non-white pixels of the window by colour (high bytes).
  TInkMap Ink() {
    XSync(display, False);
    XImage* image = XGetImage(display, drawWindow, 0, 0, kWidth, kHeight, AllPlanes, ZPixmap);
    TInkMap result;
    if (!image) return result;
    std::map<unsigned long, std::tuple<int, int, int>> known;
    for (int y = 0; y < kHeight; ++y)
      for (int x = 0; x < kWidth; ++x) {
        unsigned long pixel = XGetPixel(image, x, y);
        if (pixel == white) continue;
        if (!known.count(pixel)) {
          XColor shown{};
          shown.pixel = pixel;
          XQueryColor(display, colormap, &shown);
          known[pixel] = {shown.red >> 8, shown.green >> 8, shown.blue >> 8};
        }
        TInk& ink = result[known[pixel]];
        ++ink.count;
        ink.left = std::min(ink.left, x);
        ink.top = std::min(ink.top, y);
        ink.right = std::max(ink.right, x);
        ink.bottom = std::max(ink.bottom, y);
      }
    XDestroyImage(image);
    return result;
  }
  XGCValues GC_Values() {
    XGCValues values{};
    XGetGCValues(display, gc, GCForeground | GCBackground | GCLineWidth | GCLineStyle | GCCapStyle, &values);
    return values;
  }
  int SentExposes() {
    XSync(display, False);
    int count = 0;
    XEvent event;
    while (XCheckWindowEvent(display, drawWindow, ~0L, &event) || XCheckTypedWindowEvent(display, drawWindow, Expose, &event))
      if (event.type == Expose && event.xexpose.send_event && event.xexpose.count == 0) ++count;
    return count;
  }

  Display* display = nullptr;
  Colormap colormap = 0;
  unsigned long white = 0, black = 0;
  Window drawWindow = 0;
  GC gc = nullptr;
  ZRServer server;
  CWnd window;
  TFmtContext_XWin context;
};

using Rgb = std::tuple<int, int, int>;
}  // namespace

TEST_F(DeviceColors, RatiosComeFromTheServersMillimetres) {
  // run-with-xvfb: 1280x1024 at 100 dpi, which Xvfb reports as 325x260 mm.
  EXPECT_EQ(context.Get_LogicalWidth(), 1842);
  EXPECT_EQ(context.Get_LogicalHeight(), 1474);
  EXPECT_NEAR(window.m_dDpiX, 100.0, 0.1);
  EXPECT_NEAR(window.m_dDpiY, 100.0, 0.1);
}

TEST_F(DeviceColors, ANamedColourBeatsItsComponentsOnEveryScreen) {
  CColorRef previous = context.SetTextColor(CColorRef(0, 0, 0, "red"));
  EXPECT_EQ(previous.Red(), 0);
  EXPECT_TRUE(previous.m_Name.IsEmpty());
  CColorRef now = context.GetTextColor();
  EXPECT_EQ(now.Red(), 255);
  EXPECT_EQ(now.Green(), 0);
  EXPECT_EQ(now.Blue(), 0);
  // A one-pixel rectangle: filled in the background, outlined 2x2 in red.
  EXPECT_TRUE(context.Rectangle(0, 0, 0, 0));
  CBrush brush(CColorRef(0, 255, 0));
  CRect rect(0, 0, 0, 0);
  context.FillRect(&rect, &brush);  // no + 1 here: nothing
  TInkMap ink = Ink();
  ASSERT_EQ(ink.size(), 1u);
  const TInk& red = ink[Rgb(255, 0, 0)];
  EXPECT_EQ(red.count, 4);
  EXPECT_EQ(red.right, 1);
  EXPECT_EQ(red.bottom, 1);
}

TEST_F(DeviceColors, FillTakesTheBrushAndRestoresTheGC) {
  XGCValues before = GC_Values();
  CBrush brush(CColorRef(0, 0, 255));
  CRect rect(100, -100, 200, -200);  // device (69, 69) to (138, 138)
  context.FillRect(&rect, &brush);
  TInkMap ink = Ink();
  ASSERT_EQ(ink.size(), 1u);
  const TInk& blue = ink[Rgb(0, 0, 255)];
  EXPECT_EQ(blue.count, 69 * 69);
  EXPECT_EQ(blue.left, 69);
  EXPECT_EQ(blue.top, 69);
  EXPECT_EQ(blue.right, 137);
  EXPECT_EQ(blue.bottom, 137);
  XGCValues after = GC_Values();
  EXPECT_EQ(after.foreground, before.foreground);
  EXPECT_EQ(after.background, before.background);
}

TEST_F(DeviceColors, SelectingTheReturnedObjectRestoresTheGCExactly) {
  XGCValues before = GC_Values();
  CPen pen(0, 10, CColorRef(0, 128, 0));
  CPen* savedPen = context.SelectObject(&pen);
  XGCValues withPen = GC_Values();
  EXPECT_NE(withPen.foreground, before.foreground);
  EXPECT_EQ(withPen.line_width, 6);  // 10 * 1280 / 1842
  CBrush brush(CColorRef(255, 255, 0));
  CBrush* savedBrush = context.SelectObject(&brush);
  EXPECT_NE(GC_Values().background, before.background);
  context.LineTo(100, 0);
  EXPECT_EQ(context.SelectObject(savedPen), savedPen);
  EXPECT_EQ(context.SelectObject(savedBrush), savedBrush);
  XGCValues after = GC_Values();
  EXPECT_EQ(after.foreground, before.foreground);
  EXPECT_EQ(after.background, before.background);
  EXPECT_EQ(after.line_width, before.line_width);
  EXPECT_EQ(after.line_style, before.line_style);
  EXPECT_EQ(after.cap_style, before.cap_style);
  // The line went out in the pen's green, 6 pixels thick.
  TInkMap ink = Ink();
  ASSERT_EQ(ink.size(), 1u);
  EXPECT_EQ(ink.begin()->first, Rgb(0, 128, 0));
  EXPECT_EQ(ink.begin()->second.bottom - ink.begin()->second.top + 1, 3);  // half the width shows below y 0
}

TEST_F(DeviceColors, TextAndBackgroundColoursAnswerThePreviousOnes) {
  CColorRef first = context.SetTextColor(CColorRef(0, 0, 255));
  EXPECT_EQ(std::make_tuple(first.Red(), first.Green(), first.Blue()), Rgb(0, 0, 0));
  CColorRef second = context.SetTextColor(CColorRef(10, 20, 30, "navy"));
  EXPECT_EQ(std::make_tuple(second.Red(), second.Green(), second.Blue()), Rgb(0, 0, 255));
  CColorRef third = context.SetTextColor(CColorRef(0, 0, 0));
  EXPECT_EQ(third.Blue(), 128);  // the server's navy is 0 0 128
  CColorRef back = context.SetBkColor(CColorRef(1, 2, 3));
  EXPECT_EQ(std::make_tuple(back.Red(), back.Green(), back.Blue()), Rgb(255, 255, 255));
  EXPECT_TRUE(back.m_Name.IsEmpty());
  // Fresh objects of the same colour land on the same pixel.
  context.SetTextColor(CColorRef(12, 34, 56));
  unsigned long pixel = GC_Values().foreground;
  context.SetTextColor(CColorRef(0, 0, 0));
  context.SetTextColor(CColorRef(12, 34, 56));
  EXPECT_EQ(GC_Values().foreground, pixel);
}

TEST_F(DeviceColors, NothingReachesXWrappedToSixteenBits) {
  // One logical unit is 200 pixels: logical y -328 is device y 65,600,
  // which 16 bits would show at y 64.
  context.SetDisplayRatios(1000, 1000, 1, 1);
  context.SetTextColor(CColorRef(255, 0, 0));
  EXPECT_TRUE(context.Rectangle(0, -328, 0, -329));
  EXPECT_TRUE(context.TextOut(0, -328, "HHHH", 4));
  context.MoveTo(0, -328);
  context.LineTo(1, -328);
  CBrush brush(CColorRef(0, 0, 255));
  CRect far(0, -328, 1, -329);
  context.FillRect(&far, &brush);
  EXPECT_TRUE(Ink().empty());
  // A line from the corner to device (200, 70,000) is clipped, not wrapped:
  // only its first pixels, in column 0, are on the window.
  context.MoveTo(0, 0);
  context.LineTo(1, -350);
  TInkMap ink = Ink();
  ASSERT_EQ(ink.size(), 1u);
  const TInk& line = ink[Rgb(255, 0, 0)];
  EXPECT_EQ(line.left, 0);
  EXPECT_EQ(line.right, 0);
  EXPECT_EQ(line.top, 0);
  EXPECT_EQ(line.bottom, kHeight - 1);
  // Rectangles of negative size draw nothing at all.
  XClearWindow(display, drawWindow);
  context.SetDisplayRatios(1280, 1024, 325, 260);
  EXPECT_TRUE(context.Rectangle(100, -10, 50, -100));
  EXPECT_TRUE(context.Rectangle(10, -100, 50, -10));
  EXPECT_TRUE(Ink().empty());
}

TEST_F(DeviceColors, InvalidateRepaintsOnceAndClearsOnlyWhenAsked) {
  CBrush brush(CColorRef(0, 0, 255));
  CRect rect(0, 0, 100, -100);
  context.FillRect(&rect, &brush);
  EXPECT_EQ(SentExposes(), 0);
  window.Invalidate(0);
  EXPECT_EQ(SentExposes(), 1);
  EXPECT_EQ(Ink()[Rgb(0, 0, 255)].count, 69 * 69);  // not cleared
  CRect part(0, 0, 10, 10);
  window.InvalidateRect(&part, 1);
  EXPECT_EQ(SentExposes(), 1);
  EXPECT_EQ(Ink()[Rgb(0, 0, 255)].count, 69 * 69 - 100  /* the device rectangle 10 by 10 */);
  window.Invalidate(1);
  EXPECT_EQ(SentExposes(), 1);
  EXPECT_TRUE(Ink().empty());
}

TEST_F(DeviceColors, TopWindowIsTheOneBelowTheRoot) {
  Window child = XCreateSimpleWindow(display, drawWindow, 0, 0, 10, 10, 0, black, white);
  Window grandchild = XCreateSimpleWindow(display, child, 0, 0, 5, 5, 0, black, white);
  EXPECT_EQ(window.GetTopWindow(grandchild), drawWindow);
  EXPECT_EQ(window.GetTopWindow(drawWindow), drawWindow);
  XDestroyWindow(display, child);
}

TEST_F(DeviceColors, PageColourBecomesTheWindowsBackground) {
  context.SetPageColor(CColorRef(0, 128, 0));
  XClearWindow(display, drawWindow);
  TInkMap ink = Ink();
  ASSERT_EQ(ink.size(), 1u);
  EXPECT_EQ(ink[Rgb(0, 128, 0)].count, kWidth * kHeight);
}

TEST_F(DeviceColors, OnTrueColorThePixelItselfGivesTheComponents) {
  Visual* visual = DefaultVisual(display, DefaultScreen(display));
  if (visual->c_class != TrueColor) GTEST_SKIP() << "a true-colour screen";
  // Whatever the start-up table holds for a small pixel value, the visual
  // decides: pixel 200 is blue 200 on a 24-bit screen.
  TColorValue bogus;
  bogus.pixel = 200;
  bogus.red = 0xffff;
  Resource::GetResourceObject()->SetColorInMaps(bogus);
  TColorValue asked;
  asked.pixel = 200;
  Resource::GetResourceObject()->GetColorInColormap(&asked);
  EXPECT_EQ(asked.red, 0);
  EXPECT_EQ(asked.blue, 200 * 257);
  XSetForeground(display, gc, 200);
  CColorRef shown = context.GetTextColor();
  EXPECT_EQ(std::make_tuple(shown.Red(), shown.Green(), shown.Blue()), Rgb(0, 0, 200));
}

TEST_F(DeviceColors, AClosedDisplayTakesItsRememberedColoursAlong) {
  // On a colormapped screen the cells of a closed client are free again and
  // may hold another colour by the time a new connection asks.
  Display* first = XOpenDisplay(nullptr);
  ASSERT_NE(first, nullptr);
  Colormap shared = DefaultColormap(first, DefaultScreen(first));
  CColorRef before(1, 2, 3);
  before.Allocate(first, shared, 1);
  XCloseDisplay(first);
  Display* second = XOpenDisplay(nullptr);
  ASSERT_NE(second, nullptr);
  XColor other{};
  other.red = 200 * 257, other.green = 100 * 257, other.blue = 50 * 257;
  XAllocColor(second, shared, &other);
  CColorRef after(1, 2, 3);
  after.Allocate(second, shared, 1);
  XColor shown{};
  shown.pixel = after.Pixel();
  XQueryColor(second, shared, &shown);
  EXPECT_EQ(shown.red >> 8, 1);
  EXPECT_EQ(shown.green >> 8, 2);
  EXPECT_EQ(shown.blue >> 8, 3);
  XCloseDisplay(second);
}
