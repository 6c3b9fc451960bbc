// zephrin-view as a user runs it: a PNG of the window, and its one-line
// errors.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/host_shim.h"
#include "support/paths.h"

namespace fs = std::filesystem;

namespace {
struct TRun {
  int code = -1;
  std::string output;  // standard output and error together
};

// Runs the viewer with HOME (and the staged installation) set.
TRun RunViewer(const std::string& home, const std::string& args) {
  const char* staged = std::getenv("ZEPHRIN_HOME");
  std::string install = staged ? staged : ztest::BuildPath("install");
  std::string command = "HOME='" + home + "' ZEPHRIN_HOME='" + install + "' timeout 120 '" +
                        ztest::BuildPath("zephrin-view") + "' " + args + " 2>&1";
  TRun run;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return run;
  char buffer[512];
  while (std::fgets(buffer, sizeof buffer, pipe)) run.output += buffer;
  int status = pclose(pipe);
  run.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return run;
}

// The bundled demo, at the top of the source tree.
std::string DemoPath() {
  return (fs::path(ZEPHRIN_TEST_DATA).parent_path().parent_path() / "resources" / "demo.tex").string();
}

std::string HomeWithStore() {
  std::string home = ztest::ScratchDir("home");
  fs::create_directories(fs::path(home) / ".zephrin" / "Cache");
  ztest::WriteFile(home + "/.zephrin/Cache/registry", "");
  return home;
}

// Width and height from a PNG's header chunk, big-endian.
bool PngSize(const std::string& path, unsigned* width, unsigned* height) {
  std::ifstream in(path, std::ios::binary);
  unsigned char header[24];
  if (!in.read(reinterpret_cast<char*>(header), sizeof header)) return false;
  if (header[0] != 0x89 || header[1] != 'P' || std::string(reinterpret_cast<char*>(header) + 12, 4) != "IHDR")
    return false;
  *width = (header[16] << 24) | (header[17] << 16) | (header[18] << 8) | header[19];
  *height = (header[20] << 24) | (header[21] << 16) | (header[22] << 8) | header[23];
  return true;
}
}  // namespace

TEST(Viewer, PngOfTheDemoHasTheWindowsSize) {
  std::string out = ztest::ScratchDir("png") + "/demo.png";
  std::string demo = DemoPath();
  TRun run = RunViewer(HomeWithStore(), "--png '" + out + "' --size 320x240 '" + demo + "'");
  ASSERT_EQ(run.code, 0) << run.output;
  EXPECT_EQ(run.output, out + "\n");
  unsigned width = 0, height = 0;
  ASSERT_TRUE(PngSize(out, &width, &height));
  // The drawing area is 320x240; the status line adds to the height only.
  EXPECT_EQ(width, 320u);
  EXPECT_GT(height, 240u + 10u);
  EXPECT_LT(height, 240u + 60u);
}

TEST(Viewer, ErrorsAreOneLineAndNonZero) {
  std::string home = HomeWithStore();
  TRun missing = RunViewer(home, "--png /tmp/never.png /nonexistent/file.tex");
  EXPECT_EQ(missing.code, 2);
  EXPECT_EQ(missing.output, "zephrin-view: cannot read /nonexistent/file.tex\n");

  TRun size = RunViewer(home, "--size 3x4 x.tex");
  EXPECT_EQ(size.code, 2);
  EXPECT_EQ(size.output.rfind("zephrin-view: --size", 0), 0u) << size.output;

  // No profile store: the host reports that it is not ready.
  std::string demo = DemoPath();
  TRun notReady = RunViewer(ztest::ScratchDir("bare"), "--png /tmp/never.png '" + demo + "'");
  EXPECT_EQ(notReady.code, 4);
  EXPECT_NE(notReady.output.find("zephrin-view: the host is not ready"), std::string::npos) << notReady.output;
  EXPECT_EQ(std::count(notReady.output.begin(), notReady.output.end(), '\n'), 1) << notReady.output;
}
