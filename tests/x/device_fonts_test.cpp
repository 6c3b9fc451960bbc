// Fonts on the drawing device: the installation's fonts measure and draw, and
// a missing font shows one wizard however many fail.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "device/context_xwin.h"
#include "device/font_family.h"
#include "framework/gdi_objects.h"
#include "framework/wnd.h"
#include "host/resource.h"
#include "host/zephrin_stat.h"
#include "host/zr_server.h"
#include "support/x_app.h"
#include "support/x_windows.h"

namespace {
// 24 point roman at 100 dpi.
const char* const kRoman = "-corvane-zrcmr-medium-r-normal--*-240-100-100-p-*-iso8859-1";
const char* const kItalic = "-corvane-zrcmti-medium-i-normal--*-240-100-100-p-*-iso8859-1";

int g_nWizardsClosed = 0;

// A font of the installation behind the extended-font interface: only its
// selection matters to the device.
class TLoadedFont : public TExtendedFont {
 public:
  TLoadedFont(CWnd* window, const char* name) { m_Font.CreateFont(window, name); }
  int Ascent(TFmtContext&) override { return 0; }
  int CharacterDepth(int, TFmtContext&) override { return 0; }
  int CharacterHeight(int, TFmtContext&) override { return 0; }
  int CharacterVerticalThickness(int, TFmtContext&) override { return 0; }
  int CharacterWidth(int, TFmtContext&) override { return 0; }
  TExtendedFont_PI* CreateFontForCharacter(int, int, int, TFmtContext&, int) override { return nullptr; }
  int Descent(TFmtContext&) override { return 0; }
  int ExternalLeading(TFmtContext&) override { return 0; }
  int Height(TFmtContext&) override { return 0; }
  TExtendedFont_PI* Select(TFmtContext& context) override {
    context.SelectObject(&m_Font);
    return this;
  }
  CFont m_Font;
};

class DeviceFonts : public ::testing::Test {
 protected:
  void SetUp() override {
    x = ztest::SharedXApp();
    ASSERT_NE(x, nullptr);
    display = x->display;
    ASSERT_TRUE(ztest::UseInstalledFonts(display));

    ztest::CreateDrawWindow(x, 300, 100, &drawWindow, &gc, &window);
    context.Set_Window(&window);
  }
  void TearDown() override {
    ztest::DestroyDrawWindow(display, drawWindow, gc);
  }

  ztest::XApp* x = nullptr;
  Display* display = nullptr;
  Window drawWindow = 0;
  GC gc = nullptr;
  CWnd window;
  TFmtContext_XWin context;
};
}  // namespace

TEST_F(DeviceFonts, ExtentsComeFromTheSelectedFontInLogicalUnits) {
  CFont roman;
  ASSERT_EQ(roman.CreateFont(&window, kRoman), 1);
  EXPECT_STREQ(roman.Get_FaceName(), kRoman);
  XFontStruct* metrics = roman.Get_Extent();
  ASSERT_NE(metrics, nullptr);
  CFont* saved = context.SelectObject(&roman);
  EXPECT_EQ(context.Get_FontMetrics(), metrics);
  EXPECT_EQ(window.m_pFontMetrics, metrics);

  // Device widths scaled by 1842/1280 and heights by 1474/1024, truncated.
  const int width = XTextWidth(metrics, "Hello", 5);
  const int height = metrics->ascent + metrics->descent;
  CSize extent = context.GetTextExtent("Hello", 5);
  EXPECT_EQ(extent.cx, width * 1842 / 1280);
  EXPECT_EQ(extent.cy, height * 1474 / 1024);
  EXPECT_EQ(context.GetTextExtent("", 0).cy, extent.cy);  // the font's height, whatever the text
  EXPECT_EQ(context.Get_QuadWidth(), XTextWidth(metrics, "M", 1) * 1842 / 1280);

  CFont italic;
  italic.CreateFont(&window, kItalic);
  EXPECT_EQ(context.SelectObject(&italic), saved);
  EXPECT_EQ(context.Get_FontMetrics(), italic.Get_Extent());
  // The saved font took the roman from the GC: selecting it brings it back.
  context.SelectObject(saved);
  EXPECT_EQ(context.Get_FontMetrics(), metrics);
  XGCValues values{};
  XGetGCValues(display, gc, GCFont, &values);
  EXPECT_EQ(values.font, metrics->fid);
}

TEST_F(DeviceFonts, AContextWithNoFontSelectedMeasuresTheGCsFont) {
  CSize extent = context.GetTextExtent("abc", 3);
  EXPECT_GT(extent.cx, 0);
  EXPECT_GT(extent.cy, 0);
  XFontStruct* first = context.Get_FontMetrics();
  ASSERT_NE(first, nullptr);
  context.GetTextExtent("abc", 3);
  EXPECT_EQ(context.Get_FontMetrics(), first);  // asked of the server once
}

TEST_F(DeviceFonts, TwoMissingFontsShowOneWizardAndThrowTwice) {
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  stat->Initialize(x->shell, [] { ++g_nWizardsClosed; });
  // The wizard is modal: a timer closes it the window manager's way.
  XtAppAddTimeOut(x->app, 100, [](XtPointer data, XtIntervalId*) {
    Display* display = static_cast<Display*>(data);
    Window found = ztest::FindWindowByTitle(display, ZephrinStat::kWizardTitle, 5000);
    if (found) ztest::SendDeleteWindow(display, found);
  }, display);
  int thrown = 0;
  for (const char* name : {"-corvane-nosuchface-medium-r-normal--*-240-100-100-p-*-iso8859-1",
                           "-corvane-another-medium-r-normal--*-240-100-100-p-*-iso8859-1"}) {
    CFont font;
    try {
      font.CreateFont(&window, name);
    } catch (const CFontException&) {
      ++thrown;
    }
    EXPECT_EQ(font.Get_Extent(), nullptr);
  }
  EXPECT_EQ(thrown, 2);
  EXPECT_EQ(g_nWizardsClosed, 1);
  EXPECT_EQ(stat->GetFontStatus(), ZephrinStat::k_FontNotLoaded);
  EXPECT_NE(stat->GetFontPage().str().find("nosuchface"), std::string::npos);
}

TEST_F(DeviceFonts, CharacterOutDrawsInTheGivenFontAndPutsTheCurrentOneBack) {
  TLoadedFont roman(&window, kRoman), italic(&window, kItalic);
  XMapWindow(display, drawWindow);
  XSync(display, False);
  roman.Select(context);
  TExtendedFont::fg_pCurrent = &roman;
  context.CharacterOut('M', 100, -100, &italic);
  EXPECT_EQ(TExtendedFont::fg_pCurrent, &roman);
  EXPECT_EQ(context.Get_FontMetrics(), roman.m_Font.Get_Extent());
  XGCValues values{};
  XGetGCValues(display, gc, GCFont, &values);
  EXPECT_EQ(values.font, roman.m_Font.Get_Extent()->fid);
  // Without a font the current one draws and nothing changes.
  context.CharacterOut('M', 10, -10, nullptr);
  EXPECT_EQ(TExtendedFont::fg_pCurrent, &roman);
  TExtendedFont::fg_pCurrent = nullptr;
}
