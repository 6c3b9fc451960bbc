// zephrin-view [--png OUT] [--size WxH] FILE
#include <cstdio>
#include <string>

#include "viewer.h"

int main(int argc, char** argv) {
  TViewerOptions options;
  std::string error;
  if (!ParseViewerOptions(argc, argv, &options, &error)) {
    std::fprintf(stderr, "zephrin-view: %s\nusage: zephrin-view [--png OUT] [--size WxH] FILE\n", error.c_str());
    return 2;
  }
  return RunViewer(options, argc, argv);
}
