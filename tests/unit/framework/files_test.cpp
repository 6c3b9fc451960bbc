#include "framework/files.h"

#include <gtest/gtest.h>

#include <string>

#include "support/paths.h"

namespace {
std::string MakeFile(const std::string& bytes) {
  static int serial = 0;
  std::string dir = ztest::MakeTempDir("files");
  std::string path = dir + "/f" + std::to_string(serial++);
  EXPECT_TRUE(ztest::WriteFile(path, bytes));
  return path;
}
}  // namespace

TEST(CStdioFileRead, CarriageReturnsAreDroppedAndCountsKeptBytes) {
  CStdioFile file(MakeFile("a\r\nb\rc\r\r\n").c_str(), CFile::modeRead);
  ASSERT_TRUE(file.IsOpen());
  EXPECT_EQ(file.GetLength(), 9u);
  char buffer[16] = {};
  EXPECT_EQ(file.Read(buffer, 2), 2u);  // "a\n": the \r was not counted
  EXPECT_EQ(std::string(buffer, 2), "a\n");
  EXPECT_EQ(file.Read(buffer, 0), 0u);
  EXPECT_EQ(file.Read(buffer, sizeof buffer), 3u);
  EXPECT_EQ(std::string(buffer, 3), "bc\n");
  file.Close();
}

TEST(CStdioFileRead, AFileOfOnlyCarriageReturnsReadsAsEmpty) {
  CStdioFile file(MakeFile(std::string(5000, '\r')).c_str(), CFile::modeRead);
  char buffer[64];
  EXPECT_EQ(file.Read(buffer, sizeof buffer), 0u);
  EXPECT_EQ(file.Read(buffer, sizeof buffer), 0u);  // at the end, stays there
  file.Close();
}

TEST(CFileOpen, MissingFileFailsAndPlainReadKeepsEveryByte) {
  CFile missing;
  CFileException error;
  EXPECT_EQ(missing.Open("/nonexistent/zephrin/file", CFile::modeRead, &error), 0);
  EXPECT_EQ(missing.GetLength(), 0u);
  char buffer[8];
  EXPECT_EQ(missing.Read(buffer, 8), 0u);

  CFile plain;
  ASSERT_EQ(plain.Open(MakeFile("x\r\ny").c_str(), CFile::modeRead, nullptr), 1);
  EXPECT_EQ(plain.Read(buffer, 8), 4u);
  plain.Close();
}
