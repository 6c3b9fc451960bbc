#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>

#include "support/paths.h"

namespace {
struct TRun {
  std::string out;
  int status;
};
TRun InspectProps(const std::string& quotedName) {
  std::string command = ztest::BuildPath("zephrin-inspect") + " props " + quotedName + " 2>&1";
  TRun run{"", -1};
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return run;
  char buffer[256];
  size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) run.out.append(buffer, n);
  int raw = pclose(pipe);
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  return run;
}
}  // namespace

TEST(InspectProps, PrintsEachPropertyWithKindAndValue) {
  TRun mho = InspectProps("mho");
  EXPECT_EQ(mho.status, 0);
  EXPECT_EQ(mho.out.rfind("mho\n", 0), 0u) << mho.out;
  EXPECT_NE(mho.out.find("_TEXFONTINDEX"), std::string::npos) << mho.out;
  EXPECT_NE(mho.out.find("font index tag 8 code 102"), std::string::npos) << mho.out;

  TRun white = InspectProps("white");
  EXPECT_NE(white.out.find("colour     252 252 252 \"white\""), std::string::npos) << white.out;

  TRun bmod = InspectProps("bmod");  // newest first: _BINARYOP was loaded after _LOGLIKE
  size_t binary = bmod.out.find("_BINARYOP"), logLike = bmod.out.find("_LOGLIKE");
  ASSERT_NE(binary, std::string::npos);
  ASSERT_NE(logLike, std::string::npos);
  EXPECT_LT(binary, logLike);
}

TEST(InspectProps, UnknownNamesAndBadUsageAreReported) {
  TRun unknown = InspectProps("'no such name'");
  EXPECT_EQ(unknown.status, 1);
  EXPECT_NE(unknown.out.find("not a loaded name"), std::string::npos) << unknown.out;
  // A composite whose glyph row was taken away: interned, nothing on it.
  TRun composite = InspectProps("'\"A'");
  EXPECT_EQ(composite.status, 0);
  EXPECT_NE(composite.out.find("no properties"), std::string::npos) << composite.out;
  EXPECT_EQ(InspectProps("").status, 2);
}
