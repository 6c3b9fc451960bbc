// zephrin-inspect draw [--no-window] [--screen PWxPH/MWxMH] SCRIPT
//
// Runs drawing calls, one a line, on the X drawing device over a mapped
// 400x300 window (white, GC black on white), after the host's resource
// start-up; then reports the ink per colour. With --no-window the context has
// no window; --screen sets the ratios as a screen of those pixel and
// millimetre sizes would. SCRIPT "-" reads standard input.
//
// Calls: ratios | l2d X Y | d2l X Y | l2dsize CX CY | d2lsize CX CY |
//   fg R G B [NAME] | bg R G B [NAME] | font NAME | text X Y STR |
//   line X1 Y1 X2 Y2 | rect L T R B | fill L T R B R G B | extent STR |
//   clip L T R B | visible L T R B (RectVisible) | node X Y H D W [always] |
//   force 0|1 | required
// Last, per colour other than the background: ink R G B COUNT L T R B, the
// device box inclusive, sorted by colour.
#include <Xm/DrawingA.h>
#include <Xm/Xm.h>
#include <X11/Xutil.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "device/context_xwin.h"
#include "format/node.h"
#include "framework/gdi_objects.h"
#include "framework/wnd.h"
#include "host/resource.h"
#include "host/zr_server.h"
#include "verbs.h"

namespace {
constexpr int kWidth = 400;
constexpr int kHeight = 300;

// Saturating: a long digit run is the largest int, not a wrapped one.
bool ParseInt(const std::string& text, int* value) {
  if (text.empty()) return false;
  const char* p = text.c_str();
  bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  if (!*p) return false;
  long long result = 0;
  for (; *p; ++p) {
    if (*p < '0' || *p > '9') return false;
    result = std::min<long long>(result * 10 + (*p - '0'), 1LL << 40);
  }
  if (negative) result = -result;
  *value = static_cast<int>(std::clamp<long long>(result, INT_MIN, INT_MAX));
  return true;
}

unsigned short Component(int value) { return static_cast<unsigned short>(std::clamp(value, 0, 65535)); }

void PrintColor(const CColorRef& color) {
  std::printf("%d %d %d %s\n", color.m_Asked.red >> 8, color.m_Asked.green >> 8, color.m_Asked.blue >> 8,
              color.m_Name.IsEmpty() ? "-" : color.m_Name.c_str());
}

struct TDrawWindow {
  XtAppContext app = nullptr;
  Widget shell = nullptr;
  Widget area = nullptr;
  CWnd window;
  unsigned long background = 0;
};

// The host's start-up of resources: paths, colours, the font path.
void StartResources(ZRServer* server, XtAppContext* app, Widget shell, Display* display) {
  Resource* resource = Resource::GetResourceObject();
  resource->SetResources(server, app);
  int screen = DefaultScreen(display);
  server->SetGUI(app, shell, display, screen, DefaultVisual(display, screen), DefaultDepth(display, screen), 255, 0,
                 DefaultColormap(display, screen));
  resource->SetColors();
  XSetErrorHandler(&ZRServer::XErrorHandler);
  server->LoadFonts();
}

bool OpenWindow(TDrawWindow* w, ZRServer* server, bool withWindow) {
  int argc = 1;
  static char name[] = "zephrin-inspect";
  static char* argv[] = {name, nullptr};
  XtToolkitInitialize();
  w->app = XtCreateApplicationContext();
  Display* display = XtOpenDisplay(w->app, nullptr, name, "ZephrinInspect", nullptr, 0, &argc, argv);
  if (!display) return false;
  w->shell = XtVaAppCreateShell(name, "ZephrinInspect", applicationShellWidgetClass, display, XmNx, 0, XmNy, 0,
                                XmNwidth, kWidth, XmNheight, kHeight, XmNborderWidth, 0, nullptr);
  StartResources(server, &w->app, w->shell, display);
  if (!withWindow) return true;

  int screen = DefaultScreen(display);
  Colormap colormap = DefaultColormap(display, screen);
  XColor white{};
  white.red = white.green = white.blue = 0xffff;
  white.flags = DoRed | DoGreen | DoBlue;
  w->background = XAllocColor(display, colormap, &white) ? white.pixel : WhitePixel(display, screen);
  w->area = XtVaCreateManagedWidget("draw", xmDrawingAreaWidgetClass, w->shell, XmNwidth, kWidth, XmNheight,
                                    kHeight, XmNmarginWidth, 0, XmNmarginHeight, 0, XmNresizePolicy,
                                    XmRESIZE_NONE, XmNbackground, w->background, nullptr);
  XtRealizeWidget(w->shell);
  Window drawWindow = XtWindow(w->area);
  XSelectInput(display, drawWindow, ExposureMask | StructureNotifyMask);
  // Drawing before the first exposure would be cleared by it.
  for (bool exposed = false; !exposed;) {
    XEvent event;
    XtAppNextEvent(w->app, &event);
    if (event.type == Expose && event.xexpose.window == drawWindow && event.xexpose.count == 0) exposed = true;
    XtDispatchEvent(&event);
  }
  XSync(display, False);
  XGCValues values{};
  values.foreground = BlackPixel(display, screen);
  XColor black{};
  black.flags = DoRed | DoGreen | DoBlue;
  if (XAllocColor(display, colormap, &black)) values.foreground = black.pixel;
  values.background = w->background;
  GC gc = XCreateGC(display, drawWindow, GCForeground | GCBackground, &values);
  static Colormap sharedColormap;
  sharedColormap = colormap;
  w->window.SetInfo(w->shell, w->area, w->area, nullptr, nullptr, drawWindow, 0, 0, 0, kWidth, kHeight, display, gc,
                    DefaultVisual(display, screen), screen, DefaultDepth(display, screen), 255, 0, &sharedColormap);
  return true;
}

// The ink of the window, per colour: count and inclusive device box.
void ReportInk(const TDrawWindow& w) {
  Display* display = w.window.m_pDisplay;
  XSync(display, False);
  XImage* image = XGetImage(display, w.window.m_DrawWindow, 0, 0, kWidth, kHeight, AllPlanes, ZPixmap);
  if (!image) {
    std::fprintf(stderr, "zephrin-inspect draw: cannot read the window\n");
    return;
  }
  struct TInk {
    long count = 0;
    int left = INT_MAX, top = INT_MAX, right = -1, bottom = -1;
  };
  std::map<unsigned long, TInk> byPixel;
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) {
      unsigned long pixel = XGetPixel(image, x, y);
      if (pixel == w.background) continue;
      TInk& ink = byPixel[pixel];
      ++ink.count;
      ink.left = std::min(ink.left, x);
      ink.top = std::min(ink.top, y);
      ink.right = std::max(ink.right, x);
      ink.bottom = std::max(ink.bottom, y);
    }
  XDestroyImage(image);
  std::map<std::tuple<int, int, int>, TInk> byColor;
  for (const auto& [pixel, ink] : byPixel) {
    XColor shown{};
    shown.pixel = pixel;
    XQueryColor(display, w.window.GetColormap(), &shown);
    TInk& merged = byColor[{shown.red >> 8, shown.green >> 8, shown.blue >> 8}];
    merged.count += ink.count;
    merged.left = std::min(merged.left, ink.left);
    merged.top = std::min(merged.top, ink.top);
    merged.right = std::max(merged.right, ink.right);
    merged.bottom = std::max(merged.bottom, ink.bottom);
  }
  for (const auto& [rgb, ink] : byColor)
    std::printf("ink %d %d %d %ld %d %d %d %d\n", std::get<0>(rgb), std::get<1>(rgb), std::get<2>(rgb), ink.count,
                ink.left, ink.top, ink.right, ink.bottom);
}

// The words of a line, and for text calls the rest of the line after the
// leading words.
struct TLine {
  std::vector<std::string> words;
  std::string RestAfter(const std::string& line, size_t wordsBefore) const {
    size_t at = 0;
    for (size_t i = 0; i < wordsBefore; ++i) {
      at = line.find_first_not_of(" \t", at);
      if (at == std::string::npos) return std::string();
      at = line.find_first_of(" \t", at);
      if (at == std::string::npos) return std::string();
    }
    if (at < line.size()) ++at;  // one separating blank; the rest is the text
    return line.substr(at);
  }
};

class TScriptRunner {
 public:
  TScriptRunner(TFmtContext_XWin& context, CWnd* window) : m_Context(context), m_pWindow(window) {}

  void Run(const std::string& line, int number) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    if (words.empty() || words[0][0] == '#') return;
    if (!Call(words, line)) std::fprintf(stderr, "zephrin-inspect draw: line %d: cannot run '%s'\n", number, line.c_str());
  }

 private:
  bool Ints(const std::vector<std::string>& words, size_t first, size_t count, int* out) {
    if (words.size() < first + count) return false;
    for (size_t i = 0; i < count; ++i)
      if (!ParseInt(words[first + i], &out[i])) return false;
    return true;
  }

  bool Call(const std::vector<std::string>& words, const std::string& line) {
    const std::string& verb = words[0];
    int v[7] = {};
    if (verb == "ratios") {
      std::printf("%d %d %d %d\n", m_Context.Get_DisplayWidth(), m_Context.Get_DisplayHeight(),
                  m_Context.Get_LogicalWidth(), m_Context.Get_LogicalHeight());
    } else if (verb == "l2d" || verb == "d2l") {
      if (!Ints(words, 1, 2, v)) return false;
      if (verb == "l2d") m_Context.Log2Dev(v[0], v[1]);
      else m_Context.Dev2Log(v[0], v[1]);
      std::printf("%d %d\n", v[0], v[1]);
    } else if (verb == "l2dsize" || verb == "d2lsize") {
      if (!Ints(words, 1, 2, v)) return false;
      CSize size(v[0], v[1]);
      if (verb == "l2dsize") m_Context.Log2Dev(size);
      else m_Context.Dev2Log(size);
      std::printf("%d %d\n", size.cx, size.cy);
    } else if (verb == "fg" || verb == "bg") {
      if (!Ints(words, 1, 3, v)) return false;
      std::string name = words.size() > 4 ? TLine().RestAfter(line, 4) : std::string();
      CColorRef color(Component(v[0]), Component(v[1]), Component(v[2]), name.empty() ? nullptr : name.c_str());
      PrintColor(verb == "fg" ? m_Context.SetTextColor(color) : m_Context.SetBkColor(color));
    } else if (verb == "font") {
      if (words.size() < 2) return false;
      auto font = std::make_unique<CFont>();
      try {
        font->CreateFont(m_pWindow, words[1].c_str());
      } catch (const CFontException&) {
        std::fprintf(stderr, "zephrin-inspect draw: font %s not loaded\n", words[1].c_str());
        return true;
      }
      m_Context.SelectObject(font.get());
      m_Fonts.push_back(std::move(font));  // selected fonts outlive the run
    } else if (verb == "text") {
      if (!Ints(words, 1, 2, v)) return false;
      m_Context.TextOut(v[0], v[1], CString(TLine().RestAfter(line, 3)));
    } else if (verb == "line") {
      if (!Ints(words, 1, 4, v)) return false;
      m_Context.MoveTo(v[0], v[1]);
      m_Context.LineTo(v[2], v[3]);
    } else if (verb == "rect") {
      if (!Ints(words, 1, 4, v)) return false;
      m_Context.Rectangle(v[0], v[1], v[2], v[3]);
    } else if (verb == "fill") {
      if (!Ints(words, 1, 7, v)) return false;
      CRect rect(v[0], v[1], v[2], v[3]);
      CBrush brush(CColorRef(Component(v[4]), Component(v[5]), Component(v[6])));
      m_Context.FillRect(&rect, &brush);
    } else if (verb == "extent") {
      std::string text = TLine().RestAfter(line, 1);
      CSize size = m_Context.GetTextExtent(text.c_str(), static_cast<int>(text.size()));
      std::printf("%d %d\n", size.cx, size.cy);
    } else if (verb == "clip") {
      if (!Ints(words, 1, 4, v)) return false;
      m_Context.Set_ClipRegion(CRect(v[0], v[1], v[2], v[3]));
    } else if (verb == "visible") {
      if (!Ints(words, 1, 4, v)) return false;
      CRect rect(v[0], v[1], v[2], v[3]);
      std::printf("%d\n", m_Context.RectVisible(&rect) ? 1 : 0);
    } else if (verb == "node") {
      if (!Ints(words, 1, 5, v)) return false;
      m_Node.m_Position = CPoint(v[0], v[1]);
      m_Node.m_pExtent->Reset(v[2], v[3], v[4]);
      m_Node.m_bDrawAlways = words.size() > 6 && words[6] == "always";
    } else if (verb == "force") {
      if (!Ints(words, 1, 1, v)) return false;
      m_Context.m_bForceDraw = v[0] != 0;
    } else if (verb == "required") {
      std::printf("%d\n", m_Node.IsDrawRequired(m_Context) ? 1 : 0);
    } else {
      return false;
    }
    return true;
  }

  TFmtContext_XWin& m_Context;
  CWnd* m_pWindow;
  TFmtNode m_Node;
  std::vector<std::unique_ptr<CFont>> m_Fonts;
};

int Usage() {
  std::fprintf(stderr, "usage: zephrin-inspect draw [--no-window] [--screen PWxPH/MWxMH] SCRIPT\n");
  return 2;
}
}  // namespace

int InspectVerb_draw(int argc, char** argv) {
  bool withWindow = true;
  int screenSize[4] = {0, 0, 0, 0};
  bool screenGiven = false;
  const char* script = nullptr;
  for (int i = 0; i < argc; ++i) {
    if (std::strcmp(argv[i], "--no-window") == 0) {
      withWindow = false;
    } else if (std::strcmp(argv[i], "--screen") == 0 && i + 1 < argc) {
      char tail = 0;
      if (std::sscanf(argv[++i], "%dx%d/%dx%d%c", &screenSize[0], &screenSize[1], &screenSize[2], &screenSize[3],
                      &tail) != 4)
        return Usage();
      screenGiven = true;
    } else if (!script) {
      script = argv[i];
    } else {
      return Usage();
    }
  }
  if (!script) return Usage();

  std::vector<std::string> lines;
  {
    std::ifstream file;
    std::istream* in = &std::cin;
    if (std::strcmp(script, "-") != 0) {
      file.open(script);
      if (!file) {
        std::fprintf(stderr, "zephrin-inspect draw: cannot read %s\n", script);
        return 1;
      }
      in = &file;
    }
    for (std::string line; std::getline(*in, line);) lines.push_back(line);
  }

  static ZRServer server;  // the resources keep pointers into it
  if (!std::getenv("HOME")) setenv("HOME", "/tmp", 0);
  server.SetEnv(getppid(), 0);
  TDrawWindow w;
  bool haveDisplay = std::getenv("DISPLAY") != nullptr;
  if (withWindow || haveDisplay) {
    if (!OpenWindow(&w, &server, withWindow)) {
      std::fprintf(stderr, "zephrin-inspect draw: cannot open the display\n");
      if (withWindow) return 1;
    }
  }

  TFmtContext_XWin context;
  if (withWindow) context.Set_Window(&w.window);
  if (screenGiven) context.SetDisplayRatios(screenSize[0], screenSize[1], screenSize[2], screenSize[3]);
  TScriptRunner runner(context, withWindow ? &w.window : nullptr);
  for (size_t i = 0; i < lines.size(); ++i) runner.Run(lines[i], static_cast<int>(i + 1));
  if (withWindow) ReportInk(w);
  std::fflush(stdout);
  return 0;
}
