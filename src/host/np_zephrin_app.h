// CNpZephrinApp: the one application object, the profile store's owner and
// the start order of everything that start-up builds.
#pragma once

#include "framework/win_app.h"

class CNpZephrinApp : public CWinApp {
 public:
  static CNpZephrinApp* GetPlugInDllObject();

  // Runs the start order; answers 1.
  int InitInstance();
  // Written for completeness: every exit path calls exit directly instead.
  int ExitInstance();

  // Reads every owner's keys, in a fixed order, before the string pool
  // exists: nothing here may use interned names.
  void UpdateFromRegistry();
  void UpdateToRegistry();

  static constexpr const char* kAppName = "zephrin Document Viewer, Netscape Plug-in Edition";
};

CNpZephrinApp* AfxGetApp();
