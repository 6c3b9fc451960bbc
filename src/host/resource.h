// Resource: the process's table of fixed things (paths, texts, fonts, named
// colours), the colormap as read at start-up, the X font path and the timer.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#include <vector>

#include "framework/color_ref.h"
#include "framework/cstring.h"
#include "framework/menu.h"

class ZRServer;

class Resource {
 public:
  static constexpr int kColormapSize = 256;
  static constexpr int kNamedColors = 28;
  static constexpr unsigned kFirstColorId = 70000;
  static constexpr unsigned kFirstFontId = 80000;
  static constexpr int kFontCount = 11;

  static Resource* GetResourceObject();
  // The string table behind CString::LoadString; "NO STRING" for unknown ids.
  static const char* GetStringResource(unsigned id);

  // Paths, fonts, texts and the default font path list from the server's
  // directories. Makes no X call.
  void SetResources(ZRServer* server, XtAppContext* appContext);
  // 13 when the profile store opened (and its font path was read), else 14.
  int SetRegistry();
  void ReadRegistryValues();
  void SaveRegistryValues();

  // Reads the 256 colormap entries and places the 28 named colours.
  void SetColors();
  // The queried cell nearest to `wanted` (sum of absolute 16-bit differences,
  // lowest index on a tie): its pixel and components go to `result`.
  void FindColorMatch(const TColorValue& wanted, TColorValue* result) const;
  // A cell that was just allocated replaces what the start-up query saw.
  // Pixels beyond the 256 read (deep screens) have no entry to replace.
  void SetColorInMaps(const TColorValue& color);
  // The components of `color->pixel`: from the cells read at start-up, and
  // for a pixel beyond them (deep screens) from the server.
  void GetColorInColormap(TColorValue* color) const;
  // The scaled table: each channel's high byte, for image dithering.
  void CreateScaledColormap();
  // As GetColorInColormap, in 0..255.
  void GetColorInScaledColormap(TColorValue* color) const;
  // 70000..70027, else null.
  CColorRef* GetColorResource(unsigned id);

  // 119: the popup menu; 24542: null; any other id: the one-item menu.
  CMenu* GetMenuResource(unsigned id);
  // The grey look shared by every dialog and menu (once the colours exist).
  void SetStandardColors(Widget widget);

  // 80000..80010; any other id answers as 80000.
  const char* GetFontStringResource(unsigned id) const;
  const std::vector<CString>& GetFontPathList() const { return m_FontPathList; }

  // Changes the server's font path: `special` with "default" or "rehash",
  // else replace, prepend (>0), append (>=1) or remove (either < 0) the
  // comma-separated entries of `path`, which is cut in place. Answers a
  // status: 7, or 9, 11, 16, 18.
  int SetFontPath(char* path, int special, int prepend, int append);

  // The one-shot 50 ms tick; handlers restart it.
  void StartAppTimer();
  void StopAppTimer();
  void SetXError(int error) { m_nXError = error; }
  int GetXError() const { return m_nXError; }

  // Colours of the context and the three dialogs.
  void SetPropertyPages();

  ZRServer* GetServer() const { return m_pServer; }
  Display* GetDisplay() const { return m_pDisplay; }

 private:
  CString MakePath(const char* directory, const char* tail) const;

  CMenu m_PopupMenu;         // 119
  CMenu m_NotImplementedMenu;
  CString m_MissingImagePath;  // 50000
  CString m_SplashImagePath;   // 50001
  CString m_LogoImagePath;     // 50002
  std::vector<CString> m_FontPathList;
  CString m_RegistryPath;      // 60001
  CString m_HomePageUrl;       // 32781
  CString m_WaitingText;       // 32787
  CString m_CommandQuestion;   // 25032
  ZRServer* m_pServer = nullptr;
  // The about, options and properties dialogs come with the dialogs.
  XtAppContext* m_pAppContext = nullptr;
  XtIntervalId m_TimerId = 0;
  Display* m_pDisplay = nullptr;
  Colormap m_Colormap = 0;
  Widget m_TopLevel = nullptr;
  bool m_bColorsRead = false;
  XColor m_Colors[kColormapSize] = {};
  TColorValue m_ScaledColors[kColormapSize] = {};
  CColorRef m_NamedColors[kNamedColors];
  CString m_FontStrings[kFontCount];
  int m_nXError = 0;
};
