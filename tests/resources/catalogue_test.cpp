// The per-catalogue function group, over tables written the way the resource string compiler
// writes them.
#include <ic/resources/catalogue.h>

#include <string>

#include <gtest/gtest.h>
#include <ic/resources/manager.h>

namespace ic::resources::catalogues::sample {
IC_RESOURCE_CATALOGUE_DECLARATIONS(3)
}  // namespace ic::resources::catalogues::sample

namespace ic::resources::catalogues::sample {
namespace {
const char16_t* const kTexts[3 + 1] = {u"\u4E00", u"two {n}", u"three\nlines", nullptr};
const char16_t* const kKeys[3 + 1] = {u"one", u"two", u"three", nullptr};
}  // namespace
IC_RESOURCE_CATALOGUE(u"sample", 3, kTexts, kKeys)
}  // namespace ic::resources::catalogues::sample

namespace ic::resources::catalogues::nothing {
IC_RESOURCE_CATALOGUE_DECLARATIONS(0)
namespace {
const char16_t* const kTexts[0 + 1] = {nullptr};
const char16_t* const kKeys[0 + 1] = {nullptr};
}  // namespace
IC_RESOURCE_CATALOGUE(u"nothing", 0, kTexts, kKeys)
}  // namespace ic::resources::catalogues::nothing

// Used by one test only, which sees its record built.
namespace ic::resources::catalogues::lazy {
IC_RESOURCE_CATALOGUE_DECLARATIONS(1)
namespace {
const char16_t* const kTexts[1 + 1] = {u"text", nullptr};
const char16_t* const kKeys[1 + 1] = {u"key", nullptr};
}  // namespace
IC_RESOURCE_CATALOGUE(u"lazy", 1, kTexts, kKeys)
}  // namespace ic::resources::catalogues::lazy

namespace {

using namespace ic::resources;
namespace sample = ic::resources::catalogues::sample;
namespace nothing = ic::resources::catalogues::nothing;

TEST(ResourceCatalogueTest, AccessorsReadTheTables) {
  EXPECT_EQ(std::u16string(sample::KeyAccessor(nullptr, 0)), u"one");
  EXPECT_EQ(std::u16string(sample::TextAccessor(nullptr, 0)), u"\u4E00");
  EXPECT_EQ(std::u16string(sample::KeyAccessor(nullptr, 2)), u"three");
  EXPECT_EQ(std::u16string(sample::TextAccessor(nullptr, 2)), u"three\nlines");
  EXPECT_EQ(sample::RowCount, 3);
}

TEST(ResourceCatalogueTest, AccessorsClampOutOfRangeToTheFinalNull) {
  for (int32_t index : {-1, 3, 4, -100, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(sample::TextAccessor(nullptr, index), nullptr) << index;
    EXPECT_EQ(sample::KeyAccessor(nullptr, index), nullptr) << index;
  }
  EXPECT_EQ(nothing::TextAccessor(nullptr, 0), nullptr);
  EXPECT_EQ(nothing::KeyAccessor(nullptr, -1), nullptr);
}

TEST(ResourceCatalogueTest, AccessorsIgnoreTheLibrary) {
  ResourceStringLibrary* library = sample::GetLibrary();
  EXPECT_EQ(sample::TextAccessor(library, 1), sample::TextAccessor(nullptr, 1));
  EXPECT_EQ(library->GetText(library, 1), sample::kTexts[1]);
  EXPECT_EQ(library->GetKey(nullptr, 1), sample::kKeys[1]);
  EXPECT_EQ(library->GetText(library, -1), nullptr);
  EXPECT_EQ(library->GetText(library, 3), nullptr);
  EXPECT_EQ(library->GetText(library, 4), nullptr);
}

TEST(ResourceCatalogueTest, GetLibraryBuildsOneRecord) {
  ResourceStringLibrary* library = sample::GetLibrary();
  ASSERT_NE(library, nullptr);
  EXPECT_EQ(sample::GetLibrary(), library);
  EXPECT_EQ(std::u16string(library->Name), u"sample");
  EXPECT_EQ(library->Count, 3);
  EXPECT_EQ(library->GetText, &sample::TextAccessor);
  EXPECT_EQ(library->GetKey, &sample::KeyAccessor);
  EXPECT_EQ(library->GetNumericEntry, nullptr);
  EXPECT_EQ(library->GetAlternateKey, nullptr);
  EXPECT_EQ(library->AlternateCount, 0);
  EXPECT_EQ(library->RecordMark, 2u);
  EXPECT_EQ(FindLibrary(u"sample"), library);
}

TEST(ResourceCatalogueTest, GetKeyAtBuildsTheRecordFirst) {
  namespace lazy = ic::resources::catalogues::lazy;
  // Nothing else touches this catalogue: the accessors read the table without a record, and
  // GetKeyAt builds it.
  EXPECT_EQ(std::u16string(lazy::KeyAccessor(nullptr, 0)), u"key");
  EXPECT_EQ(FindLibrary(u"lazy"), nullptr);
  EXPECT_EQ(std::u16string(lazy::GetKeyAt(0)), u"key");
  EXPECT_NE(FindLibrary(u"lazy"), nullptr);
  EXPECT_EQ(FindLibrary(u"lazy"), lazy::GetLibrary());
}

TEST(ResourceCatalogueTest, GetKeyAtOutOfRangeIsNull) {
  EXPECT_EQ(std::u16string(sample::GetKeyAt(0)), u"one");
  EXPECT_EQ(std::u16string(sample::GetKeyAt(2)), u"three");
  EXPECT_EQ(sample::GetKeyAt(3), nullptr);  // the table's final null
  EXPECT_EQ(sample::GetKeyAt(4), nullptr);
  EXPECT_EQ(sample::GetKeyAt(-1), nullptr);
  EXPECT_EQ(sample::GetKeyAt(INT32_MAX), nullptr);
}

TEST(ResourceCatalogueTest, RegistrarBuildsTheRecord) {
  const sample::Registrar registrar;
  EXPECT_EQ(FindLibrary(u"sample"), sample::GetLibrary());
}

// A hook that records what it was given.
struct SeenByHook {
  const ResourceStringLibrary* library = nullptr;
  uint32_t word1 = 0;
  uint32_t word2 = 0;
};
SeenByHook g_seen;

MessageResult* RecordingHook(MessageResult* result, const ResourceStringLibrary* library,
                             uint32_t word1, uint32_t word2) {
  g_seen = {library, word1, word2};
  result->text = u"hooked";
  result->word = word1 + word2;
  return result;
}

TEST(ResourceCatalogueTest, GetMessageGoesThroughTheHook) {
  MessageResult result{u"stale", 9};
  EXPECT_EQ(sample::GetMessage(&result, 1, 2), &result);
  EXPECT_EQ(result.text, ic::EmptyText<char16_t>());  // the default hook
  EXPECT_EQ(result.word, 0u);

  ResourceStringManager& manager = GetResourceStringManager();
  manager.GetMessageHook = &RecordingHook;
  EXPECT_EQ(sample::GetMessage(&result, 0xDEADBEEF, 5), &result);
  manager.GetMessageHook = &DefaultGetMessage;
  EXPECT_EQ(g_seen.library, sample::GetLibrary());
  EXPECT_EQ(g_seen.word1, 0xDEADBEEFu);
  EXPECT_EQ(g_seen.word2, 5u);
  EXPECT_EQ(std::u16string(result.text), u"hooked");
}

TEST(ResourceCatalogueTest, KeyIndexOverTheTables) {
  ResourceStringLibrary* library = sample::GetLibrary();
  BuildKeyIndex(library);
  ASSERT_EQ(library->KeyIndex.size(), 3u);
  EXPECT_EQ(library->KeyIndex.at(u"two"), 1);
  EXPECT_EQ(library->KeyIndex.find(u"two")->first, sample::kKeys[1]);

  ResourceStringLibrary* empty = nothing::GetLibrary();
  BuildKeyIndex(empty);
  EXPECT_EQ(empty->KeyIndexBuilt.load(), 1);
  EXPECT_TRUE(empty->KeyIndex.empty());
}

}  // namespace
