// GetExecutablePath: the path of this test program, as the build wrote it.
#include <filesystem>

#include <gtest/gtest.h>

#include <ic/platform/executable_path.h>

namespace {

TEST(ExecutablePathTest, NamesThisTestProgram) {
  const std::filesystem::path path = ic::platform::GetExecutablePath();
  ASSERT_FALSE(path.empty());
  EXPECT_TRUE(path.is_absolute()) << path;
  EXPECT_TRUE(std::filesystem::is_regular_file(path)) << path;
  EXPECT_TRUE(std::filesystem::equivalent(path, IC_TEST_PROGRAM_PATH)) << path;
}

TEST(ExecutablePathTest, IsTheSameOnEveryCall) {
  EXPECT_EQ(ic::platform::GetExecutablePath(), ic::platform::GetExecutablePath());
}

}  // namespace
