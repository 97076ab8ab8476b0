// SetAlphabeticNumber and SetRomanNumber on every shape and width.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include <ic/string/ic_string.h>

#include "../string/block_probe.h"
#include "../string/counting_allocator.h"
#include "../string/owned_text.h"

namespace ic {
namespace {

using test::Owned;

// The text of the string, whose terminator is checked on the way.
template <class S>
std::string Text(const S& s) {
  EXPECT_EQ(s.GetText()[s.GetLength()], 0);
  return test::TextOf(s);
}

template <class S>
class Numbering : public ::testing::Test {};
TYPED_TEST_SUITE(Numbering, test::AllStringShapes);

template <class S>
std::string Alpha(int32_t value, bool upper = true) {
  S s = Owned<S>("old");
  return Text(s.SetAlphabeticNumber(value, upper));
}
template <class S>
std::string Roman(int32_t value, bool upper = true) {
  S s = Owned<S>("old");
  return Text(s.SetRomanNumber(value, upper));
}

TYPED_TEST(Numbering, LettersInBijectiveBase26) {
  EXPECT_EQ(Alpha<TypeParam>(1), "A");
  EXPECT_EQ(Alpha<TypeParam>(26), "Z");
  EXPECT_EQ(Alpha<TypeParam>(27), "AA");
  EXPECT_EQ(Alpha<TypeParam>(52), "AZ");
  EXPECT_EQ(Alpha<TypeParam>(53), "BA");
  EXPECT_EQ(Alpha<TypeParam>(702), "ZZ");
  EXPECT_EQ(Alpha<TypeParam>(703), "AAA");
  EXPECT_EQ(Alpha<TypeParam>(1, false), "a");
  EXPECT_EQ(Alpha<TypeParam>(INT32_MAX), "FXSHRXW");
  EXPECT_EQ(Alpha<TypeParam>(0), "");
  EXPECT_EQ(Alpha<TypeParam>(-5), "");
}

// Reads a letter label back, as the reference of the round trip.
int64_t LettersValue(const std::string& text) {
  int64_t value = 0;
  for (char c : text)
    value = value * 26 + (c - 'A' + 1);
  return value;
}

TYPED_TEST(Numbering, LettersRoundTrip) {
  for (int32_t v = 1; v < 20000; v += 7)
    ASSERT_EQ(LettersValue(Alpha<TypeParam>(v)), v);
}

TYPED_TEST(Numbering, RomanExamples) {
  EXPECT_EQ(Roman<TypeParam>(4), "IV");
  EXPECT_EQ(Roman<TypeParam>(9), "IX");
  EXPECT_EQ(Roman<TypeParam>(40), "XL");
  EXPECT_EQ(Roman<TypeParam>(90), "XC");
  EXPECT_EQ(Roman<TypeParam>(400), "CD");
  EXPECT_EQ(Roman<TypeParam>(900), "CM");
  EXPECT_EQ(Roman<TypeParam>(1999), "MCMXCIX");
  EXPECT_EQ(Roman<TypeParam>(1999, false), "mcmxcix");
  EXPECT_EQ(Roman<TypeParam>(4000), "MMMM");
  EXPECT_EQ(Roman<TypeParam>(9999), "MMMMMMMMMCMXCIX");
  EXPECT_EQ(Roman<TypeParam>(9888), "MMMMMMMMMDCCCLXXXVIII");
  EXPECT_EQ(Roman<TypeParam>(0), "");
  EXPECT_EQ(Roman<TypeParam>(-1), "");
  EXPECT_EQ(Roman<TypeParam>(10000), "");
}

// Reads a numeral back: each letter adds its value, or subtracts it when a larger one follows.
int RomanValue(const std::string& text) {
  auto letter = [](char c) {
    switch (c | 0x20) {
      case 'i':
        return 1;
      case 'v':
        return 5;
      case 'x':
        return 10;
      case 'l':
        return 50;
      case 'c':
        return 100;
      case 'd':
        return 500;
      case 'm':
        return 1000;
    }
    return -100000;
  };
  int value = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const int v = letter(text[i]);
    if (i + 1 < text.size() && letter(text[i + 1]) > v)
      value -= v;
    else
      value += v;
  }
  return value;
}

TYPED_TEST(Numbering, EveryRomanValueReadsBack) {
  TypeParam s;
  size_t longest = 0;
  for (int32_t v = 1; v <= 9999; ++v) {
    const bool upper = v % 2;
    const std::string text = Text(s.SetRomanNumber(v, upper));
    ASSERT_EQ(RomanValue(text), v) << text;
    for (char c : text)
      ASSERT_EQ(upper, c >= 'A' && c <= 'Z') << text;
    // No letter repeats more than three times, except the thousands.
    const size_t hundreds = text.find_first_not_of(upper ? "M" : "m");
    const std::string tail = hundreds == std::string::npos ? "" : text.substr(hundreds);
    for (size_t i = 0; i + 3 < tail.size(); ++i)
      ASSERT_FALSE(tail[i] == tail[i + 1] && tail[i] == tail[i + 2] && tail[i] == tail[i + 3]);
    longest = std::max(longest, text.size());
  }
  EXPECT_EQ(longest, 21u);
}

TYPED_TEST(Numbering, RomanReservesRoomForTheLongestNumeral) {
  TypeParam s;
  s.SetRomanNumber(1);
  EXPECT_GE(s.GetCapacity(), 22);
  test::AllocationScope scope;
  s.SetRomanNumber(9888);
  EXPECT_EQ(scope.Allocations(), 0);
}

TYPED_TEST(Numbering, SharedBlocksAndForeignViewsAreNotWritten) {
  using Unit = typename TypeParam::UnitType;
  const std::basic_string<Unit> foreign(3, Unit('q'));
  TypeParam owner = Owned<TypeParam>("keep");
  TypeParam other = owner;
  other.SetRomanNumber(12);
  EXPECT_EQ(Text(owner), "keep");
  EXPECT_EQ(Text(other), "XII");
  other = owner;
  other.SetAlphabeticNumber(28);
  EXPECT_EQ(Text(owner), "keep");
  EXPECT_EQ(Text(other), "AB");
  TypeParam view(foreign.c_str());
  view.SetRomanNumber(3, false);
  EXPECT_EQ(Text(view), "iii");
  EXPECT_EQ(foreign, std::basic_string<Unit>(3, Unit('q')));
  view.SetAlphabeticNumber(0);
  EXPECT_EQ(view.GetLength(), 0);
}

}  // namespace
}  // namespace ic
