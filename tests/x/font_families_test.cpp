// Font families on a real server with the installation's fonts: what loads
// when, what the caches cost, names and metrics worked by hand at Xvfb's
// 100 dpi, and a template the server refuses.
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
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

namespace {
int g_nWizardsClosed = 0;

// 1280 pixels over 325 mm: 1842 logical units (half points) across.
int Logical(int device) { return device * 1842 / 1280; }

std::string Roman(int deciPoints) {
  return "-corvane-zrcmr-medium-r-normal--*-" + std::to_string(deciPoints) + "-100-100-p-*-iso8859-1";
}

class FontFamilies : public ::testing::Test {
 protected:
  void SetUp() override {
    x = ztest::SharedXApp();
    ASSERT_NE(x, nullptr);
    display = x->display;
    ASSERT_TRUE(ztest::UseInstalledFonts(display));

    ztest::SetUpHostResources(server, x);
    TFmtContext_XWin::InitializeResources();
    TStringPool::InitializeGlobal();
    TGlobalString::Initialize();
    TGlobalString::InitializeSymbolFonts();

    ztest::CreateDrawWindow(x, 300, 100, &drawWindow, &gc, &window);
    context.Set_Window(&window);
    TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::fg_StyleBaseFontSize = 5;
  }
  void TearDown() override {
    TFontFamily::DestroyAllFonts();
    TFmtContext::Set_RmFontPointSize(13);
    TFmtContext_XWin::InitializeResources();
    TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::fg_StyleBaseFontSize = 5;
    ztest::DestroyDrawWindow(display, drawWindow, gc);
  }
  TExtendedFont* At(TFontFamily* family, int size) { return family->CreateFontAtSize(context, size); }
  std::string StretchedName(TFontFamily* family, int height, int depth, int extra) {
    return static_cast<TExtendedFont*>(family->CreateFontForCharacter(104, height, depth, context, extra))->Get_Name();
  }

  ztest::XApp* x = nullptr;
  Display* display = nullptr;
  ZRServer server;
  Window drawWindow = 0;
  GC gc = nullptr;
  CWnd window;
  TFmtContext_XWin context;
};
}  // namespace

TEST_F(FontFamilies, FontsLoadOnlyWhenASizeIsFirstMeasured) {
  const int start = TExtendedFont::fg_nLoaded;
  TFontFamily::PrepareAllFonts(&window);
  EXPECT_EQ(TExtendedFont::fg_nLoaded, start);
  ASSERT_NE(TFontFamily::fg_pRoman, nullptr);
  EXPECT_EQ(TFontFamily::fg_pCurrent, TFontFamily::fg_pRoman);
  TFontFamily* roman = TFontFamily::fg_pRoman;
  TFontFamily::PrepareAllFonts(&window);  // a second call keeps the set
  EXPECT_EQ(TFontFamily::fg_pRoman, roman);

  // Three sizes of two families, each measured twice: six fonts.
  for (int pass = 0; pass < 2; ++pass)
    for (TFontFamily* family : {TFontFamily::fg_pRoman, TFontFamily::fg_pItalic})
      for (int size : {4, 5, 7}) {
        TFontFamily_PI::fg_CurrentFontSize = size;
        EXPECT_GT(family->GetFontAtCurrentSize(context)->CharacterWidth('a', context), 0);
        // GetSizedFont answers the current size whatever it is asked.
        EXPECT_EQ(family->GetSizedFont(context, 9), family->GetFontAtCurrentSize(context));
      }
  EXPECT_EQ(TExtendedFont::fg_nLoaded, start + 6);
  EXPECT_EQ(TFontFamily::fg_pRoman->Get_SizedFont(9), nullptr);
  TFontFamily_PI::fg_CurrentFontSize = 5;

  // The minus lives in the third symbol font: one of its own.
  EXPECT_GT(TFontFamily::MinusHeight(context), 0);
  EXPECT_EQ(TExtendedFont::fg_nLoaded, start + 7);
  // One stretched size asked twice is one font.
  TExtendedFont_PI* first = TFontFamily::fg_pMathExtension1->CreateFontForCharacter(104, 60, 20, context, 2);
  EXPECT_EQ(TFontFamily::fg_pMathExtension1->CreateFontForCharacter(-152, 60, 20, context, 2), first);
  EXPECT_EQ(TExtendedFont::fg_nLoaded, start + 8);
  EXPECT_EQ(TFontFamily::fg_pMathExtension1->Get_StretchedFontCount(), 1);

  // A new text size: everything is made again under new names.
  EXPECT_EQ(At(TFontFamily::fg_pRoman, 5)->Get_Name(), Roman(130));
  TFontFamily::DestroyAllFonts();
  EXPECT_EQ(TFontFamily::fg_pRoman, nullptr);
  EXPECT_EQ(TFontFamily::fg_pCurrent, nullptr);
  EXPECT_EQ(TExtendedFont::fg_pCurrent, nullptr);
  TFmtContext::Set_RmFontPointSize(10);
  TFontFamily::PrepareAllFonts(&window);
  EXPECT_EQ(At(TFontFamily::fg_pRoman, 5)->Get_Name(), Roman(100));
  EXPECT_EQ(At(TFontFamily::fg_pRoman, 7)->Get_Name(), Roman(125));  // 100 x 5/4
  EXPECT_EQ(TExtendedFont::fg_nLoaded, start + 10);
}

TEST_F(FontFamilies, CachedMeasuresAskNothingAndLeaveTheSelectionAlone) {
  TFontFamily::PrepareAllFonts(&window);
  TExtendedFont* roman = At(TFontFamily::fg_pRoman, 5);
  TExtendedFont* italic = At(TFontFamily::fg_pItalic, 5);
  TFontFamily::fg_pItalic->MakeCurrentAndSelect(context);
  EXPECT_EQ(TFontFamily::fg_pCurrent, TFontFamily::fg_pItalic);
  EXPECT_EQ(TExtendedFont::fg_pCurrent, italic);
  XGCValues before{};
  XGetGCValues(display, gc, GCFont, &before);
  EXPECT_EQ(before.font, italic->Get_Font().Get_Extent()->fid);

  const int width = roman->CharacterWidth('W', context);
  const int height = roman->CharacterHeight('W', context);
  const int depth = roman->CharacterDepth('g', context);
  XGCValues after{};
  XGetGCValues(display, gc, GCFont, &after);
  EXPECT_EQ(after.font, before.font);
  EXPECT_EQ(TExtendedFont::fg_pCurrent, italic);
  EXPECT_EQ(context.Get_FontMetrics(), italic->Get_Font().Get_Extent());

  XSync(display, False);
  const unsigned long request = XNextRequest(display);
  EXPECT_EQ(roman->CharacterWidth('W', context), width);
  EXPECT_EQ(roman->CharacterHeight('W', context), height);
  EXPECT_EQ(roman->CharacterVerticalThickness('W', context), height);
  EXPECT_EQ(roman->CharacterDepth('g', context), depth);
  EXPECT_EQ(XNextRequest(display), request);

  // A signed char of 193 and 193 itself are one entry; so is 193 + 256.
  EXPECT_EQ(roman->CharacterWidth(-63, context), roman->CharacterWidth(193, context));
  EXPECT_EQ(roman->CharacterHeight(-63, context), roman->CharacterHeight(449, context));
  EXPECT_EQ(roman->CharacterDepth(-63, context), roman->CharacterDepth(193, context));
  // A family's own font is null for a stretched character.
  EXPECT_EQ(roman->CreateFontForCharacter('(', 10, 10, context, 0), nullptr);
}

TEST_F(FontFamilies, NamesAndMetricsWorkedByHandAt100Dpi) {
  EXPECT_EQ(context.Get_LogicalWidth(), 1842);
  EXPECT_EQ(context.Get_DisplayWidth(), 1280);
  TFontFamily::PrepareAllFonts(&window);
  // \Large: 130 x 5/4 = 162.5, truncated.
  EXPECT_EQ(At(TFontFamily::fg_pRoman, 7)->Get_Name(), Roman(162));
  EXPECT_EQ(At(TFontFamily::fg_pRoman, 2)->Get_Name(), Roman(110));  // 130 x 85/100 = 110.5
  // 13 x 5 x 2 = 130 logical units, 130 x 1280 / 1842 = 90.3 pixels.
  CFont* editBox = TFontFamily::CreateFontForEditBox(context);
  EXPECT_STREQ(editBox->Get_FaceName(), "-corvane-zrcmtt-medium-r-normal--*-90-100-100-m-*-iso8859-1");
  EXPECT_EQ(TFontFamily::CreateFontForEditBox(context), editBox);

  // Vertical metrics take the horizontal ratio (1842/1280), not 1474/1024.
  TExtendedFont* roman = At(TFontFamily::fg_pRoman, 5);
  XFontStruct* metrics = roman->Get_Font().Get_Extent();
  ASSERT_NE(metrics, nullptr);
  EXPECT_EQ(roman->Ascent(context), Logical(metrics->ascent));
  EXPECT_EQ(roman->Descent(context), Logical(metrics->descent));
  EXPECT_EQ(roman->Height(context), Logical(metrics->ascent) + Logical(metrics->descent));
  EXPECT_EQ(roman->ExternalLeading(context), roman->Height(context) / 5);
  for (int code : {65, 103, 77, 40, 193}) {  // A g M ( and a code above 127
    SCOPED_TRACE(code);
    char one = static_cast<char>(code);
    int direction = 0, ascent = 0, descent = 0;
    XCharStruct overall{};
    XTextExtents(metrics, &one, 1, &direction, &ascent, &descent, &overall);
    EXPECT_EQ(roman->CharacterWidth(code, context), Logical(XTextWidth(metrics, &one, 1)));
    EXPECT_EQ(roman->CharacterHeight(code, context), Logical(overall.ascent));
    EXPECT_EQ(roman->CharacterDepth(code, context), Logical(overall.descent));
  }
}

TEST_F(FontFamilies, StretchedSizesCentreOnTheMinusAndTruncate) {
  TFontFamily::PrepareAllFonts(&window);
  TFontFamily* symbols = TFontFamily::fg_pMathExtension1;
  const int m = TFontFamily::MinusHeight(context);
  ASSERT_GT(m, 0);
  ASSERT_LT(m, 10);
  EXPECT_EQ(TFontFamily::MinusThickness(context), m);
  auto name = [](int deciPoints) {
    return "-corvane-zrsya-medium-r-normal--*-" + std::to_string(deciPoints) + "-100-100-p-*-iso8859-1";
  };
  // Above the axis 34, below it 10: half 34, with 4 extra 38 points, and
  // 38 x 1.02 = 38.76 truncated before the tenths.
  EXPECT_EQ(StretchedName(symbols, 34 + m, 10 - m, 4), name(380));
  // Below the axis the longer side: depth + m = 30, plus 8 extra.
  EXPECT_EQ(StretchedName(symbols, m, 30 - m, 8), name(380));
  // 49 points: 49.98 truncates to 49, so 490 and never 499.
  EXPECT_EQ(StretchedName(symbols, 45 + m, 0, 4), name(490));
  EXPECT_EQ(symbols->Get_StretchedFontCount(), 2);

  // Without the minus's glyph the axis is the baseline.
  TStringPool* pool = TStringPool::g_pGlobal;
  TFontIndexProperty* minus = pool->GetFontIndex(TGlobalString::g_pMINUS, TGlobalString::g_pTEXFONTINDEX);
  ASSERT_NE(minus, nullptr);
  const KFontTag tag = minus->Get_FontTag();
  const int code = minus->Get_Code();
  pool->Remove(TGlobalString::g_pMINUS, TGlobalString::g_pTEXFONTINDEX);
  EXPECT_EQ(TFontFamily::MinusHeight(context), 0);
  EXPECT_EQ(TFontFamily::MinusThickness(context), 0);
  EXPECT_EQ(StretchedName(symbols, 40, 10, 4), name(440));  // 44 x 1.02 = 44.88
  PutTexFontPropertyX(TGlobalString::g_pMINUS, tag, code, 0);
  EXPECT_EQ(TFontFamily::MinusHeight(context), m);
}

TEST_F(FontFamilies, EveryGlyphOfTheSymbolTableHasAFamilyAndAWidth) {
  TFontFamily::PrepareAllFonts(&window);
  int glyphs = 0;
  for (const TSymbolFontRow& row : TGlobalString::SymbolFontTable()) {
    if (row.code == 0) continue;
    SCOPED_TRACE(row.name);
    TFontFamily* family = TFontFamily::GetFontFamilyFromTag(row.tag);
    ASSERT_NE(family, nullptr);
    EXPECT_GT(family->GetFontAtCurrentSize(context)->CharacterWidth(row.code, context), 0);
    ++glyphs;
  }
  EXPECT_EQ(glyphs, 483);
}

TEST_F(FontFamilies, TwoMissingTemplatesShowOneWizardAndEveryCallThrows) {
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  stat->Initialize(x->shell, [] { ++g_nWizardsClosed; });
  g_nWizardsClosed = 0;
  XtAppAddTimeOut(x->app, 100, [](XtPointer data, XtIntervalId*) {
    Display* display = static_cast<Display*>(data);
    Window found = ztest::FindWindowByTitle(display, ZephrinStat::kWizardTitle, 5000);
    if (found) ztest::SendDeleteWindow(display, found);
  }, display);
  TFmtContext::Set_RmFontName("-corvane-nosuchroman-medium-r-normal--0-0-0-0-p-0-iso8859-1");
  TFmtContext_XWin::Set_RmItFontName("-corvane-nosuchitalic-medium-i-normal--0-0-0-0-p-0-iso8859-1");
  TFontFamily::PrepareAllFonts(&window);
  ASSERT_GT(TFontFamily::MinusHeight(context), 0);  // its font loads before we count
  const int loaded = TExtendedFont::fg_nLoaded;
  int thrown = 0;
  for (int pass = 0; pass < 2; ++pass)
    for (TFontFamily* family : {TFontFamily::fg_pRoman, TFontFamily::fg_pItalic}) {
      try {
        family->MakeCurrentAndSelect(context);
      } catch (const CFontException&) {
        ++thrown;
      }
      try {
        family->CreateFontForCharacter('(', 30, 10, context, 0);
      } catch (const CFontException&) {
        ++thrown;
      }
      EXPECT_EQ(family->Get_SizedFont(5), nullptr);
      EXPECT_EQ(family->Get_StretchedFontCount(), 0);
    }
  EXPECT_EQ(thrown, 8);
  EXPECT_EQ(TExtendedFont::fg_nLoaded, loaded);
  EXPECT_EQ(g_nWizardsClosed, 1);
  EXPECT_EQ(stat->GetFontStatus(), ZephrinStat::k_FontNotLoaded);
  const std::string page = stat->GetFontPage().str();
  EXPECT_NE(page.find("cannot load the font:\n\n-corvane-nosuchroman-medium-r-normal--*-130-100-100-p-*-iso8859-1"),
            std::string::npos);
  // Other families are untouched: no substitute, and the bold still loads.
  EXPECT_GT(At(TFontFamily::fg_pBold, 5)->CharacterWidth('a', context), 0);
}
