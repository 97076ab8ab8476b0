// The wide substring search (FindUnits) against a straightforward search written here, on the
// AVX2 candidate scan (where the processor has it) and on the portable path: every text length 0
// to 130 with the needle at every offset, with a needle that differs from the text in one unit
// at every offset, and random texts over two letters, where candidates are many and the search
// turns to its linear fallback. Each text lies in a heap block of exactly its length, so that a
// read past it shows under AddressSanitizer.
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <random>
#include <string>

#include <ic/platform/internal/vector_kernels.h>
#include <ic/platform/wide_search.h>

namespace ic::platform {
namespace {

constexpr size_t NotFound = static_cast<size_t>(-1);

size_t Reference(const std::u16string& text, const std::u16string& needle) {
  for (size_t i = 0; i + needle.size() <= text.size(); ++i)
    if (text.compare(i, needle.size(), needle) == 0) return i;
  return NotFound;
}

// FindUnits over a copy of `text` in a block of exactly its length.
size_t Find(const std::u16string& text, const std::u16string& needle) {
  std::unique_ptr<char16_t[]> block(new char16_t[text.empty() ? 1 : text.size()]);
  text.copy(block.get(), text.size());
  return FindUnits(block.get(), text.size(), needle.data(), needle.size());
}

// Runs `body` on the vector kernels (where there are any) and on the portable path.
template <class Body>
void OnBothPaths(Body body) {
  for (const bool vector : {true, false}) {
    internal::EnableVectorKernels(vector);
    body();
  }
  internal::EnableVectorKernels(true);
}

// Needles of the lengths that matter for the windows: 1, 2, shorter than, equal to and longer
// than a window of 8 and of 16 units. Their units are above 0x7FFF as well, where a signed compare
// would go wrong.
std::u16string Needle(size_t length) {
  std::u16string needle;
  for (size_t k = 0; k < length; ++k)
    needle += static_cast<char16_t>(k % 3 == 1 ? 0xD800 + k : u'n' + k % 7);
  return needle;
}

TEST(WideSearchScan, EveryLengthAndOffset) {
  OnBothPaths([] {
    for (const size_t needleLength : {1u, 2u, 3u, 7u, 8u, 9u, 16u, 17u, 40u}) {
      const std::u16string needle = Needle(needleLength);
      for (size_t length = 0; length <= 130; ++length) {
        const std::u16string filler(length, u'x');
        ASSERT_EQ(Find(filler, needle), Reference(filler, needle)) << length;
        for (size_t at = 0; at + needleLength <= length; ++at) {
          std::u16string text = filler;
          text.replace(at, needleLength, needle);
          ASSERT_EQ(Find(text, needle), at) << "length " << length << " at " << at;
          // One unit of the occurrence differs: the first, the last or one between.
          for (size_t wrong = 0; wrong < needleLength; ++wrong) {
            std::u16string near = text;
            near[at + wrong] = u'y';
            ASSERT_EQ(Find(near, needle), Reference(near, needle))
                << "length " << length << " at " << at << " differing at " << wrong;
          }
        }
      }
    }
  });
}

// The needle's first and last units everywhere, without the needle: every start is half a
// candidate.
TEST(WideSearchScan, FirstAndLastUnitsEverywhere) {
  OnBothPaths([] {
    const std::u16string needle =
        u"ab\xFFFF"
        u"cb";
    for (size_t length = 0; length <= 130; ++length) {
      std::u16string text;
      for (size_t i = 0; i < length; ++i)
        text += i % 2 == 0 ? u'a' : u'b';
      ASSERT_EQ(Find(text, needle), NotFound) << length;
      for (size_t at = 0; at + needle.size() <= length; ++at) {
        std::u16string placed = text;
        placed.replace(at, needle.size(), needle);
        ASSERT_EQ(Find(placed, needle), Reference(placed, needle)) << length << " at " << at;
      }
    }
  });
}

TEST(WideSearchScan, RandomTextsOverTwoLetters) {
  OnBothPaths([] {
    std::mt19937 rng(18);
    for (int round = 0; round < 3000; ++round) {
      std::u16string text(rng() % 600, u'a'), needle(1 + rng() % 12, u'a');
      for (char16_t& c : text)
        c = rng() % 4 == 0 ? u'b' : u'a';
      for (char16_t& c : needle)
        c = rng() % 4 == 0 ? u'b' : u'a';
      ASSERT_EQ(Find(text, needle), Reference(text, needle)) << round;
    }
  });
}

TEST(WideSearchScan, EmptyAndLongerNeedles) {
  OnBothPaths([] {
    EXPECT_EQ(Find(u"abc", u""), 0u);
    EXPECT_EQ(Find(u"", u""), 0u);
    EXPECT_EQ(Find(u"abc", u"abcd"), NotFound);
    EXPECT_EQ(Find(u"", u"a"), NotFound);
    const char16_t* text = u"xxabcabd";
    EXPECT_EQ(wcsstr(text, u"abd"), text + 5);
  });
}

}  // namespace
}  // namespace ic::platform
