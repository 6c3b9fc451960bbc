// Line breaking and list stacking with the installation's fonts on a real
// server. Every expectation is worked from widths and heights measured
// through the font classes: a = width of "aaa", b = width of "aa" (words,
// measured whole in the family's selected font), S = a blank.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "device/context_xwin.h"
#include "device/font_family.h"
#include "format/document_node.h"
#include "format/layout_dump.h"
#include "format/tex_mode.h"
#include "format/vertical_list_node.h"
#include "framework/wnd.h"
#include "host/resource.h"
#include "host/zr_server.h"
#include "support/tex_parse.h"
#include "support/x_app.h"
#include "support/x_windows.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"

namespace {
// One line of the layout: kind, break position, width and text.
struct TLine {
  std::string kind;
  int position;
  int width;
  std::string text;
  bool operator==(const TLine&) const = default;
};
std::ostream& operator<<(std::ostream& out, const TLine& l) {
  return out << l.kind << " " << l.position << " " << l.width << " |" << l.text << "|";
}

class LineBreaking : public ::testing::Test {
 protected:
  void SetUp() override {
    x = ztest::SharedXApp();
    ASSERT_NE(x, nullptr);
    display = x->display;
    ASSERT_TRUE(ztest::UseInstalledFonts(display));
    ztest::SetUpHostResources(server, x);
    TFmtContext_XWin::InitializeResources();
    TStringPool::FreeGlobal();
    TStringPool::InitializeGlobal();
    TFmtNode::InitializeTexParser();
    TFmtNode::InitializeDrawProperties();
    ztest::CreateDrawWindow(x, 300, 100, &drawWindow, &gc, &window);
    context.Set_Window(&window);
    TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::fg_StyleBaseFontSize = 5;
    TFontFamily::PrepareAllFonts(&window);
    ASSERT_NE(TFontFamily::fg_pRoman, nullptr);
    TFmtContext::NeedToResetScaledFeatures();
    TFmtContext_XWin::ResetScaledFeatures();
    g_CurrentTexMode = 3;
    context.Set_DocumentNode(&document);
    TFontFamily::fg_pRoman->MakeCurrentAndSelect(context);
    font = TExtendedFont::fg_pCurrent;
    ASSERT_NE(font, nullptr);
    // A word is measured whole by the device in the family's selected font;
    // a blank is the font's own character width.
    S = font->CharacterWidth(' ', context);
    a = context.GetTextExtent("aaa", 3).cx;
    b = context.GetTextExtent("aa", 2).cx;
  }
  void TearDown() override {
    context.Set_DocumentNode(nullptr);
    TFontFamily::DestroyAllFonts();
    TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::fg_StyleBaseFontSize = 5;
    TStringPool::FreeGlobal();
    ztest::DestroyDrawWindow(display, drawWindow, gc);
  }

  std::unique_ptr<TFmtVerticalListNode> Compose(const std::string& text, int width) {
    auto body = std::make_unique<TFmtVerticalListNode>(TFmtVerticalListNode::k_RefTop);
    body->Set_IsDocumentBody(1);
    body->Build(ztest::ParseDocument(text).release());
    document.Set_CompositionStatus(k_ComposeEverything);
    TFontFamily::fg_pRoman->MakeCurrentAndSelect(context);
    context.m_nLeftMargin = 0;
    context.m_nRightMargin = width;
    context.m_nJustification = 1;
    body->m_Position = CPoint(0, 0);
    body->Compose(context);
    document.Set_CompositionStatus(k_Composed);
    return body;
  }
  std::vector<TLine> Lines(const std::string& text, int width) {
    auto body = Compose(text, width);
    CString out;
    DumpLayout(body.get(), width, out);
    std::vector<TLine> lines;
    std::string all = out.c_str();
    for (size_t at = 0; at < all.size();) {
      const size_t end = all.find('\n', at);
      const std::string row = all.substr(at, end - at);
      at = end + 1;
      if (row.empty() || row[0] != 'L') continue;
      char kind[8] = {};
      int k = 0, n = 0, position = 0, w = 0;
      std::sscanf(row.c_str(), "L %d.%d %7s %d %d", &k, &n, kind, &position, &w);
      const size_t bar = row.find('|');
      lines.push_back({kind, position, w, row.substr(bar + 1, row.size() - bar - 2)});
    }
    return lines;
  }

  ztest::XApp* x = nullptr;
  Display* display = nullptr;
  ZRServer server;
  Window drawWindow = 0;
  GC gc = nullptr;
  CWnd window;
  TFmtContext_XWin context;
  TFmtDocumentNode document;
  TExtendedFont* font = nullptr;
  int S = 0, a = 0, b = 0;
};
}  // namespace

TEST_F(LineBreaking, AnOverflowingBlankGoesIntoTheBreakAndCountsTwice) {
  ASSERT_GT(S, 0);
  // At R = 3a+2S three words and two blanks fit; the third blank overflows
  // into the break at child 5, and the last word starts the next line.
  const int R = 3 * a + 2 * S;
  EXPECT_EQ(Lines("aaa aaa aaa aaa", R),
            (std::vector<TLine>{{"soft", 5, 3 * a + 2 * S, "aaa aaa aaa"}, {"end", 7, a, "aaa"}}));
  // At R-1 the third word does not fit: the blank before it ends line one.
  EXPECT_EQ(Lines("aaa aaa aaa aaa", R - 1),
            (std::vector<TLine>{{"soft", 4, 2 * a + 2 * S, "aaa aaa "}, {"end", 8, 2 * a + S, "aaa aaa"}}));
}

TEST_F(LineBreaking, PunctuationStaysWithItsWordAndAnOpenerWithTheNext) {
  // At 2a+S the comma does not fit after the second word; no break may come
  // before it, so the break goes back to before that word.
  const int comma = font->CharacterWidth(',', context);
  EXPECT_EQ(Lines("aaa aaa,", 2 * a + S),
            (std::vector<TLine>{{"soft", 2, a + S, "aaa "}, {"end", 5, a + comma, "aaa,"}}));
  // No break after "(": "(aaa" moves to the next line whole.
  const int paren = font->CharacterWidth('(', context);
  EXPECT_EQ(Lines("aaa (aaa", a + S + paren),
            (std::vector<TLine>{{"soft", 2, a + S, "aaa "}, {"end", 5, paren + a, "(aaa"}}));
}

TEST_F(LineBreaking, TheSecondBlankDecidesTheThirdLine) {
  // The case needs S <= a-b < 2S <= a; the installation's roman gives it.
  ASSERT_LE(S, a - b);
  ASSERT_LT(a - b, 2 * S);
  ASSERT_LE(2 * S, a);
  // Line two starts at 2S: "aaa" and a blank fit (2S + a + S <= 2a + S), "aa"
  // does not (3S + a + b > 2a + S). Counted once, the blank would let it.
  EXPECT_EQ(Lines("aaa aaa aaa aa", 2 * a + S),
            (std::vector<TLine>{{"soft", 3, 2 * a + S, "aaa aaa"}, {"soft", 6, a + S, "aaa "}, {"end", 8, b, "aa"}}));
}

TEST_F(LineBreaking, CentredTextSharesTheFreeSpaceOddUnitFirst) {
  const int w = b + S + context.GetTextExtent("bb", 2).cx;
  for (int extra : {0, 1, 11, 40}) {
    SCOPED_TRACE(extra);
    const int R = w + extra;
    const std::string text = "[fill " + std::to_string((extra + 1) / 2) + "]aa bb[fill " + std::to_string(extra / 2) + "]";
    // Children: fill, aa, blank, bb, \centering, fill.
    EXPECT_EQ(Lines("aa bb\\centering", R), (std::vector<TLine>{{"end", 6, R, text}}));
  }
}

TEST_F(LineBreaking, ParagraphsStackWithTheParagraphSkip) {
  auto body = Compose("aa\\par\\par bb", 400);
  ASSERT_EQ(body->GetCount(), 2);
  EXPECT_EQ(TFmtContext::fg_nParSkip, 12);  // at the 13-point default
  // Each line has the strut: "M" high and "p" deep, or more.
  TFmtNode* first = body->GetHead();
  TFmtNode* second = body->GetTail();
  const int h1 = std::max(font->CharacterHeight('a', context), font->CharacterHeight('M', context));
  const int d1 = std::max(font->CharacterDepth('a', context), font->CharacterDepth('p', context));
  const int h2 = std::max(font->CharacterHeight('b', context), font->CharacterHeight('M', context));
  EXPECT_EQ(first->m_pExtent->m_nHeight, h1);
  EXPECT_EQ(first->m_pExtent->m_nDepth, d1);
  EXPECT_EQ(first->m_Position.y, -h1);
  EXPECT_EQ(second->m_Position.y, -h1 - d1 - h2 - 12);
}

TEST_F(LineBreaking, AdvanceIsDepthThenNextHeightThenTheFontsLeading) {
  // Two lines of "aaa": advance = d + h + Height/5, all of the strut.
  const std::vector<TLine> lines = Lines("aaa aaa", a + S);
  ASSERT_EQ(lines.size(), 2u);
  auto body = Compose("aaa aaa", a + S);
  CString out;
  DumpLayout(body.get(), a + S, out);
  const int h = std::max(font->CharacterHeight('a', context), font->CharacterHeight('M', context));
  const int d = std::max(font->CharacterDepth('a', context), font->CharacterDepth('p', context));
  const std::string expected = "L 0.0 soft 2 " + std::to_string(a + S) + " " + std::to_string(h) + " " +
                               std::to_string(d) + " " + std::to_string(d + h + font->Height(context) / 5) + " |aaa |";
  EXPECT_NE(std::string(out.c_str()).find(expected), std::string::npos) << out.c_str();
}
