#include "framework/collections.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {
std::string Joined(const CStringList& list) {
  std::string out;
  for (auto p = list.GetHeadPosition(); p != list.GetEnd();) {
    out += list.GetNext(p).c_str();
    out += ' ';
  }
  return out;
}
}  // namespace

TEST(CListPositions, WalkInsertAndRemoveByPosition) {
  CStringList list;
  list.AddTail("b");
  list.AddHead("a");
  auto c = list.AddTail("d");
  list.InsertBefore(c, "c");
  list.InsertAfter(c, "e");
  EXPECT_EQ(Joined(list), "a b c d e ");
  EXPECT_EQ(list.GetCount(), 5);

  // Backwards from the tail ends at GetEnd.
  std::string back;
  for (auto p = list.GetTailPosition(); p != list.GetEnd();) back += list.GetPrev(p).c_str();
  EXPECT_EQ(back, "edcba");

  list.RemoveAt(list.Find("c"));
  list.SetAt(list.FindIndex(0), "A");
  EXPECT_EQ(Joined(list), "A b d e ");
  EXPECT_EQ(list.RemoveHead(), "A");
  EXPECT_EQ(list.RemoveTail(), "e");
  EXPECT_EQ(Joined(list), "b d ");
  EXPECT_TRUE(list.Find("zz") == list.GetEnd());
  EXPECT_TRUE(list.FindIndex(2) == list.GetEnd());
  EXPECT_TRUE(list.FindIndex(-1) == list.GetEnd());
}

TEST(CListEmpty, HeadAndTailOfAnEmptyListThrowCollectionIsEmpty) {
  CObList list;
  EXPECT_TRUE(list.GetHeadPosition() == list.GetEnd());
  EXPECT_TRUE(list.GetTailPosition() == list.GetEnd());
  for (auto call : {+[](CObList& l) { l.GetHead(); }, +[](CObList& l) { l.GetTail(); },
                    +[](CObList& l) { l.RemoveHead(); }, +[](CObList& l) { l.RemoveTail(); }}) {
    try {
      call(list);
      ADD_FAILURE() << "no exception";
    } catch (const std::invalid_argument& e) {
      EXPECT_STREQ(e.what(), "Collection is empty");
    }
  }
}

TEST(CListPointers, RemovalLeavesTheObjectsAlive) {
  CObject a, b;
  CObList list;
  list.AddTail(&a);
  list.AddTail(&b);
  EXPECT_EQ(list.GetHead(), &a);
  EXPECT_TRUE(list.Find(&b) == list.FindIndex(1));
  list.RemoveAll();  // would be a double free later if it deleted
  EXPECT_TRUE(list.IsEmpty());

  CPtrList pointers;
  int x = 0;
  pointers.AddTail(&x);
  EXPECT_EQ(pointers.GetTail(), &x);
}

TEST(CMapLookup, FillsOnlyWhenPresentAndCopiesOnAssignment) {
  CMap<CString, CString> map(17);
  map.SetAt("k", "v1");
  map.SetAt("k", "v2");
  CString value("untouched");
  EXPECT_EQ(map.Lookup("missing", value), 0);
  EXPECT_EQ(value, "untouched");
  EXPECT_EQ(map.Lookup("k", value), 1);
  EXPECT_EQ(value, "v2");

  CMap<CString, CString> copy;
  copy = map;
  map.RemoveKey("k");
  EXPECT_EQ(map.Lookup("k", value), 0);
  EXPECT_EQ(copy.Lookup("k", value), 1);

  // Pointer keys compare as addresses, not as the texts they point to.
  char first[] = "same", second[] = "same";
  CMap<void*, void*> byAddress;
  byAddress.SetAt(first, first);
  void* found = nullptr;
  EXPECT_EQ(byAddress.Lookup(second, found), 0);
  EXPECT_EQ(byAddress.Lookup(first, found), 1);
  EXPECT_EQ(found, first);
}

TEST(CDWordArrayGrowth, AddReturnsIndexAndCopiesAreDeep) {
  CDWordArray a;
  EXPECT_EQ(a.Add(10), 0);
  EXPECT_EQ(a.Add(0xFFFFFFFFu), 1);
  a.SetSize(4);
  EXPECT_EQ(a.GetSize(), 4);
  EXPECT_EQ(a.GetAt(3), 0u);
  a[2] = 7;
  CDWordArray b;
  b.Copy(a);
  b.Append(a);
  a.SetAt(0, 99);
  EXPECT_EQ(b.GetSize(), 8);
  EXPECT_EQ(b[0], 10u);
  EXPECT_EQ(b[6], 7u);
  EXPECT_EQ(b.GetAt(1), 0xFFFFFFFFu);
  EXPECT_THROW(a.GetAt(4), std::out_of_range);
}
