// An unknown command on the X device: measured as the text "\name" in the
// current font and drawn in red; a known symbol draws no red.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "device/context_xwin.h"
#include "device/font_family.h"
#include "format/leaf_nodes.h"
#include "format/tex_mode.h"
#include "framework/gdi_objects.h"
#include "framework/wnd.h"
#include "support/x_app.h"
#include "support/x_windows.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

namespace {
const char* const kRoman = "-corvane-zrcmr-medium-r-normal--*-240-100-100-p-*-iso8859-1";

// The installation's roman behind the extended-font interface: selection and
// ascent/descent from the server's metrics.
class TLoadedFont : public TExtendedFont {
 public:
  TLoadedFont(CWnd* window, const char* name) { m_Font.CreateFont(window, name); }
  int Ascent(TFmtContext&) override { return m_Font.Get_Extent() ? m_Font.Get_Extent()->ascent : 0; }
  int CharacterDepth(int, TFmtContext&) override { return 0; }
  int CharacterHeight(int, TFmtContext&) override { return 0; }
  int CharacterVerticalThickness(int, TFmtContext&) override { return 0; }
  int CharacterWidth(int, TFmtContext&) override { return 0; }
  TExtendedFont_PI* CreateFontForCharacter(int, int, int, TFmtContext&, int) override { return nullptr; }
  int Descent(TFmtContext&) override { return m_Font.Get_Extent() ? m_Font.Get_Extent()->descent : 0; }
  int ExternalLeading(TFmtContext&) override { return 0; }
  int Height(TFmtContext& c) override { return Ascent(c) + Descent(c); }
  TExtendedFont_PI* Select(TFmtContext& context) override {
    context.SelectObject(&m_Font);
    return this;
  }
  CFont m_Font;
};

class UnknownCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    x = ztest::SharedXApp();
    ASSERT_NE(x, nullptr);
    display = x->display;
    ASSERT_TRUE(ztest::UseInstalledFonts(display));
    ztest::CreateDrawWindow(x, 300, 100, &drawWindow, &gc, &window);
    context.Set_Window(&window);
    context.m_bForceDraw = 1;
    TStringPool::InitializeGlobal();
    TGlobalString::Initialize();
    TGlobalString::InitializeSymbolFonts();  // \alpha has its glyph
    XMapWindow(display, drawWindow);
    XSync(display, False);
  }
  void TearDown() override {
    TExtendedFont::fg_pCurrent = nullptr;
    ztest::DestroyDrawWindow(display, drawWindow, gc);
  }

  // Pixels of the window that are clearly red.
  int RedPixels() {
    XSync(display, False);
    XImage* image = XGetImage(display, drawWindow, 0, 0, 300, 100, AllPlanes, ZPixmap);
    if (!image) return -1;
    const Visual* visual = DefaultVisual(display, DefaultScreen(display));
    int red = 0;
    for (int y = 0; y < 100; ++y)
      for (int x0 = 0; x0 < 300; ++x0) {
        const unsigned long pixel = XGetPixel(image, x0, y);
        XColor color{};
        color.pixel = pixel;
        XQueryColor(display, DefaultColormap(display, DefaultScreen(display)), &color);
        (void)visual;
        if (color.red > 0xc000 && color.green < 0x4000 && color.blue < 0x4000) ++red;
      }
    XDestroyImage(image);
    return red;
  }

  ztest::XApp* x = nullptr;
  Display* display = nullptr;
  Window drawWindow = 0;
  GC gc = nullptr;
  CWnd window;
  TFmtContext_XWin context;
};

TEST_F(UnknownCommand, IsTheWidthOfItsTextAndDrawsRed) {
  TLoadedFont roman(&window, kRoman);
  roman.Select(context);
  TExtendedFont::fg_pCurrent = &roman;
  g_CurrentTexMode = 3;
  TFmtControlSequenceNode zork(TStringPool::g_pGlobal->Put("zork"));
  zork.m_Position = CPoint(20, -80);
  const TFmtExtent* extent = zork.Compose(context);
  EXPECT_EQ(extent->m_nWidth, context.GetTextExtent("\\zork", 5).cx);
  EXPECT_GT(extent->m_nWidth, 0);
  EXPECT_EQ(RedPixels(), 0);
  zork.Draw(context);
  EXPECT_GT(RedPixels(), 20);
}

TEST_F(UnknownCommand, AKnownSymbolDrawsNoRed) {
  TLoadedFont roman(&window, kRoman);
  roman.Select(context);
  TExtendedFont::fg_pCurrent = &roman;
  g_CurrentTexMode = 4;
  TFmtControlSequenceNode alpha(TStringPool::g_pGlobal->Put("alpha"));
  alpha.m_Position = CPoint(20, -80);
  alpha.Compose(context);
  alpha.Draw(context);
  EXPECT_EQ(RedPixels(), 0);
  g_CurrentTexMode = 3;
}
}  // namespace
