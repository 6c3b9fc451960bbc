// zephrin-inspect props NAME: the properties on an interned name after the
// symbol start-up, newest first, as the readers find them.
#include <cstdio>

#include "symbols/global_strings.h"

int InspectVerb_props(int argc, char** argv) {
  if (argc != 1) {
    std::fprintf(stderr, "usage: zephrin-inspect props NAME\n");
    return 2;
  }
  // The whole symbol vocabulary, in start-up order.
  TStringPool::InitializeGlobal();
  TGlobalString::Initialize();
  TGlobalString::InitializeAlwaysDrawProperties();
  TGlobalString::InitializeVerticalListProperties();
  TGlobalString::InitializeSymbolFonts();

  TStringPool& pool = *TStringPool::g_pGlobal;
  const char* name = argv[0];
  bool known = pool.Find(name) != nullptr;  // before Get, which interns
  TSimpleString* entry = pool.Get(name);
  std::printf("%s\n", entry->Get_Text());
  if (!known) {
    std::printf("  not a loaded name: no properties\n");
    return 1;
  }
  const TPropertyList* list = entry->Get_PropertyList();
  if (!list || !list->Get_Head()) {
    std::printf("  interned, no properties\n");
    return 0;
  }
  for (const TKeyValue* pair = list->Get_Head(); pair; pair = pair->Get_Next()) {
    CString value;
    const char* kind = "null";
    if (const TProperty* property = pair->Get_Value()) {
      kind = property->KindName();
      property->DescribeValue(value);
    }
    std::printf("  %-18s %-10s %s\n", pair->Get_Key(), kind, value.c_str());
  }
  return 0;
}
