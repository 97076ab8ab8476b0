// Eight threads use the manager at once: language, overrides and key index builds. Every
// answer must be one that some sequence of the calls could give.
#include <atomic>
#include <latch>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <ic/resources/lookup.h>
#include <ic/resources/manager.h>

namespace {

using namespace ic::resources;

constexpr int kThreads = 8;
constexpr int kRounds = 2000;
constexpr int32_t kRows = 300;
constexpr int kLibraries = 3;

// Keys "k0" to "k299" for every library; the accessor counts its calls per library.
struct KeyTable {
  KeyTable() {
    for (int32_t row = 0; row < kRows; ++row)
      keys.push_back(std::u16string(u"k").append(Number(row)));
  }
  static std::u16string Number(int value) {
    std::u16string digits;
    do {
      digits.insert(digits.begin(), static_cast<char16_t>(u'0' + value % 10));
      value /= 10;
    } while (value);
    return digits;
  }
  std::vector<std::u16string> keys;
};
const KeyTable kKeys;
std::atomic<int> g_keyCalls[kLibraries];

template <int Library>
const char16_t* CountingKey(const ResourceStringLibrary*, int32_t row) {
  g_keyCalls[Library].fetch_add(1);
  return kKeys.keys[static_cast<size_t>(row)].c_str();
}

const char16_t* NoText(const ResourceStringLibrary*, int32_t) {
  return u"";
}

std::u16string Lower(std::u16string text) {
  for (char16_t& unit : text) {
    if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit + 32);
  }
  return text;
}

// What thread t writes to the shared override.
std::u16string SharedText(int t) {
  return std::u16string(u"Shared by ").append(KeyTable::Number(t));
}

const std::vector<std::u16string> kCodes = {u"EN", u"de", u"Ja", u"zh",
                                            u"ES", u"fr", u"ko", u"pt-BR"};

TEST(ResourceThreadsTest, ManagerStaysConsistentUnderEightThreads) {
  ResourceStringLibrary libraries[kLibraries] = {
      {u"t0", &NoText, &CountingKey<0>, kRows, nullptr, nullptr, 0},
      {u"t1", &NoText, &CountingKey<1>, kRows, nullptr, nullptr, 0},
      {u"t2", &NoText, &CountingKey<2>, kRows, nullptr, nullptr, 0}};
  const std::set<std::u16string> codes(kCodes.begin(), kCodes.end());
  std::set<std::u16string> lowerCodes;
  for (const auto& code : kCodes)
    lowerCodes.insert(Lower(code));
  lowerCodes.insert(u"en");  // before the first SetLanguage

  const uint32_t sharedId = 7;
  std::set<std::u16string> sharedTexts = {u""};
  for (int t = 0; t < kThreads; ++t)
    sharedTexts.insert(SharedText(t));

  std::latch start(kThreads);
  std::atomic<int> faults{0};
  auto fault = [&faults] { faults.fetch_add(1); };

  auto worker = [&](int t) {
    const uint32_t ownId = 1000 + static_cast<uint32_t>(t);
    start.arrive_and_wait();
    ResourceStringManager& manager = GetResourceStringManager();
    for (int round = 0; round < kRounds; ++round) {
      // Key indices: every thread asks for them; each is built once and then complete.
      ResourceStringLibrary& library = libraries[(t + round) % kLibraries];
      BuildKeyIndex(&library);
      const int32_t row = (t * 37 + round) % kRows;
      if (FindRowInKeyIndex(&library, kKeys.keys[static_cast<size_t>(row)].c_str()) != row) {
        fault();
      }

      // Language: a code that some thread set, spelt as it set it, with its own index.
      SetLanguage(kCodes[static_cast<size_t>((t + round) % kCodes.size())].c_str());
      const std::u16string language = GetLanguage(false).GetText();
      if (!codes.count(language)) fault();
      if (!lowerCodes.count(GetLanguage(true).GetText())) fault();
      {
        std::lock_guard<std::recursive_mutex> lock(manager.Mutex);
        if (GetLanguageIndex(manager.LanguageName.GetText()) != manager.CurrentLanguage.load()) {
          fault();
        }
      }

      // Overrides: a thread's own id reads back what it wrote; the shared one reads a value
      // that some thread wrote, or nothing.
      const std::u16string own = std::u16string(u"Thread ")
                                     .append(KeyTable::Number(t))
                                     .append(u" Round ")
                                     .append(KeyTable::Number(round));
      SetStringOverride(own.c_str(), ownId);
      if (GetStringOverride(false, ownId).GetText() != own) fault();
      if (GetStringOverride(true, ownId).GetText() != Lower(own)) fault();
      if (round % 3 == 2) {
        SetStringOverride(nullptr, sharedId);
      } else {
        SetStringOverride(SharedText(t).c_str(), sharedId);
      }
      if (!sharedTexts.count(GetStringOverride(false, sharedId).GetText())) fault();
    }
    SetStringOverride(nullptr, ownId);
  };

  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back(worker, t);
  for (std::thread& thread : threads)
    thread.join();

  EXPECT_EQ(faults.load(), 0);
  for (int i = 0; i < kLibraries; ++i) {
    EXPECT_EQ(g_keyCalls[i].load(), kRows) << "library " << i;  // each index walked once
    EXPECT_EQ(libraries[i].KeyIndexBuilt.load(), 1);
    EXPECT_EQ(libraries[i].KeyIndex.size(), static_cast<size_t>(kRows));
  }
  EXPECT_TRUE(codes.count(GetLanguage(false).GetText()));
  for (int t = 0; t < kThreads; ++t) {
    EXPECT_EQ(GetResourceStringManager().Overrides.count(1000 + static_cast<uint32_t>(t)), 0u);
  }
  SetStringOverride(nullptr, sharedId);
}

}  // namespace
