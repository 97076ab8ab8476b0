// Eight threads on the loaded module for a bounded time: language set and read back, key
// indices built and rows found through the module's exports, and overrides set and read
// (lower-cased too, for ids that have none) through the manager of this process. Run under
// ThreadSanitizer by the reliability checks (preset tsan), with tests/resources/tsan.supp.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <latch>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <ic/resources/manager.h>

#include "loaded_module.h"
#include "module_paths.h"

namespace {

using ic::resources::ResourceStringLibrary;
using ic::test::LoadedModule;
using ic::test::ModulePath;

constexpr int kThreads = 8;

const std::vector<std::u16string> kCodes = {u"EN", u"de", u"Ja", u"zh",
                                            u"ES", u"fr", u"ko", u"pt-BR"};

// IC_STRESS_SECONDS in the environment, 2 if unset.
std::chrono::milliseconds StressTime() {
  const char* setting = std::getenv("IC_STRESS_SECONDS");
  return std::chrono::milliseconds(setting != nullptr ? std::atoi(setting) * 1000 : 2000);
}

std::u16string Number(int value) {
  std::u16string digits;
  do {
    digits.insert(digits.begin(), static_cast<char16_t>(u'0' + value % 10));
    value /= 10;
  } while (value != 0);
  return digits;
}

TEST(LanguageModuleThreadsTest, EightThreadsForABoundedTime) {
  LoadedModule module(ModulePath);
  ASSERT_TRUE(module.IsLoaded()) << module.Error();
  const std::vector<ResourceStringLibrary*> chain = module.Chain();
  ASSERT_EQ(chain.size(), 13u);
  const std::set<std::u16string> codes(kCodes.begin(), kCodes.end());
  std::set<std::u16string> lowerCodes;
  for (std::u16string code : kCodes) {
    for (char16_t& unit : code)
      if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit + 32);
    lowerCodes.insert(code);
  }

  const auto deadline = std::chrono::steady_clock::now() + StressTime();
  std::latch start(kThreads);
  std::atomic<int> faults{0};
  std::atomic<long> rounds{0};
  auto worker = [&](int t) {
    const uint32_t ownId = 5000 + static_cast<uint32_t>(t);
    const uint32_t absentId = 9000 + static_cast<uint32_t>(t);
    start.arrive_and_wait();
    for (int round = 0; std::chrono::steady_clock::now() < deadline; ++round) {
      module.setLanguage(kCodes[static_cast<size_t>((t + round) % kCodes.size())].c_str());
      char16_t buffer[16] = {};
      if (module.getLanguage(false, buffer, 16) != 0 || !codes.count(buffer)) faults++;
      if (module.getLanguage(true, buffer, 16) != 0 || !lowerCodes.count(buffer)) faults++;

      ResourceStringLibrary* record = chain[static_cast<size_t>(t + round) % chain.size()];
      module.buildKeyIndex(record);
      const int32_t row = (t * 31 + round) % record->Count;
      if (module.findRow(record, record->GetKey(record, row)) != row) faults++;

      const std::u16string own = u"Thread " + Number(t) + u" round " + Number(round);
      ic::resources::SetStringOverride(own.c_str(), ownId);
      if (ic::resources::GetStringOverride(false, ownId).GetText() != own) faults++;
      // No override for this id: the empty string, lower-cased. Its text is read, not its
      // length: the lower-casing leaves the shared empty block's length unknown, and a reader
      // that measures it writes the length back into that block.
      if (ic::resources::GetStringOverride(true, absentId).GetText()[0] != 0) faults++;
      rounds++;
    }
    ic::resources::SetStringOverride(nullptr, ownId);
  };
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back(worker, t);
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(faults.load(), 0);
  EXPECT_GT(rounds.load(), kThreads);
  std::printf("%ld rounds in all\n", rounds.load());
}

}  // namespace
