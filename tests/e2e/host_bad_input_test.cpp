// Bad input to the host process: each takes its designed failure, without a
// crash (the sanitizer build runs these too).
#include <gtest/gtest.h>

#include <X11/Xlib.h>

#include <filesystem>
#include <string>

#include "support/host_shim.h"
#include "support/paths.h"
#include "support/x_windows.h"

namespace fs = std::filesystem;

namespace {
fs::path StagedInstall() {
  const char* home = std::getenv("ZEPHRIN_HOME");
  return home ? fs::path(home) : fs::path(ztest::BuildPath("install"));
}

// An installation with an accepted, empty font directory: the host starts.
std::string MakeInstall() {
  fs::path dir = ztest::ScratchDir("install");
  fs::copy(StagedInstall() / "Resources", dir / "Resources", fs::copy_options::recursive);
  fs::create_directories(dir / "Fonts");
  ztest::WriteFile((dir / "Fonts" / "fonts.dir").string(), "0\n");
  return dir.string();
}

std::string MakeHomeWithRegistry(const std::string& bytes) {
  fs::path dir = ztest::ScratchDir("home");
  fs::create_directories(dir / ".zephrin" / "Cache");
  ztest::WriteFile((dir / ".zephrin" / "Cache" / "registry").string(), bytes);
  return dir.string();
}

// Starts the host and answers the ready word of its report, or -1 without one.
int ReadyWord(ztest::HostShim& shim) {
  std::string bytes;
  if (!shim.ReadReport(&bytes) || bytes.size() != 36) return -1;
  return static_cast<int>(ztest::HostShim::Decode(bytes).ready);
}
}  // namespace

TEST(HostBadInput, RegistryOfGarbageOrBinaryBytesStillOpensAsAStore) {
  std::string binary;
  for (int i = 0; i < 4096; ++i) binary += static_cast<char>((i * 131 + 7) & 0xff);
  const std::string cases[] = {
      "this is not a resource file\n:::\n\\\\\\\n!x\n#include \"nowhere\"\nCorvane.Fonts.FontPath",
      binary,
      std::string("Corvane.Fonts.FontPath:\0/x\n", 26),
  };
  for (const std::string& registry : cases) {
    ztest::HostShim shim;
    shim.SetEnv("ZEPHRIN_HOME", MakeInstall());
    shim.SetEnv("HOME", MakeHomeWithRegistry(registry));
    ASSERT_TRUE(shim.Start());
    EXPECT_EQ(ReadyWord(shim), 1);
  }
}

TEST(HostBadInput, UnreadableRegistryIsAFailedStart) {
  // A directory where the file should be cannot be read, even by root.
  fs::path home = ztest::ScratchDir("home");
  fs::create_directories(home / ".zephrin" / "Cache" / "registry");
  ztest::HostShim shim;
  shim.SetEnv("ZEPHRIN_HOME", MakeInstall());
  shim.SetEnv("HOME", home.string());
  ASSERT_TRUE(shim.Start());
  EXPECT_EQ(ReadyWord(shim), 0);
  Display* display = XOpenDisplay(nullptr);
  ASSERT_NE(display, nullptr);
  EXPECT_NE(ztest::FindWindowByTitle(display, "Corvane zephrin Document Viewer", 5000), 0u);
  XCloseDisplay(display);
}

TEST(HostBadInput, ArgumentsThatAreNotNumbersReadAsZero) {
  // Port 0: the report cannot be delivered, which is status 4.
  {
    ztest::HostShim shim;
    shim.SetEnv("ZEPHRIN_HOME", MakeInstall());
    shim.SetEnv("HOME", MakeHomeWithRegistry(""));
    ASSERT_TRUE(shim.Start({"parent", "port", "x"}));
    EXPECT_EQ(shim.WaitExit(10000), 4);
  }
  // Parent 0 is never our parent: the first tick ends the process with 0.
  {
    ztest::HostShim shim;
    shim.SetEnv("ZEPHRIN_HOME", MakeInstall());
    shim.SetEnv("HOME", MakeHomeWithRegistry(""));
    ASSERT_TRUE(shim.Start({"zero", "{port}", "x"}));
    EXPECT_EQ(ReadyWord(shim), 1);
    EXPECT_EQ(shim.WaitExit(5000), 0);
  }
}

TEST(HostBadInput, OverlongInstallationDirectoryIsCutAndNamesNoPicture) {
  // 2000 characters: the directory is cut to its buffer, the splash path then
  // names nothing, and the picture's loader ends the process with status 1.
  std::string longHome = "/tmp/" + std::string(1995, 'z');
  ztest::HostShim shim;
  shim.SetEnv("ZEPHRIN_HOME", longHome);
  shim.SetEnv("HOME", MakeHomeWithRegistry(""));
  ASSERT_TRUE(shim.Start());
  EXPECT_EQ(shim.WaitExit(10000), 1);
}

TEST(HostBadInput, MissingOrCorruptSplashEndsWithStatusOne) {
  std::string missing = MakeInstall();
  fs::remove(missing + "/Resources/zdv16.jpg");
  std::string corrupt = MakeInstall();
  ztest::WriteFile(corrupt + "/Resources/zdv16.jpg", "\xff\xd8\xff\xe0 not really a picture");
  for (const std::string& install : {missing, corrupt}) {
    ztest::HostShim shim;
    shim.SetEnv("ZEPHRIN_HOME", install);
    shim.SetEnv("HOME", MakeHomeWithRegistry(""));
    ASSERT_TRUE(shim.Start());
    EXPECT_EQ(shim.WaitExit(10000), 1) << install;
  }
}

TEST(HostBadInput, SplashCutShortStillStarts) {
  // libjpeg fills a picture that ends early and only warns: not a fault.
  std::string install = MakeInstall();
  std::string bytes;
  {
    FILE* f = std::fopen((install + "/Resources/zdv16.jpg").c_str(), "rb");
    ASSERT_NE(f, nullptr);
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) bytes.append(buffer, n);
    std::fclose(f);
  }
  ztest::WriteFile(install + "/Resources/zdv16.jpg", bytes.substr(0, bytes.size() / 2));
  ztest::HostShim shim;
  shim.SetEnv("ZEPHRIN_HOME", install);
  shim.SetEnv("HOME", MakeHomeWithRegistry(""));
  ASSERT_TRUE(shim.Start());
  EXPECT_EQ(ReadyWord(shim), 1);
}
