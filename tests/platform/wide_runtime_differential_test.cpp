// Windows only: the run-time's _wcslwr_s, _wcsupr_s and _wcsicmp (the public members there)
// against the library's own forms of them (what those members are on every other platform), run
// over the run-time's own one-unit mapping, on the same 100,000 random inputs each: the bounded
// in-place forms with every kind of size (ample, exact, no terminator within it, 0), compared on
// the result and the whole buffer, and the comparison on its result.
//
// The unit mapping itself is where the platforms differ by contract: the run-time maps by its
// locale, the library by Unicode (platform/README.md); the last test states what the run-time's
// default locale does.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <ic/platform/internal/wide_case_rules.h>
#include <ic/platform/wide_runtime.h>

#include "wine_differences.h"

namespace ic::platform {
namespace {

constexpr int kInputs = 100000;

// Units biased towards letters of several scripts, surrogates, units near the ASCII letters'
// edges and the terminator.
char16_t RandomUnit(std::mt19937& random) {
  switch (random() % 8) {
    case 0:
      return static_cast<char16_t>(u'A' + random() % 26);
    case 1:
      return static_cast<char16_t>(u'a' + random() % 26);
    case 2:
      return static_cast<char16_t>(0x3F + random() % 0x42);  // '?'..0x80, the letters' edges
    case 3:
      return static_cast<char16_t>(0xC0 + random() % 0x1C0);  // Latin-1 and Latin Extended-A
    case 4:
      return static_cast<char16_t>(0x391 + random() % 0xCF);  // Greek and Cyrillic
    case 5:
      return static_cast<char16_t>(0xD800 + random() % 0x800);
    case 6:
      return random() % 4 == 0 ? 0 : static_cast<char16_t>(random() % 0x10000);
    default:
      return static_cast<char16_t>(random() % 0x10000);
  }
}

std::u16string RandomUnits(std::mt19937& random) {
  std::u16string text(random() % 24, u'\0');
  for (char16_t& unit : text)
    unit = RandomUnit(random);
  return text;
}

char16_t RunTimeLower(char16_t unit) noexcept {
  return towlower(unit);
}

char16_t RunTimeUpper(char16_t unit) noexcept {
  return towupper(unit);
}

using InPlace = errno_t (*)(char16_t*, size_t) noexcept;
using UnitMap = char16_t (*)(char16_t) noexcept;

// Wine maps the units as it looks for the terminator, so when there is none within the size the
// units behind the first are left mapped when the first becomes 0; Windows looks for the
// terminator first and maps nothing then.
bool WineMapsBeforeFindingNoTerminator(const std::vector<char16_t>& before,
                                       const std::vector<char16_t>& theirs,
                                       const std::vector<char16_t>& ours, size_t size,
                                       UnitMap map) {
  if (size == 0 || ours[0] != 0 || theirs[0] != 0) return false;
  for (size_t i = 0; i < size; ++i)
    if (before[i] == 0) return false;
  for (size_t i = 1; i < theirs.size(); ++i)
    if (theirs[i] != (i < size ? map(before[i]) : before[i])) return false;
  return true;
}

void CompareInPlace(InPlace runTime, UnitMap map, uint32_t seed, const char* compared) {
  const bool wine = RunsUnderWine();
  WineDifferences wineDifferences;
  std::mt19937 random(seed);
  for (int input = 0; input < kInputs; ++input) {
    const std::u16string text = RandomUnits(random);
    // The buffer: the text, then a terminator or not, then canaries.
    std::vector<char16_t> before(text.begin(), text.end());
    if (random() % 4 != 0) before.push_back(0);
    const size_t used = before.size();
    before.resize(used + 4, 0xCAFE);
    size_t size;
    switch (random() % 4) {
      case 0:
        size = used;
        break;
      case 1:
        size = used + random() % 4;
        break;
      case 2:
        size = random() % (used + 1);
        break;
      default:
        size = random() % 3;
    }
    std::vector<char16_t> theirs = before;
    std::vector<char16_t> ours = before;
    const errno_t theirResult = runTime(theirs.data(), size);
    const int ourResult = internal::MapUnitsInPlace(ours.data(), size, map);
    const std::string shown = "input " + std::to_string(input) + ", size " + std::to_string(size);
    ASSERT_EQ(theirResult, ourResult) << shown;
    if (theirs != ours) {
      ASSERT_TRUE(wine && WineMapsBeforeFindingNoTerminator(before, theirs, ours, size, map))
          << shown << "\n run-time: " << ::testing::PrintToString(theirs)
          << "\n own:      " << ::testing::PrintToString(ours);
      wineDifferences.Add("no terminator within the size: units mapped before the text is emptied",
                          shown + ": " + ::testing::PrintToString(before));
    }
  }
  wineDifferences.Print(compared);
}

TEST(WideRuntimeDifferential, LowerCaseInPlaceKeepsTheRunTimesContract) {
  CompareInPlace(_wcslwr_s, RunTimeLower, 11, "_wcslwr_s");
}

TEST(WideRuntimeDifferential, UpperCaseInPlaceKeepsTheRunTimesContract) {
  CompareInPlace(_wcsupr_s, RunTimeUpper, 12, "_wcsupr_s");
}

TEST(WideRuntimeDifferential, CaseBlindComparisonKeepsTheRunTimesContract) {
  std::mt19937 random(13);
  for (int input = 0; input < kInputs; ++input) {
    const std::u16string left = RandomUnits(random);
    std::u16string right = left;
    // Mostly the same text in other cases, with now and then one unit changed or cut.
    for (char16_t& unit : right)
      if (random() % 2) unit = random() % 2 ? RunTimeUpper(unit) : RunTimeLower(unit);
    if (!right.empty() && random() % 3 == 0) right[random() % right.size()] = RandomUnit(random);
    if (!right.empty() && random() % 5 == 0) right.resize(random() % right.size());
    const int theirs = _wcsicmp(left.c_str(), right.c_str());
    const int ours =
        internal::CompareMappedUnits(left.c_str(), right.c_str(), RunTimeLower, NlsCompareError);
    ASSERT_EQ(theirs, ours) << "input " << input;
  }
}

// The platform difference itself, as the run-time's default "C" locale has it: ASCII letters
// map, every other unit stays as it is (the library's own mapping maps É, Σ, Ж elsewhere).
TEST(WideRuntimeDifferential, TheDefaultLocaleMapsAsciiLettersOnly) {
  int mapped = 0;
  for (uint32_t unit = 0; unit < 0x10000; ++unit) {
    const auto u = static_cast<char16_t>(unit);
    const bool upper = unit >= u'A' && unit <= u'Z';
    const bool lower = unit >= u'a' && unit <= u'z';
    ASSERT_EQ(towlower(u), upper ? u + 0x20 : u) << unit;
    ASSERT_EQ(towupper(u), lower ? u - 0x20 : u) << unit;
    mapped += upper || lower;
  }
  EXPECT_EQ(mapped, 52);
}

}  // namespace
}  // namespace ic::platform
