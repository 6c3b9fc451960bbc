// The 28 named colours placed at start-up, and the nearest-cell fallback of a
// full colormap. The fallback needs a PseudoColor screen (x8 run).
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <vector>

#include "framework/wnd.h"
#include "host/resource.h"
#include "host/zr_server.h"

namespace {
class NamedColors : public ::testing::Test {
 protected:
  void SetUp() override {
    display = XOpenDisplay(nullptr);
    ASSERT_NE(display, nullptr);
    screen = DefaultScreen(display);
    colormap = DefaultColormap(display, screen);
    server.SetEnv(getpid(), 1);
    server.SetGUI(nullptr, nullptr, display, screen, DefaultVisual(display, screen), DefaultDepth(display, screen),
                  255, 0, colormap);
    resource = Resource::GetResourceObject();
    resource->SetResources(&server, nullptr);
  }
  void TearDown() override {
    if (display) XCloseDisplay(display);
  }
  unsigned long PixelOf(unsigned id) { return resource->GetColorResource(id)->Pixel(); }

  Display* display = nullptr;
  int screen = 0;
  Colormap colormap = 0;
  ZRServer server;
  Resource* resource = nullptr;
};
}  // namespace

TEST_F(NamedColors, TableHoldsTwentyEightColoursByIdWithTheirOwnValues) {
  resource->SetColors();
  EXPECT_EQ(resource->GetColorResource(69999), nullptr);
  EXPECT_EQ(resource->GetColorResource(70028), nullptr);
  const struct { unsigned id; const char* name; int r, g, b; } cases[] = {
      {70000, "black", 0, 0, 0},       {70006, "DarkRed", 142, 35, 107}, {70013, "magenta", 255, 0, 255},
      {70016, "white", 252, 252, 252}, {70027, "grey57", 145, 145, 145},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    CColorRef* color = resource->GetColorResource(c.id);
    ASSERT_NE(color, nullptr);
    EXPECT_STREQ(color->m_Name, c.name);
    EXPECT_EQ(color->Red(), c.r);
    EXPECT_EQ(color->Green(), c.g);
    EXPECT_EQ(color->Blue(), c.b);
  }
  // Placed through the name: the server's "red" is what its pixel shows.
  XColor shown{};
  shown.pixel = PixelOf(70011);
  XQueryColor(display, colormap, &shown);
  EXPECT_EQ(shown.red, 0xffff);
  EXPECT_EQ(shown.green, 0);
  EXPECT_EQ(shown.blue, 0);
}

TEST_F(NamedColors, FullPseudoColorMapFallsBackOnTheNearestCell) {
  Visual* visual = DefaultVisual(display, screen);
  if (visual->c_class != PseudoColor || visual->map_entries != 256) GTEST_SKIP() << "needs an 8-bit PseudoColor screen";
  // A colormap whose every cell is ours and writable, so no colour can be
  // allocated in it: cell p is the grey p/255, except cell 255, pure red.
  Colormap full = XCreateColormap(display, RootWindow(display, screen), visual, AllocAll);
  const unsigned long red = 255;
  for (unsigned long p = 0; p < 256; ++p) {
    XColor cell{};
    cell.pixel = p;
    cell.flags = DoRed | DoGreen | DoBlue;
    cell.red = cell.green = cell.blue = static_cast<unsigned short>(p * 257);
    if (p == red) cell.green = cell.blue = 0, cell.red = 0xffff;
    XStoreColor(display, full, &cell);
  }
  XSync(display, False);
  server.SetGUI(nullptr, nullptr, display, screen, visual, 8, 255, 0, full);
  resource->SetColors();

  // Worked by hand: the sum of channel distances is smallest at the grey of
  // the median channel, or at an exact cell.
  EXPECT_EQ(PixelOf(70011), red);  // red (255, 0, 0): the red cell, distance 0
  EXPECT_EQ(PixelOf(70016), 252u); // white (252, 252, 252): grey 252
  EXPECT_EQ(PixelOf(70023), 190u); // gray (190, 190, 190)
  EXPECT_EQ(PixelOf(70012), 35u);  // navy (35, 35, 142): median 35
  EXPECT_EQ(PixelOf(70027), 145u); // grey57
  EXPECT_EQ(PixelOf(70000), 0u);   // black: grey 0
  EXPECT_EQ(PixelOf(70002), 0u);   // dark green (0, 64, 0): median 0
  EXPECT_EQ(PixelOf(70018), 203u); // pink (255, 192, 203): median 203
  XFreeColormap(display, full);
}

TEST_F(NamedColors, AllocateThroughAWindowWorksOnce) {
  resource->SetColors();
  CWnd window;
  window.m_pDisplay = display;
  window.m_nScreen = screen;
  CColorRef color(255, 0, 0);
  color.Allocate(&window, 1);
  EXPECT_EQ(color.m_bAllocated, 1);
  XColor shown{};
  shown.pixel = color.Pixel();
  XQueryColor(display, colormap, &shown);
  EXPECT_EQ(shown.red, 0xffff);
  EXPECT_EQ(shown.blue, 0);
  // The second call changes nothing, even for another colour.
  unsigned long first = color.Pixel();
  color.m_Placed.red = 0;
  color.m_Placed.blue = 0xffff;
  color.Allocate(&window, 1);
  EXPECT_EQ(color.Pixel(), first);
  // Without a window the colour asked for gets pixel 0.
  CColorRef none(1, 2, 3);
  none.m_Asked.pixel = 77;
  none.Allocate(static_cast<CWnd*>(nullptr), 1);
  EXPECT_EQ(none.m_Asked.pixel, 0u);
  EXPECT_EQ(none.m_bAllocated, 1);
}
