// The splash picture on the screen, on a 24-bit TrueColor and (x8 run) an
// 8-bit PseudoColor screen: the picture is quantised to the display's colours.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <filesystem>
#include <string>

#include "support/host_shim.h"
#include "support/paths.h"
#include "support/x_windows.h"

namespace fs = std::filesystem;

namespace {
// Mean brightness (0..255) of a block of the window, read back from the server.
double MeanBrightness(Display* display, Window window, int x0, int y0, int width, int height) {
  XImage* image = XGetImage(display, window, x0, y0, width, height, AllPlanes, ZPixmap);
  if (!image) return -1;
  XWindowAttributes attributes{};
  XGetWindowAttributes(display, window, &attributes);
  double sum = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      XColor color{};
      color.pixel = XGetPixel(image, x, y);
      XQueryColor(display, attributes.colormap, &color);
      sum += (color.red + color.green + color.blue) / 3.0 / 257.0;
    }
  XDestroyImage(image);
  return sum / (width * height);
}
}  // namespace

TEST(HostSplashPseudoColor, SplashShowsThePictureCentredUntilItIsUnmapped) {
  fs::path install = ztest::ScratchDir("install");
  const char* staged = std::getenv("ZEPHRIN_HOME");
  ASSERT_NE(staged, nullptr);
  fs::copy(fs::path(staged) / "Resources", install / "Resources", fs::copy_options::recursive);
  fs::create_directories(install / "Fonts");
  ztest::WriteFile((install / "Fonts" / "fonts.dir").string(), "0\n");
  fs::path home = ztest::ScratchDir("home");
  fs::create_directories(home / ".zephrin" / "Cache");
  ztest::WriteFile((home / ".zephrin" / "Cache" / "registry").string(), "");

  Display* display = XOpenDisplay(nullptr);
  ASSERT_NE(display, nullptr);
  ztest::HostShim shim;
  shim.SetEnv("ZEPHRIN_HOME", install.string());
  shim.SetEnv("HOME", home.string());
  ASSERT_TRUE(shim.Start());
  std::string bytes;
  ASSERT_TRUE(shim.ReadReport(&bytes));
  ASSERT_EQ(ztest::HostShim::Decode(bytes).ready, 1u);

  // The report comes a second before the splash goes: look now.
  Window splash = 0;
  for (Window w : ztest::FindWindowsByTitle(display, "zephrin")) {
    XWindowAttributes a{};
    if (XGetWindowAttributes(display, w, &a) && a.width == 360 && a.height == 200 && a.map_state == IsViewable)
      splash = w;
  }
  ASSERT_NE(splash, 0u) << "no mapped 360x200 splash window";
  XWindowAttributes a{};
  XGetWindowAttributes(display, splash, &a);
  Window child;
  int x = 0, y = 0;
  XTranslateCoordinates(display, splash, DefaultRootWindow(display), 0, 0, &x, &y, &child);
  // 1280x1024 screen: 640 - 180 and 512 - 100.
  EXPECT_EQ(x, 460);
  EXPECT_EQ(y, 412);
  // The white top stroke of the Z against the dark strip at the bottom.
  EXPECT_GT(MeanBrightness(display, splash, 80, 48, 20, 5), 200);
  EXPECT_LT(MeanBrightness(display, splash, 170, 193, 20, 5), 60);
  EXPECT_TRUE(ztest::WaitUnmapped(display, splash, 3000));
  XCloseDisplay(display);
}
