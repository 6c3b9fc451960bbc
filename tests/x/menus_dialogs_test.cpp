// Popup menus and the yes/no message box, driven from inside their own loops.
#include <gtest/gtest.h>

#include <Xm/DrawingA.h>
#include <Xm/ScrollBar.h>
#include <Xm/Xm.h>
#include <X11/Shell.h>

#include "device/context_xwin.h"
#include "framework/dialogs.h"
#include "framework/menu.h"
#include "framework/wnd.h"
#include "support/x_app.h"

namespace {
Widget g_Pressed = nullptr;

void Press(XtPointer data, XtIntervalId*) {
  Widget* target = static_cast<Widget*>(data);
  if (*target) XtCallCallbacks(*target, XmNactivateCallback, nullptr);
}

class MenusAndDialogs : public ::testing::Test {
 protected:
  void SetUp() override {
    x = ztest::SharedXApp();
    ASSERT_NE(x, nullptr);
    shell = XtVaCreatePopupShell("menuHost", topLevelShellWidgetClass, x->shell, XmNwidth, 100, XmNheight, 100,
                                 nullptr);
    area = XtVaCreateManagedWidget("area", xmDrawingAreaWidgetClass, shell, nullptr);
    XtPopup(shell, XtGrabNone);
    ztest::PumpXEvents();
    window.m_Shell = shell;
    window.m_DrawWidget = area;
    window.m_pDisplay = x->display;
    window.m_DrawWindow = XtWindow(area);
  }
  void TearDown() override {
    if (shell) XtDestroyWidget(shell);
    ztest::PumpXEvents();
  }
  ztest::XApp* x = nullptr;
  Widget shell = nullptr;
  Widget area = nullptr;
  CWnd window;
};
}  // namespace

TEST_F(MenusAndDialogs, TrackPopupMenuAnswersTheChosenId) {
  CMenu menu;
  menu.AppendMenu(0, 31, "First");
  menu.AppendMenu(CMenu::MF_SEPARATOR, 0, nullptr);
  menu.AppendMenu(0, 42, "Second");
  menu.AppendMenu(1, 53, "Greyed");
  // Find the built item once the menu is up, then activate it.
  XtAppAddTimeOut(x->app, 50, [](XtPointer data, XtIntervalId*) {
    auto* m = static_cast<CMenu*>(data);
    g_Pressed = XtNameToWidget(m->GetWidget(), "Second");
    Widget greyed = XtNameToWidget(m->GetWidget(), "Greyed");
    EXPECT_TRUE(greyed && !XtIsSensitive(greyed));
    Press(&g_Pressed, nullptr);
  }, &menu);
  EXPECT_EQ(menu.TrackPopupMenu(0, 10, 10, &window, nullptr), 42u);
}

TEST_F(MenusAndDialogs, AMenuClosedWithoutAChoiceAnswersZero) {
  CMenu menu;
  menu.AppendMenu(0, 31, "Only");
  XtAppAddTimeOut(x->app, 50, [](XtPointer data, XtIntervalId*) {
    XtUnmanageChild(static_cast<CMenu*>(data)->GetWidget());
  }, &menu);
  EXPECT_EQ(menu.TrackPopupMenu(0, 10, 10, &window, nullptr), 0u);
  // No window to show it on: nothing to choose.
  EXPECT_EQ(menu.TrackPopupMenu(0, 10, 10, nullptr, nullptr), 0u);
}

TEST_F(MenusAndDialogs, MessageBoxRunsOnlyForStyleThree) {
  static Widget ok;
  // Style 0 shows nothing and answers 10 at once.
  EXPECT_EQ(AfxMessageBox("Go on?", 0, &window), 10);
  EXPECT_EQ(AfxMessageBox("Go on?", 0u, 0u), 0);
  CYesNoMsgBox box(shell, "Title", "Go on?");
  ASSERT_NE(XtNameToWidget(box.GetShell(), "*f_PanedWidget"), nullptr);
  ASSERT_NE(XtNameToWidget(box.GetShell(), "*f_MainFormWidget"), nullptr);
  ASSERT_NE(XtNameToWidget(box.GetShell(), "*f_RowCol"), nullptr);
  ok = XtNameToWidget(box.GetShell(), "*f_ResponseFormWidget.OK");
  ASSERT_NE(ok, nullptr);
  XtAppAddTimeOut(x->app, 50, Press, &ok);
  EXPECT_EQ(box.DoModal(), CYesNoMsgBox::kOK);
  static Widget cancel;
  cancel = XtNameToWidget(box.GetShell(), "*f_ResponseFormWidget.Cancel");
  XtAppAddTimeOut(x->app, 50, Press, &cancel);
  EXPECT_EQ(box.DoModal(), CYesNoMsgBox::kCancel);
  EXPECT_EQ(CXDialog().DoModal(), 12);
}

TEST_F(MenusAndDialogs, RectVisibleAsksTheVerticalScrollBar) {
  Widget bar = XtVaCreateManagedWidget("bar", xmScrollBarWidgetClass, area, XmNmaximum, 10000, XmNvalue, 1000,
                                       XmNsliderSize, 300, nullptr);
  window.m_VScroll = bar;
  window.m_nWidth = 400;
  window.m_nHeight = 300;
  TFmtContext_XWin context;
  context.Set_Window(&window);
  // Device rows 1111..1181 lie in the band 1000..1300; 1389..1458 do not;
  // 972..1007 reach into it.
  CRect inside(0, -1600, 10, -1700), below(0, -2000, 10, -2100), across(0, -1400, 10, -1450);
  EXPECT_TRUE(context.RectVisible(&inside));
  EXPECT_FALSE(context.RectVisible(&below));
  EXPECT_TRUE(context.RectVisible(&across));
  EXPECT_FALSE(context.RectVisible(nullptr));
}
