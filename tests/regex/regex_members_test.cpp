// RegexSearch, RegexFind and RegexMatches on all six strings: the gate, the index rules, the
// subject up to the first zero unit, failed patterns, the mask, and wide text seen unit by unit.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <ic/string/ic_string.h>

namespace ic {
namespace {

// Text of a string's width from a narrow ASCII literal.
template <class Unit>
std::basic_string<Unit> T(const char* ascii) {
  return std::basic_string<Unit>(ascii, ascii + std::char_traits<char>::length(ascii));
}

template <class Str>
class RegexOnEveryString : public ::testing::Test {};

using Strings = ::testing::Types<ICStringUnique, ICStringShared, ICStringView, ICStringUniqueW,
                                 ICStringSharedW, ICStringViewW>;
TYPED_TEST_SUITE(RegexOnEveryString, Strings);

TYPED_TEST(RegexOnEveryString, FindsTheFirstMatch) {
  using Unit = typename TypeParam::UnitType;
  const auto text = T<Unit>("say hello, hello");
  const TypeParam s(text.c_str());
  EXPECT_EQ(s.RegexFind(T<Unit>("h[a-z]+o").c_str()), 4);
  EXPECT_EQ(s.RegexSearch(T<Unit>("h[a-z]+o").c_str()), s.GetText() + 4);
  EXPECT_EQ(s.RegexFind(T<Unit>("x+").c_str()), -1);
  EXPECT_EQ(s.RegexSearch(T<Unit>("x+").c_str()), nullptr);
  EXPECT_TRUE(s.RegexMatches(T<Unit>("say (hello(, )?)+").c_str()));
  EXPECT_FALSE(s.RegexMatches(T<Unit>("hello").c_str()));
  // Case matters: no flag but the grammar.
  EXPECT_EQ(s.RegexFind(T<Unit>("HELLO").c_str()), -1);
}

TYPED_TEST(RegexOnEveryString, EmptyOrNullPatternIsNeverAMatch) {
  using Unit = typename TypeParam::UnitType;
  const auto source = T<Unit>("abc");
  const TypeParam s(source.c_str());
  const Unit empty[] = {0};
  EXPECT_EQ(s.RegexSearch(empty), nullptr);
  EXPECT_EQ(s.RegexFind(empty), -1);
  EXPECT_EQ(s.RegexFind(nullptr), -1);
  EXPECT_FALSE(s.RegexMatches(empty));
  EXPECT_FALSE(s.RegexMatches(nullptr));
  const TypeParam none;
  EXPECT_EQ(none.RegexFind(empty), -1);
  EXPECT_FALSE(none.RegexMatches(empty));
}

TYPED_TEST(RegexOnEveryString, EmptyTextMatchesAPatternThatAllowsIt) {
  using Unit = typename TypeParam::UnitType;
  const TypeParam none;
  EXPECT_EQ(none.RegexFind(T<Unit>("a*").c_str()), 0);
  EXPECT_EQ(none.RegexSearch(T<Unit>("a*").c_str()), none.GetText());
  EXPECT_TRUE(none.RegexMatches(T<Unit>("a*").c_str()));
  EXPECT_FALSE(none.RegexMatches(T<Unit>("a+").c_str()));
}

TYPED_TEST(RegexOnEveryString, StartIsAGateOnly) {
  using Unit = typename TypeParam::UnitType;
  const auto source = T<Unit>("xxabxx");
  const TypeParam s(source.c_str());
  const auto pattern = T<Unit>("ab");
  EXPECT_EQ(s.RegexFind(pattern.c_str(), 5), 2);  // the search still runs from the start
  EXPECT_EQ(s.RegexFind(pattern.c_str(), 6, true), 2);
  EXPECT_EQ(s.RegexFind(pattern.c_str(), 7, true), -1);
  EXPECT_EQ(s.RegexFind(pattern.c_str(), -3), 2);
  EXPECT_EQ(s.RegexFind(pattern.c_str(), 0x7fffffff), -1);
  EXPECT_EQ(s.RegexFind(pattern.c_str(), 0x7fffffff, true), -1);
}

TYPED_TEST(RegexOnEveryString, BadPatternIsNoMatchWithoutAnException) {
  using Unit = typename TypeParam::UnitType;
  const auto source = T<Unit>("a[b");
  const TypeParam s(source.c_str());
  for (const char* bad : {"[", "(", "a{2,1}", "*", "\\", "(?<x)"}) {
    EXPECT_NO_THROW({
      EXPECT_EQ(s.RegexFind(T<Unit>(bad).c_str()), -1) << bad;
      EXPECT_FALSE(s.RegexMatches(T<Unit>(bad).c_str())) << bad;
    });
  }
  EXPECT_EQ(s.RegexFind(T<Unit>("\\[").c_str()), 1);
}

TYPED_TEST(RegexOnEveryString, HugeNumbersInAPatternAreNoMatchWithoutAnException) {
  // Back-references and counts of more than nine digits name no group and exceed every count
  // the engine can build; a long literal run of digits is still an ordinary pattern.
  using Unit = typename TypeParam::UnitType;
  const auto source = T<Unit>("aa1234567890");
  const TypeParam s(source.c_str());
  for (const char* huge : {"(a)\\4444444444444444444", "a{4444444444444444444}",
                           "a{1,99999999999999999999}", "(a)\\1234567890"}) {
    EXPECT_NO_THROW({
      EXPECT_EQ(s.RegexFind(T<Unit>(huge).c_str()), -1) << huge;
      EXPECT_FALSE(s.RegexMatches(T<Unit>(huge).c_str())) << huge;
    });
  }
  EXPECT_EQ(s.RegexFind(T<Unit>("1234567890").c_str()), 2);
  EXPECT_EQ(s.RegexFind(T<Unit>("[0-9]{10}").c_str()), 2);
  EXPECT_EQ(s.RegexFind(T<Unit>("(a)\\1").c_str()), 0);
}

TYPED_TEST(RegexOnEveryString, SubjectEndsAtTheFirstZeroUnit) {
  using Unit = typename TypeParam::UnitType;
  const Unit units[] = {'a', 'b', 'c', 0, 'x', 'y', 'z', 0};
  const TypeParam s(units, 7);
  ASSERT_EQ(s.GetLength(), 7);
  EXPECT_EQ(s.RegexFind(T<Unit>("xyz").c_str()), -1);
  EXPECT_EQ(s.RegexFind(T<Unit>("c$").c_str()), 2);
  EXPECT_TRUE(s.RegexMatches(T<Unit>("abc").c_str()));
  EXPECT_EQ(s.RegexFind(T<Unit>("c").c_str(), 7, true), 2);  // the gate uses the stored length
}

TYPED_TEST(RegexOnEveryString, MaskSearchesAnAlteredCopyAtTheSameOffsets) {
  using Unit = typename TypeParam::UnitType;
  const auto source = T<Unit>("a\\.b\\.c");
  const TypeParam s(source.c_str());
  const auto pair = T<Unit>("##");
  RegexSubjectMaskT<Unit> mask{static_cast<Unit>('\\'), pair.c_str(), nullptr};
  EXPECT_EQ(s.RegexFind(T<Unit>("##").c_str(), 0, true, mask), 1);
  ASSERT_NE(mask.MaskedCopy, nullptr);
  std::free(mask.MaskedCopy);
  EXPECT_EQ(s.RegexSearch(T<Unit>("b").c_str(), 0, true, mask), s.GetText() + 3);
  ASSERT_NE(mask.MaskedCopy, nullptr);
  EXPECT_EQ(std::basic_string<Unit>(mask.MaskedCopy), T<Unit>("a##b##c"));
  EXPECT_EQ(T<Unit>("a\\.b\\.c"), s.GetText());  // the string itself is untouched
  // Without the mask the escaped dots are there and no "##".
  EXPECT_EQ(s.RegexFind(T<Unit>("##").c_str()), -1);
  // A second call overwrites the pointer; the owner frees every copy.
  Unit* const first = mask.MaskedCopy;
  EXPECT_TRUE(s.RegexMatches(T<Unit>("a##b##c").c_str(), mask));
  EXPECT_NE(mask.MaskedCopy, nullptr);
  EXPECT_NE(mask.MaskedCopy, first);
  std::free(first);
  std::free(mask.MaskedCopy);
  // With Pair null the mask is off and leaves MaskedCopy alone.
  RegexSubjectMaskT<Unit> off{static_cast<Unit>('\\'), nullptr, nullptr};
  EXPECT_EQ(s.RegexFind(T<Unit>("\\\\").c_str(), 0, true, off), 1);
  EXPECT_EQ(off.MaskedCopy, nullptr);
}

TYPED_TEST(RegexOnEveryString, MaskStepsOverTheUnitAfterTheLead) {
  using Unit = typename TypeParam::UnitType;
  // "\\\\x": the first backslash and the second become "##", and the walk goes on at 'x'.
  const auto source = T<Unit>("\\\\x\\y");
  const TypeParam s(source.c_str());
  const auto pair = T<Unit>("##");
  RegexSubjectMaskT<Unit> mask{static_cast<Unit>('\\'), pair.c_str(), nullptr};
  EXPECT_TRUE(s.RegexMatches(T<Unit>("##x##").c_str(), mask));
  std::free(mask.MaskedCopy);
}

TEST(RegexNarrow, CodePointIndexCountsCharactersBeforeTheMatch) {
  const ICStringUnique s("d\xC3\xA9j\xC3\xA0 vu");  // "déjà vu"
  EXPECT_EQ(s.RegexFind("vu", 0, true), 7);
  EXPECT_EQ(s.RegexFind("vu", 0, false), 5);
  EXPECT_EQ(s.RegexFind("j", 0, true) - 1, s.RegexFind("j", 0, false));
  // The engine sees bytes: '.' takes one byte of a two-byte character.
  EXPECT_TRUE(s.RegexMatches("d..j.. vu"));
  EXPECT_FALSE(s.RegexMatches("d.j. vu"));
}

TEST(RegexNarrow, CodePointStartIsWalkedBeforeTheGate) {
  const ICStringUnique s("\xC3\xA9\xC3\xA9\xC3\xA9x");  // three two-byte characters and "x"
  ASSERT_EQ(s.GetLength(), 7);
  EXPECT_EQ(s.RegexFind("x", 4, false), 3);  // four code points: 7 bytes, at the gate
  EXPECT_EQ(s.RegexFind("x", 7, true), 6);
  EXPECT_EQ(s.RegexFind("x", 8, true), -1);
  // The walk stops at the end of the text, so a count beyond it lands on the length.
  EXPECT_EQ(s.RegexFind("x", 9, false), 3);
}

TEST(RegexWide, SurrogatePairIsTwoUnits) {
  const ICStringUniqueW s(u"a\U0001F600b");
  ASSERT_EQ(s.GetLength(), 4);
  EXPECT_EQ(s.RegexFind(u"b"), 3);
  EXPECT_EQ(s.RegexFind(u"b", 0, false), 3);  // the flag is ignored
  EXPECT_TRUE(s.RegexMatches(u"a..b"));
  EXPECT_FALSE(s.RegexMatches(u"a.b"));
  EXPECT_EQ(s.RegexFind(u"[\xD800-\xDBFF]"), 1);
  EXPECT_EQ(s.RegexFind(u"\\uDE00"), 2);
  // Units at and above 0x8000 reach the engine as they are.
  const ICStringUniqueW cjk(u"\u4E2D\u6587\uFF01");
  EXPECT_EQ(cjk.RegexFind(u"\u6587"), 1);
  EXPECT_TRUE(cjk.RegexMatches(u"\u4E2D.\uFF01"));
}

TEST(RegexWide, GateCountsUnits) {
  const ICStringUniqueW s(u"\U0001F600ab");
  EXPECT_EQ(s.RegexFind(u"b", 4, false), 3);
  EXPECT_EQ(s.RegexFind(u"b", 5, false), -1);
}

}  // namespace
}  // namespace ic
