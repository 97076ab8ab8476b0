// The platform's loader as the hosts use it: the built module loads, its exports are found by
// name, it unloads; failures come back as an empty object with the loader's reason.
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <ic/platform/dynamic_library.h>
#include <ic/resources/host_api.h>

#include "module_paths.h"

namespace {

using ic::platform::DynamicLibrary;

TEST(DynamicLibraryTest, LoadsFindsAndUnloadsTheModule) {
  std::string error;
  DynamicLibrary library = DynamicLibrary::Load(ic::test::ModulePath, error);
  ASSERT_TRUE(library.IsLoaded()) << error;
  EXPECT_TRUE(ic::platform::IsLibraryMapped(ic::test::ModulePath));
  auto getFirst =
      library.Find<ic::resources::GetFirstResourceStringLibraryFn>("GetFirstResourceStringLibrary");
  ASSERT_NE(getFirst, nullptr);
  EXPECT_NE(getFirst(), nullptr);
  EXPECT_EQ(library.FindSymbol("NoSuchExport"), nullptr);
  EXPECT_EQ(library.FindSymbol(nullptr), nullptr);

  DynamicLibrary moved = std::move(library);
  EXPECT_FALSE(library.IsLoaded());
  EXPECT_TRUE(moved.IsLoaded());
  EXPECT_TRUE(moved.Unload());
  EXPECT_FALSE(moved.IsLoaded());
  EXPECT_FALSE(ic::platform::IsLibraryMapped(ic::test::ModulePath));
  EXPECT_TRUE(moved.Unload());  // nothing loaded: nothing to fault
}

TEST(DynamicLibraryTest, FailuresGiveAnEmptyObjectAndAReason) {
  std::string error;
  DynamicLibrary missing = DynamicLibrary::Load("no-such-folder/no-such-module.bin", error);
  EXPECT_FALSE(missing.IsLoaded());
  EXPECT_FALSE(error.empty());
  EXPECT_EQ(missing.FindSymbol("GetFirstResourceStringLibrary"), nullptr);

  error.clear();
  DynamicLibrary unnamed = DynamicLibrary::Load("", error);
  EXPECT_FALSE(unnamed.IsLoaded());
  EXPECT_EQ(error, "no library named");

  // A bare name is taken in the working directory, not searched for on the system's path: a
  // library that the system's search finds (the build names one) does not load that way.
  error.clear();
  DynamicLibrary bare = DynamicLibrary::Load(IC_TEST_SYSTEM_LIBRARY_NAME, error);
  EXPECT_FALSE(bare.IsLoaded());
  EXPECT_FALSE(error.empty());
}

}  // namespace
