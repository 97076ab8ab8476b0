// The library record: construction, layout, the lazy indices and leaving the chain.
#include <ic/resources/library.h>

#include <climits>
#include <functional>
#include <map>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <ic/resources/manager.h>

namespace {

using namespace ic::resources;

// Accessors over a per-test table that count their calls. The tests of this file run one at a
// time, so one set of globals serves them all.
struct Table {
  std::vector<const char16_t*> keys;
  int keyCalls = 0;
  int textCalls = 0;
  int throwAtCall = -1;  // GetKey throws std::bad_alloc on this call number, once
};
Table g_table;

const char16_t* CountingKey(const ResourceStringLibrary*, int32_t index) {
  const int call = g_table.keyCalls++;
  if (call == g_table.throwAtCall) {
    g_table.throwAtCall = -1;
    throw std::bad_alloc();
  }
  return g_table.keys.at(static_cast<size_t>(index));
}

const char16_t* CountingText(const ResourceStringLibrary*, int32_t) {
  ++g_table.textCalls;
  return u"text";
}

class ResourceLibraryTest : public ::testing::Test {
 protected:
  void SetUp() override { g_table = Table(); }

  static ResourceStringLibrary Make(std::vector<const char16_t*> keys) {
    g_table.keys = std::move(keys);
    return ResourceStringLibrary(u"sample", &CountingText, &CountingKey,
                                 static_cast<int32_t>(g_table.keys.size()), nullptr, nullptr, 0);
  }
};

TEST_F(ResourceLibraryTest, ConstructorSetsTheFields) {
  NumericEntryAccessor numeric = [](int32_t) -> const NumericEntry* { return nullptr; };
  AlternateKeyAccessor alternate = [](int32_t) -> const char16_t* { return nullptr; };
  ResourceStringLibrary library(u"core", &CountingText, &CountingKey, 31, numeric, alternate, 4);
  EXPECT_EQ(std::u16string(library.Name), u"core");
  EXPECT_EQ(library.GetText, &CountingText);
  EXPECT_EQ(library.GetKey, &CountingKey);
  EXPECT_EQ(library.GetNumericEntry, numeric);
  EXPECT_EQ(library.GetAlternateKey, alternate);
  EXPECT_EQ(library.Count, 31);
  EXPECT_EQ(library.AlternateCount, 4);
  EXPECT_EQ(library.RecordMark, 2u);
  EXPECT_EQ(library.KeyIndexBuilt.load(), 0);
  EXPECT_EQ(library.IdIndicesBuilt.load(), 0);
  EXPECT_TRUE(library.KeyIndex.empty());
  EXPECT_TRUE(library.AlternateKeyIndex.empty());
  EXPECT_TRUE(library.NumericIndex.empty());
  for (const auto& row : library.LanguageSlots) {
    for (const auto& word : row)
      EXPECT_EQ(word.load(), 0u);
  }
  // Registered as the last step: it is the head now.
  EXPECT_EQ(GetResourceStringManager().FirstLibrary, &library);
  EXPECT_EQ(g_table.keyCalls + g_table.textCalls, 0);  // construction reads no row
}

TEST_F(ResourceLibraryTest, FieldsLieInTheirOrder) {
  ResourceStringLibrary library = Make({});
  const ResourceStringLibrary& r = library;
  const void* fields[] = {&r.LanguageSlots[0][0],
                          &r.LanguageSlots[1][5],
                          &r.GetText,
                          &r.GetKey,
                          &r.GetNumericEntry,
                          &r.GetAlternateKey,
                          &r.Name,
                          &r.Next,
                          &r.RecordMark,
                          &r.Count,
                          &r.AlternateCount,
                          &r.KeyIndexBuilt,
                          &r.KeyIndex,
                          &r.IdIndicesBuilt,
                          &r.AlternateKeyIndex,
                          &r.NumericIndex};
  EXPECT_EQ(fields[0], static_cast<const void*>(&r));
  for (size_t i = 1; i < std::size(fields); ++i) {
    EXPECT_TRUE(std::less<const void*>()(fields[i - 1], fields[i])) << "field " << i;
  }
  static_assert(sizeof(r.LanguageSlots) == 2 * 6 * sizeof(uint32_t));
  static_assert(sizeof(std::atomic<uint32_t>) == 4 && sizeof(std::atomic<uint8_t>) == 1);
  static_assert(std::is_same_v<decltype(ResourceStringLibrary::Count), int32_t>);
  static_assert(std::is_same_v<decltype(ResourceStringLibrary::RecordMark), uint32_t>);
}

TEST_F(ResourceLibraryTest, KeyIndexMapsEveryKeyToItsRow) {
  ResourceStringLibrary library = Make({u"b", u"a", u"c"});
  BuildKeyIndex(&library);
  EXPECT_EQ(library.KeyIndexBuilt.load(), 1);
  ASSERT_EQ(library.KeyIndex.size(), 3u);
  EXPECT_EQ(library.KeyIndex.at(u"a"), 1);
  EXPECT_EQ(library.KeyIndex.at(u"b"), 0);
  EXPECT_EQ(library.KeyIndex.at(u"c"), 2);
  // The map holds the table's pointers; it copies no text.
  EXPECT_EQ(library.KeyIndex.find(u"c")->first, g_table.keys[2]);
  EXPECT_EQ(g_table.textCalls, 0);
}

TEST_F(ResourceLibraryTest, KeyIndexComparesTextNotPointers) {
  ResourceStringLibrary library = Make({u"key"});
  BuildKeyIndex(&library);
  const std::u16string elsewhere = u"key";
  EXPECT_EQ(library.KeyIndex.count(elsewhere.c_str()), 1u);
}

TEST_F(ResourceLibraryTest, KeyIndexIsBuiltOnce) {
  ResourceStringLibrary library = Make({u"x", u"y", u"z", u"w"});
  BuildKeyIndex(&library);
  BuildKeyIndex(&library);
  EXPECT_EQ(g_table.keyCalls, 4);
  EXPECT_EQ(library.KeyIndex.size(), 4u);
}

TEST_F(ResourceLibraryTest, EmptyLibraryGetsItsFlagWithoutCalls) {
  ResourceStringLibrary library = Make({});
  BuildKeyIndex(&library);
  EXPECT_EQ(g_table.keyCalls, 0);
  EXPECT_EQ(g_table.textCalls, 0);
  EXPECT_EQ(library.KeyIndexBuilt.load(), 1);
  EXPECT_TRUE(library.KeyIndex.empty());
}

TEST_F(ResourceLibraryTest, NullKeysAreSkipped) {
  ResourceStringLibrary library = Make({u"first", nullptr, nullptr, u"last"});
  BuildKeyIndex(&library);
  EXPECT_EQ(g_table.keyCalls, 4);  // a null key does not end the walk
  ASSERT_EQ(library.KeyIndex.size(), 2u);
  EXPECT_EQ(library.KeyIndex.at(u"first"), 0);
  EXPECT_EQ(library.KeyIndex.at(u"last"), 3);
}

TEST_F(ResourceLibraryTest, DuplicateKeyKeepsItsLastRow) {
  ResourceStringLibrary library = Make({u"dup", u"other", u"dup"});
  BuildKeyIndex(&library);
  EXPECT_EQ(library.KeyIndex.size(), 2u);
  EXPECT_EQ(library.KeyIndex.at(u"dup"), 2);
}

TEST_F(ResourceLibraryTest, KeysOrderByUnsignedUnitsPrefixFirst) {
  ResourceStringLibrary library = Make({u"\uFFFF", u"ab", u"a", u"B", u"\u00E9", u""});
  BuildKeyIndex(&library);
  std::vector<std::u16string> order;
  for (const auto& [key, row] : library.KeyIndex)
    order.emplace_back(key);
  const std::vector<std::u16string> expected = {u"", u"B", u"a", u"ab", u"\u00E9", u"\uFFFF"};
  EXPECT_EQ(order, expected);
}

TEST_F(ResourceLibraryTest, FailedBuildLeavesTheFlagClearAndTheMutexFree) {
  ResourceStringLibrary library = Make({u"a", u"b", u"c"});
  g_table.throwAtCall = 2;
  EXPECT_THROW(BuildKeyIndex(&library), std::bad_alloc);
  EXPECT_EQ(library.KeyIndexBuilt.load(), 0);
  EXPECT_EQ(library.KeyIndex.size(), 2u);  // the rows entered so far
  // The mutex was released on the way out: another thread can take it.
  bool locked = false;
  std::thread other([&] {
    locked = GetResourceStringManager().Mutex.try_lock();
    if (locked) GetResourceStringManager().Mutex.unlock();
  });
  other.join();
  EXPECT_TRUE(locked);
  // The next build walks all rows again.
  BuildKeyIndex(&library);
  EXPECT_EQ(g_table.keyCalls, 3 + 3);
  EXPECT_EQ(library.KeyIndexBuilt.load(), 1);
  EXPECT_EQ(library.KeyIndex.size(), 3u);
  EXPECT_EQ(library.KeyIndex.at(u"c"), 2);
}

TEST_F(ResourceLibraryTest, NullLibraryIsIgnored) {
  EXPECT_NO_THROW(BuildKeyIndex(nullptr));
  EXPECT_NO_THROW(BuildIdIndices(nullptr));
}

TEST_F(ResourceLibraryTest, IdIndicesWithoutAccessorsAreEmpty) {
  ResourceStringLibrary library = Make({u"a"});
  BuildIdIndices(&library);
  EXPECT_EQ(library.IdIndicesBuilt.load(), 1);
  EXPECT_TRUE(library.AlternateKeyIndex.empty());
  EXPECT_TRUE(library.NumericIndex.empty());
  EXPECT_EQ(library.KeyIndexBuilt.load(), 0);  // the key index has a flag of its own
  EXPECT_EQ(g_table.keyCalls, 0);
}

// Numeric entries: five, then null; the id 7 appears twice.
const NumericEntry kNumeric[] = {{7, 70}, {-3, 30}, {100, 1000}, {7, 71}, {INT32_MIN, 5}};
int g_numericCalls = 0;
const NumericEntry* NumericAt(int32_t index) {
  ++g_numericCalls;
  return index >= 0 && index < 5 ? &kNumeric[index] : nullptr;
}

const char16_t* const kAlternateKeys[] = {u"alpha", nullptr, u"gamma", u"alpha", u"beyond"};
int g_alternateCalls = 0;
const char16_t* AlternateAt(int32_t index) {
  ++g_alternateCalls;
  return kAlternateKeys[index];
}

TEST_F(ResourceLibraryTest, IdIndicesFromBothAccessors) {
  g_numericCalls = 0;
  g_alternateCalls = 0;
  ResourceStringLibrary library(u"ids", &CountingText, &CountingKey, 0, &NumericAt, &AlternateAt,
                                4);
  BuildIdIndices(&library);
  BuildIdIndices(&library);  // once only
  EXPECT_EQ(library.IdIndicesBuilt.load(), 1);

  EXPECT_EQ(g_alternateCalls, 4);  // AlternateCount rows, not more
  ASSERT_EQ(library.AlternateKeyIndex.size(), 2u);
  EXPECT_EQ(library.AlternateKeyIndex.at(u"alpha"), 3);  // the last row wins
  EXPECT_EQ(library.AlternateKeyIndex.at(u"gamma"), 2);

  EXPECT_EQ(g_numericCalls, 6);  // up to and including the null
  ASSERT_EQ(library.NumericIndex.size(), 4u);
  EXPECT_EQ(library.NumericIndex.at(7), 71u);  // the last pair of an id wins
  EXPECT_EQ(library.NumericIndex.at(-3), 30u);
  // Signed order: the most negative id first.
  EXPECT_EQ(library.NumericIndex.begin()->first, INT32_MIN);
  EXPECT_EQ(library.NumericIndex.rbegin()->first, 100);
}

TEST_F(ResourceLibraryTest, DestructionLeavesTheChain) {
  ResourceStringManager& manager = GetResourceStringManager();
  ResourceStringLibrary* const before = manager.FirstLibrary;
  {
    ResourceStringLibrary library = Make({u"k"});
    BuildKeyIndex(&library);  // freed with the record
    EXPECT_EQ(manager.FirstLibrary, &library);
  }
  EXPECT_EQ(manager.FirstLibrary, before);
}

TEST_F(ResourceLibraryTest, HeadIsTheLastRegistered) {
  ResourceStringLibrary first = Make({});
  ResourceStringLibrary second = Make({});
  ResourceStringLibrary third = Make({});
  ResourceStringManager& manager = GetResourceStringManager();
  EXPECT_EQ(manager.FirstLibrary, &third);
  EXPECT_EQ(third.Next, &second);
  EXPECT_EQ(second.Next, &first);
  UnregisterLibrary(&second);
  EXPECT_EQ(third.Next, &first);
  EXPECT_EQ(second.Next, &first);  // only the predecessor's link changed
}

}  // namespace
