// Menus: a fixed list of items that becomes Motif widgets when the menu is
// shown. Documents fill menus of their own through AppendMenu.
#pragma once

#include <X11/Intrinsic.h>

#include <cstdint>
#include <vector>

#include "framework/objects.h"

class CWnd;
struct CMenuList;

struct CMenuItem {
  CMenuItem() = default;
  CMenuItem(const CMenuItem&) = delete;
  CMenuItem& operator=(const CMenuItem&) = delete;
  ~CMenuItem();

  char* m_pLabel = nullptr;  // owned, calloc'ed
  WidgetClass* m_pWidgetClass = nullptr;
  char m_cMnemonic = 0;
  const char* m_pAccelerator = nullptr;
  const char* m_pAcceleratorText = nullptr;
  XtCallbackProc m_Callback = nullptr;
  void* m_pSelf = nullptr;  // the menu whose choice this item makes
  int m_nZero = 0;
  CMenuList* m_pSubMenu = nullptr;
  unsigned m_nId = 0;
  int m_bDisabled = 0;
};

// 19 items and a closing null at most.
struct CMenuList {
  static constexpr int kSize = 20;
  CMenuItem* m_Items[kSize] = {};
  int m_nCount = 0;
};

class CMenu : public CObject {
 public:
  enum : unsigned {
    MF_STRING = 0,
    MF_GRAYED = 1,
    MF_POPUP = 16,
    MF_SEPARATOR = 2048,
  };
  enum { kPulldown = 2, kPopup = 3 };

  CMenu() = default;
  CMenu(const CMenu&) = delete;
  CMenu& operator=(const CMenu&) = delete;
  ~CMenu() override;

  int CreatePopupMenu() { return 1; }
  // flags 0: push button; 1: the same, disabled; 2048: separator; 16: cascade
  // whose sub-menu is the CMenuList that `id` holds. 1, or 0 when the list
  // is full (19 items).
  int AppendMenu(unsigned flags, uintptr_t id, const char* text);
  // An item of the resource menus: its own mnemonic and callback.
  int AppendResourceMenu(const char* text, char mnemonic, unsigned id, XtCallbackProc callback);
  int LoadMenu(unsigned id);
  int LoadMenu(const char* name);
  CMenu* GetSubMenu(int) { return this; }
  // The previous state (0 enabled, 1 disabled), or -1 when no item has `id`.
  int EnableMenuItem(unsigned id, unsigned flags);
  // Forgets the widget built last and answers it.
  Widget Detach();
  // Shows the menu at the button event and waits for a choice: the chosen
  // id, or 0 when the menu went away without one.
  unsigned TrackPopupMenu(unsigned flags, int x, int y, CWnd* window, XButtonEvent* event);

  static Widget BuildMenu(Widget parent, int kind, const char* title, char mnemonic, int tearOff, CMenuList* list);

  const CMenuList& GetList() const { return m_List; }
  Widget GetWidget() const { return m_Widget; }

 private:
  CMenuItem* NewItem(const char* text);
  static void OnItemHelper(Widget, XtPointer item, XtPointer);
  static void OnUnMapHelper(Widget, XtPointer menu, XtPointer);

  CMenuList m_List;
  Widget m_Widget = nullptr;
  CWnd* m_pWindow = nullptr;
  unsigned m_nChosen = 0;
  bool m_bUnmapped = false;
  std::vector<CMenuItem*> m_OwnedItems;  // items made here; LoadMenu shares others
};
