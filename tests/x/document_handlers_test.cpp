// The commands that fill the document node and change the font, composed and
// drawn with the installation's fonts on a real server. Expected sizes come
// from the font classes measured directly at the size a command names:
// scriptscriptsize 0, tiny 1, scriptsize 2, footnotesize 3, small 4,
// normalsize 5, large 6, Large 7, LARGE 8, huge 9, Huge 10. U is
// TFmtContext::fg_nUnitsPerPoint (2): a logical unit is half a point.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "device/context_xwin.h"
#include "device/font_family.h"
#include "format/document_node.h"
#include "format/leaf_nodes.h"
#include "format/line_node.h"
#include "format/tex_mode.h"
#include "format/vertical_list_node.h"
#include "framework/wnd.h"
#include "host/resource.h"
#include "host/zr_server.h"
#include "support/tex_parse.h"
#include "support/x_app.h"
#include "support/x_windows.h"
#include "symbols/string_pool.h"
#include "tex/token_source.h"

namespace {
constexpr int kWidth = 400;
constexpr int kHeight = 300;
constexpr int U = TFmtContext::fg_nUnitsPerPoint;

struct TBand {
  long count = 0;
  int left = INT_MAX, right = -1;
};

class DocumentHandlers : public ::testing::Test {
 protected:
  void SetUp() override {
    x = ztest::SharedXApp();
    ASSERT_NE(x, nullptr);
    display = x->display;
    ASSERT_TRUE(ztest::UseInstalledFonts(display));
    const int screen = DefaultScreen(display);
    colormap = DefaultColormap(display, screen);
    ztest::SetUpHostResources(server, x);
    Resource::GetResourceObject()->SetColors();
    TFmtContext_XWin::InitializeResources();
    TStringPool::FreeGlobal();
    TStringPool::InitializeGlobal();
    TFmtNode::InitializeTexParser();
    TFmtNode::InitializeDrawProperties();
    white = WhitePixel(display, screen);
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.background_pixel = white;
    drawWindow = XCreateWindow(display, RootWindow(display, screen), 0, 0, kWidth, kHeight, 0, CopyFromParent,
                               InputOutput, CopyFromParent, CWOverrideRedirect | CWBackPixel, &attributes);
    XSelectInput(display, drawWindow, ExposureMask);
    XMapWindow(display, drawWindow);
    XEvent event;
    XWindowEvent(display, drawWindow, ExposureMask, &event);
    XSelectInput(display, drawWindow, 0);
    XGCValues values{};
    values.foreground = BlackPixel(display, screen);
    values.background = white;
    gc = XCreateGC(display, drawWindow, GCForeground | GCBackground, &values);
    window.SetInfo(x->shell, nullptr, nullptr, nullptr, nullptr, drawWindow, 0, 0, 0, kWidth, kHeight, display, gc,
                   DefaultVisual(display, screen), screen, DefaultDepth(display, screen), 255, 0, &colormap);
    context.Set_Window(&window);
    TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::fg_StyleBaseFontSize = 5;
    TFontFamily::PrepareAllFonts(&window);
    ASSERT_NE(TFontFamily::fg_pRoman, nullptr);
    TFmtContext::NeedToResetScaledFeatures();
    TFmtContext_XWin::ResetScaledFeatures();
    g_CurrentTexMode = 3;
    NewDocument();
    // The logical width of the window: text is set across all of it.
    CPoint corner(kWidth, kHeight);
    context.DPtoLP(&corner, 1);
    R = corner.x;
  }
  void TearDown() override {
    context.Set_DocumentNode(nullptr);
    document.reset();
    TFmtDocumentNode::DeleteDocumentStorage();
    TFontFamily::DestroyAllFonts();
    TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::fg_StyleBaseFontSize = 5;
    TStringPool::FreeGlobal();
    if (!display) return;
    XFreeGC(display, gc);
    XDestroyWindow(display, drawWindow);
    XSync(display, False);
  }

  void NewDocument() {
    context.Set_DocumentNode(nullptr);
    document = std::make_unique<TFmtDocumentNode>();
    context.Set_DocumentNode(document.get());
  }
  void Normal() {
    TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::fg_StyleBaseFontSize = 5;
    TFontFamily::fg_pRoman->MakeCurrentAndSelect(context);
  }
  // Parses with the document as the source's, builds and composes it at the
  // window's width, as a view does.
  void Load(const std::string& text) {
    auto root = std::make_unique<TFmtCompoundNode>();
    TTexTokenSource source("test", text.c_str());
    source.Set_DocumentNode(document.get());
    TFmtNode* result = root->ParseTex(source);
    if (result != root.get()) root.reset(TFmtCompoundNode::CompoundIt(result));
    document->Build(root.release());
    Normal();
    // A margin of M on either side and above, as a view sets the page.
    context.m_nLeftMargin = M;
    context.m_nRightMargin = R - M;
    context.m_nJustification = 1;
    document->m_Position = CPoint(M, -M);
    document->Compose(context);
  }
  void Draw() {
    XClearWindow(display, drawWindow);
    Normal();
    // As a view clips: the whole page, downward from the origin.
    context.Set_ClipRegion(CRect(0, 0, 100000, -100000));
    document->Draw(context);
    XSync(display, False);
  }
  std::vector<TFmtNode*> Body() {
    std::vector<TFmtNode*> out;
    for (CObject* o : document->Get_VerticalList()->Get_Children()) out.push_back(static_cast<TFmtNode*>(o));
    return out;
  }

  // The extents of the leaves whose text is "x", in reading order, after
  // composing text from the normal size in roman.
  std::vector<TFmtExtent> ExtentsOfX(const std::string& text, TFmtNode** sample = nullptr) {
    std::unique_ptr<TFmtCompoundNode> root = ztest::ParseDocument(text);
    Normal();
    root->m_Position = CPoint(0, 0);
    root->Compose(context);
    Normal();
    std::vector<TFmtExtent> out;
    Collect(root.get(), out, sample);
    return out;
  }
  static void Collect(TFmtNode* node, std::vector<TFmtExtent>& out, TFmtNode** sample) {
    if (TFmtCompoundNode* compound = node->IsCompoundNode()) {
      for (CObject* o : compound->Get_Children()) Collect(static_cast<TFmtNode*>(o), out, sample);
      return;
    }
    CString text;
    node->SimplyStringify(text);
    if (std::string(text.c_str()) != "x") return;
    out.push_back(*node->m_pExtent);
    if (sample && !*sample) *sample = node->Copy();
  }
  // An "x" as the parser makes it, measured in family at size, with nothing
  // but the font classes choosing the font.
  TFmtExtent Reference(TFontFamily* family, int size) {
    TFmtNode* sample = nullptr;
    ExtentsOfX("x", &sample);
    std::unique_ptr<TFmtNode> x(sample);
    TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::fg_StyleBaseFontSize = size;
    family->MakeCurrentAndSelect(context);
    x->Compose(context);
    TFmtExtent extent = *x->m_pExtent;
    Normal();
    return extent;
  }
  TExtendedFont* RomanAt(int size) { return TFontFamily::fg_pRoman->CreateFontAtSize(context, size); }
  int WidthAt(int size, const char* text) {
    TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::fg_StyleBaseFontSize = size;
    TFontFamily::fg_pRoman->MakeCurrentAndSelect(context);
    const int width = context.GetTextExtent(text, static_cast<int>(std::string(text).size())).cx;
    Normal();
    return width;
  }

  // Pixels of the window that match a colour, counted by device row band.
  XImage* Grab() { return XGetImage(display, drawWindow, 0, 0, kWidth, kHeight, AllPlanes, ZPixmap); }
  void RgbOf(unsigned long pixel, int& r, int& g, int& b) {
    XColor shown{};
    shown.pixel = pixel;
    XQueryColor(display, colormap, &shown);
    r = shown.red >> 8, g = shown.green >> 8, b = shown.blue >> 8;
  }
  long RedPixels() {
    XImage* image = Grab();
    long count = 0;
    std::map<unsigned long, bool> red;  // one query per pixel value
    for (int y = 0; y < kHeight; ++y)
      for (int x = 0; x < kWidth; ++x) {
        const unsigned long pixel = XGetPixel(image, x, y);
        if (pixel == white) continue;
        auto known = red.find(pixel);
        if (known == red.end()) {
          int r, g, b;
          RgbOf(pixel, r, g, b);
          known = red.emplace(pixel, r == 255 && g == 0 && b == 0).first;
        }
        if (known->second) ++count;
      }
    XDestroyImage(image);
    return count;
  }
  // Ink (anything not white) between two device rows, top included.
  TBand Ink(int top, int bottom) {
    XImage* image = Grab();
    TBand band;
    for (int y = std::max(0, top); y < std::min(kHeight, bottom); ++y)
      for (int x = 0; x < kWidth; ++x)
        if (XGetPixel(image, x, y) != white) {
          ++band.count;
          band.left = std::min(band.left, x);
          band.right = std::max(band.right, x);
        }
    XDestroyImage(image);
    return band;
  }
  int DeviceY(int logicalY) {
    CPoint p(0, logicalY);
    context.LPtoDP(&p, 1);
    return p.y;
  }
  int DeviceX(int logicalX) {
    CPoint p(logicalX, 0);
    context.LPtoDP(&p, 1);
    return p.x;
  }

  ztest::XApp* x = nullptr;
  Display* display = nullptr;
  Colormap colormap = 0;
  unsigned long white = 0;
  ZRServer server;
  Window drawWindow = 0;
  GC gc = nullptr;
  CWnd window;
  TFmtContext_XWin context;
  std::unique_ptr<TFmtDocumentNode> document;
  int R = 0;
  static constexpr int M = 10;
};

const char* Intern(const char* text) { return TStringPool::g_pGlobal->Put(text); }
}  // namespace

TEST_F(DocumentHandlers, ALabelNamesTheLastBodyElementBeforeIt) {
  Load("One.\\label{one}\n\nTwo.\\label{again}\n\n\\label{two}\n\nThree.\\label{again}");
  // One, Two, the \label standing alone, Three.
  const std::vector<TFmtNode*> body = Body();
  ASSERT_EQ(body.size(), 4u);
  ASSERT_EQ(body[2]->ContainsControlSequence(), Intern("label"));
  EXPECT_EQ(document->ResolveLabel("one"), body[0]);
  EXPECT_EQ(document->ResolveLabel("two"), body[1]);  // a label is never its own site
  EXPECT_EQ(document->ResolveLabel("again"), body[3]);  // the later definition
  EXPECT_EQ(document->ResolveLabel("nosuch"), nullptr);
}

TEST_F(DocumentHandlers, TopicNamesAndTitlesReachTheDocument) {
  // The unparsed form keeps "_" as it is; the parsed one reads TeX.
  Load("\\aboveTopic{up.tex}\\nextTopic{next.tex}\\previousTopicUnparsed{../a_b.tex}Text.");
  EXPECT_EQ(std::string(document->Get_AboveTopicPathName()), "up.tex");
  EXPECT_EQ(std::string(document->Get_NextTopicPathName()), "next.tex");
  EXPECT_EQ(std::string(document->Get_PreviousTopicPathName()), "../a_b.tex");
  EXPECT_EQ(std::string(document->Get_WindowTitle()), "");

  const struct {
    const char* text;
    const char* title;
  } cases[] = {
      {"\\title{Knots}Text.", "Knots"},
      {"\\title[Short]{Knots and Links}", "Knots and Links"},  // the last argument, not the optional one
      {"\\title{Knots}\\windowTitle{Lecture 3}", "Lecture 3"},
      {"\\windowTitle{}", "<INVALID TITLE TEXT>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    NewDocument();
    Load(c.text);
    EXPECT_EQ(std::string(document->Get_WindowTitle()), c.title);
  }
}

TEST_F(DocumentHandlers, PageColourByNameGoesToTheDocumentAndTheWindow) {
  Load("\\pagecolor{nosuch}Text.");
  CColorRef color;
  int isSet = -1;
  document->Get_PageColor(color, isSet);
  EXPECT_EQ(isSet, 0);

  NewDocument();
  Load("\\pagecolor{yellow}Text.");
  document->Get_PageColor(color, isSet);
  EXPECT_EQ(isSet, 1);
  EXPECT_EQ(color.Red(), 255);
  EXPECT_EQ(color.Green(), 255);
  EXPECT_EQ(color.Blue(), 0);
  // The draw gives the window the colour as its background.
  Draw();
  XClearWindow(display, drawWindow);
  XImage* image = Grab();
  ASSERT_NE(image, nullptr);
  int r, g, b;
  RgbOf(XGetPixel(image, kWidth - 1, kHeight - 1), r, g, b);
  XDestroyImage(image);
  EXPECT_EQ(r, 255);
  EXPECT_EQ(g, 255);
  EXPECT_EQ(b, 0);
}

TEST_F(DocumentHandlers, EachSizeNameSetsItsSizeForTheRestOfTheGroup) {
  TFontFamily* roman = TFontFamily::fg_pRoman;
  std::vector<TFmtExtent> at;
  for (int size = 0; size <= 10; ++size) at.push_back(Reference(roman, size));
  ASSERT_GT(at[8].m_nHeight, at[5].m_nHeight);  // {\LARGE x} is taller than x
  ASSERT_GT(at[5].m_nWidth, at[4].m_nWidth);
  auto same = [](const std::vector<TFmtExtent>& got, const std::vector<TFmtExtent>& want) {
    if (got.size() != want.size()) return false;
    for (size_t i = 0; i < got.size(); ++i)
      if (got[i].m_nHeight != want[i].m_nHeight || got[i].m_nDepth != want[i].m_nDepth ||
          got[i].m_nWidth != want[i].m_nWidth)
        return false;
    return true;
  };
  EXPECT_TRUE(same(ExtentsOfX("x{\\LARGE x}x{\\large x}{\\small x}"), {at[5], at[8], at[5], at[6], at[4]}));
  EXPECT_TRUE(same(ExtentsOfX("{\\scriptscriptsize x}{\\tiny x}{\\scriptsize x}{\\footnotesize x}"),
                   {at[0], at[1], at[2], at[3]}));
  EXPECT_TRUE(same(ExtentsOfX("{\\normalsize x}{\\Large x}{\\huge x}{\\Huge x}"), {at[5], at[7], at[9], at[10]}));
  // Outside a group a size lasts; the small environment ends with its end.
  EXPECT_TRUE(same(ExtentsOfX("x\\large x x"), {at[5], at[6], at[6]}));
  EXPECT_TRUE(same(ExtentsOfX("\\begin{small}x\\end{small}x"), {at[4], at[5]}));
}

TEST_F(DocumentHandlers, FaceNamesChooseTheirFamilies) {
  const TFmtExtent rm = Reference(TFontFamily::fg_pRoman, 5);
  const TFmtExtent it = Reference(TFontFamily::fg_pItalic, 5);
  const TFmtExtent bf = Reference(TFontFamily::fg_pBold, 5);
  const TFmtExtent tt = Reference(TFontFamily::fg_pFixedWidth, 5);
  const TFmtExtent sf = Reference(TFontFamily::fg_pSansSerif, 5);
  const TFmtExtent mit = Reference(TFontFamily::fg_pMathItalic, 5);
  const std::vector<TFmtExtent> got =
      ExtentsOfX("{\\bf x}{\\it x}{\\sl x}{\\tt x}{\\sf x}{\\mit x}{\\it\\rm x}{\\em x}{\\it\\em x}");
  const std::vector<TFmtExtent> want = {bf, it, it, tt, sf, mit, rm, it, rm};  // \em toggles
  ASSERT_EQ(got.size(), want.size());
  for (size_t i = 0; i < want.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(got[i].m_nWidth, want[i].m_nWidth);
    EXPECT_EQ(got[i].m_nHeight, want[i].m_nHeight);
  }
  // Small capitals: \sf keeps them, the other faces and \em clear them.
  auto run = [&](const char* name) {
    TFmtControlSequenceNode node(Intern(name));
    node.Compose(context);
    return context.m_nCase;
  };
  EXPECT_EQ(run("sc"), 3);
  EXPECT_EQ(run("sf"), 3);
  EXPECT_EQ(run("rm"), 0);
  run("sc");
  EXPECT_EQ(run("em"), 0);
  Normal();
}

TEST_F(DocumentHandlers, SkipsAreItemsOfTheirHeight) {
  const struct {
    const char* name;
    int height;
  } cases[] = {{"bigskip", 12 * U}, {"bigbreak", 12 * U}, {"medskip", 6 * U},
               {"medbreak", 6 * U}, {"smallskip", 3 * U}, {"smallbreak", 3 * U}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TFmtControlSequenceNode node(Intern(c.name));
    node.Compose(context);
    EXPECT_EQ(node.m_pExtent->m_nHeight, c.height);
    EXPECT_EQ(node.m_pExtent->m_nDepth, 0);
    EXPECT_EQ(node.m_pExtent->m_nWidth, 1);
  }
  // In the body a \medskip lowers what follows by 6 U exactly.
  Load("a\n\nb");
  const int plain = Body().back()->m_Position.y;
  Load("a\n\n\\medskip\n\nb");
  ASSERT_EQ(Body().size(), 3u);
  EXPECT_EQ(Body().back()->m_Position.y, plain - 12);
}

TEST_F(DocumentHandlers, MakeTitleSetsATitlePageWhereTheDocumentBegins) {
  Load("\\documentclass[12pt]{article}\n\\usepackage{amsmath}\n\\title{Knots}\n\\author{Ann \\and Bo}\n"
       "\\date{May}\n\\begin{document}\n\\maketitle\nText.\n\\end{document}\n");
  TFmtNode* begin = nullptr;
  for (TFmtNode* child : Body())
    if (child->ContainsControlSequence() == Intern("begindocument")) begin = child;
  ASSERT_NE(begin, nullptr);
  TFmtVerticalListNode* page = document->Get_TitlePage()->IsVerticalListNode();
  ASSERT_NE(page, nullptr);
  // Four centred lines and the medium skip: Knots, Ann, Bo, May, \medskip.
  std::vector<TFmtLineNode*> lines;
  for (CObject* o : page->Get_Children())
    if (auto* line = dynamic_cast<TFmtLineNode*>(static_cast<TFmtNode*>(o))) lines.push_back(line);
  ASSERT_EQ(lines.size(), 4u);
  ASSERT_EQ(page->GetCount(), 5);
  EXPECT_TRUE(page->GetTail()->IsControlSequence(Intern("medskip")));
  const struct {
    const char* text;
    int size;
  } want[] = {{"Knots", 8}, {"Ann", 6}, {"Bo", 6}, {"May", 4}};
  // Depth of the page: each line's ascent and descent at its size, the
  // leading of the normal size above every line but the first, and 6 U.
  int64_t depth = 6 * U;
  for (int i = 0; i < 4; ++i) {
    SCOPED_TRACE(want[i].text);
    CString text;
    lines[i]->SimplyStringify(text);
    EXPECT_EQ(std::string(text.c_str()), want[i].text);
    const int width = WidthAt(want[i].size, want[i].text);
    EXPECT_EQ(lines[i]->Get_Indent(), (R - 2 * M - width) / 2);
    TExtendedFont* font = RomanAt(want[i].size);
    EXPECT_EQ(lines[i]->m_pExtent->m_nHeight, font->Ascent(context));
    EXPECT_EQ(lines[i]->m_pExtent->m_nDepth, font->Descent(context));
    depth += font->Ascent(context) + font->Descent(context);
    if (i > 0) depth += RomanAt(5)->ExternalLeading(context);
  }
  EXPECT_EQ(begin->m_pExtent->m_nDepth, depth);
  EXPECT_EQ(begin->m_pExtent->m_nHeight, 0);

  // Drawn: the title's ink is centred in the window, and nothing of the
  // preamble shows in red.
  Draw();
  EXPECT_EQ(RedPixels(), 0);
  TFmtLineNode* title = lines[0];
  const int top = DeviceY(title->m_Position.y + title->m_pExtent->m_nHeight);
  const int bottom = DeviceY(title->m_Position.y - title->m_pExtent->m_nDepth);
  const TBand ink = Ink(top, bottom);
  ASSERT_GT(ink.count, 0);
  EXPECT_NEAR(ink.left + ink.right + 1, kWidth, 4);
  // The body's text comes after the title page.
  const TBand after = Ink(DeviceY(begin->m_Position.y - begin->m_pExtent->m_nDepth), kHeight);
  EXPECT_GT(after.count, 0);
}

TEST_F(DocumentHandlers, WithoutMakeTitleThereIsNoTitlePageAndUnknownNamesShowRed) {
  Load("\\title{Knots}\\begin{document}Text.\\nosuchcommand\\end{document}");
  for (TFmtNode* child : Body())
    if (child->ContainsControlSequence() == Intern("begindocument")) {
      EXPECT_EQ(child->m_pExtent->Sum(), 0);
    }
  EXPECT_TRUE(document->Get_TitlePage()->IsEmpty());
  Draw();
  EXPECT_GT(RedPixels(), 0);  // the check above finds red where there is some
}
