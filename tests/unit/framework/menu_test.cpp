// Menus as lists (no widgets) and the drawing objects' defaults.
#include <gtest/gtest.h>

#include <Xm/CascadeBG.h>
#include <Xm/PushBG.h>
#include <Xm/SeparatoG.h>

#include <string>

#include "framework/gdi_objects.h"
#include "framework/menu.h"
#include "host/resource.h"
#include "host/zr_server.h"

TEST(MenuList, HoldsNineteenItemsAndRefusesTheTwentieth) {
  CMenu menu;
  for (int i = 0; i < 19; ++i) EXPECT_EQ(menu.AppendMenu(0, 100 + i, ("item " + std::to_string(i)).c_str()), 1);
  EXPECT_EQ(menu.AppendMenu(0, 200, "one too many"), 0);
  EXPECT_EQ(menu.AppendMenu(CMenu::MF_SEPARATOR, 0, nullptr), 0);
  const CMenuList& list = menu.GetList();
  EXPECT_EQ(list.m_nCount, 19);
  EXPECT_EQ(list.m_Items[19], nullptr);  // the closing null survives
  EXPECT_STREQ(list.m_Items[18]->m_pLabel, "item 18");
}

TEST(MenuList, FlagsChooseTheKindOfItem) {
  CMenu menu;
  CMenu sub;
  sub.AppendMenu(0, 7, "inner");
  EXPECT_EQ(menu.AppendMenu(0, 1, "plain"), 1);
  EXPECT_EQ(menu.AppendMenu(1, 2, "greyed"), 1);
  EXPECT_EQ(menu.AppendMenu(2048, 0, "ignored"), 1);
  EXPECT_EQ(menu.AppendMenu(16, reinterpret_cast<uintptr_t>(&sub.GetList()), "more"), 1);
  const CMenuList& list = menu.GetList();
  EXPECT_EQ(list.m_Items[0]->m_pWidgetClass, &xmPushButtonGadgetClass);
  EXPECT_EQ(list.m_Items[0]->m_nId, 1u);
  EXPECT_EQ(list.m_Items[0]->m_bDisabled, 0);
  EXPECT_EQ(list.m_Items[1]->m_bDisabled, 1);
  EXPECT_EQ(list.m_Items[2]->m_pWidgetClass, &xmSeparatorGadgetClass);
  EXPECT_STREQ(list.m_Items[2]->m_pLabel, "separator");
  EXPECT_EQ(list.m_Items[3]->m_pWidgetClass, &xmCascadeButtonGadgetClass);
  EXPECT_EQ(list.m_Items[3]->m_pSubMenu, &sub.GetList());
  // Enabling answers the previous state; an unknown id answers -1.
  EXPECT_EQ(menu.EnableMenuItem(2, 0), 1);
  EXPECT_EQ(list.m_Items[1]->m_bDisabled, 0);
  EXPECT_EQ(menu.EnableMenuItem(1, CMenu::MF_GRAYED), 0);
  EXPECT_EQ(list.m_Items[0]->m_bDisabled, 1);
  EXPECT_EQ(menu.EnableMenuItem(99, 0), -1);
  EXPECT_EQ(menu.GetSubMenu(3), &menu);
  EXPECT_EQ(menu.CreatePopupMenu(), 1);
}

TEST(MenuList, ResourceMenus) {
  static ZRServer server;
  setenv("HOME", "/tmp", 0);
  server.SetEnv(getpid(), 1);
  Resource::GetResourceObject()->SetResources(&server, nullptr);
  CMenu popup;
  ASSERT_EQ(popup.LoadMenu(119u), 1);
  const CMenuList& list = popup.GetList();
  ASSERT_EQ(list.m_nCount, 8);
  EXPECT_STREQ(list.m_Items[0]->m_pLabel, "Above topic");
  EXPECT_EQ(list.m_Items[0]->m_cMnemonic, 'A');
  EXPECT_EQ(list.m_Items[3]->m_pWidgetClass, &xmSeparatorGadgetClass);
  EXPECT_EQ(list.m_Items[4]->m_nId, 40000u);
  EXPECT_EQ(list.m_Items[7]->m_nId, 32789u);
  EXPECT_STREQ(list.m_Items[7]->m_pLabel, "Document properties...");
  CMenu none;
  EXPECT_EQ(none.LoadMenu(24542u), 0);
  EXPECT_EQ(none.GetList().m_nCount, 0);
  CMenu other;
  EXPECT_EQ(other.LoadMenu(5u), 1);
  ASSERT_EQ(other.GetList().m_nCount, 1);
  EXPECT_STREQ(other.GetList().m_Items[0]->m_pLabel, "Sorry, not implemented");
  CMenu named;
  EXPECT_EQ(named.LoadMenu("IDR_ANY"), 1);
  ASSERT_EQ(named.GetList().m_nCount, 1);
  EXPECT_STREQ(named.GetList().m_Items[0]->m_pLabel, "Sorry, not implemented");
}

TEST(DrawingObjects, DefaultsAndPenStyleBits) {
  CBrush brush;
  EXPECT_EQ(brush.m_Color.Red(), 252);
  EXPECT_EQ(brush.m_Color.Blue(), 252);
  CPen pen;
  EXPECT_EQ(pen.m_nWidth, 0);
  EXPECT_EQ(pen.m_Color.Red(), 0);
  // Style bits 1 and 2 go to both the line style and the cap style.
  CPen styled(7, 3, CColorRef(9, 9, 9));
  EXPECT_EQ(styled.m_GCValues.line_style, 3);
  EXPECT_EQ(styled.m_GCValues.cap_style, 3);
}
