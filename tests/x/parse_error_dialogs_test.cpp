// The parse-error dialogs, driven as a person would: each test presses the
// dialog's buttons (found by widget name) from a timer that fires inside the
// dialog's own event loop.
#include <gtest/gtest.h>

#include <Xm/Text.h>
#include <Xm/Xm.h>

#include <string>
#include <vector>

#include "errors/parse_error_dialogs.h"
#include "errors/parse_errors.h"
#include "support/x_app.h"

namespace {
struct Seen {
  std::string title;
  std::string text;
};

class ParseErrorDialogsTest : public testing::Test {
 protected:
  void SetUp() override {
    ztest::XApp* x = ztest::SharedXApp();
    ASSERT_NE(x, nullptr);
    m_app = x->app;
    m_shell = x->shell;
    CZrError::Set_DialogParent(m_shell);
    CZrError::ClearParseErrors();
  }
  void TearDown() override {
    CZrError::ClearParseErrors();
    CZrError::Set_DialogParent(nullptr);
    CZrError::Set_ReportParseErrors(kReportNone);
  }

  // Presses the named button of the next dialog that comes up, noting its
  // title and text first. Presses are queued and used in order.
  void PressLater(const char* button) {
    m_presses.push_back(button);
    if (m_presses.size() == 1) Arm();
  }
  void Arm() { XtAppAddTimeOut(m_app, 20, OnTimer, this); }
  static void OnTimer(XtPointer self, XtIntervalId*) {
    auto* test = static_cast<ParseErrorDialogsTest*>(self);
    Widget dialog = XtNameToWidget(test->m_shell, "ParseErrorDialog");
    if (!dialog || !XtIsRealized(dialog)) {
      test->Arm();  // not up yet
      return;
    }
    Seen seen;
    char* title = nullptr;
    XtVaGetValues(dialog, XmNtitle, &title, nullptr);
    seen.title = title ? title : "";
    Widget text = XtNameToWidget(dialog, "*f_STWidget");
    if (text) {
      char* value = XmTextGetString(text);
      seen.text = value;
      XtFree(value);
    }
    test->m_seen.push_back(seen);
    std::string path = "*" + test->m_presses.front();
    test->m_presses.erase(test->m_presses.begin());
    Widget button = XtNameToWidget(dialog, path.c_str());
    ASSERT_NE(button, nullptr) << path;
    XtCallCallbacks(button, XmNactivateCallback, nullptr);
    if (!test->m_presses.empty()) test->Arm();
  }

  XtAppContext m_app = nullptr;
  Widget m_shell = nullptr;
  std::vector<std::string> m_presses;
  std::vector<Seen> m_seen;
};
}  // namespace

TEST_F(ParseErrorDialogsTest, ShowWhenFinishedListsTheCurrentAndEarlierErrors) {
  CZrError::Set_ReportParseErrors(kReportEach);
  PressLater("f_ContinueButton");
  CZrError::TexParseError("first", 1, "a.tex");
  EXPECT_EQ(CZrError::Get_ReportParseErrors(), kReportEach);
  PressLater("f_FinishedButton");
  CZrError::TexParseError("second", 2, "a.tex");
  EXPECT_EQ(CZrError::Get_ReportParseErrors(), kReportAtEnd);
  CZrError::TexParseError("third", 0x7FFFFFFF, nullptr);  // collected without a dialog
  ASSERT_EQ(m_seen.size(), 2u);
  EXPECT_EQ(m_seen[0].title, "Corvane zephrin Parsing Error");
  EXPECT_EQ(m_seen[0].text, "Line 1 of a.tex  [TeX/LaTeX]:\r\n\tfirst");

  PressLater("f_OKButton");
  CZrError::ReportParseErrors();
  ASSERT_EQ(m_seen.size(), 3u);
  EXPECT_EQ(m_seen[2].title, "3 Corvane zephrin Parsing Errors");
  EXPECT_EQ(m_seen[2].text,
            "Line 1 of a.tex  [TeX/LaTeX]:\r\n\tfirst\r\n\r\n"
            "Line 2 of a.tex  [TeX/LaTeX]:\r\n\tsecond\r\n\r\n"
            "Line <end of input> of <unknown>  [TeX/LaTeX]:\r\n\tthird");
  EXPECT_TRUE(CZrError::Get_SavedErrors().IsEmpty());
}

TEST_F(ParseErrorDialogsTest, StopShowingErrorsSwitchesToModeZeroForGood) {
  CZrError::Set_ReportParseErrors(kReportEach);
  PressLater("f_ContinueButton");
  CZrError::TexParseError("first", 1, "a.tex");
  PressLater("f_StopButton");
  CZrError::TexParseError(25012u, 2, "a.tex");
  ASSERT_EQ(m_seen.size(), 2u);
  EXPECT_EQ(m_seen[1].text, "Line 2 of a.tex  [TeX/LaTeX]:\r\n\tNO STRING");
  EXPECT_EQ(CZrError::Get_ReportParseErrors(), kReportNone);
  // The error seen before stopping stays saved until the end of the parse.
  EXPECT_EQ(CZrError::Get_SavedErrors().GetCount(), 1);
  CZrError::TexParseError("later", 3, "a.tex");  // no dialog, nothing saved
  EXPECT_EQ(m_seen.size(), 2u);
  CZrError::ReportParseErrors();  // mode 0: no final dialog, the list is cleared
  EXPECT_EQ(m_seen.size(), 2u);
  EXPECT_TRUE(CZrError::Get_SavedErrors().IsEmpty());
}
