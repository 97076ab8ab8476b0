// Key to row and key to text.
#include <ic/resources/lookup.h>

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace ic::resources;

const char16_t* const kKeys[] = {u"alpha", u"beta", nullptr, u"delta", nullptr};
const char16_t* const kTexts[] = {u"\u7532", u"\u4E59", u"\u4E19", u"\u4E01", nullptr};
int g_keyCalls = 0;

const char16_t* Key(const ResourceStringLibrary*, int32_t index) {
  ++g_keyCalls;
  return (index < 0 || index > 4) ? nullptr : kKeys[index];
}
const char16_t* Text(const ResourceStringLibrary*, int32_t index) {
  return (index < 0 || index > 4) ? nullptr : kTexts[index];
}

TEST(ResourceLookupTest, FindsRowsAndTextsBuildingTheIndexOnce) {
  g_keyCalls = 0;
  ResourceStringLibrary library(u"greek", &Text, &Key, 4, nullptr, nullptr, 0);
  EXPECT_EQ(FindRowInKeyIndex(&library, u"beta"), -1);  // not built yet
  EXPECT_EQ(FindRow(&library, u"beta"), 1);
  EXPECT_EQ(library.KeyIndexBuilt.load(), 1);
  EXPECT_EQ(FindRowInKeyIndex(&library, u"beta"), 1);
  EXPECT_EQ(FindRow(&library, u"alpha"), 0);
  EXPECT_EQ(FindRow(&library, u"delta"), 3);
  EXPECT_EQ(g_keyCalls, 4);
  EXPECT_EQ(std::u16string(FindText(&library, u"delta")), u"\u4E01");
  EXPECT_EQ(FindText(&library, u"alpha"), kTexts[0]);  // a pointer into the table
}

TEST(ResourceLookupTest, AbsentKeysAndNulls) {
  ResourceStringLibrary library(u"greek", &Text, &Key, 4, nullptr, nullptr, 0);
  EXPECT_EQ(FindRow(&library, u"gamma"), -1);
  EXPECT_EQ(FindRow(&library, u"Alpha"), -1);  // exact, case-sensitive
  EXPECT_EQ(FindRow(&library, u"alph"), -1);
  EXPECT_EQ(FindRow(&library, u""), -1);
  EXPECT_EQ(FindRow(&library, nullptr), -1);
  EXPECT_EQ(FindRow(nullptr, u"alpha"), -1);
  EXPECT_EQ(FindText(&library, u"gamma"), nullptr);
  EXPECT_EQ(FindText(&library, nullptr), nullptr);
  EXPECT_EQ(FindText(nullptr, u"alpha"), nullptr);
  EXPECT_EQ(FindRowInKeyIndex(nullptr, u"alpha"), -1);
  EXPECT_EQ(FindRowInKeyIndex(&library, nullptr), -1);
}

}  // namespace
