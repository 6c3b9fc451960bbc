// The installation's X fonts on a real server: every font name the viewer asks
// for loads at any size and resolution, every glyph of the symbol table is
// there with ink, and glyphs keep the shape and size of their source fonts.
// GoogleTest comes first: Xlib's macros (None, Bool) break its headers.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "support/x_windows.h"
#include "symbols/font_tag.h"
#include "symbols/global_strings.h"

namespace {
// Font names of the resources 80000 to 80010.
const char* const kFontTemplates[] = {
    "-corvane-zrcmtt-medium-r-normal--0-0-0-0-m-0-iso8859-1", "-corvane-zrcmss-medium-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrcmmi-medium-i-normal--0-0-0-0-p-0-iso8859-1", "-corvane-zrcmr-medium-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrcmti-medium-i-normal--0-0-0-0-p-0-iso8859-1", "-corvane-zrcmbx-bold-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrcmr-medium-r-normal--0-0-0-0-p-0-iso8859-1",  "-corvane-zrsya-medium-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrsyb-medium-r-normal--0-0-0-0-p-0-iso8859-1",  "-corvane-zrsyc-medium-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrcmr-medium-r-normal--0-0-0-0-p-0-iso8859-1",
};

// The name a family asks for at one size: pixel size and average width left
// to the server, point size and resolutions filled in.
std::string NameAtSize(const std::string& templateName, int deciPoints, int xResolution, int yResolution) {
  std::vector<std::string> fields;
  std::stringstream in(templateName);
  for (std::string field; std::getline(in, field, '-');) fields.push_back(field);
  fields[7] = "*";
  fields[8] = std::to_string(deciPoints);
  fields[9] = std::to_string(xResolution);
  fields[10] = std::to_string(yResolution);
  fields[12] = "*";
  std::string name;
  for (size_t i = 0; i < fields.size(); ++i) name += (i ? "-" : "") + fields[i];
  return name;
}

std::string FaceName(const char* face, int deciPoints = 240, int resolution = 100) {
  for (const char* name : kFontTemplates)
    if (std::string(name).find(std::string("-") + face + "-") != std::string::npos)
      return NameAtSize(name, deciPoints, resolution, resolution);
  return std::string();
}

class XFonts : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(std::getenv("DISPLAY"), nullptr) << "run under tests/run-with-xvfb";
    const char* home = std::getenv("ZEPHRIN_HOME");
    ASSERT_TRUE(home && *home) << "needs the build's installation (ZEPHRIN_HOME)";
    display_ = XOpenDisplay(nullptr);
    ASSERT_NE(display_, nullptr);
    // The test server is private: put the installation's fonts on its path.
    ztest::AppendFontDirectory(display_, std::string(home) + "/Fonts/");
  }
  void TearDown() override {
    for (XFontStruct* font : loaded_) XFreeFont(display_, font);
    if (display_) XCloseDisplay(display_);
  }

  XFontStruct* Load(const std::string& name) {
    XFontStruct* font = XLoadQueryFont(display_, name.c_str());
    if (font) loaded_.push_back(font);
    return font;
  }

  // Pixels a glyph sets when drawn alone, counted on a bitmap.
  int InkOf(XFontStruct* font, unsigned char code) {
    const int size = 256;
    Pixmap bitmap = XCreatePixmap(display_, DefaultRootWindow(display_), size, size, 1);
    GC gc = XCreateGC(display_, bitmap, 0, nullptr);
    XSetForeground(display_, gc, 0);
    XFillRectangle(display_, bitmap, gc, 0, 0, size, size);
    XSetForeground(display_, gc, 1);
    XSetFont(display_, gc, font->fid);
    char c = static_cast<char>(code);
    XDrawString(display_, bitmap, gc, 64, 160, &c, 1);
    XImage* image = XGetImage(display_, bitmap, 0, 0, size, size, 1, XYPixmap);
    int ink = 0;
    for (int y = 0; y < size; ++y)
      for (int x = 0; x < size; ++x) ink += XGetPixel(image, x, y) != 0;
    XDestroyImage(image);
    XFreeGC(display_, gc);
    XFreePixmap(display_, bitmap);
    return ink;
  }

  Display* display_ = nullptr;
  std::vector<XFontStruct*> loaded_;
};

TEST_F(XFonts, EveryFontNameLoadsAtSeveralSizesAndResolutions) {
  Atom pixelSizeAtom = XInternAtom(display_, "PIXEL_SIZE", False);
  const int sizes[] = {70, 100, 130, 240, 600};
  const int resolutions[][2] = {{75, 75}, {100, 100}, {100, 75}};
  for (const char* templateName : kFontTemplates) {
    for (const auto& resolution : resolutions) {
      int previousHeight = 0;
      for (int deciPoints : sizes) {
        std::string name = NameAtSize(templateName, deciPoints, resolution[0], resolution[1]);
        XFontStruct* font = Load(name);
        ASSERT_NE(font, nullptr) << name;
        // A point is 1/72.27 inch in X font names.
        unsigned long pixels = 0;
        ASSERT_TRUE(XGetFontProperty(font, pixelSizeAtom, &pixels)) << name;
        EXPECT_NEAR(static_cast<double>(pixels), deciPoints * resolution[1] / 722.7, 0.51) << name;
        int height = font->ascent + font->descent;
        EXPECT_GT(height, previousHeight) << name;
        previousHeight = height;
      }
    }
  }
  // The X server has the name pattern of the template, not a substitute.
  EXPECT_EQ(NameAtSize(kFontTemplates[3], 130, 75, 75), "-corvane-zrcmr-medium-r-normal--*-130-75-75-p-*-iso8859-1");
}

TEST_F(XFonts, TextFacesHoldLatin1AndTheTexQuotes) {
  for (const char* face : {"zrcmr", "zrcmti", "zrcmbx", "zrcmss", "zrcmtt", "zrcmmi"}) {
    XFontStruct* font = Load(FaceName(face));
    ASSERT_NE(font, nullptr) << face;
    for (int code = 33; code < 256; ++code) {
      if (code >= 127 && code <= 160) continue;  // not reachable through iso8859-1
      if (code == 173) continue;                  // soft hyphen
      EXPECT_GT(InkOf(font, static_cast<unsigned char>(code)), 0) << face << " code " << code;
    }
    // TeX quotes: 96 opens and 39 closes. Both lie wholly above the baseline,
    // and in the proportional faces they are a pair of one width, where the
    // ASCII grave accent would be nearly twice as wide as the apostrophe.
    XCharStruct open, close;
    int direction, ascent, descent;
    char openCode = 96, closeCode = 39;
    XTextExtents(font, &openCode, 1, &direction, &ascent, &descent, &open);
    XTextExtents(font, &closeCode, 1, &direction, &ascent, &descent, &close);
    EXPECT_LT(open.descent, 0) << face;
    EXPECT_LT(close.descent, 0) << face;
    EXPECT_EQ(open.width, close.width) << face;
  }
  // Monospace means one advance for every character.
  XFontStruct* mono = Load(FaceName("zrcmtt"));
  ASSERT_NE(mono, nullptr);
  EXPECT_EQ(XTextWidth(mono, "i", 1), XTextWidth(mono, "M", 1));
  EXPECT_EQ(XTextWidth(mono, "\xe6", 1), XTextWidth(mono, ".", 1));
}

TEST_F(XFonts, EverySymbolOfTheTableHasWidthAndInkInTheFontOfItsTag) {
  XFontStruct* byTag[fg_nFontTagCount] = {};
  byTag[k_FontTagCurrent] = Load(FaceName("zrcmr"));  // the current family is a text face
  byTag[k_FontTagMathExtension1] = Load(FaceName("zrsya"));
  byTag[k_FontTagMathExtension2] = Load(FaceName("zrsyb"));
  byTag[k_FontTagMathExtension3] = Load(FaceName("zrsyc"));
  int withGlyph = 0;
  for (const TSymbolFontRow& row : TGlobalString::SymbolFontTable()) {
    if (row.code == 0) continue;
    ++withGlyph;
    XFontStruct* font = byTag[row.tag];
    ASSERT_NE(font, nullptr) << row.name << ": no font for tag " << row.tag;
    char c = static_cast<char>(row.code);
    EXPECT_GT(XTextWidth(font, &c, 1), 0) << row.name << " (tag " << row.tag << ", code " << row.code << ")";
    EXPECT_GT(InkOf(font, static_cast<unsigned char>(row.code)), 0)
        << row.name << " (tag " << row.tag << ", code " << row.code << ")";
  }
  EXPECT_EQ(withGlyph, 483);
}

// Metrics of a glyph at 100 pixels to the em, against its source glyph's
// advance and box in units of 1/1000 em (so one pixel is 10 units; rounding
// to whole pixels and hinting may each move an edge by up to a pixel, so 1.5
// pixels is allowed).
struct SourceGlyph {
  const char* face;
  int code;
  const char* what;
  int advance, xMin, yMin, xMax, yMax;
};

TEST_F(XFonts, GlyphsKeepTheSizeAndShapeOfTheirSources) {
  const SourceGlyph glyphs[] = {
      // latinmodern-math.otf
      {"zrsya", 33, "U+2192 rightwards arrow", 1000, 58, -10, 943, 510},
      {"zrsya", 65, "U+1D49C script A", 857, 40, -15, 817, 694},
      {"zrsya", 231, "U+222B integral", 665, 56, -306, 609, 805},
      {"zrsya", 198, "U+2205 empty set (shared with O)", 500, 47, -78, 452, 772},
      {"zrsyb", 50, "U+1D702 italic eta (shared with iota)", 497, 29, -216, 496, 442},
      {"zrsyc", 82, "U+211D double-struck R", 639, 83, 0, 583, 683},
      {"zrcmmi", 'a', "U+1D44E italic a", 529, 40, -11, 498, 442},
      // lmroman10-regular.otf, lmroman10-bold.otf, lmmono10-regular.otf
      {"zrcmr", 'A', "A", 750, 32, 0, 717, 716},
      {"zrcmr", 96, "U+2018 left single quotation mark", 278, 72, 394, 192, 693},
      {"zrcmbx", 'A', "bold A", 869, 41, 0, 827, 698},
      {"zrcmtt", 'M', "mono M", 525, 17, 0, 507, 611},
  };
  // 723 decipoints at 100 dpi: 723 / 722.7 * 100 = 100.04 pixels to the em.
  for (const SourceGlyph& g : glyphs) {
    XFontStruct* font = Load(FaceName(g.face, 723, 100));
    ASSERT_NE(font, nullptr) << g.face;
    char c = static_cast<char>(g.code);
    XCharStruct box;
    int direction, ascent, descent;
    XTextExtents(font, &c, 1, &direction, &ascent, &descent, &box);
    SCOPED_TRACE(std::string(g.face) + " code " + std::to_string(g.code) + ": " + g.what);
    const double tolerance = 1.5;
    EXPECT_NEAR(box.width, g.advance / 10.0, tolerance);
    EXPECT_NEAR(box.lbearing, g.xMin / 10.0, tolerance);
    EXPECT_NEAR(box.rbearing, g.xMax / 10.0, tolerance);
    EXPECT_NEAR(box.ascent, g.yMax / 10.0, tolerance);
    EXPECT_NEAR(box.descent, -g.yMin / 10.0, tolerance);
  }
}
}  // namespace
