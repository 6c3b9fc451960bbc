#include "framework/menu.h"

#include <Xm/CascadeBG.h>
#include <Xm/PushBG.h>
#include <Xm/RowColumn.h>
#include <Xm/SeparatoG.h>
#include <Xm/Xm.h>

#include <cstdlib>
#include <cstring>

#include "framework/modal_loop.h"
#include "framework/wnd.h"
#include "host/resource.h"

CMenuItem::~CMenuItem() { std::free(m_pLabel); }

CMenu::~CMenu() {
  for (CMenuItem* item : m_OwnedItems) delete item;
}

CMenuItem* CMenu::NewItem(const char* text) {
  // A full list takes nothing: document menus can ask for far more items.
  if (m_List.m_nCount >= CMenuList::kSize - 1) return nullptr;
  auto* item = new CMenuItem;
  const char* label = text ? text : "";
  item->m_pLabel = static_cast<char*>(std::calloc(std::strlen(label) + 1, 1));
  std::strcpy(item->m_pLabel, label);
  item->m_pSelf = this;
  m_OwnedItems.push_back(item);
  m_List.m_Items[m_List.m_nCount++] = item;
  m_List.m_Items[m_List.m_nCount] = nullptr;
  return item;
}

int CMenu::AppendMenu(unsigned flags, uintptr_t id, const char* text) {
  if (flags != MF_STRING && flags != MF_GRAYED && flags != MF_SEPARATOR && flags != MF_POPUP) return 0;
  CMenuItem* item = NewItem(flags == MF_SEPARATOR ? "separator" : text);
  if (!item) return 0;
  switch (flags) {
    case MF_SEPARATOR:
      item->m_pWidgetClass = &xmSeparatorGadgetClass;
      break;
    case MF_POPUP:
      item->m_pWidgetClass = &xmCascadeButtonGadgetClass;
      item->m_pSubMenu = reinterpret_cast<CMenuList*>(id);
      break;
    default:
      item->m_pWidgetClass = &xmPushButtonGadgetClass;
      item->m_nId = static_cast<unsigned>(id);
      item->m_bDisabled = flags == MF_GRAYED;
      item->m_Callback = OnItemHelper;
      break;
  }
  return 1;
}

int CMenu::AppendResourceMenu(const char* text, char mnemonic, unsigned id, XtCallbackProc callback) {
  bool separator = !text;
  CMenuItem* item = NewItem(separator ? "separator" : text);
  if (!item) return 0;
  item->m_pWidgetClass = separator ? &xmSeparatorGadgetClass : &xmPushButtonGadgetClass;
  item->m_cMnemonic = mnemonic;
  item->m_nId = id;
  item->m_Callback = callback;
  return 1;
}

int CMenu::LoadMenu(unsigned id) {
  CMenu* menu = Resource::GetResourceObject()->GetMenuResource(id);
  if (!menu) return 0;
  m_List = menu->m_List;  // the items stay the resource's
  return 1;
}

int CMenu::LoadMenu(const char*) { return AppendMenu(MF_STRING, 0, "Sorry, not implemented"); }

int CMenu::EnableMenuItem(unsigned id, unsigned flags) {
  for (int i = 0; i < m_List.m_nCount; ++i) {
    CMenuItem* item = m_List.m_Items[i];
    if (!item || item->m_nId != id || item->m_pWidgetClass == &xmSeparatorGadgetClass) continue;
    int previous = item->m_bDisabled;
    item->m_bDisabled = (flags & MF_GRAYED) ? 1 : 0;
    return previous;
  }
  return -1;
}

Widget CMenu::Detach() {
  Widget widget = m_Widget;
  m_Widget = nullptr;
  return widget;
}

Widget CMenu::BuildMenu(Widget parent, int kind, const char* title, char mnemonic, int tearOff, CMenuList* list) {
  Widget menu = nullptr, cascade = nullptr;
  if (kind == kPulldown) {
    menu = XmCreatePulldownMenu(parent, const_cast<char*>("_pulldown"), nullptr, 0);
    XmString label = XmStringCreateLocalized(const_cast<char*>(title ? title : ""));
    cascade = XtVaCreateManagedWidget(title ? title : "", xmCascadeButtonGadgetClass, parent, XmNsubMenuId, menu,
                                      XmNlabelString, label, nullptr);
    if (mnemonic) XtVaSetValues(cascade, XmNmnemonic, static_cast<KeySym>(mnemonic), nullptr);
    XmStringFree(label);
  } else {
    menu = XmCreatePopupMenu(parent, const_cast<char*>("_popup"), nullptr, 0);
  }
  if (tearOff) XtVaSetValues(menu, XmNtearOffModel, XmTEAR_OFF_ENABLED, nullptr);
  Resource::GetResourceObject()->SetStandardColors(menu);
  for (int i = 0; list && i < list->m_nCount && i < CMenuList::kSize - 1; ++i) {
    CMenuItem* item = list->m_Items[i];
    if (!item) break;
    if (item->m_pSubMenu) {
      BuildMenu(menu, kPulldown, item->m_pLabel, item->m_cMnemonic, 0, item->m_pSubMenu);
      continue;
    }
    WidgetClass widgetClass = item->m_pWidgetClass ? *item->m_pWidgetClass : xmPushButtonGadgetClass;
    Widget widget;
    if (widgetClass == xmSeparatorGadgetClass) {
      widget = XtVaCreateManagedWidget("separator", widgetClass, menu, nullptr);
    } else {
      XmString label = XmStringCreateLocalized(item->m_pLabel ? item->m_pLabel : const_cast<char*>(""));
      widget = XtVaCreateManagedWidget(item->m_pLabel ? item->m_pLabel : "", widgetClass, menu, XmNlabelString,
                                       label, nullptr);
      XmStringFree(label);
      if (item->m_cMnemonic) XtVaSetValues(widget, XmNmnemonic, static_cast<KeySym>(item->m_cMnemonic), nullptr);
      if (item->m_Callback) XtAddCallback(widget, XmNactivateCallback, item->m_Callback, item);
    }
    if (item->m_bDisabled) XtSetSensitive(widget, False);
  }
  return kind == kPulldown ? cascade : menu;
}

void CMenu::OnItemHelper(Widget, XtPointer data, XtPointer) {
  auto* item = static_cast<CMenuItem*>(data);
  if (item && item->m_pSelf) static_cast<CMenu*>(item->m_pSelf)->m_nChosen = item->m_nId;
}

void CMenu::OnUnMapHelper(Widget, XtPointer data, XtPointer) { static_cast<CMenu*>(data)->m_bUnmapped = true; }

unsigned CMenu::TrackPopupMenu(unsigned, int, int, CWnd* window, XButtonEvent* event) {
  m_pWindow = window;
  if (!window || !window->m_DrawWidget) return 0;
  if (m_Widget) XtDestroyWidget(m_Widget);
  m_nChosen = 0;
  m_bUnmapped = false;
  m_Widget = BuildMenu(window->m_DrawWidget, kPopup, nullptr, 0, 0, &m_List);
  XtAddCallback(m_Widget, XmNunmapCallback, OnUnMapHelper, this);
  if (event) XmMenuPosition(m_Widget, event);
  XtManageChild(m_Widget);
  XtAppContext app = XtWidgetToApplicationContext(m_Widget);
  {
    TModalLoopGuard guard;
    while (!m_nChosen && !m_bUnmapped) XtAppProcessEvent(app, XtIMAll);
    // The menu unmaps before the chosen item's callback runs.
    XSync(XtDisplay(m_Widget), False);
    while (!m_nChosen && XtAppPending(app)) XtAppProcessEvent(app, XtIMAll);
  }
  XSync(XtDisplay(m_Widget), False);
  XmUpdateDisplay(m_Widget);
  return m_nChosen;
}
