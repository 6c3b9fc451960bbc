// zephrin-view: the standalone viewer. It plays the browser plug-in shim's
// part: a window with a drawing area (the "browser window") and a status
// line, the control and data ports, and the host process as its child.
#pragma once

#include <X11/Intrinsic.h>
#include <netinet/in.h>
#include <sys/types.h>

#include <string>

struct TViewerOptions {
  std::string file;
  std::string png;  // empty: interactive
  int width = 800;
  int height = 600;
};

// Parses the command line; false with a one-line message in error.
bool ParseViewerOptions(int argc, char** argv, TViewerOptions* options, std::string* error);

// Runs the viewer; the exit code.
int RunViewer(const TViewerOptions& options, int argc, char** argv);
