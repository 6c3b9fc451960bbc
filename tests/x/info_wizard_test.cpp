// The paged message window and the status wizards built on it.
#include <gtest/gtest.h>

#include <Xm/Text.h>
#include <Xm/Xm.h>

#include <string>

#include "host/info_wizard.h"
#include "host/resource.h"
#include "host/zephrin_stat.h"
#include "host/zr_server.h"

namespace {
int g_nClosed = 0;
void CountClose() { ++g_nClosed; }

Widget g_Target = nullptr;
// Presses a button from inside the wizard's own event loop.
void PressLater(XtPointer button, XtIntervalId*) { XtCallCallbacks(static_cast<Widget>(button), XmNactivateCallback, nullptr); }

class InfoWizard : public ::testing::Test {
 protected:
  void SetUp() override {
    int argc = 1;
    static char name[] = "wizard-test";
    static char* argv[] = {name, nullptr};
    shell = XtVaAppInitialize(&app, "ZephrinTest", nullptr, 0, &argc, argv, nullptr, XmNwidth, 10, XmNheight, 10,
                              nullptr);
    ASSERT_NE(shell, nullptr);
    XtRealizeWidget(shell);
    g_nClosed = 0;
  }
  std::string TextOf(Widget wizardShell) {
    Widget text = XtNameToWidget(wizardShell, "*page");
    char* value = XmTextGetString(text);
    std::string result = value ? value : "";
    XtFree(value);
    return result;
  }
  XtAppContext app = nullptr;
  Widget shell = nullptr;
};
}  // namespace

TEST_F(InfoWizard, NextAndBackTurnPagesAndCloseEndsTheLoop) {
  const CString pages[] = {"first page", "second page"};
  CInfoWizard wizard(shell, 400, 300, "Title", pages, 2, CountClose);
  Widget next = XtNameToWidget(wizard.GetShell(), "*Next >");
  Widget back = XtNameToWidget(wizard.GetShell(), "*< Back");
  Widget close = XtNameToWidget(wizard.GetShell(), "*Close");
  ASSERT_TRUE(next && back && close);
  EXPECT_EQ(TextOf(wizard.GetShell()), "first page");
  EXPECT_FALSE(XtIsSensitive(back));
  XtCallCallbacks(next, XmNactivateCallback, nullptr);
  EXPECT_EQ(wizard.GetPage(), 1);
  EXPECT_EQ(TextOf(wizard.GetShell()), "second page");
  EXPECT_FALSE(XtIsSensitive(next));
  XtCallCallbacks(next, XmNactivateCallback, nullptr);  // stays on the last page
  EXPECT_EQ(wizard.GetPage(), 1);
  XtCallCallbacks(back, XmNactivateCallback, nullptr);
  EXPECT_EQ(wizard.GetPage(), 0);

  XtAppAddTimeOut(app, 50, PressLater, close);
  wizard.DoModal();
  EXPECT_EQ(g_nClosed, 1);
}

TEST_F(InfoWizard, FontPathWizardNamesEveryEntryOnItsTwoPages) {
  static ZRServer server;
  setenv("ZEPHRIN_HOME", "/opt/zephrin", 1);
  server.SetEnv(getpid(), 1);
  Resource::GetResourceObject()->SetResources(&server, nullptr);
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  stat->Initialize(shell, CountClose);
  EXPECT_EQ(stat->GetFontStatus(), 7);
  // The wizard is modal: a timer closes it through the window manager's way.
  XtAppAddTimeOut(app, 100, [](XtPointer, XtIntervalId*) {
    Display* display = XtDisplay(g_Target);
    Window found = 0;
    Window root, parent, *children = nullptr;
    unsigned count = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    for (unsigned i = 0; i < count && !found; ++i) {
      char* name = nullptr;
      if (XFetchName(display, children[i], &name) && name) {
        if (std::string(name) == ZephrinStat::kWizardTitle) found = children[i];
        XFree(name);
      }
    }
    if (children) XFree(children);
    ASSERT_NE(found, 0u);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = found;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    XSendEvent(display, found, False, NoEventMask, &event);
  }, nullptr);
  g_Target = shell;
  stat->ErrorMessage(8, "ZRServer::LoadFonts");
  EXPECT_EQ(g_nClosed, 1);
  EXPECT_EQ(stat->GetFontStatus(), 8);
  std::string one = stat->GetFontPathPage(0).str();
  std::string two = stat->GetFontPathPage(1).str();
  EXPECT_EQ(one.rfind("Corvane zephrin Document Viewer\ncannot add:\n\n/opt/zephrin/Fonts\n\nto the X Window font path.\n\n", 0), 0u) << one;
  EXPECT_NE(two.find("invoke:\n\nxset fp+ /opt/zephrin/Fonts\nxset fp rehash\nxset -q\n\n"), std::string::npos) << two;
  unsetenv("ZEPHRIN_HOME");
}
