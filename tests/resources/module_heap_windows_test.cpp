// Windows only: loading, using and unloading the language module leaves no more on the C
// run-time's heap than a bare DLL built the same way (support/bare_module.cpp) leaves.
//
// Each DLL carries its own copy of the thread run-time, which keeps a record for every thread
// that first enters it (the thread-safe initialisation of a function-local static does), and
// does not free it when the DLL is unloaded: under wine 784 bytes per load, with or without the
// module. The module's own allocations (thirteen key indices, the language, the shared blocks)
// are tens of kilobytes a load, so a leak of any of them shows far above that baseline.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include <ic/platform/dynamic_library.h>

#include "heap_usage.h"
#include "module_cycle.h"

namespace ic::test {
namespace {

constexpr int kCycles = 300;

void UseBareModuleOnce() {
  std::string error;
  platform::DynamicLibrary bare = platform::DynamicLibrary::Load(IC_TEST_BARE_MODULE_PATH, error);
  ASSERT_TRUE(bare.IsLoaded()) << error;
  const auto use = bare.Find<int (*)()>("UseBareModule");
  ASSERT_NE(use, nullptr);
  EXPECT_EQ(use(), 64);
  ASSERT_TRUE(bare.Unload());
}

// The bytes that `cycles` cycles of `cycle` add to the heap, after one cycle to warm up.
template <class Cycle>
long long GrowthOver(int cycles, Cycle cycle) {
  cycle();
  const size_t before = BytesInUse();
  for (int i = 0; i < cycles; ++i) {
    cycle();
    if (::testing::Test::HasFatalFailure()) return 0;
  }
  return static_cast<long long>(BytesInUse()) - static_cast<long long>(before);
}

TEST(LanguageModuleLifetimeTest, LeavesNoMoreOnTheHeapThanABareModule) {
  const long long bare = GrowthOver(kCycles, UseBareModuleOnce);
  ASSERT_FALSE(HasFatalFailure());
  const long long module = GrowthOver(kCycles, UseModuleOnce);
  ASSERT_FALSE(HasFatalFailure());
  std::printf("%d cycles: the module leaves %.1f bytes a load on the heap, a bare DLL %.1f\n",
              kCycles, static_cast<double>(module) / kCycles, static_cast<double>(bare) / kCycles);
  // As on Linux: not 16 bytes a load more than the baseline.
  EXPECT_LE(module, bare + 16LL * kCycles);
}

}  // namespace
}  // namespace ic::test
