#include "framework/util.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <climits>
#include <csignal>

#include "framework/objects.h"

TEST(MulDivArithmetic, TruncatesTowardZeroWithA32BitProduct) {
  EXPECT_EQ(MulDiv(7, 3, 2), 10);    // 21 / 2
  EXPECT_EQ(MulDiv(-7, 3, 2), -10);  // truncation, not flooring
  EXPECT_EQ(MulDiv(1440, 100, 1440), 100);
  // 65536 * 65536 wraps to 0 in 32 bits: no wider intermediate.
  EXPECT_EQ(MulDiv(65536, 65536, 1), 0);
  EXPECT_EQ(MulDiv(5, 4, -1), -20);
}

// A trap, not a quiet zero: SIGFPE, which the sanitizer build catches and
// turns into a failing exit of its own.
bool DiedOfFloatingPointTrap(int status) {
  if (WIFSIGNALED(status)) return WTERMSIG(status) == SIGFPE;
  return WIFEXITED(status) && WEXITSTATUS(status) != 0;
}

TEST(MulDivArithmeticDeathTest, ZeroDivisorTraps) {
  EXPECT_EXIT(MulDiv(1, 2, 0), DiedOfFloatingPointTrap, "");
  EXPECT_EXIT(MulDiv(INT_MIN, 1, -1), DiedOfFloatingPointTrap, "");
}

TEST(CaseInsensitiveCompare, IgnoresCaseOnly) {
  EXPECT_EQ(stricmp("Zephrin", "zEPHRIN"), 0);
  EXPECT_LT(stricmp("abc", "ABD"), 0);
  EXPECT_EQ(strnicmp("TeXfile", "texFILM", 6), 0);
  EXPECT_NE(strnicmp("TeXfile", "texFILM", 7), 0);
}

TEST(Exceptions, TypeCodeStartsAtZero) {
  CInputFileException e;
  EXPECT_TRUE(e.IsKindOf(0));
  EXPECT_FALSE(e.IsKindOf(1));
  EXPECT_EQ(RUNTIME_CLASS(e), 0);
  try {
    throw CInputFileException();
  } catch (CException& caught) {
    caught.Delete();
    SUCCEED();
  }
}
