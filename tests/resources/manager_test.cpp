// The resource string manager: start state, language, overrides, hooks and the chain.
#include <ic/resources/manager.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

#include <gtest/gtest.h>
#include <ic/platform/wide_runtime.h>
#include <ic/resources/internal/map_room.h>
#include <ic/string/header.h>

namespace {

using namespace ic::resources;

std::u16string Text(const ic::ICStringUniqueW& s) {
  return std::u16string(s.GetText());
}

// Runs `check` in a new process that runs only the current test, so that it sees the manager as
// start-up leaves it, whatever other tests of this program did before.
void ExpectInFreshProcess(const std::function<void()>& check) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        check();
        std::exit(::testing::Test::HasFailure() ? 1 : 0);
      },
      ::testing::ExitedWithCode(0), "");
}

const char16_t* RowOfNothing(const ResourceStringLibrary*, int32_t) {
  return nullptr;
}

// A record for chain tests; it links itself in on construction and out on destruction.
struct Record {
  explicit Record(const char16_t* name)
      : library(name, &RowOfNothing, &RowOfNothing, 0, nullptr, nullptr, 0) {}
  ResourceStringLibrary library;
};

TEST(ResourceStringManagerTest, StartsEmpty) {
  ExpectInFreshProcess([] {
    ResourceStringManager& manager = GetResourceStringManager();
    EXPECT_EQ(&manager, &GetResourceStringManager());
    EXPECT_EQ(manager.HookContext, 0u);
    EXPECT_EQ(manager.GetMessageHook, &DefaultGetMessage);
    EXPECT_EQ(manager.GetMessageHook2, &DefaultGetMessage);
    EXPECT_EQ(manager.ClearStringHook, &DefaultClearString);
    EXPECT_EQ(manager.ClearStringHook2, &DefaultClearString);
    EXPECT_EQ(manager.NotifyHook, &DefaultNotify);
    EXPECT_EQ(manager.FirstLibrary, nullptr);
    EXPECT_EQ(manager.CurrentLanguage.load(), 0);
    EXPECT_EQ(manager.LanguageName.GetText(), ic::EmptyText<char16_t>());
    EXPECT_TRUE(manager.Overrides.empty());
    EXPECT_TRUE(manager.NestedStrings.empty());
    for (const auto& slot : manager.SharedSlots)
      EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(manager.ExtraName.GetText(), ic::EmptyText<char16_t>());
    EXPECT_TRUE(manager.Mutex.try_lock());
    manager.Mutex.unlock();
  });
}

TEST(ResourceStringManagerTest, FieldsLieInTheirOrder) {
  const ResourceStringManager& m = GetResourceStringManager();
  const void* fields[] = {&m.Mutex,           &m.HookContext,     &m.GetMessageHook,
                          &m.GetMessageHook2, &m.ClearStringHook, &m.ClearStringHook2,
                          &m.NotifyHook,      &m.FirstLibrary,    &m.CurrentLanguage,
                          &m.LanguageName,    &m.Overrides,       &m.NestedStrings,
                          &m.SharedSlots[0],  &m.SharedSlots[5],  &m.ExtraName};
  EXPECT_EQ(fields[0], static_cast<const void*>(&m));
  for (size_t i = 1; i < std::size(fields); ++i) {
    EXPECT_TRUE(std::less<const void*>()(fields[i - 1], fields[i])) << "field " << i;
  }
  static_assert(
      std::is_same_v<decltype(ResourceStringManager::CurrentLanguage), std::atomic<int32_t>>);
  static_assert(std::is_same_v<decltype(ResourceStringManager::HookContext), uint32_t>);
  static_assert(std::extent_v<decltype(ResourceStringManager::SharedSlots)> == 6);
}

TEST(ResourceStringManagerTest, DefaultHooks) {
  MessageResult result{u"stale", 77};
  EXPECT_EQ(DefaultGetMessage(&result, nullptr, 1, 2), &result);
  EXPECT_EQ(result.text, ic::EmptyText<char16_t>());
  EXPECT_EQ(result.word, 0u);

  ic::ICStringUniqueW text(u"abc");
  const int32_t capacity = text.GetCapacity();
  EXPECT_EQ(&DefaultClearString(text), &text);
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_EQ(text.GetCapacity(), capacity);  // the block stays

  DefaultNotify();  // does nothing, and must not fail
  const ResourceStringManager& manager = GetResourceStringManager();
  ic::ICStringUniqueW other(u"x");
  EXPECT_EQ(&manager.ClearStringHook(other), &other);
  EXPECT_TRUE(other.IsEmpty());
}

TEST(ResourceStringManagerTest, FreshLanguageIsEnglish) {
  ExpectInFreshProcess([] {
    EXPECT_EQ(Text(GetLanguage(false)), u"en");
    EXPECT_EQ(Text(GetLanguage(true)), u"en");
    EXPECT_EQ(GetResourceStringManager().CurrentLanguage.load(), 0);
    // The stored name stays empty: the table's code is only the answer.
    EXPECT_TRUE(GetResourceStringManager().LanguageName.IsEmpty());
  });
}

TEST(ResourceStringManagerTest, LanguageIndexIgnoresCase) {
  EXPECT_EQ(GetLanguageIndex(u"EN"), 0);
  EXPECT_EQ(GetLanguageIndex(u"En"), 0);
  EXPECT_EQ(GetLanguageIndex(u"en"), 0);
  EXPECT_EQ(GetLanguageIndex(u"de"), 1);
  EXPECT_EQ(GetLanguageIndex(u"JA"), 2);
  EXPECT_EQ(GetLanguageIndex(u"zH"), 3);
  EXPECT_EQ(GetLanguageIndex(u"es"), 4);
  EXPECT_EQ(GetLanguageIndex(u"Fr"), 5);
}

TEST(ResourceStringManagerTest, LanguageIndexOfOtherCodes) {
  EXPECT_EQ(GetLanguageIndex(nullptr), 6);
  EXPECT_EQ(GetLanguageIndex(u""), 6);
  EXPECT_EQ(GetLanguageIndex(u"ko"), 6);
  EXPECT_EQ(GetLanguageIndex(u"eng"), 6);
  EXPECT_EQ(GetLanguageIndex(u"e"), 6);
  EXPECT_EQ(GetLanguageIndex(u"en-US"), 6);
  EXPECT_EQ(GetLanguageIndex(u"\u00E9n"), 6);
}

TEST(ResourceStringManagerTest, SetLanguageKeepsTheCallersSpelling) {
  SetLanguage(u"ZH");
  EXPECT_EQ(GetResourceStringManager().CurrentLanguage.load(), 3);
  EXPECT_EQ(Text(GetLanguage(false)), u"ZH");
  EXPECT_EQ(Text(GetLanguage(true)), u"zh");
  EXPECT_EQ(Text(GetLanguage(false)), u"ZH");  // lower-casing works on the copy only

  SetLanguage(u"De");
  EXPECT_EQ(GetResourceStringManager().CurrentLanguage.load(), 1);
  EXPECT_EQ(Text(GetLanguage(false)), u"De");
  EXPECT_EQ(Text(GetLanguage(true)), u"de");
}

TEST(ResourceStringManagerTest, SetLanguageAcceptsOtherCodes) {
  SetLanguage(u"ko");
  EXPECT_EQ(GetResourceStringManager().CurrentLanguage.load(), 6);
  EXPECT_EQ(Text(GetLanguage(false)), u"ko");
  SetLanguage(u"PT-BR");
  EXPECT_EQ(GetResourceStringManager().CurrentLanguage.load(), 6);
  EXPECT_EQ(Text(GetLanguage(false)), u"PT-BR");
  EXPECT_EQ(Text(GetLanguage(true)), u"pt-br");
}

TEST(ResourceStringManagerTest, SetLanguageWithNothingChangesNothing) {
  ExpectInFreshProcess([] {
    // Before any successful call: still the first state.
    SetLanguage(nullptr);
    SetLanguage(u"");
    EXPECT_EQ(GetResourceStringManager().CurrentLanguage.load(), 0);
    EXPECT_TRUE(GetResourceStringManager().LanguageName.IsEmpty());
    EXPECT_EQ(Text(GetLanguage(false)), u"en");
  });
  SetLanguage(u"Ja");
  SetLanguage(nullptr);
  SetLanguage(u"");
  EXPECT_EQ(GetResourceStringManager().CurrentLanguage.load(), 2);
  EXPECT_EQ(Text(GetLanguage(false)), u"Ja");
}

TEST(ResourceStringManagerTest, LanguageCodeIsCopied) {
  std::u16string code = u"Es";
  SetLanguage(code.c_str());
  code.assign(u"XX");
  EXPECT_EQ(Text(GetLanguage(false)), u"Es");
  EXPECT_EQ(GetResourceStringManager().CurrentLanguage.load(), 4);
}

TEST(ResourceStringManagerTest, OverrideRoundTrip) {
  const uint32_t id = 4711;
  SetStringOverride(u"Hello W\u00D6RLD", id);
  EXPECT_EQ(Text(GetStringOverride(false, id)), u"Hello W\u00D6RLD");
  // Lower-cased by the wide run-time: "Ö" by the Unicode mapping, not in the C run-time's default
  // locale.
  EXPECT_EQ(Text(GetStringOverride(true, id)),
            ic::platform::WideCaseFollowsUnicode ? u"hello w\u00F6rld" : u"hello w\u00D6rld");
  // Lower-casing is on the copy only.
  EXPECT_EQ(Text(GetResourceStringManager().Overrides.at(id)), u"Hello W\u00D6RLD");
  // Overwritten in place.
  SetStringOverride(u"second", id);
  EXPECT_EQ(Text(GetStringOverride(false, id)), u"second");
  EXPECT_EQ(GetResourceStringManager().Overrides.count(id), 1u);
  SetStringOverride(nullptr, id);
}

TEST(ResourceStringManagerTest, OverrideIdsAreUnsigned) {
  const uint32_t high = 0xFFFFFFFFu;
  const uint32_t low = 1;
  SetStringOverride(u"high", high);
  SetStringOverride(u"low", low);
  const auto& overrides = GetResourceStringManager().Overrides;
  ASSERT_GE(overrides.size(), 2u);
  EXPECT_EQ(overrides.rbegin()->first, high);  // the largest id sorts last, not first
  EXPECT_EQ(Text(GetStringOverride(false, high)), u"high");
  SetStringOverride(nullptr, high);
  SetStringOverride(nullptr, low);
}

TEST(ResourceStringManagerTest, OverrideTextIsCopied) {
  const uint32_t id = 12;
  auto text = std::make_unique<char16_t[]>(8);
  std::char_traits<char16_t>::copy(text.get(), u"copied", 7);
  SetStringOverride(text.get(), id);
  text.reset();  // the caller frees it at once
  EXPECT_EQ(Text(GetStringOverride(false, id)), u"copied");
  SetStringOverride(u"", id);
}

TEST(ResourceStringManagerTest, EmptyOverrideRemovesOrDoesNothing) {
  const uint32_t absent = 99001;
  const size_t before = GetResourceStringManager().Overrides.size();
  EXPECT_NO_THROW(SetStringOverride(nullptr, absent));
  EXPECT_NO_THROW(SetStringOverride(u"", absent));
  EXPECT_EQ(GetResourceStringManager().Overrides.size(), before);
  EXPECT_EQ(GetResourceStringManager().Overrides.count(absent), 0u);

  const uint32_t present = 99002;
  SetStringOverride(u"one", present);
  EXPECT_EQ(GetResourceStringManager().Overrides.size(), before + 1);
  SetStringOverride(u"", present);
  EXPECT_EQ(GetResourceStringManager().Overrides.count(present), 0u);
  SetStringOverride(u"two", present);
  SetStringOverride(nullptr, present);
  EXPECT_EQ(GetResourceStringManager().Overrides.count(present), 0u);
  EXPECT_EQ(GetResourceStringManager().Overrides.size(), before);
  // An erased override reads as an absent one.
  EXPECT_TRUE(GetStringOverride(false, present).IsEmpty());
}

TEST(ResourceStringManagerTest, AbsentOverrideIsEmpty) {
  const uint32_t absent = 31337;
  const ic::ICStringUniqueW plain = GetStringOverride(false, absent);
  EXPECT_EQ(plain.GetText(), ic::EmptyText<char16_t>());
  EXPECT_EQ(plain.GetLength(), 0);
}

TEST(ResourceStringManagerTest, AbsentOverrideLowerCasedMarksTheEmptyData) {
  const uint32_t absent = 31338;
  const char16_t* empty = ic::EmptyText<char16_t>();
  ASSERT_EQ(ic::internal::GetLengthWord(empty), 0);
  const ic::ICStringUniqueW lowered = GetStringOverride(true, absent);
  EXPECT_EQ(lowered.GetText(), empty);
  EXPECT_EQ(lowered.GetText()[0], u'\0');
  // The lower-casing ran on the shared empty data: its length is now unmeasured...
  EXPECT_EQ(ic::internal::GetLengthWord(empty), ic::UnknownLength);
  // ...until the next read measures 0 and stores it.
  EXPECT_EQ(lowered.GetLength(), 0);
  EXPECT_EQ(ic::internal::GetLengthWord(empty), 0);
  EXPECT_EQ(ic::internal::GetCapacityWord(empty), 0);
}

TEST(ResourceStringManagerTest, MutexIsRecursive) {
  ResourceStringManager& manager = GetResourceStringManager();
  std::lock_guard<std::recursive_mutex> outer(manager.Mutex);
  // Every function that locks may be called while the lock is held by this thread.
  SetLanguage(u"fr");
  EXPECT_EQ(Text(GetLanguage(false)), u"fr");
  SetStringOverride(u"inner", 5);
  EXPECT_EQ(Text(GetStringOverride(false, 5)), u"inner");
  SetStringOverride(nullptr, 5);
}

TEST(ResourceStringManagerTest, LockIsHeldWhileLanguageIsSet) {
  // Another thread holding the mutex keeps SetLanguage waiting.
  ResourceStringManager& manager = GetResourceStringManager();
  SetLanguage(u"en");
  std::unique_lock<std::recursive_mutex> hold(manager.Mutex);
  std::thread setter([] { SetLanguage(u"de"); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(Text(manager.LanguageName), u"en");
  hold.unlock();
  setter.join();
  EXPECT_EQ(Text(GetLanguage(false)), u"de");
}

TEST(ResourceStringManagerTest, FindLibraryIsCaseSensitive) {
  Record core(u"core");
  Record other(u"msg");
  EXPECT_EQ(FindLibrary(u"core"), &core.library);
  EXPECT_EQ(FindLibrary(u"Core"), nullptr);
  EXPECT_EQ(FindLibrary(u"CORE"), nullptr);
  EXPECT_EQ(FindLibrary(u"cor"), nullptr);
  EXPECT_EQ(FindLibrary(u"cores"), nullptr);
  EXPECT_EQ(FindLibrary(u"msg"), &other.library);
  EXPECT_EQ(FindLibraryFrom(&other.library, u"core"), &core.library);
  // Walking from a record further down does not see those before it.
  EXPECT_EQ(FindLibraryFrom(&core.library, u"msg"), nullptr);
}

TEST(ResourceStringManagerTest, FindLibraryOfNothing) {
  Record record(u"core");
  EXPECT_EQ(FindLibraryFrom(nullptr, u"core"), nullptr);
  EXPECT_EQ(FindLibrary(nullptr), nullptr);
  EXPECT_EQ(FindLibraryFrom(&record.library, nullptr), nullptr);
}

TEST(ResourceStringManagerTest, FindLibraryReturnsTheFirstOfEqualNames) {
  Record older(u"twin");
  Record newer(u"twin");
  EXPECT_EQ(FindLibrary(u"twin"), &newer.library);
  EXPECT_EQ(FindLibraryFrom(&older.library, u"twin"), &older.library);
}

TEST(ResourceStringManagerTest, RegisterPutsTheRecordAtTheHead) {
  ResourceStringManager& manager = GetResourceStringManager();
  ResourceStringLibrary* const before = manager.FirstLibrary;
  Record first(u"first");
  EXPECT_EQ(manager.FirstLibrary, &first.library);
  EXPECT_EQ(first.library.Next, before);
  Record second(u"second");
  EXPECT_EQ(manager.FirstLibrary, &second.library);
  EXPECT_EQ(second.library.Next, &first.library);

  RegisterLibrary(nullptr);  // ignored
  EXPECT_EQ(manager.FirstLibrary, &second.library);
}

TEST(ResourceStringManagerTest, UnregisterSplicesTheRecordOut) {
  ResourceStringManager& manager = GetResourceStringManager();
  ResourceStringLibrary* const before = manager.FirstLibrary;
  Record a(u"a");
  Record b(u"b");
  Record c(u"c");  // chain: c b a ...
  UnregisterLibrary(&b.library);
  EXPECT_EQ(manager.FirstLibrary, &c.library);
  EXPECT_EQ(c.library.Next, &a.library);
  EXPECT_EQ(b.library.Next, &a.library);  // the removed record keeps its old link
  UnregisterLibrary(&c.library);          // the head
  EXPECT_EQ(manager.FirstLibrary, &a.library);
  EXPECT_EQ(c.library.Next, &a.library);
  UnregisterLibrary(&a.library);
  EXPECT_EQ(manager.FirstLibrary, before);
}

TEST(ResourceStringManagerTest, UnregisterOfAStrangerLeavesTheChain) {
  ResourceStringManager& manager = GetResourceStringManager();
  Record a(u"a");
  Record b(u"b");
  Record stranger(u"stranger");
  UnregisterLibrary(&stranger.library);  // now out of the chain
  ResourceStringLibrary* const head = manager.FirstLibrary;
  ASSERT_EQ(head, &b.library);
  UnregisterLibrary(&stranger.library);  // not in the chain: nothing changes
  EXPECT_EQ(manager.FirstLibrary, head);
  EXPECT_EQ(b.library.Next, &a.library);
  UnregisterLibrary(nullptr);
  EXPECT_EQ(manager.FirstLibrary, head);
}

TEST(ResourceStringManagerTest, UnregisterOnAnEmptyChain) {
  ExpectInFreshProcess([] {
    Record only(u"only");
    UnregisterLibrary(&only.library);
    EXPECT_EQ(GetResourceStringManager().FirstLibrary, nullptr);
    UnregisterLibrary(&only.library);  // the chain is empty now
    EXPECT_EQ(GetResourceStringManager().FirstLibrary, nullptr);
    EXPECT_EQ(only.library.Next, nullptr);
  });
}

// A container that is always full, to see the length error of a map at its maximum.
struct FullContainer {
  size_t size() const { return 3; }
  size_t max_size() const { return 3; }
};

TEST(ResourceStringManagerTest, FullMapRaisesTheLengthError) {
  try {
    internal::EnsureRoomForOne(FullContainer{});
    FAIL() << "no exception";
  } catch (const std::length_error& error) {
    EXPECT_STREQ(error.what(), "map/set too long");
  }
  std::map<int, int> map;
  EXPECT_NO_THROW(internal::EnsureRoomForOne(map));
}

}  // namespace
