#include "errors/parse_errors.h"

#include <gtest/gtest.h>

#include <string>

#include "host/np_zephrin_app.h"
#include "support/paths.h"

namespace {
class ParseErrorsTest : public testing::Test {
 protected:
  void SetUp() override {
    CZrError::ClearParseErrors();
    CZrError::Set_DialogParent(nullptr);
  }
  void TearDown() override {
    CZrError::ClearParseErrors();
    CZrError::Set_ReportParseErrors(kReportNone);
    CString::SetStringResourceLookup(nullptr);
  }
  static const CSavedError& Saved(int index) {
    return *static_cast<const CSavedError*>(CZrError::Get_SavedErrors().GetAt(CZrError::Get_SavedErrors().FindIndex(index)));
  }
};

int fg_lookups = 0;
const char* CountingLookup(unsigned) {
  ++fg_lookups;
  return nullptr;
}
}  // namespace

TEST_F(ParseErrorsTest, ModeZeroNeitherLooksUpNorStores) {
  CString::SetStringResourceLookup(CountingLookup);
  fg_lookups = 0;
  CZrError::Set_ReportParseErrors(kReportNone);
  CZrError::TexParseError(25012u, 3, "a.tex");
  CZrError::XML_ParseError("bad tag", 4, "b.xml");
  EXPECT_EQ(fg_lookups, 0);
  EXPECT_TRUE(CZrError::Get_SavedErrors().IsEmpty());
}

TEST_F(ParseErrorsTest, SavedErrorsCarryLanguageLineAndSourceTexts) {
  CZrError::Set_ReportParseErrors(kReportAtEnd);
  CZrError::TexParseError(60002u, 0x7FFFFFFF, nullptr);
  CZrError::MML_ParseError("unknown element", 12, "doc.mml");
  CZrError::ParseError(static_cast<KDocumentTypes>(9), nullptr, -3, "x");
  ASSERT_EQ(CZrError::Get_SavedErrors().GetCount(), 3);

  CString text;
  FormatParseError(text, Saved(0));
  // Numbered TeX messages have no texts: the user reads "NO STRING".
  EXPECT_EQ(text, "Line <end of input> of <unknown>  [TeX/LaTeX]:\r\n\tNO STRING");
  text.Empty();
  FormatParseError(text, Saved(1));
  EXPECT_EQ(text, "Line 12 of doc.mml  [MML]:\r\n\tunknown element");
  EXPECT_EQ(Saved(2).m_Language, "");  // a type outside the table has no language
  EXPECT_EQ(Saved(2).m_Message, "<missing message>");
  EXPECT_EQ(Saved(2).m_Line, "-3");

  // Without a dialog parent the report shows nothing, and always clears.
  CZrError::ReportParseErrors();
  EXPECT_TRUE(CZrError::Get_SavedErrors().IsEmpty());
}

TEST_F(ParseErrorsTest, AnEmptyResourceTextReadsMissingErrorMessage) {
  CString::SetStringResourceLookup([](unsigned) -> const char* { return ""; });
  CZrError::Set_ReportParseErrors(kReportAtEnd);
  CZrError::OpenMathParseError(7u, 1, "s");
  ASSERT_EQ(CZrError::Get_SavedErrors().GetCount(), 1);
  EXPECT_EQ(Saved(0).m_Message, "Missing error message");
  EXPECT_EQ(Saved(0).m_Language, "OpenMath");
}

TEST_F(ParseErrorsTest, TheModeIsKeptInTheProfileStore) {
  std::string path = ztest::MakeTempDir("registry") + "/registry";
  ASSERT_TRUE(ztest::WriteFile(path, ""));
  CNpZephrinApp* app = AfxGetApp();
  ASSERT_EQ(app->InitializeRegistry(path.c_str()), 1);
  app->SetRegistryKey("Corvane");
  CZrError::ReadRegistryValues();
  EXPECT_EQ(CZrError::Get_ReportParseErrors(), kReportNone);  // the default

  CZrError::Set_ReportParseErrors(kReportAtEnd);
  CZrError::TexParseError("pending", 1, "a.tex");
  CZrError::SaveRegistryValues();  // clears the saved errors first
  EXPECT_TRUE(CZrError::Get_SavedErrors().IsEmpty());
  CZrError::Set_ReportParseErrors(kReportNone);
  app->ShutDownRegistry();

  ASSERT_EQ(app->InitializeRegistry(path.c_str()), 1);
  CZrError::ReadRegistryValues();
  EXPECT_EQ(CZrError::Get_ReportParseErrors(), kReportAtEnd);
  app->ShutDownRegistry();
}
