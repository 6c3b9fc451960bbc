#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>

#include "support/test_node.h"
#include "symbols/string_pool.h"

using ztest::TTestNode;

namespace {
// A copy at a fresh address: equal text, not the canonical pointer.
std::string Fresh(const char* text) { return std::string(text); }

std::string OverflowText(const TPoolBucket& bucket, int index) {
  int i = 0;
  for (CObject* object : bucket.Get_Overflow())
    if (i++ == index) return static_cast<TSimpleString*>(object)->Get_Text();
  return "(none)";
}
}  // namespace

TEST(StringPoolHash, FollowsTheFourBitShiftRule) {
  EXPECT_EQ(TStringPool::HashText("a"), 97u);
  EXPECT_EQ(TStringPool::HashText("ab"), 0x672u);  // 0x61 << 4 + 0x62
  // Seven bytes of 0x7a reach bit 31: 0x8222221A folds to 0x0222229A, the
  // eighth gives 0x22222A1A, which folds to 0x02222A3A.
  EXPECT_EQ(TStringPool::HashText("zzzzzzz"), 0x0222229Au);
  EXPECT_EQ(TStringPool::HashText("zzzzzzzz"), 0x02222A3Au);
  TStringPool pool(1009);
  EXPECT_EQ(pool.Hash("ab"), 1650 % 1009);
  EXPECT_EQ(pool.Hash(""), 0);
  EXPECT_EQ(pool.Hash(nullptr), 0);
}

TEST(StringPoolHash, NullAndEmptyNameAreOneEntryInBucketZero) {
  TStringPool pool(1009);
  TSimpleString* empty = pool.Get("");
  EXPECT_EQ(pool.Get(nullptr), empty);
  EXPECT_EQ(pool.Get_Bucket(0).Get_Slot(0), empty);
  EXPECT_STREQ(empty->Get_Text(), "");
  EXPECT_EQ(pool.Get_NameCount(), 1);
}

// In a pool of 7 buckets, "a" (97), "h" (104), "o" (111) and "v" (118) all
// hash to bucket 6.
TEST(StringPoolBuckets, ThirdAndFourthNamesOverflowInOrder) {
  TStringPool pool(7);
  const char* a = pool.Put("a");
  const char* h = pool.Put("h");
  const char* o = pool.Put("o");
  const char* v = pool.Put("v");
  const TPoolBucket& bucket = pool.Get_Bucket(6);
  EXPECT_EQ(bucket.Get_Slot(0)->Get_Text(), a);
  EXPECT_EQ(bucket.Get_Slot(1)->Get_Text(), h);
  ASSERT_EQ(bucket.Get_Overflow().GetCount(), 2);
  EXPECT_EQ(OverflowText(bucket, 0), "o");
  EXPECT_EQ(OverflowText(bucket, 1), "v");
  // All stay findable by text, each at its first address.
  EXPECT_EQ(pool.Put(Fresh("v").c_str()), v);
  EXPECT_EQ(pool.Put(Fresh("o").c_str()), o);
  EXPECT_EQ(pool.Put(Fresh("a").c_str()), a);
  EXPECT_EQ(pool.Put(Fresh("h").c_str()), h);
  EXPECT_EQ(pool.Get_NameCount(), 4);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(pool.Get_Bucket(i).Get_Slot(0), nullptr) << i;
}

TEST(StringPoolNames, EqualTextsShareOneCanonicalPointer) {
  TStringPool pool(1009);
  std::string first = Fresh("alpha"), second = Fresh("alpha");
  const char* canonical = pool.Put(first.c_str());
  EXPECT_NE(canonical, first.c_str());  // the pool keeps its own copy
  EXPECT_EQ(pool.Put(second.c_str()), canonical);
  EXPECT_EQ(pool.Put(canonical), canonical);
  EXPECT_STREQ(canonical, "alpha");
  EXPECT_NE(pool.Put("Alpha"), canonical);  // case matters
  EXPECT_EQ(pool.Get_NameCount(), 2);
}

// The memo is one entry keyed on a pointer and shared by all pools, so a
// second pool answers a memo hit with the first pool's entry without looking.
TEST(StringPoolMemo, HitIsByPointerAndOneEntryDeep) {
  TStringPool first(1009), second(1009);
  const char* x = first.Put("x");
  TSimpleString* entry = first.Get(x);
  EXPECT_EQ(second.Get(x), entry);  // a hit: no hashing in `second`
  EXPECT_EQ(second.Get_NameCount(), 0);

  std::string copy = Fresh("x");
  second.Get(copy.c_str());  // a different pointer: the full way, and the memo moves
  EXPECT_EQ(second.Get_NameCount(), 1);
  EXPECT_NE(second.Get(x), entry);  // no longer a hit: `second` finds its own "x"
}

TEST(StringPoolNames, AskingAboutAnUnknownNameInternsItWithoutList) {
  TStringPool pool(1009);
  const char* key = pool.Put("_KEY");
  EXPECT_EQ(pool.Find("nobody"), nullptr);
  EXPECT_EQ(pool.Get("nobody", key), nullptr);
  TSimpleString* entry = pool.Find("nobody");
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->Get_PropertyList(), nullptr);
}

TEST(StringPoolProperties, PutReplacesAndDeletesRemoveKeepsTheName) {
  TStringPool pool(1009);
  const char* key = pool.Put("_NODE");
  const char* other = pool.Put("_FLAG");
  const int live = TTestNode::fg_nLive;
  {
    const char* name = pool.Put("menu", key, new TNodeProperty(new TTestNode(1)));
    pool.Put("menu", other, new TBooleanProperty(1));
    EXPECT_EQ(pool.Put("menu", key, new TNodeProperty(new TTestNode(2))), name);
    EXPECT_EQ(TTestNode::fg_nLive, live + 1);  // the first node went with its property
    EXPECT_EQ(pool.GetNode("menu", key)->Get_NodeAs<TTestNode>()->m_nValue, 2);
    // The replaced pair kept its place behind the newer _FLAG.
    EXPECT_EQ(pool.GetPropertyList("menu")->Get_Head()->Get_Key(), other);

    pool.Remove("menu", key);
    EXPECT_EQ(TTestNode::fg_nLive, live);
    EXPECT_EQ(pool.Get("menu", key), nullptr);
    EXPECT_EQ(pool.GetBoolean("menu", other), 1);
    EXPECT_EQ(pool.Put("menu"), name);  // the name itself stays
    pool.Remove("never-had-a-list", key);  // no list: nothing to do
  }
  // Typed readers see only their own kind.
  EXPECT_EQ(pool.GetNode("menu", other), nullptr);
  EXPECT_EQ(pool.GetBoolean("menu", key), 0);
}

TEST(StringPoolProperties, SetPropertyListLeavesTheOldListToTheCaller) {
  TStringPool pool(1009);
  const char* key = pool.Put("_V");
  pool.Put("n", key, new TIntegerProperty(1));
  std::unique_ptr<TPropertyList> old(pool.GetPropertyList("n"));
  pool.SetPropertyList("n", new TPropertyList(key, new TIntegerProperty(2)));
  EXPECT_EQ(static_cast<TIntegerProperty*>(old->GetProperty(key))->Get_Value(), 1);
  EXPECT_EQ(pool.GetTyped<TIntegerProperty>("n", key)->Get_Value(), 2);
}

TEST(StringPoolLifetime, PoolDeletesEveryNameWithItsProperties) {
  const int live = TTestNode::fg_nLive;
  auto pool = std::make_unique<TStringPool>(7);
  const char* key = pool->Put("_NODE");
  // Enough names that buckets overflow, each holding a node.
  for (int i = 0; i < 40; ++i)
    pool->Put(("n" + std::to_string(i)).c_str(), key, new TNodeProperty(new TTestNode(i)));
  EXPECT_EQ(pool->Get_NameCount(), 41);
  EXPECT_EQ(TTestNode::fg_nLive, live + 40);
  pool.reset();
  EXPECT_EQ(TTestNode::fg_nLive, live);
}

TEST(StringPoolLifetime, DeletedEntryReadsAsDeletedString) {
  alignas(TSimpleString) unsigned char storage[sizeof(TSimpleString)];
  TSimpleString* entry = new (storage) TSimpleString("stale");
  const char* const& text = entry->Get_Text();  // what a stale holder would read
  EXPECT_STREQ(text, "stale");
  entry->~TSimpleString();
  EXPECT_STREQ(text, "<deleted string>");
}

TEST(StringPoolLifetime, GlobalPoolStartsOnceAndFrees) {
  TStringPool::FreeGlobal();  // whatever an earlier test left
  TStringPool::InitializeGlobal();
  TStringPool* pool = TStringPool::g_pGlobal;
  ASSERT_NE(pool, nullptr);
  EXPECT_EQ(pool->Get_BucketCount(), 1009);
  TStringPool::InitializeGlobal();  // a second start keeps the pool
  EXPECT_EQ(TStringPool::g_pGlobal, pool);
  TStringPool::FreeGlobal();
  EXPECT_EQ(TStringPool::g_pGlobal, nullptr);
  TStringPool::FreeGlobal();  // nothing left to free
}
