// The X drawing device without a window: conversions, clip tests, scaled
// features, profile values and the fixed answers of a context that cannot
// draw.
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <string>

#include "device/context_xwin.h"
#include "format/node.h"
#include "framework/gdi_objects.h"
#include "host/np_zephrin_app.h"
#include "host/resource.h"
#include "host/zr_server.h"
#include "support/paths.h"

namespace {
// The test server's screen: 1280x1024 pixels at 325x260 mm.
void UseTestScreen(TFmtContext_XWin& context) { context.SetDisplayRatios(1280, 1024, 325, 260); }

std::string Rgb(const CColorRef& color) {
  return std::to_string(color.Red()) + " " + std::to_string(color.Green()) + " " + std::to_string(color.Blue());
}
}  // namespace

TEST(DeviceRatios, FollowTheScreensMillimetres) {
  TFmtContext_XWin context;
  EXPECT_EQ(context.Get_DisplayWidth(), 1);
  EXPECT_EQ(context.Get_LogicalHeight(), 1);
  UseTestScreen(context);
  // 325 mm * 1440 / 254 = 1842.5, 260 mm * 1440 / 254 = 1474.0: truncated.
  EXPECT_EQ(context.Get_DisplayWidth(), 1280);
  EXPECT_EQ(context.Get_DisplayHeight(), 1024);
  EXPECT_EQ(context.Get_LogicalWidth(), 1842);
  EXPECT_EQ(context.Get_LogicalHeight(), 1474);
  // A server that reports 0 mm leaves every ratio at 1, as with no window.
  context.SetDisplayRatios(1280, 1024, 0, 260);
  EXPECT_EQ(context.Get_DisplayWidth(), 1);
  EXPECT_EQ(context.Get_DisplayHeight(), 1);
  EXPECT_EQ(context.Get_LogicalWidth(), 1);
  EXPECT_EQ(context.Get_LogicalHeight(), 1);
}

TEST(DeviceConversions, WorkedValuesOnTheTestScreen) {
  TFmtContext_XWin context;
  UseTestScreen(context);
  int x = 100, y = -100;
  context.Log2Dev(x, y);
  EXPECT_EQ(x, 69);  // 128000 / 1842 = 69.49
  EXPECT_EQ(y, 69);  // 102400 / 1474 = 69.47
  context.Dev2Log(x, y);
  EXPECT_EQ(x, 99);   // 127098 / 1280 = 99.29
  EXPECT_EQ(y, -99);  // the sign comes back, a unit is lost
  // Negative values truncate toward zero.
  x = -100, y = 100;
  context.Log2Dev(x, y);
  EXPECT_EQ(x, -69);
  EXPECT_EQ(y, -69);

  CSize size(100, 100);
  context.Log2Dev(size);
  EXPECT_EQ(size, CSize(69, 69));  // a positive height stays positive
  context.Dev2Log(size);
  EXPECT_EQ(size, CSize(99, 99));

  CRect rect(100, -100, 200, -300);
  context.LPtoDP(&rect);
  EXPECT_EQ(rect, CRect(69, 69, 138, 208));  // 256000/1842, 307200/1474

  CPoint points[2] = {{100, -100}, {200, -300}};
  context.LPtoDP(points, 0);  // no points: nothing changes
  EXPECT_EQ(points[0], CPoint(100, -100));
  context.LPtoDP(points, 2);
  EXPECT_EQ(points[1], CPoint(138, 208));
}

TEST(DeviceConversions, MultiplyWideAndSaturate) {
  TFmtContext_XWin context;
  // 1 mm: 5 logical units for 1000 pixels, so one unit is 200 pixels.
  context.SetDisplayRatios(1000, 1000, 1, 1);
  int x = 20000000, y = -20000000;  // 4e9 pixels: more than 32 bits hold
  context.Log2Dev(x, y);
  EXPECT_EQ(x, INT_MAX);
  EXPECT_EQ(y, INT_MAX);
  x = INT_MIN, y = INT_MIN;  // negating INT_MIN must not wrap either
  context.Log2Dev(x, y);
  EXPECT_EQ(x, INT_MIN);
  EXPECT_EQ(y, INT_MAX);
  // The test screen scales down: a 32-bit product would wrap, a wide one not.
  UseTestScreen(context);
  x = 2000000000, y = 0;
  context.Log2Dev(x, y);
  EXPECT_EQ(x, 1389793702);  // 2e9 * 1280 / 1842
}

TEST(DeviceWithoutWindow, AnswersWithoutTouchingX) {
  TFmtContext_XWin context;
  CColorRef text = context.SetTextColor(CColorRef(1, 2, 3));
  EXPECT_EQ(Rgb(text), "0 0 0");
  EXPECT_STREQ(text.m_Name, "black");
  CColorRef back = context.SetBkColor(CColorRef(1, 2, 3));
  EXPECT_EQ(Rgb(back), "252 252 252");
  EXPECT_STREQ(back.m_Name, "white");
  EXPECT_EQ(context.GetTextExtent("M", 1), CSize(0, 0));
  EXPECT_EQ(context.Get_QuadWidth(), 0);
  EXPECT_TRUE(context.Rectangle(0, 0, 10, 10));
  EXPECT_FALSE(context.Rectangle(nullptr));
  EXPECT_TRUE(context.TextOut(0, 0, "abc", 0));
  EXPECT_TRUE(context.TextOut(0, 0, "abc", -5));
  EXPECT_TRUE(context.Arc(0, 0, 1, 1, 0, 0, 1, 1));
  EXPECT_FALSE(context.IsPrinting());
  // LineTo only moves the current point.
  EXPECT_EQ(context.MoveTo(5, -6), CPoint(0, 0));
  EXPECT_TRUE(context.LineTo(7, -8));
  EXPECT_EQ(context.MoveTo(0, 0), CPoint(7, -8));
  // A brush selected without a window is still handed back its saved one.
  CBrush brush;
  CBrush* saved = context.SelectObject(&brush);
  ASSERT_NE(saved, nullptr);
  EXPECT_EQ(context.SelectObject(saved), saved);
}

TEST(DeviceClip, NodeIsDrawnWithinTwelveUnitsOfTheClip) {
  TFmtContext_XWin context;
  TFmtNode node;
  node.m_Position = CPoint(100, -200);
  node.m_pExtent->Reset(10, 4, 50);  // box (100, -190, 150, -204), tested as -178 .. -216
  context.Set_ClipRegion(CRect(0, -216, 1000, -400));
  EXPECT_TRUE(node.IsDrawRequired(context));  // the edges touch at 216
  context.Set_ClipRegion(CRect(0, -217, 1000, -400));
  EXPECT_FALSE(node.IsDrawRequired(context));
  context.m_bForceDraw = 1;
  EXPECT_TRUE(node.IsDrawRequired(context));
  context.m_bForceDraw = 0;
  node.m_bDrawAlways = 1;
  EXPECT_TRUE(node.IsDrawRequired(context));
  // Above the clip: the box reaches -178 once raised by 12; -166 does not meet it.
  node.m_bDrawAlways = 0;
  context.Set_ClipRegion(CRect(0, -100, 1000, -166));
  EXPECT_FALSE(node.IsDrawRequired(context));
  context.Set_ClipRegion(CRect(0, -100, 1000, -178));
  EXPECT_TRUE(node.IsDrawRequired(context));
  // An empty clip shows nothing.
  context.Set_ClipRegion(CRect());
  EXPECT_FALSE(node.IsDrawRequired(context));
}

TEST(DeviceClip, IntersectsNormalisesItsArgumentInPlace) {
  TFmtContext_XWin context;
  context.Set_ClipRegion(CRect(0, 0, 100, -100));
  CRect rect(50, -80, 10, -20);
  EXPECT_TRUE(context.IntersectsClippingRegion(rect));
  EXPECT_EQ(rect, CRect(10, 20, 50, 80));
}

TEST(DeviceScaledFeatures, FollowTheTextSize) {
  const int saved = TFmtContext::fg_nRmFontPointSize;
  TFmtContext::fg_nRmFontPointSize = 13;
  TFmtContext::fg_bDoResetScaledFeatures = 1;
  TFmtContext_XWin::ResetScaledFeatures();
  EXPECT_EQ(TFmtContext::fg_bDoResetScaledFeatures, 0);
  EXPECT_EQ(TFmtContext::fg_nParSkip, 12);
  EXPECT_EQ(TFmtContext::fg_nParIndent, 52);
  EXPECT_EQ(TFmtContext::fg_nRuleExtension, 2);
  EXPECT_EQ(TFmtContext::fg_nSuperscriptRightShift, 2);
  // Without the flag nothing is recomputed.
  TFmtContext::fg_nRmFontPointSize = 30;
  TFmtContext_XWin::ResetScaledFeatures();
  EXPECT_EQ(TFmtContext::fg_nParIndent, 52);
  TFmtContext::NeedToResetScaledFeatures();
  TFmtContext_XWin::ResetScaledFeatures();
  EXPECT_EQ(TFmtContext::fg_nParSkip, 30);  // 15 * 2
  EXPECT_EQ(TFmtContext::fg_nParIndent, 120);
  EXPECT_EQ(TFmtContext::fg_nRuleExtension, 4);  // 30 / 12 = 2, * 2
  // A tiny size still gets one point of each.
  TFmtContext::fg_nRmFontPointSize = 1;
  TFmtContext::NeedToResetScaledFeatures();
  TFmtContext_XWin::ResetScaledFeatures();
  EXPECT_EQ(TFmtContext::fg_nParSkip, 2);
  EXPECT_EQ(TFmtContext::fg_nSuperscriptRightShift, 2);
  TFmtContext::fg_nRmFontPointSize = saved;
}

TEST(DeviceCopies, CopyTakesRatiosAndPointButNotWindowOrClip) {
  TFmtContext_XWin context;
  UseTestScreen(context);
  context.MoveTo(3, -4);
  context.Set_ClipRegion(CRect(1, 2, 3, 4));
  TFmtContext_XWin copy(context);
  EXPECT_EQ(copy.Get_LogicalWidth(), 1842);
  EXPECT_EQ(copy.MoveTo(0, 0), CPoint(3, -4));
  EXPECT_EQ(copy.Get_ClipRegion(), CRect());
  EXPECT_EQ(copy.Get_Window(), nullptr);

  TFmtContext_XWin assigned;
  assigned.Set_ClipRegion(CRect(9, 9, 9, 9));
  assigned = context;
  EXPECT_EQ(assigned.Get_DisplayHeight(), 1024);
  EXPECT_EQ(assigned.Get_ClipRegion(), CRect(9, 9, 9, 9));  // kept
}

TEST(DeviceProfileColors, ParseDigitsAndSeparators) {
  EXPECT_EQ(Rgb(TFmtContext_XWin::StringToRGB("10 20 30")), "10 20 30");
  EXPECT_EQ(Rgb(TFmtContext_XWin::StringToRGB("10 20")), "10 20 0");
  EXPECT_EQ(Rgb(TFmtContext_XWin::StringToRGB("")), "0 0 0");
  EXPECT_EQ(Rgb(TFmtContext_XWin::StringToRGB("7")), "7 0 0");
  // Exactly one character is skipped: a second blank ends the number.
  EXPECT_EQ(Rgb(TFmtContext_XWin::StringToRGB("1  2 3")), "1 0 2");
  EXPECT_EQ(Rgb(TFmtContext_XWin::StringToRGB("1,2,3")), "1 2 3");
  // A long digit run saturates instead of wrapping to a small number.
  EXPECT_EQ(Rgb(TFmtContext_XWin::StringToRGB("99999999999999999999999 5 4294967297")), "255 5 255");
}

TEST(DeviceProfileColors, SaveAndReadBackKeepTheHighBytes) {
  std::string dir = ztest::MakeTempDir("device-profile");
  std::string path = dir + "/registry";
  ASSERT_TRUE(ztest::WriteFile(path, "Corvane.Colors.Links: 10 20\n"
                                     "Corvane.Colors.SelectionBackground: 1 2 3\n"
                                     "Corvane.Colors.BackgroundColor1: 4 5 6\n"
                                     "Corvane.Colors.HighlightForeground: 7 8 9\n"
                                     "Corvane.Fonts.TextSize: 17\n"
                                     "Corvane.Settings.CenterMathDisplays: 5\n"));
  static ZRServer server;
  setenv("HOME", dir.c_str(), 1);
  server.SetEnv(getpid(), 1);
  Resource::GetResourceObject()->SetResources(&server, nullptr);
  CNpZephrinApp* app = CNpZephrinApp::GetPlugInDllObject();
  ASSERT_EQ(app->InitializeRegistry(path.c_str()), 1);
  app->SetRegistryKey("Corvane");
  TFmtContext_XWin::InitializeResources();
  TFmtContext_XWin::ReadRegistryValues();
  EXPECT_EQ(Rgb(TFmtContext::fg_Color_Links), "10 20 0");
  EXPECT_EQ(Rgb(TFmtContext::fg_MathColor_Numbers), "0 128 128");  // the built-in default
  EXPECT_EQ(Rgb(TFmtContext::fg_ColorBackground[1]), "4 5 6");      // the numbered key wins
  EXPECT_EQ(Rgb(TFmtContext::fg_ColorForeground[4]), "7 8 9");       // the older key alone
  EXPECT_EQ(TFmtContext::fg_nRmFontPointSize, 17);
  EXPECT_EQ(TFmtContext::fg_nMathFontPointSize, 13);
  EXPECT_EQ(TFmtContext::fg_bCenterDisplayMathExpressions, 1);
  ASSERT_NE(TFmtContext_XWin::Get_RmBldFontName(), nullptr);
  EXPECT_STREQ(*TFmtContext_XWin::Get_MathExt1FontName(), "-corvane-zrsya-medium-r-normal--0-0-0-0-p-0-iso8859-1");

  // 16-bit components that are not multiples of 257 keep their high byte.
  TFmtContext::fg_MathColor_Relations.m_Asked.red = 0x12ff;
  TFmtContext::fg_MathColor_Relations.m_Asked.green = 0xff00;
  TFmtContext::fg_MathColor_Relations.m_Asked.blue = 0x0001;
  TFmtContext_XWin::Set_RmItFontName("-x-rmit-*");
  TFmtContext_XWin::SaveRegistryValues();
  TFmtContext::fg_MathColor_Relations = CColorRef();
  TFmtContext_XWin::Set_RmItFontName("other");
  ASSERT_EQ(app->InitializeRegistry(path.c_str()), 1);
  TFmtContext_XWin::ReadRegistryValues();
  EXPECT_EQ(Rgb(TFmtContext::fg_MathColor_Relations), "18 255 0");
  EXPECT_STREQ(*TFmtContext_XWin::Get_RmItFontName(), "-x-rmit-*");
  EXPECT_EQ(app->GetProfileString("Colors", "BackgroundColor1", ""), CString("4 5 6"));
  TFmtContext_XWin::FreeResources();
  EXPECT_EQ(TFmtContext_XWin::Get_RmBldFontName(), nullptr);
  EXPECT_EQ(TFmtContext::Get_MathFontName(), nullptr);
  app->ShutDownRegistry();
  std::system(("rm -rf '" + dir + "'").c_str());
}
