#include "host/resource.h"

#include <cstdlib>
#include <cstring>

#include <Xm/Xm.h>

#include "host/np_zephrin_app.h"
#include "host/zr_server.h"

namespace {
Resource theResource;

// The table of named colours, in id order from 70000. The odd values are the
// table's own: "white" is 252 and "DarkRed" a purple.
struct TNamedColor {
  const char* name;
  unsigned short red, green, blue;
};
constexpr TNamedColor fg_NamedColors[Resource::kNamedColors] = {
    {"black", 0, 0, 0},          {"green", 0, 128, 0},          {"dark green", 0, 64, 0},
    {"yellow", 255, 255, 0},     {"dark cyan", 0, 139, 139},    {"blue", 0, 0, 255},
    {"DarkRed", 142, 35, 107},   {"cyan", 0, 255, 255},         {"magenta", 255, 0, 255},
    {"dark olive green", 79, 79, 47}, {"limegreen", 50, 205, 50}, {"red", 255, 0, 0},
    {"navy", 35, 35, 142},       {"magenta", 255, 0, 255},      {"purple1", 160, 32, 240},
    {"cyan", 0, 255, 255},       {"white", 252, 252, 252},      {"orange", 255, 165, 0},
    {"pink", 255, 192, 203},     {"brown", 165, 42, 42},        {"turquoise", 64, 224, 208},
    {"violet", 238, 130, 238},   {"wheat", 245, 222, 179},      {"gray", 190, 190, 190},
    {"light grey", 211, 211, 211}, {"grey", 190, 190, 190},     {"dark grey", 169, 169, 169},
    {"grey57", 145, 145, 145},
};

// Ids 80000..80010; 80006 and 80010 repeat the roman face.
constexpr const char* fg_FontNames[Resource::kFontCount] = {
    "-corvane-zrcmtt-medium-r-normal--0-0-0-0-m-0-iso8859-1",
    "-corvane-zrcmss-medium-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrcmmi-medium-i-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrcmr-medium-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrcmti-medium-i-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrcmbx-bold-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrcmr-medium-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrsya-medium-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrsyb-medium-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrsyc-medium-r-normal--0-0-0-0-p-0-iso8859-1",
    "-corvane-zrcmr-medium-r-normal--0-0-0-0-p-0-iso8859-1",
};

constexpr const char* fg_HomePageUrl = "http://www.zephrin.example/";

constexpr const char* fg_WaitingText[] = {
    "\\popupLink{zephrin is waiting for one or more ",
    "files to arrive before it can fully format and ",
    "display this document. If it appears that the file ",
    "never arrives (it may take awhile!), then the ",
    "requested file may not exist or your Netscape ",
    "Navigator cache sizes may be too small. Be sure to ",
    "close this window after you have read this ",
    "information! }{Why zephrin is waiting}",
    "{\\buttonbox{... waiting ...}}",
};

unsigned Distance(unsigned a, unsigned b) { return a > b ? a - b : b - a; }
}  // namespace

Resource* Resource::GetResourceObject() { return &theResource; }

const char* Resource::GetStringResource(unsigned id) {
  const Resource& r = theResource;
  switch (id) {
    case 50000: return r.m_MissingImagePath;
    case 50001: return r.m_SplashImagePath;
    case 50002: return r.m_LogoImagePath;
    case 60000: return r.m_FontPathList.empty() ? "" : r.m_FontPathList.front().c_str();
    case 60001: return r.m_RegistryPath;
    case 32781: return r.m_HomePageUrl;
    case 32787: return r.m_WaitingText;
    case 25032: return r.m_CommandQuestion;
    default: return "NO STRING";
  }
}

CString Resource::MakePath(const char* directory, const char* tail) const { return CString(directory) + tail; }

void Resource::SetResources(ZRServer* server, XtAppContext* appContext) {
  m_pServer = server;
  m_pAppContext = appContext;
  for (int i = 0; i < kFontCount; ++i) m_FontStrings[i] = fg_FontNames[i];
  const char* install = server->GetZRHomeDir();
  m_MissingImagePath = MakePath(install, "/Resources/mi.jpg");
  m_SplashImagePath = MakePath(install, "/Resources/zdv16.jpg");
  m_LogoImagePath = MakePath(install, "/Resources/smzephrin.jpg");
  m_FontPathList.clear();
  m_FontPathList.push_back(MakePath(install, "/Fonts"));
  m_RegistryPath = MakePath(server->GetUserHomeDir(), "/Cache/registry");
  m_HomePageUrl = fg_HomePageUrl;
  m_WaitingText.Empty();
  for (const char* piece : fg_WaitingText) m_WaitingText += piece;
  m_CommandQuestion = "Do you wish to execute the local command: ";
  CString::SetStringResourceLookup(&Resource::GetStringResource);
  // Built once: the items outlive every menu that loads them.
  if (m_PopupMenu.GetList().m_nCount == 0) {
    // The view's helpers are hooked to these ids when the views exist.
    m_PopupMenu.AppendResourceMenu("Above topic", 'A', 32775, nullptr);
    m_PopupMenu.AppendResourceMenu("Next topic", 'N', 32777, nullptr);
    m_PopupMenu.AppendResourceMenu("Previous topic", 'P', 32779, nullptr);
    m_PopupMenu.AppendResourceMenu(nullptr, 0, 0, nullptr);
    m_PopupMenu.AppendResourceMenu("About the Corvane zephrin Document Viewer", 'I', 40000, nullptr);
    m_PopupMenu.AppendResourceMenu("zephrin Options...", 'O', 32778, nullptr);
    m_PopupMenu.AppendResourceMenu(nullptr, 0, 0, nullptr);
    m_PopupMenu.AppendResourceMenu("Document properties...", 'D', 32789, nullptr);
    m_NotImplementedMenu.AppendResourceMenu("Sorry, not implemented", 0, 0, nullptr);
  }
}

CMenu* Resource::GetMenuResource(unsigned id) {
  if (id == 119) return &m_PopupMenu;
  if (id == 24542) return nullptr;
  return &m_NotImplementedMenu;
}

void Resource::SetStandardColors(Widget widget) {
  if (!widget || !m_pDisplay) return;
  XtVaSetValues(widget, XmNbottomShadowColor, static_cast<Pixel>(m_NamedColors[26].Pixel()),  // dark grey
                XmNtopShadowColor, static_cast<Pixel>(m_NamedColors[24].Pixel()),             // light grey
                XmNbackground, static_cast<Pixel>(m_NamedColors[23].Pixel()),                 // gray
                XmNforeground, static_cast<Pixel>(m_NamedColors[0].Pixel()),                  // black
                XmNborderColor, static_cast<Pixel>(m_NamedColors[0].Pixel()), nullptr);
}

const char* Resource::GetFontStringResource(unsigned id) const {
  if (id < kFirstFontId || id >= kFirstFontId + kFontCount) id = kFirstFontId;
  return m_FontStrings[id - kFirstFontId];
}

int Resource::SetRegistry() {
  CNpZephrinApp* app = CNpZephrinApp::GetPlugInDllObject();
  if (!app->InitializeRegistry()) return 14;
  app->SetRegistryKey("Corvane");
  ReadRegistryValues();
  return 13;
}

void Resource::ReadRegistryValues() {
  CString joined;
  for (size_t i = 0; i < m_FontPathList.size(); ++i) {
    if (i) joined += ",";
    joined += m_FontPathList[i];
  }
  CString value = CNpZephrinApp::GetPlugInDllObject()->GetProfileString("Fonts", "FontPath", joined);
  m_FontPathList.clear();
  // Spaces are kept: an entry is exactly what stands between the commas.
  const std::string& text = value.str();
  size_t start = 0;
  for (size_t comma; (comma = text.find(',', start)) != std::string::npos; start = comma + 1)
    m_FontPathList.emplace_back(text.substr(start, comma - start));
  m_FontPathList.emplace_back(text.substr(start));
}

void Resource::SaveRegistryValues() {
  CString joined;
  for (size_t i = 0; i < m_FontPathList.size(); ++i) {
    if (i) joined += ",";
    joined += m_FontPathList[i];
  }
  CNpZephrinApp::GetPlugInDllObject()->WriteProfileString("Fonts", "FontPath", joined);
}

void Resource::SetColors() {
  m_pDisplay = m_pServer->GetDisplay();
  m_Colormap = m_pServer->GetColormap();
  m_TopLevel = m_pServer->GetTopLevel();
  for (int i = 0; i < kColormapSize; ++i) {
    m_Colors[i] = XColor{};
    m_Colors[i].pixel = static_cast<unsigned long>(i);
  }
  XQueryColors(m_pDisplay, m_Colormap, m_Colors, kColormapSize);
  m_bColorsRead = true;
  CreateScaledColormap();
  for (int i = 0; i < kNamedColors; ++i) {
    const TNamedColor& c = fg_NamedColors[i];
    m_NamedColors[i] = CColorRef(c.red, c.green, c.blue, c.name);
    m_NamedColors[i].Allocate(m_pDisplay, m_Colormap, 1);
  }
}

void Resource::CreateScaledColormap() {
  for (int i = 0; i < kColormapSize; ++i) {
    m_ScaledColors[i].pixel = static_cast<uint32_t>(m_Colors[i].pixel);
    m_ScaledColors[i].red = m_Colors[i].red >> 8;
    m_ScaledColors[i].green = m_Colors[i].green >> 8;
    m_ScaledColors[i].blue = m_Colors[i].blue >> 8;
  }
}

void Resource::FindColorMatch(const TColorValue& wanted, TColorValue* result) const {
  int best = 0;
  unsigned bestDistance = ~0u;
  for (int i = 0; i < kColormapSize; ++i) {
    unsigned d = Distance(wanted.red, m_Colors[i].red) + Distance(wanted.green, m_Colors[i].green) +
                 Distance(wanted.blue, m_Colors[i].blue);
    if (d < bestDistance) {
      bestDistance = d;
      best = i;
    }
  }
  result->pixel = static_cast<uint32_t>(m_Colors[best].pixel);
  result->red = m_Colors[best].red;
  result->green = m_Colors[best].green;
  result->blue = m_Colors[best].blue;
}

void Resource::SetColorInMaps(const TColorValue& color) {
  Visual* visual = m_pServer ? m_pServer->GetVisual() : nullptr;
  if (visual && (visual->c_class == TrueColor || visual->c_class == DirectColor)) return;
  if (color.pixel >= static_cast<uint32_t>(kColormapSize)) return;  // a deep visual's pixel
  XColor& cell = m_Colors[color.pixel];
  cell.red = color.red;
  cell.green = color.green;
  cell.blue = color.blue;
  TColorValue& scaled = m_ScaledColors[color.pixel];
  scaled.red = color.red >> 8;
  scaled.green = color.green >> 8;
  scaled.blue = color.blue >> 8;
}

namespace {
// Whether the server knows `pixel` in a colormap of `visual`: asking for a
// pixel it does not know is an X error.
bool IsPixelOfVisual(const Visual* visual, uint32_t pixel) {
  if (!visual) return false;
  if (visual->c_class == TrueColor || visual->c_class == DirectColor)
    return (pixel & ~(visual->red_mask | visual->green_mask | visual->blue_mask)) == 0;
  return pixel < static_cast<uint32_t>(visual->map_entries);
}
}  // namespace

void Resource::GetColorInColormap(TColorValue* color) const {
  if (color->pixel < static_cast<uint32_t>(kColormapSize) && m_bColorsRead) {
    const XColor& cell = m_Colors[color->pixel];
    color->red = cell.red;
    color->green = cell.green;
    color->blue = cell.blue;
    return;
  }
  Visual* visual = m_pServer ? m_pServer->GetVisual() : nullptr;
  if (!visual && m_pDisplay) visual = DefaultVisual(m_pDisplay, DefaultScreen(m_pDisplay));
  if (!m_bColorsRead || !m_pDisplay) {
    // Nothing read yet: a true-colour pixel still tells its components.
    if (visual && (visual->c_class == TrueColor || visual->c_class == DirectColor)) LookUpPixelComponents(visual, color);
    return;
  }
  // A deep screen's pixel beyond the cells read: the server knows it.
  if (!IsPixelOfVisual(visual, color->pixel)) return;
  XColor cell{};
  cell.pixel = color->pixel;
  XQueryColor(m_pDisplay, m_Colormap, &cell);
  color->red = cell.red;
  color->green = cell.green;
  color->blue = cell.blue;
}

void Resource::GetColorInScaledColormap(TColorValue* color) const {
  if (color->pixel < static_cast<uint32_t>(kColormapSize)) {
    const TColorValue& cell = m_ScaledColors[color->pixel];
    color->red = cell.red;
    color->green = cell.green;
    color->blue = cell.blue;
    return;
  }
  GetColorInColormap(color);
  color->red >>= 8;
  color->green >>= 8;
  color->blue >>= 8;
}

CColorRef* Resource::GetColorResource(unsigned id) {
  if (id < kFirstColorId || id >= kFirstColorId + kNamedColors) return nullptr;
  return &m_NamedColors[id - kFirstColorId];
}

int Resource::SetFontPath(char* path, int special, int prepend, int append) {
  int status = 7;
  Display* display = m_pServer ? m_pServer->GetDisplay() : nullptr;
  if (!display || !path) return 18;
  if (special) {
    if (std::strcmp(path, "default") == 0) {
      XSetFontPath(display, nullptr, 0);
      return 7;
    }
    if (std::strcmp(path, "rehash") == 0) {
      // Setting the same path again makes the server rescan its directories.
      int count = 0;
      char** current = XGetFontPath(display, &count);
      if (!current) return 9;
      XSetFontPath(display, current, count);
      XFreeFontPath(current);
      return 7;
    }
  }

  char** current = nullptr;
  int currentCount = 0;
  if (prepend || append) {
    current = XGetFontPath(display, &currentCount);
    if (!current) {
      status = 9;
      prepend = append = 0;
      currentCount = 0;
    }
  }

  // Cut at the commas in place; empty pieces are not entries, so ",a" or ""
  // counts as a malformed list.
  int commas = 0;
  for (char* p = path; *p; ++p)
    if (*p == ',') ++commas;
  char** pieces = static_cast<char**>(std::malloc(sizeof(char*) * (commas + 1)));
  if (!pieces) {
    if (current) XFreeFontPath(current);
    return 16;
  }
  int count = 0;
  for (char* p = path; *p;) {
    char* start = p;
    while (*p && *p != ',') ++p;
    if (*p == ',') *p++ = '\0';
    if (*start) pieces[count++] = start;
  }
  auto finish = [&](int result) {
    std::free(pieces);
    if (current) XFreeFontPath(current);
    return result;
  };
  if (count != commas + 1) return finish(18);

  if (!prepend && !append) XSetFontPath(display, pieces, count);

  if (prepend > 0 || append >= 1) {
    char** joined = static_cast<char**>(std::malloc(sizeof(char*) * (currentCount + count)));
    if (!joined) return finish(16);
    int n = 0;
    if (prepend > 0) {
      for (int i = 0; i < count; ++i) joined[n++] = pieces[i];
      for (int i = 0; i < currentCount; ++i) joined[n++] = current[i];
    } else {
      for (int i = 0; i < currentCount; ++i) joined[n++] = current[i];
      for (int i = 0; i < count; ++i) joined[n++] = pieces[i];
    }
    XSetFontPath(display, joined, n);
    std::free(joined);
  }

  if (prepend < 0 || append < 0) {
    char** kept = static_cast<char**>(std::malloc(sizeof(char*) * (currentCount > 0 ? currentCount : 1)));
    if (!kept) return finish(16);
    int n = 0;
    for (int i = 0; i < currentCount; ++i) {
      bool named = false;
      for (int j = 0; j < count && !named; ++j) named = std::strcmp(current[i], pieces[j]) == 0;
      if (!named) kept[n++] = current[i];
    }
    if (n == currentCount) status = 11;
    XSetFontPath(display, kept, n);
    std::free(kept);
  }
  return finish(status);
}

void Resource::StartAppTimer() {
  if (!m_pAppContext || !m_pServer) return;
  m_TimerId = XtAppAddTimeOut(*m_pAppContext, 50, &ZRServer::OnTimeOutHelper, m_pServer);
}

void Resource::StopAppTimer() {
  if (m_TimerId) XtRemoveTimeOut(m_TimerId);
  m_TimerId = 0;
}

void Resource::SetPropertyPages() {
  // The 16 colours of the context and the about, options and properties
  // dialogs are made here once the context and the dialogs exist.
}
