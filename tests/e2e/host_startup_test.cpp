// The host process driven as the plug-in shim drives it: a real child
// process, real sockets, a private X server.
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netdb.h>
#include <sys/socket.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <X11/Xlib.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "support/host_shim.h"
#include "support/paths.h"
#include "support/x_windows.h"

namespace fs = std::filesystem;

namespace {
constexpr const char* kWizardTitle = "Corvane zephrin Document Viewer";

enum class Fonts { Real, AcceptedButEmpty, Missing };

// The build's installation tree, as run-with-xvfb copied it.
fs::path StagedInstall() {
  const char* home = std::getenv("ZEPHRIN_HOME");
  return home ? fs::path(home) : fs::path(ztest::BuildPath("install"));
}

bool RealFontsStaged() { return fs::exists(StagedInstall() / "Fonts" / "fonts.dir"); }

// An installation directory of the given kind, in a fresh temporary folder.
std::string MakeInstall(Fonts fonts) {
  fs::path dir = ztest::ScratchDir("install");
  fs::copy(StagedInstall() / "Resources", dir / "Resources", fs::copy_options::recursive);
  if (fonts == Fonts::Real) fs::copy(StagedInstall() / "Fonts", dir / "Fonts", fs::copy_options::recursive);
  if (fonts == Fonts::AcceptedButEmpty) {
    // A font directory that the server accepts and that holds no font.
    fs::create_directories(dir / "Fonts");
    ztest::WriteFile((dir / "Fonts" / "fonts.dir").string(), "0\n");
  }
  return dir.string();
}

// A home directory, with the profile store when `registry` is given.
std::string MakeHome(const char* registry) {
  fs::path dir = ztest::ScratchDir("home");
  if (registry) {
    fs::create_directories(dir / ".zephrin" / "Cache");
    ztest::WriteFile((dir / ".zephrin" / "Cache" / "registry").string(), registry);
  }
  return dir.string();
}

struct Display_ {
  Display* display = XOpenDisplay(nullptr);
  ~Display_() {
    if (display) XCloseDisplay(display);
  }
};

// The address the host must report: this machine's node name, resolved.
in_addr_t OwnAddress() {
  utsname names{};
  uname(&names);
  hostent* host = gethostbyname(names.nodename);
  in_addr_t address = htonl(INADDR_LOOPBACK);
  if (host && host->h_addrtype == AF_INET && host->h_addr_list[0])
    std::memcpy(&address, host->h_addr_list[0], sizeof address);
  return address;
}

class HostStartup : public ::testing::Test {
 protected:
  void StartWith(Fonts fonts, const char* registry) {
    shim.SetEnv("ZEPHRIN_HOME", MakeInstall(fonts));
    shim.SetEnv("HOME", MakeHome(registry));
    ASSERT_TRUE(shim.Start());
  }
  ztest::HostReport Report() {
    std::string bytes;
    EXPECT_TRUE(shim.ReadReport(&bytes)) << "no report; exit " << shim.WaitExit(0);
    EXPECT_EQ(bytes.size(), 36u);
    return ztest::HostShim::Decode(bytes);
  }
  ztest::HostShim shim;
};
}  // namespace

TEST_F(HostStartup, ReportIsThirtySixBytesAndItsAddressAcceptsAConnection) {
  ASSERT_TRUE(RealFontsStaged()) << "the font build stages its fonts in the installation tree";
  StartWith(Fonts::Real, "");
  ztest::HostReport report = Report();
  EXPECT_EQ(report.type, 100u);
  EXPECT_EQ(report.length, 36u);
  EXPECT_EQ(report.address.sin_family, AF_INET);
  EXPECT_EQ(report.address.sin_addr.s_addr, OwnAddress());
  EXPECT_NE(report.address.sin_port, 0);
  EXPECT_EQ(report.zero, 0u);
  EXPECT_EQ(report.ready, 1u);
  EXPECT_EQ(report.sentinel, 100u);

  int fd = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in to = report.address;
  EXPECT_EQ(connect(fd, reinterpret_cast<sockaddr*>(&to), sizeof to), 0) << std::strerror(errno);
  close(fd);
}

TEST_F(HostStartup, AnAcceptedFontDirectoryCountsAsGoodEvenWithoutTheFonts) {
  StartWith(Fonts::AcceptedButEmpty, "");
  EXPECT_EQ(Report().ready, 1u);
}

TEST_F(HostStartup, EndsWithStatusZeroOnceItsParentHasGone) {
  StartWith(Fonts::AcceptedButEmpty, "");
  ASSERT_EQ(Report().ready, 1u);
  // The host sleeps a second after the report; only then do its ticks run.
  usleep(1300 * 1000);
  ASSERT_EQ(shim.WaitExit(0), -1) << "the host ended while its parent lived";
  shim.KillParent();
  EXPECT_EQ(shim.WaitExit(1000), 0);
}

TEST_F(HostStartup, MissingRegistryReportsNotReadyAndShowsTheRegistryWizard) {
  StartWith(Fonts::AcceptedButEmpty, nullptr);
  EXPECT_EQ(Report().ready, 0u);
  Display_ x;
  ASSERT_NE(x.display, nullptr);
  Window wizard = ztest::FindWindowByTitle(x.display, kWizardTitle, 5000);
  ASSERT_NE(wizard, 0u);
  // No timer runs after a failed start: the host outlives its parent...
  shim.KillParent();
  EXPECT_EQ(shim.WaitExit(500), -1);
  // ...and its wizard's close ends it.
  ztest::SendDeleteWindow(x.display, wizard);
  EXPECT_EQ(shim.WaitExit(5000), 0);
}

TEST_F(HostStartup, UnreachableFontsReportNotReadyAndRestoreTheServersFontPath) {
  Display_ x;
  ASSERT_NE(x.display, nullptr);
  const auto before = ztest::GetFontPath(x.display);
  StartWith(Fonts::Missing, "");
  EXPECT_EQ(Report().ready, 0u);
  EXPECT_EQ(ztest::GetFontPath(x.display), before);
  Window wizard = ztest::FindWindowByTitle(x.display, kWizardTitle, 5000);
  ASSERT_NE(wizard, 0u);
  ztest::SendDeleteWindow(x.display, wizard);
  EXPECT_EQ(shim.WaitExit(5000), 0);
}

TEST_F(HostStartup, TwoArgumentsEndTheProcessQuietly) {
  shim.SetEnv("ZEPHRIN_HOME", MakeInstall(Fonts::AcceptedButEmpty));
  shim.SetEnv("HOME", MakeHome(""));
  ASSERT_TRUE(shim.Start({"{ppid}", "{port}"}));
  EXPECT_EQ(shim.WaitExit(5000), 0);
  std::string bytes;
  EXPECT_FALSE(shim.ReadReport(&bytes, 100));
  EXPECT_EQ(shim.Stderr(), "");
}

TEST_F(HostStartup, WithoutHomeEndsWithStatusSeventeenAndOneLine) {
  shim.SetEnv("ZEPHRIN_HOME", MakeInstall(Fonts::AcceptedButEmpty));
  shim.SetEnv("HOME", std::nullopt);
  ASSERT_TRUE(shim.Start());
  EXPECT_EQ(shim.WaitExit(5000), 17);
  std::string err = shim.Stderr();
  ASSERT_FALSE(err.empty());
  EXPECT_EQ(err.find('\n'), err.size() - 1) << err;
}

TEST_F(HostStartup, InstallationDirectoryServesPicturesAndFontsButNotTheRegistry) {
  std::string install = MakeInstall(Fonts::AcceptedButEmpty);
  ztest::WriteFile(install + "/Cache/registry", "");  // not the one that counts
  std::string home = MakeHome(nullptr);
  shim.SetEnv("ZEPHRIN_HOME", install);
  shim.SetEnv("HOME", home);
  Display_ x;
  ASSERT_NE(x.display, nullptr);
  ASSERT_TRUE(shim.Start());
  // The registry under the installation directory is not read.
  EXPECT_EQ(Report().ready, 0u);
  // The pictures came from there (else no report at all), and so did the
  // font directory that was added to the server's path.
  const auto path = ztest::GetFontPath(x.display);
  bool added = false;
  for (const auto& entry : path) added = added || entry.rfind(install + "/Fonts", 0) == 0;
  EXPECT_TRUE(added);
  shim.KillHost();

  // With the store in $HOME/.zephrin/Cache the same start succeeds.
  ztest::HostShim again;
  again.SetEnv("ZEPHRIN_HOME", install);
  fs::create_directories(home + "/.zephrin/Cache");
  ztest::WriteFile(home + "/.zephrin/Cache/registry", "");
  again.SetEnv("HOME", home);
  ASSERT_TRUE(again.Start());
  std::string bytes;
  ASSERT_TRUE(again.ReadReport(&bytes));
  EXPECT_EQ(ztest::HostShim::Decode(bytes).ready, 1u);
}

TEST_F(HostStartup, FontsAlreadyOnThePathLeaveThePathUntouched) {
  ASSERT_TRUE(RealFontsStaged()) << "the font build stages its fonts in the installation tree";
  std::string install = MakeInstall(Fonts::Real);
  Display_ x;
  ASSERT_NE(x.display, nullptr);
  auto path = ztest::GetFontPath(x.display);
  // Put the fonts on the path first, as a user with xset would.
  std::vector<std::string> set = path;
  set.insert(set.begin(), install + "/Fonts");
  std::vector<char*> raw;
  for (auto& s : set) raw.push_back(s.data());
  XSetFontPath(x.display, raw.data(), static_cast<int>(raw.size()));
  const auto before = ztest::GetFontPath(x.display);

  shim.SetEnv("ZEPHRIN_HOME", install);
  shim.SetEnv("HOME", MakeHome(""));
  ASSERT_TRUE(shim.Start());
  EXPECT_EQ(Report().ready, 1u);
  EXPECT_EQ(ztest::GetFontPath(x.display), before);
  XSetFontPath(x.display, nullptr, 0);
  XSync(x.display, False);
}
