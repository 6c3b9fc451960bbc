// zephrin-inspect fontchart FONTNAME OUT.png: a 16x16 chart of one font's
// codes drawn by the X server, so that a person can check the glyphs by eye.
// FONTNAME is a face of the installation (zrcmr, zrsya, ...) or a full X
// font name or pattern.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "verbs.h"

namespace {
const int kPointSize = 240;  // tenths of a point, at 100 dpi: 33 pixels
const int kGrid = 16;
const int kPad = 4;

std::string FullFontName(const char* name) {
  if (name[0] == '-' || std::strchr(name, '*')) return name;
  return std::string("-corvane-") + name + "-*-*-normal--*-" + std::to_string(kPointSize) + "-100-100-*-*-iso8859-1";
}

bool IsFontDir(const std::string& dir) {
  FILE* f = std::fopen((dir + "/fonts.dir").c_str(), "r");
  if (f) std::fclose(f);
  return f != nullptr;
}

// The installation's Fonts directory: ZEPHRIN_HOME, else $HOME/.zephrin,
// else the staged installation of the build that made this program.
std::string InstalledFontDir() {
  std::vector<std::string> candidates;
  if (const char* home = std::getenv("ZEPHRIN_HOME"); home && *home) candidates.push_back(std::string(home) + "/Fonts");
  if (const char* home = std::getenv("HOME"); home && *home) candidates.push_back(std::string(home) + "/.zephrin/Fonts");
  candidates.push_back(ZEPHRIN_BUILD_INSTALL_DIR "/Fonts");
  for (const auto& dir : candidates)
    if (IsFontDir(dir)) return dir;
  return std::string();
}

int fg_SetFontPathFailed = 0;
int NoteFontPathError(Display*, XErrorEvent* event) {
  fg_SetFontPathFailed = event->error_code;
  return 0;
}

// Appends dir to the server's font path; false when the server refuses it.
bool AddToFontPath(Display* display, const std::string& dir) {
  int count = 0;
  char** old = XGetFontPath(display, &count);
  std::vector<char*> path(old, old + count);
  std::string entry = dir + "/";
  path.push_back(entry.data());
  fg_SetFontPathFailed = 0;
  XErrorHandler previous = XSetErrorHandler(NoteFontPathError);
  XSetFontPath(display, path.data(), static_cast<int>(path.size()));
  XSync(display, False);
  XSetErrorHandler(previous);
  if (old) XFreeFontPath(old);
  return fg_SetFontPathFailed == 0;
}

bool WritePng(const char* file, const std::vector<unsigned char>& gray, int width, int height) {
  FILE* f = std::fopen(file, "wb");
  if (!f) return false;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  bool ok = info != nullptr;
  if (ok && setjmp(png_jmpbuf(png))) ok = false;
  if (ok) {
    png_init_io(png, f);
    png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (int y = 0; y < height; ++y) png_write_row(png, gray.data() + static_cast<size_t>(y) * width);
    png_write_end(png, nullptr);
  }
  png_destroy_write_struct(&png, info ? &info : nullptr);
  return (std::fclose(f) == 0) && ok;
}
}  // namespace

int InspectVerb_fontchart(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: zephrin-inspect fontchart FONTNAME OUT.png\n");
    return 2;
  }
  Display* display = XOpenDisplay(nullptr);
  if (!display) {
    std::fprintf(stderr, "fontchart: cannot open the display\n");
    return 1;
  }
  std::string name = FullFontName(argv[0]);
  XFontStruct* font = XLoadQueryFont(display, name.c_str());
  if (!font) {
    std::string dir = InstalledFontDir();
    if (!dir.empty() && AddToFontPath(display, dir)) font = XLoadQueryFont(display, name.c_str());
  }
  XFontStruct* label = XLoadQueryFont(display, "fixed");
  if (!font || !label) {
    std::fprintf(stderr, "fontchart: cannot load %s\n", font ? "the label font 'fixed'" : name.c_str());
    XCloseDisplay(display);
    return 1;
  }

  // Each cell: the decimal code on top, the glyph on a baseline below it.
  const int labelHeight = label->ascent + label->descent;
  const int cellWidth = std::max<int>(font->max_bounds.rbearing - std::min<int>(font->min_bounds.lbearing, 0),
                                      XTextWidth(label, "255", 3)) + 2 * kPad;
  const int cellHeight = labelHeight + font->ascent + font->descent + 2 * kPad;
  const int width = kGrid * cellWidth + 1;
  const int height = kGrid * cellHeight + 1;

  int screen = DefaultScreen(display);
  Pixmap pixmap = XCreatePixmap(display, RootWindow(display, screen), width, height, DefaultDepth(display, screen));
  GC gc = XCreateGC(display, pixmap, 0, nullptr);
  const unsigned long white = WhitePixel(display, screen), black = BlackPixel(display, screen);
  XSetForeground(display, gc, white);
  XFillRectangle(display, pixmap, gc, 0, 0, width, height);
  XSetForeground(display, gc, black);
  for (int i = 0; i <= kGrid; ++i) {
    XDrawLine(display, pixmap, gc, i * cellWidth, 0, i * cellWidth, height - 1);
    XDrawLine(display, pixmap, gc, 0, i * cellHeight, width - 1, i * cellHeight);
  }
  for (int code = 0; code < kGrid * kGrid; ++code) {
    int x = (code % kGrid) * cellWidth, y = (code / kGrid) * cellHeight;
    std::string number = std::to_string(code);
    XSetFont(display, gc, label->fid);
    XDrawString(display, pixmap, gc, x + 2, y + 1 + label->ascent, number.data(), static_cast<int>(number.size()));
    char c = static_cast<char>(code);
    XSetFont(display, gc, font->fid);
    XDrawString(display, pixmap, gc, x + kPad - std::min<int>(font->min_bounds.lbearing, 0),
                y + kPad + labelHeight + font->ascent, &c, 1);
  }
  XImage* image = XGetImage(display, pixmap, 0, 0, width, height, AllPlanes, ZPixmap);
  std::vector<unsigned char> gray(static_cast<size_t>(width) * height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) gray[static_cast<size_t>(y) * width + x] = XGetPixel(image, x, y) == white ? 255 : 0;
  XDestroyImage(image);
  XFreeGC(display, gc);
  XFreePixmap(display, pixmap);
  XFreeFont(display, font);
  XFreeFont(display, label);
  XCloseDisplay(display);
  if (!WritePng(argv[1], gray, width, height)) {
    std::fprintf(stderr, "fontchart: cannot write %s\n", argv[1]);
    return 1;
  }
  return 0;
}
