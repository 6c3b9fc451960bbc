// The profile store: an X resource file read and rewritten through Xrm.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "framework/profile_keys.h"
#include "framework/win_app.h"
#include "host/np_zephrin_app.h"
#include "host/resource.h"
#include "host/zr_server.h"
#include "support/paths.h"

namespace {
std::string ReadAll(const std::string& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class ProfileStore : public ::testing::Test {
 protected:
  void SetUp() override {
    dir = ztest::MakeTempDir("profile");
    path = dir + "/registry";
  }
  void TearDown() override { std::system(("rm -rf '" + dir + "'").c_str()); }
  std::string dir, path;
};
}  // namespace

TEST_F(ProfileStore, ValuesWrittenAreReadBackByAFreshStore) {
  ASSERT_TRUE(ztest::WriteFile(path, ""));
  {
    CWinApp app;
    ASSERT_EQ(app.InitializeRegistry(path.c_str()), 1);
    app.SetRegistryKey("Corvane");
    EXPECT_EQ(app.WriteProfileInt("Settings", "ReportParseErrors", 1), 1);
    EXPECT_EQ(app.WriteProfileInt("Fonts", "MathSize", -12), 1);
    EXPECT_EQ(app.WriteProfileString("Colors", "Links", "0 0 255"), 1);
    EXPECT_EQ(app.WriteProfileString("Bookmark", "URL", "file:/tmp/a b.tex"), 1);
    app.ShutDownRegistry();
  }
  // Every write went to the file at once, in the resource-file form.
  std::string text = ReadAll(path);
  EXPECT_NE(text.find("Corvane.Settings.ReportParseErrors:"), std::string::npos) << text;
  EXPECT_NE(text.find("Corvane.Colors.Links:"), std::string::npos) << text;

  CWinApp again;
  ASSERT_EQ(again.InitializeRegistry(path.c_str()), 1);
  again.SetRegistryKey("Corvane");
  EXPECT_EQ(again.GetProfileInt("Settings", "ReportParseErrors", 0), 1);
  EXPECT_EQ(again.GetProfileInt("Fonts", "MathSize", 0), -12);
  EXPECT_EQ(again.GetProfileString("Colors", "Links", "x"), "0 0 255");
  EXPECT_EQ(again.GetProfileString("Bookmark", "URL", nullptr), "file:/tmp/a b.tex");
  // Another registry key sees none of it.
  again.SetRegistryKey("Other");
  EXPECT_EQ(again.GetProfileInt("Settings", "ReportParseErrors", 7), 7);
}

TEST_F(ProfileStore, HandWrittenLinesAndDefaults) {
  ASSERT_TRUE(ztest::WriteFile(path,
                               "Corvane.Settings.ExecutionPermission:0\n"
                               "Corvane.Settings.ReportParseErrors:12abc\n"
                               "Corvane.Settings.CenterMathDisplays:yes\n"
                               "Corvane.Bookmark.label:\n"));
  CWinApp app;
  ASSERT_EQ(app.InitializeRegistry(path.c_str()), 1);
  app.SetRegistryKey("Corvane");
  EXPECT_EQ(app.GetProfileInt("Settings", "ExecutionPermission", 1), 0);
  // Malformed integers read through atoi.
  EXPECT_EQ(app.GetProfileInt("Settings", "ReportParseErrors", 0), 12);
  EXPECT_EQ(app.GetProfileInt("Settings", "CenterMathDisplays", 1), 0);
  // Absent keys give the default; a null default is the empty string.
  EXPECT_EQ(app.GetProfileInt("Settings", "SaveTemporaryDocuments", 0), 0);
  EXPECT_EQ(app.GetProfileString("Colors", "Numbers", "0 128 128"), "0 128 128");
  EXPECT_EQ(app.GetProfileString("Bookmark", "URL", nullptr), "");
  // A key present with an empty value is found, not defaulted.
  EXPECT_EQ(app.GetProfileString("Bookmark", "label", "default"), "");
}

TEST_F(ProfileStore, EmptyFileIsAValidStoreThatTheFirstWriteFills) {
  ASSERT_TRUE(ztest::WriteFile(path, ""));
  CWinApp app;
  ASSERT_EQ(app.InitializeRegistry(path.c_str()), 1);
  app.SetRegistryKey("Corvane");
  EXPECT_EQ(app.GetProfileInt("Settings", "ExecutionPermission", 1), 1);
  app.WriteProfileInt("Settings", "ExecutionPermission", 0);
  EXPECT_NE(ReadAll(path).find("Corvane.Settings.ExecutionPermission:"), std::string::npos);
}

TEST_F(ProfileStore, MissingOrUnreadableFileDoesNotOpen) {
  CWinApp app;
  EXPECT_EQ(app.InitializeRegistry(path.c_str()), 0);  // not there
  std::string sub = dir + "/adir";
  std::system(("mkdir '" + sub + "'").c_str());
  EXPECT_EQ(app.InitializeRegistry(sub.c_str()), 0);   // a directory
  app.SetRegistryKey("Corvane");
  EXPECT_EQ(app.GetProfileString("Fonts", "FontPath", "d"), "d");
}

TEST_F(ProfileStore, GarbageAndBinaryFilesOpenAndLeaveDefaults) {
  std::string binary;
  for (int i = 0; i < 2048; ++i) binary += static_cast<char>((i * 37 + 11) & 0xff);
  for (const std::string& bytes : {std::string("::::\n\\\n!\n#x\n.....:\n"), binary}) {
    ASSERT_TRUE(ztest::WriteFile(path, bytes));
    CWinApp app;
    ASSERT_EQ(app.InitializeRegistry(path.c_str()), 1);
    app.SetRegistryKey("Corvane");
    EXPECT_EQ(app.GetProfileInt("Settings", "ReportParseErrors", 3), 3);
    EXPECT_EQ(app.GetProfileString("Fonts", "FontPath", "d"), "d");
  }
}

// The font path list of the store: split at commas, spaces kept, an empty
// value makes one empty entry, an absent key keeps the current list.
TEST_F(ProfileStore, FontPathListIsReadFromTheStore) {
  ASSERT_EQ(setenv("HOME", dir.c_str(), 1), 0);
  ASSERT_EQ(unsetenv("ZEPHRIN_HOME"), 0);
  static ZRServer server;
  server.SetEnv(1, 1);
  Resource* resource = Resource::GetResourceObject();
  CNpZephrinApp* app = CNpZephrinApp::GetPlugInDllObject();
  const struct {
    const char* file;
    std::vector<std::string> list;
  } cases[] = {
      {"", {dir + "/.zephrin/Fonts"}},
      {"Corvane.Fonts.FontPath:/a,/b\n", {"/a", "/b"}},
      {"Corvane.Fonts.FontPath: /a , b,,tcp/host:7100\n", {"/a ", " b", "", "tcp/host:7100"}},
      {"Corvane.Fonts.FontPath:\n", {""}},
      {"Corvane.Fonts.FontPath:/only\n", {"/only"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    resource->SetResources(&server, nullptr);
    ASSERT_TRUE(ztest::WriteFile(path, c.file));
    ASSERT_EQ(app->InitializeRegistry(path.c_str()), 1);
    app->SetRegistryKey("Corvane");
    resource->ReadRegistryValues();
    std::vector<std::string> got;
    for (const CString& entry : resource->GetFontPathList()) got.push_back(entry.str());
    EXPECT_EQ(got, c.list);
  }
  // Saving joins the list again.
  resource->SaveRegistryValues();
  EXPECT_NE(ReadAll(path).find("Corvane.Fonts.FontPath:\t/only"), std::string::npos) << ReadAll(path);
}

TEST_F(ProfileStore, StoreAndPicturePathsFollowHomeAndInstallation) {
  ASSERT_EQ(setenv("HOME", "/home/u", 1), 0);
  ASSERT_EQ(setenv("ZEPHRIN_HOME", "/opt/z", 1), 0);
  static ZRServer server;
  server.SetEnv(1, 1);
  Resource::GetResourceObject()->SetResources(&server, nullptr);
  CString text;
  text.LoadString(60001);
  EXPECT_EQ(text, "/home/u/.zephrin/Cache/registry");
  text.LoadString(50001);
  EXPECT_EQ(text, "/opt/z/Resources/zdv16.jpg");
  text.LoadString(60000);
  EXPECT_EQ(text, "/opt/z/Fonts");
  text.LoadString(12345);
  EXPECT_EQ(text, "NO STRING");
  unsetenv("ZEPHRIN_HOME");
}

// Every key of the store keeps its own value: write a distinct value under
// each, then read all of them back from a fresh store.
TEST_F(ProfileStore, EveryKeyRoundTripsWithoutDisturbingAnother) {
  ASSERT_TRUE(ztest::WriteFile(path, ""));
  {
    CWinApp app;
    ASSERT_EQ(app.InitializeRegistry(path.c_str()), 1);
    app.SetRegistryKey("Corvane");
    for (int i = 0; i < fg_nProfileKeys; ++i) {
      const TProfileKey& key = fg_ProfileKeys[i];
      if (key.kind == KProfileKind::k_String || key.kind == KProfileKind::k_List)
        app.WriteProfileString(key.section, key.entry, ("text " + std::to_string(i)).c_str());
      else if (key.kind == KProfileKind::k_Color)
        app.WriteProfileString(key.section, key.entry, (std::to_string(i) + " 1 2").c_str());
      else
        app.WriteProfileInt(key.section, key.entry, 1000 + i);
    }
    // The older spellings of the colour states are keys of their own.
    app.WriteProfileString("Colors", (std::string(fg_ColorStateNames[2]) + "Background").c_str(), "9 9 9");
  }
  CWinApp app;
  ASSERT_EQ(app.InitializeRegistry(path.c_str()), 1);
  app.SetRegistryKey("Corvane");
  for (int i = 0; i < fg_nProfileKeys; ++i) {
    const TProfileKey& key = fg_ProfileKeys[i];
    SCOPED_TRACE(std::string(key.section) + "." + key.entry);
    if (key.kind == KProfileKind::k_String || key.kind == KProfileKind::k_List)
      EXPECT_EQ(app.GetProfileString(key.section, key.entry, nullptr), "text " + std::to_string(i));
    else if (key.kind == KProfileKind::k_Color)
      EXPECT_EQ(app.GetProfileString(key.section, key.entry, nullptr), std::to_string(i) + " 1 2");
    else
      EXPECT_EQ(app.GetProfileInt(key.section, key.entry, -1), 1000 + i);
  }
  EXPECT_EQ(app.GetProfileString("Colors", "StandardMathBackground", nullptr), "9 9 9");
  EXPECT_EQ(app.GetProfileString("Colors", "BackgroundColor2", nullptr), "24 1 2");
}
