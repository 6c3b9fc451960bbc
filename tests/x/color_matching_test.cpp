// Colour matching against the colormap read at start-up: a colormap filled
// by another client, named colours placed by their X names, pixels of a deep
// screen, and the resource's menus and dialog colours. Runs at 24 and 8 bits.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <Xm/Xm.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "framework/color_ref.h"
#include "host/resource.h"
#include "host/zr_server.h"
#include "support/x_app.h"

namespace {
class ColorMatchingColors : public ::testing::Test {
 protected:
  void SetUp() override {
    x = ztest::SharedXApp();
    ASSERT_NE(x, nullptr);
    display = x->display;
    screen = DefaultScreen(display);
    colormap = DefaultColormap(display, screen);
    visual = DefaultVisual(display, screen);
    server.SetEnv(getpid(), 1);
    server.SetGUI(&x->app, x->shell, display, screen, visual, DefaultDepth(display, screen), 255, 0, colormap);
    resource = Resource::GetResourceObject();
    resource->SetResources(&server, &x->app);
    CColorRef::ForgetAllocations();
  }
  bool TrueColorScreen() const { return visual->c_class == TrueColor && DefaultDepth(display, screen) == 24; }

  ztest::XApp* x = nullptr;
  Display* display = nullptr;
  int screen = 0;
  Colormap colormap = 0;
  Visual* visual = nullptr;
  ZRServer server;
  Resource* resource = nullptr;
};

void Store(Display* display, Colormap colormap, unsigned long pixel, int r, int g, int b) {
  XColor cell{};
  cell.pixel = pixel;
  cell.flags = DoRed | DoGreen | DoBlue;
  cell.red = static_cast<unsigned short>(r * 257);
  cell.green = static_cast<unsigned short>(g * 257);
  cell.blue = static_cast<unsigned short>(b * 257);
  XStoreColor(display, colormap, &cell);
}
}  // namespace

TEST_F(ColorMatchingColors, AFullColormapGivesTheNearestCellAndTheLowerOfTwoEquidistant) {
  if (visual->c_class != PseudoColor || visual->map_entries != 256) GTEST_SKIP() << "needs an 8-bit PseudoColor screen";
  // Another client takes every free cell, writable, so that none can be
  // shared, and fills them with green.
  Display* other = XOpenDisplay(DisplayString(display));
  ASSERT_NE(other, nullptr);
  std::vector<unsigned long> taken;
  for (unsigned long pixel; XAllocColorCells(other, colormap, False, nullptr, 0, &pixel, 1);) taken.push_back(pixel);
  ASSERT_GE(taken.size(), 3u);
  std::sort(taken.begin(), taken.end());
  for (unsigned long pixel : taken) Store(other, colormap, pixel, 0, 255, 0);
  // Purple (128, 0, 128) is asked. Blue 130 and blue 126 are both 2 x 257
  // away; the higher pixel gets the one stored first.
  const unsigned long low = taken[0], high = taken[1], third = taken[2];
  Store(other, colormap, high, 128, 0, 130);
  Store(other, colormap, low, 128, 0, 126);
  XSync(other, False);

  resource->SetColors();
  CColorRef purple(128, 0, 128);
  purple.Allocate(display, colormap, 1);
  EXPECT_EQ(purple.Pixel(), low);
  EXPECT_EQ(purple.m_Placed.blue, 126 * 257);
  EXPECT_EQ(purple.m_Asked.blue, 128 * 257);  // what was asked stays

  // A cell one step away beats both.
  Store(other, colormap, third, 128, 0, 129);
  XSync(other, False);
  resource->SetColors();
  CColorRef again(128, 0, 128);
  again.Allocate(display, colormap, 1);
  EXPECT_EQ(again.Pixel(), third);
  XCloseDisplay(other);
}

TEST_F(ColorMatchingColors, NamedColoursArePlacedByTheirXNamesAndAskedByTheirNumbers) {
  resource->SetColors();
  CColorRef* green = resource->GetColorResource(70001);
  ASSERT_NE(green, nullptr);
  EXPECT_EQ(green->m_Asked.green, 128 * 257);
  EXPECT_EQ(green->m_Placed.green, 0xffff);  // the server's "green" is full green
  EXPECT_EQ(green->m_Placed.red + green->m_Placed.blue, 0);
  if (TrueColorScreen()) {
    EXPECT_EQ(green->Pixel(), 0x00ff00u);
    EXPECT_EQ(resource->GetColorResource(70016)->Pixel(), 0xffffffu);  // "white", asked as 252
  }
  // Read back through the start-up table or, beyond its 256 cells, the server.
  TColorValue value{};
  value.pixel = static_cast<uint32_t>(green->Pixel());
  resource->GetColorInColormap(&value);
  EXPECT_EQ(value.green, 0xffff);
  EXPECT_EQ(value.red + value.blue, 0);
  resource->GetColorInScaledColormap(&value);
  EXPECT_EQ(value.green, 255);
  // A pixel the screen does not have is left as it is, without an X error.
  TColorValue none{};
  none.pixel = TrueColorScreen() ? 0x1000000u : 300u;
  none.red = 7;
  resource->GetColorInColormap(&none);
  resource->SetColorInMaps(none);
  EXPECT_EQ(none.red, 7);
  XSync(display, False);
  EXPECT_EQ(resource->GetColorResource(69999), nullptr);
  EXPECT_EQ(resource->GetColorResource(70028), nullptr);
}

TEST_F(ColorMatchingColors, DialogsTakeTheGreyOfTheTableAndMenusGoByTheirIds) {
  resource->SetColors();
  resource->SetStandardColors(x->shell);
  Pixel background = 0;
  XtVaGetValues(x->shell, XmNbackground, &background, nullptr);
  EXPECT_EQ(background, resource->GetColorResource(70023)->Pixel());  // gray
  EXPECT_NE(resource->GetMenuResource(119), nullptr);
  EXPECT_EQ(resource->GetMenuResource(24542), nullptr);
  CMenu* other = resource->GetMenuResource(5);
  ASSERT_NE(other, nullptr);
  EXPECT_NE(other, resource->GetMenuResource(119));
  EXPECT_EQ(other->GetList().m_nCount, 1);
}
