// Random patterns, valid and not, on random ASCII subjects: narrow and wide strings agree, and
// the per-thread cache of compiled patterns never changes a result, compared with compiling
// every time and with the standard engine used directly.
#include <gtest/gtest.h>

#include <random>
#include <regex>
#include <string>
#include <vector>

#include <ic/regex/internal/pattern_cache.h>
#include <ic/string/ic_string.h>

namespace ic {
namespace {

std::string RandomText(std::mt19937& rng, const std::string& alphabet, int maxLength) {
  const int length = std::uniform_int_distribution<int>(0, maxLength)(rng);
  std::string s;
  for (int i = 0; i < length; ++i)
    s += alphabet[std::uniform_int_distribution<size_t>(0, alphabet.size() - 1)(rng)];
  return s;
}

// Patterns from the grammar's own characters, so that many fail to compile.
std::string RandomPattern(std::mt19937& rng) {
  std::string p = RandomText(rng, "abc.*+?()[]|^$\\{}1-,dws", 7);
  return p.empty() ? "a" : p;
}

// The reference: the engine compiled on every call, bad patterns as no match.
int ReferenceFind(const std::string& subject, const std::string& pattern) {
  try {
    const std::regex re(pattern, std::regex_constants::ECMAScript);
    std::smatch m;
    return std::regex_search(subject, m, re) ? static_cast<int>(m.position(0)) : -1;
  } catch (const std::regex_error&) {
    return -1;
  }
}

bool ReferenceMatches(const std::string& subject, const std::string& pattern) {
  try {
    return std::regex_match(subject, std::regex(pattern, std::regex_constants::ECMAScript));
  } catch (const std::regex_error&) {
    return false;
  }
}

std::u16string Wide(const std::string& ascii) {
  return std::u16string(ascii.begin(), ascii.end());
}

class RegexModel : public ::testing::Test {
 protected:
  void TearDown() override { internal::SetRegexCacheCapacity(16); }
};

TEST_F(RegexModel, NarrowAndWideAgreeOnAscii) {
  std::mt19937 rng(1123);
  int valid = 0;
  for (int i = 0; i < 3000; ++i) {
    const std::string subject = RandomText(rng, "abcd 1-,", 12);
    const std::string pattern = RandomPattern(rng);
    const ICStringUnique narrow(subject.c_str());
    const ICStringUniqueW wide(Wide(subject).c_str());
    const int found = narrow.RegexFind(pattern.c_str(), 0, true);
    ASSERT_EQ(found, wide.RegexFind(Wide(pattern).c_str())) << subject << " / " << pattern;
    ASSERT_EQ(found, narrow.RegexFind(pattern.c_str(), 0, false));
    ASSERT_EQ(narrow.RegexMatches(pattern.c_str()), wide.RegexMatches(Wide(pattern).c_str()))
        << subject << " / " << pattern;
    valid += found >= 0;
  }
  EXPECT_GT(valid, 300);  // the random patterns do find things
}

TEST_F(RegexModel, CacheNeverChangesAResult) {
  std::mt19937 rng(99);
  std::vector<std::string> patterns;
  for (int i = 0; i < 60; ++i)
    patterns.push_back(RandomPattern(rng));
  int failing = 0;
  for (const size_t capacity : {size_t{0}, size_t{2}, size_t{16}}) {
    internal::SetRegexCacheCapacity(capacity);
    ASSERT_EQ(internal::RegexCacheCapacity(), capacity);
    std::mt19937 subjects(5);
    for (int round = 0; round < 600; ++round) {
      const std::string& pattern = patterns[round % patterns.size()];
      const std::string subject = RandomText(subjects, "abcd 1-,", 10);
      const ICStringUnique narrow(subject.c_str());
      const ICStringSharedW wide(Wide(subject).c_str());
      const int expected = ReferenceFind(subject, pattern);
      for (int twice = 0; twice < 2; ++twice) {
        ASSERT_EQ(narrow.RegexFind(pattern.c_str(), 0, true), expected)
            << "capacity " << capacity << ": " << subject << " / " << pattern;
        ASSERT_EQ(wide.RegexFind(Wide(pattern).c_str()), expected);
        ASSERT_EQ(narrow.RegexMatches(pattern.c_str()), ReferenceMatches(subject, pattern));
      }
      if (capacity == 0) {
        try {
          std::regex check(pattern);
        } catch (const std::regex_error&) {
          ++failing;
        }
      }
    }
  }
  EXPECT_GT(failing, 50);  // invalid patterns were among them
}

TEST_F(RegexModel, CapacityZeroKeepsNothingAndLoweringDropsPatterns) {
  internal::SetRegexCacheCapacity(16);
  const ICStringUnique s("abc");
  EXPECT_EQ(s.RegexFind("b"), 1);
  internal::SetRegexCacheCapacity(0);
  EXPECT_EQ(s.RegexFind("b"), 1);
  EXPECT_EQ(s.RegexFind("["), -1);
  internal::SetRegexCacheCapacity(1);
  EXPECT_EQ(s.RegexFind("c"), 2);
  EXPECT_EQ(s.RegexFind("["), -1);
  EXPECT_EQ(s.RegexFind("c"), 2);
}

}  // namespace
}  // namespace ic
