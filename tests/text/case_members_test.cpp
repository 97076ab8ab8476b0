// MakeLower, MakeUpper and Capitalize on every shape, narrow and wide.
#include <gtest/gtest.h>

#include <string>

#include <ic/platform/wide_runtime.h>
#include <ic/string/ic_string.h>

#include "../string/block_probe.h"
#include "../string/layer_access.h"

namespace ic {
namespace {

template <class S>
class NarrowCase : public ::testing::Test {};
template <class S>
class WideCase : public ::testing::Test {};
using NarrowShapes = ::testing::Types<ICStringUnique, ICStringShared, ICStringView>;
using WideShapes = ::testing::Types<ICStringUniqueW, ICStringSharedW, ICStringViewW>;
TYPED_TEST_SUITE(NarrowCase, NarrowShapes);
TYPED_TEST_SUITE(WideCase, WideShapes);

// An owning string of the shape with the text in a block of its own (a view gets one through
// the pointer-and-length constructor).
template <class S>
S Owned(const typename S::UnitType* text) {
  return S(text, static_cast<int32_t>(std::char_traits<typename S::UnitType>::length(text)));
}

TYPED_TEST(NarrowCase, DottedCapitalILowersToOneByteAndTheLengthFollows) {
  TypeParam s = Owned<TypeParam>("X\u0130Y");
  ASSERT_EQ(s.GetLength(), 4);
  s.MakeLower();
  EXPECT_STREQ(s.GetText(), "xiy");
  EXPECT_EQ(s.GetLength(), 3);
}

TYPED_TEST(NarrowCase, DotlessIUppersToIOnlyInFullMode) {
  TypeParam s = Owned<TypeParam>("\u0131x");
  s.MakeUpper(true);
  EXPECT_STREQ(s.GetText(), "\u0131X");  // the size would differ: it stays
  EXPECT_EQ(s.GetLength(), 3);
  s.MakeUpper(false);
  EXPECT_STREQ(s.GetText(), "IX");
  EXPECT_EQ(s.GetLength(), 2);
}

TYPED_TEST(NarrowCase, SharpSStaysInUpperCase) {
  TypeParam s = Owned<TypeParam>("stra\u00DFe");
  s.MakeUpper();
  EXPECT_STREQ(s.GetText(), "STRA\u00DFE");
}

TYPED_TEST(NarrowCase, ThreeByteLetterShrinksInFullModeAndStaysInFastMode) {
  TypeParam s = Owned<TypeParam>("a\u2C65b");
  s.MakeUpper(true);
  EXPECT_STREQ(s.GetText(), "A\u2C65B");
  EXPECT_EQ(s.GetLength(), 5);
  s.MakeUpper(false);
  EXPECT_STREQ(s.GetText(), "A\u023AB");
  EXPECT_EQ(s.GetLength(), 4);
}

TYPED_TEST(NarrowCase, GrowingAtFullCapacityReservesMore) {
  TypeParam s = Owned<TypeParam>("A\u023A");
  ASSERT_EQ(s.GetCapacity(), 3);  // the text fills its block
  s.MakeLower();
  EXPECT_STREQ(s.GetText(), "a\u2C65");
  EXPECT_EQ(s.GetLength(), 4);
  EXPECT_GE(s.GetCapacity(), 4);
}

TYPED_TEST(NarrowCase, FastModeMapsNonAsciiOfTheSameSize) {
  TypeParam s = Owned<TypeParam>("\u00C9COLE \u0394\u0416");
  s.MakeLower(true);
  EXPECT_STREQ(s.GetText(), "\u00E9cole \u03B4\u0436");
}

TYPED_TEST(NarrowCase, TextThatNeedsNoChangeKeepsItsBlock) {
  TypeParam s = Owned<TypeParam>("ABC \u0394");
  const char* before = s.GetText();
  s.MakeUpper();
  s.MakeUpper(true);
  EXPECT_EQ(s.GetText(), before);
  EXPECT_STREQ(s.GetText(), "ABC \u0394");
}

TYPED_TEST(NarrowCase, EmptyStringStaysTheEmptyData) {
  TypeParam s;
  s.MakeLower();
  s.MakeUpper(true);
  s.Capitalize();
  EXPECT_TRUE(ic::test::HoldsEmptyData(s));
  EXPECT_EQ(s.GetLength(), 0);
}

TYPED_TEST(NarrowCase, CapitalizeWords) {
  TypeParam s = Owned<TypeParam>("hello  wORLD\tx");
  s.Capitalize();
  EXPECT_STREQ(s.GetText(), "Hello  World\tX");
  EXPECT_EQ(s.GetLength(), 14);
}

TYPED_TEST(NarrowCase, CapitalizeDoesNotBreakAtANoBreakSpace) {
  TypeParam s = Owned<TypeParam>("ab\u00A0cd\r\nef");
  s.Capitalize();
  EXPECT_STREQ(s.GetText(), "Ab\u00A0cd\r\nEf");
}

TYPED_TEST(NarrowCase, CapitalizeOfBlanksAloneLeavesThem) {
  TypeParam s = Owned<TypeParam>(" \t\r\n ");
  const char* before = s.GetText();
  s.Capitalize();
  EXPECT_STREQ(s.GetText(), " \t\r\n ");
  EXPECT_EQ(s.GetText(), before);
}

TYPED_TEST(NarrowCase, CapitalizeStepsOverABlankInsideACutSequenceOnBothPaths) {
  // The lead byte C9 announces two bytes and takes the tab behind it, so "a\xC9\t\u0250" is one
  // word and its \u0250 stays small, whether the text keeps its size (written in place) or a
  // capital that grows comes first (written into a new buffer measured beforehand, which a
  // grown capital the measuring did not count would overrun).
  TypeParam same = Owned<TypeParam>("x a\xC9\t\u0250");
  same.Capitalize();
  EXPECT_STREQ(same.GetText(), "X A\xC9\t\u0250");
  TypeParam grown = Owned<TypeParam>("\u0250 a\xC9\t\u0250");
  grown.Capitalize();
  EXPECT_STREQ(grown.GetText(), "\u2C6F A\xC9\t\u0250");
  EXPECT_EQ(grown.GetLength(), 9);
}

TYPED_TEST(NarrowCase, CapitalizeWhenAWordStartChangesItsSize) {
  // ı uppers to I (one byte less), ⱥ to Ⱥ (one byte less), ɐ to Ɐ (one byte more).
  TypeParam s = Owned<TypeParam>("\u0131stanbul \u2C65b \u0250c D\u00C9J\u00C0");
  s.Capitalize();
  EXPECT_STREQ(s.GetText(), "Istanbul \u023Ab \u2C6Fc D\u00E9j\u00E0");
  EXPECT_EQ(s.GetLength(), static_cast<int32_t>(std::strlen(s.GetText())));
}

TEST(NarrowCaseShapes, SharedDetachesOnlyWhenSomethingChanges) {
  ICStringShared a("abc");
  ICStringShared b(a);
  ASSERT_EQ(a.GetText(), b.GetText());
  b.MakeLower();  // nothing to do: still shared
  EXPECT_EQ(a.GetText(), b.GetText());
  EXPECT_EQ(test::ShareWord(a.GetText()), 1);
  b.MakeUpper();
  EXPECT_NE(a.GetText(), b.GetText());
  EXPECT_STREQ(a.GetText(), "abc");
  EXPECT_STREQ(b.GetText(), "ABC");
  EXPECT_EQ(test::ShareWord(a.GetText()), 0);
}

TEST(NarrowCaseShapes, SharedGrowingLeavesTheOtherOwnerAlone) {
  ICStringShared a("\u023A\u023A");
  ICStringShared b(a);
  b.MakeLower();
  EXPECT_STREQ(a.GetText(), "\u023A\u023A");
  EXPECT_STREQ(b.GetText(), "\u2C65\u2C65");
  EXPECT_EQ(b.GetLength(), 6);
}

TEST(NarrowCaseShapes, ViewOfForeignTextCopiesOnlyWhenSomethingChanges) {
  const char foreign[] = "abc \u0430";
  ICStringView v(foreign);
  v.MakeLower();
  EXPECT_FALSE(v.OwnsBlock());
  EXPECT_EQ(v.GetText(), foreign);
  v.MakeUpper();
  EXPECT_TRUE(v.OwnsBlock());
  EXPECT_STREQ(v.GetText(), "ABC \u0410");
  EXPECT_STREQ(foreign, "abc \u0430");
  v.Capitalize();
  EXPECT_STREQ(v.GetText(), "Abc \u0410");  // lower-cased, then each word start raised
}

TYPED_TEST(WideCase, FastModeChangesOnlyAscii) {
  TypeParam s = Owned<TypeParam>(u"\u00C9COLE \u0394");
  s.MakeLower(true);
  EXPECT_EQ(std::u16string(s.GetText()), u"\u00C9cole \u0394");
  s.MakeUpper(true);
  EXPECT_EQ(std::u16string(s.GetText()), u"\u00C9COLE \u0394");
}

// Full mode maps with the wide run-time: the Unicode mapping off Windows, the C run-time's
// default locale (ASCII letters only) on Windows.
TYPED_TEST(WideCase, FullModeUsesTheRunTime) {
  TypeParam s = Owned<TypeParam>(u"\u00C9cole \u0394\u0416z");
  s.MakeLower();
  EXPECT_EQ(std::u16string(s.GetText()), ic::platform::WideCaseFollowsUnicode
                                             ? u"\u00E9cole \u03B4\u0436z"
                                             : u"\u00C9cole \u0394\u0416z");
  EXPECT_EQ(s.GetLength(), 9);
  s.MakeUpper();
  EXPECT_EQ(std::u16string(s.GetText()), u"\u00C9COLE \u0394\u0416Z");
}

TYPED_TEST(WideCase, SurrogatePairsPassThrough) {
  TypeParam s = Owned<TypeParam>(u"a\U0001E922b");  // an Adlam small letter: outside one unit
  s.MakeUpper();
  EXPECT_EQ(std::u16string(s.GetText()), u"A\U0001E922B");
}

TYPED_TEST(WideCase, TextThatNeedsNoChangeKeepsItsBlock) {
  TypeParam s = Owned<TypeParam>(u"abc 123");
  const char16_t* before = s.GetText();
  s.MakeLower();
  s.MakeLower(true);
  EXPECT_EQ(s.GetText(), before);
}

TYPED_TEST(WideCase, CapitalizeWords) {
  TypeParam s = Owned<TypeParam>(u"hello  wORLD\tx \u00E9t\u00C9");
  s.Capitalize();
  // "é" and "É" change by the Unicode mapping, not in the C run-time's default locale.
  EXPECT_EQ(std::u16string(s.GetText()), ic::platform::WideCaseFollowsUnicode
                                             ? u"Hello  World\tX \u00C9t\u00E9"
                                             : u"Hello  World\tX \u00E9t\u00C9");
  EXPECT_EQ(s.GetLength(), 18);
}

TYPED_TEST(WideCase, CapitalizeOfBlanksAloneLeavesThem) {
  TypeParam s = Owned<TypeParam>(u"  \n");
  s.Capitalize();
  EXPECT_EQ(std::u16string(s.GetText()), u"  \n");
}

TEST(WideCaseShapes, SharedAndViewKeepTheOtherText) {
  ICStringSharedW a(u"abc");
  ICStringSharedW b(a);
  b.MakeUpper();
  EXPECT_EQ(std::u16string(a.GetText()), u"abc");
  EXPECT_EQ(std::u16string(b.GetText()), u"ABC");

  const char16_t foreign[] = u"xyz";
  ICStringViewW v(foreign);
  v.MakeUpper(true);
  EXPECT_EQ(std::u16string(v.GetText()), u"XYZ");
  EXPECT_EQ(std::u16string(foreign), u"xyz");
}

}  // namespace
}  // namespace ic
