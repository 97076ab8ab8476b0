// Construction and the Assign family, for all six strings.
#include <gtest/gtest.h>

#include <string>

#include <ic/string/ic_string.h>

#include "block_probe.h"
#include "counting_allocator.h"
#include "edit_test_util.h"
#include "layer_access.h"

namespace ic {
namespace {

using test::AllocationScope;
using test::Own;
using test::TextOf;
using test::Units;

template <class T>
class AssignAnyShape : public ::testing::Test {};
using AllShapes = test::AllStringShapes;
TYPED_TEST_SUITE(AssignAnyShape, AllShapes);

TYPED_TEST(AssignAnyShape, TextAndLengthCopiesExactly) {
  using Unit = typename TypeParam::UnitType;
  const auto src = Units<Unit>("hello world");
  TypeParam s;
  s.Assign(src.c_str(), 5, true);
  EXPECT_EQ(TextOf(s), Units<Unit>("hello"));
  EXPECT_EQ(s.GetCapacity(), 5);
  EXPECT_EQ(s.GetText()[5], Unit(0));
}

TYPED_TEST(AssignAnyShape, AssignKeepsALargeEnoughBlock) {
  using Unit = typename TypeParam::UnitType;
  const auto big = Units<Unit>(std::string(100, 'x').c_str());
  TypeParam s;
  s.Assign(big.c_str(), 100, true);
  const Unit* block = s.GetText();
  const auto a = Units<Unit>("a");
  AllocationScope scope;
  s.Assign(a.c_str(), 1, true);
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(s.GetCapacity(), 100);
  EXPECT_EQ(TextOf(s), a);
}

TYPED_TEST(AssignAnyShape, LengthZeroOrBelowClears) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("abc");
  s.Assign(s.GetText() + 1, 0, true);
  EXPECT_EQ(s.GetLength(), 0);
  s = Own<TypeParam>("abc");
  const auto x = Units<Unit>("x");
  s.Assign(x.c_str(), -4, true);
  EXPECT_EQ(s.GetLength(), 0);
}

TYPED_TEST(AssignAnyShape, NullTextWithALengthCopiesNothing) {
  TypeParam s = Own<TypeParam>("abc");
  s.Assign(static_cast<const typename TypeParam::UnitType*>(nullptr), 5, true);
  EXPECT_EQ(TextOf(s), TextOf(Own<TypeParam>("abc")));
}

TYPED_TEST(AssignAnyShape, BeginEndPointers) {
  using Unit = typename TypeParam::UnitType;
  const auto src = Units<Unit>("abcdef");
  TypeParam s;
  s.Assign(src.c_str() + 1, src.c_str() + 4);
  EXPECT_EQ(TextOf(s), Units<Unit>("bcd"));
  s.Assign(src.c_str() + 4, src.c_str() + 1);  // end before begin: cleared
  EXPECT_EQ(s.GetLength(), 0);
  s.Assign(src.c_str(), src.c_str() + 2);
  s.Assign(nullptr, src.c_str());
  EXPECT_EQ(s.GetLength(), 0);
}

TYPED_TEST(AssignAnyShape, AnotherShapeCopiesTheText) {
  using Unit = typename TypeParam::UnitType;
  ICStringSharedT<Unit> shared = Own<ICStringSharedT<Unit>>("shared text");
  ICStringUniqueT<Unit> unique = Own<ICStringUniqueT<Unit>>("unique");
  TypeParam s;
  s.Assign(shared);
  EXPECT_EQ(TextOf(s), Units<Unit>("shared text"));
  s.Assign(unique);
  EXPECT_EQ(TextOf(s), Units<Unit>("unique"));
  EXPECT_EQ(TextOf(shared), Units<Unit>("shared text"));
}

TYPED_TEST(AssignAnyShape, AssignToItselfChangesNothing) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("same");
  s.Assign(s);
  EXPECT_EQ(TextOf(s), Units<Unit>("same"));
}

TYPED_TEST(AssignAnyShape, OwnTextPointerWithShorterLengthDoesNothing) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("abcdef");
  ic::test::LayerAccess::_AssignText(s, s.GetText(), 2);
  EXPECT_EQ(TextOf(s), Units<Unit>("abcdef"));
}

TYPED_TEST(AssignAnyShape, PlainTextAndLength) {
  using Unit = typename TypeParam::UnitType;
  const auto src = Units<Unit>("plain text");
  TypeParam s = Own<TypeParam>("old");
  s.Assign(src.c_str(), -1);
  EXPECT_EQ(TextOf(s), src);
  s.Assign(src.c_str(), 5);
  EXPECT_EQ(TextOf(s), Units<Unit>("plain"));
  s.Assign(src.c_str(), 0);
  EXPECT_EQ(s.GetLength(), 0);
  s.Assign(ICStringRangeT<Unit>{src.c_str() + 6, 4});
  EXPECT_EQ(TextOf(s), Units<Unit>("text"));
  s.Assign(static_cast<const Unit*>(nullptr), 3);
  EXPECT_EQ(s.GetLength(), 0);
}

TYPED_TEST(AssignAnyShape, OneCharacter) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s;
  s.Assign('q');
  EXPECT_EQ(TextOf(s), Units<Unit>("q"));
  EXPECT_EQ(s.GetCapacity(), 1);
  s.Assign('\0');
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_FALSE(ic::test::HoldsEmptyData(s));
  s.Assign('\xe9');  // Latin-1 e acute
  if constexpr (sizeof(Unit) == 1) {
    EXPECT_EQ(TextOf(s), std::string("\xc3\xa9"));
  } else {
    EXPECT_EQ(TextOf(s), std::u16string(1, char16_t(0xe9)));
  }
}

TYPED_TEST(AssignAnyShape, ClearRuleOfEachShape) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("abc");
  const Unit* block = s.GetText();
  s.Assign(static_cast<const Unit*>(nullptr), 0, true);
  EXPECT_EQ(s.GetLength(), 0);
  if constexpr (!TypeParam::IsView) {
    EXPECT_EQ(s.GetText(), block);  // the block stays
  } else {
    EXPECT_TRUE(s.OwnsBlock());
  }
}

// --- Narrow only -----------------------------------------------------------------------------

template <class T>
class AssignNarrow : public ::testing::Test {};
using NarrowShapes = ::testing::Types<ICStringUnique, ICStringShared, ICStringView>;
TYPED_TEST_SUITE(AssignNarrow, NarrowShapes);

TYPED_TEST(AssignNarrow, LengthInCharactersConverts) {
  const char* text =
      "\xc3\xa9"
      "bcdef";  // first character takes two bytes
  TypeParam s;
  s.Assign(text, 3, false);
  EXPECT_EQ(TextOf(s), std::string("\xc3\xa9"
                                   "bc"));
  EXPECT_EQ(s.GetLength(), 4);
  TypeParam c(text, 3, false);
  EXPECT_EQ(c.GetLength(), 4);
}

TYPED_TEST(AssignNarrow, CodePoint) {
  TypeParam s;
  s.Assign(U'\u20ac');
  EXPECT_EQ(TextOf(s), std::string("\xe2\x82\xac"));
  EXPECT_EQ(s.GetCapacity(), 3);
  s.Assign(U'\U0001F600');
  EXPECT_EQ(TextOf(s), std::string("\xf0\x9f\x98\x80"));
  s.Assign(char32_t{0xd800});  // refused: length 0
  EXPECT_EQ(s.GetLength(), 0);
  s.Assign(char32_t{0});
  EXPECT_EQ(s.GetLength(), 0);
}

TEST(AssignSetCodePoint, RefusedValueWritesNoTerminator) {
  ICStringUnique s("wxyz");
  ic::test::LayerAccess::_SetCodePoint(s, 0x110000);
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_EQ(s.GetText()[0], 'w');  // nothing written
  ic::test::LayerAccess::_SetCodePoint(s, 0x41);
  EXPECT_EQ(TextOf(s), "A");
  ic::test::LayerAccess::_SetCodePoint(s, 0);
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_EQ(s.GetText()[0], 0);
}

TEST(AssignWide, Utf8TextConverts) {
  ICStringUniqueW w;
  w.Assign("\xc3\xa9t\xc3\xa9", -1);
  EXPECT_EQ(TextOf(w), std::u16string(u"\u00e9t\u00e9"));
  w.Assign(ICStringRange{"abc", 2});
  EXPECT_EQ(TextOf(w), std::u16string(u"ab"));
  w.Assign(u'\x263a');
  EXPECT_EQ(TextOf(w), std::u16string(u"\x263a"));
}

// --- Shapes ----------------------------------------------------------------------------------

TEST(AssignShared, ANewTextLeavesOtherOwnersAlone) {
  ICStringShared a("original text");
  ICStringShared b(a);
  ASSERT_EQ(a.GetText(), b.GetText());
  b.Assign("new", 3, true);  // fits the capacity, but the block is shared
  EXPECT_EQ(TextOf(a), "original text");
  EXPECT_EQ(TextOf(b), "new");
  EXPECT_NE(a.GetText(), b.GetText());
  EXPECT_EQ(test::ShareWord(a.GetText()), 0);
}

TEST(AssignShared, SameShapeSharesTheBlock) {
  ICStringShared a("abc");
  ICStringShared b;
  b.Assign(a);
  EXPECT_EQ(a.GetText(), b.GetText());
  EXPECT_EQ(test::ShareWord(a.GetText()), 1);
}

TEST(AssignShared, ClearingASharedBlockLetsGo) {
  ICStringShared a("abc");
  ICStringShared b(a);
  b.Assign(static_cast<const char*>(nullptr), 0, true);
  EXPECT_TRUE(ic::test::HoldsEmptyData(b));
  EXPECT_EQ(TextOf(a), "abc");
}

TEST(AssignView, WriteLeavesTheForeignTextAlone) {
  char foreign[] = "foreign";
  ICStringView v(foreign);
  ASSERT_FALSE(v.OwnsBlock());
  v.Assign("xy", 2, true);
  EXPECT_STREQ(foreign, "foreign");
  EXPECT_EQ(TextOf(v), "xy");
  EXPECT_TRUE(v.OwnsBlock());
  // Clearing a foreign view makes it owning first.
  ICStringView w(foreign);
  w.Assign(static_cast<const char*>(nullptr), foreign);
  EXPECT_STREQ(foreign, "foreign");
  EXPECT_EQ(w.GetLength(), 0);
  EXPECT_TRUE(w.OwnsBlock());
  // Its own text pointer as the source: nothing changes, whatever the length.
  ICStringView u(foreign);
  u.Assign(foreign, foreign + 2);
  EXPECT_EQ(u.GetLength(), 7);
}

TEST(AssignView, NegativeLengthViews) {
  const char* text = "viewed";
  ICStringView v;
  v.Assign(text, -1);
  EXPECT_EQ(v.GetText(), text);
  EXPECT_FALSE(v.OwnsBlock());
}

TEST(AssignUnique, EmptyStringKeepsTheBlock) {
  ICStringUnique s("abcdef");
  const char* block = s.GetText();
  s.Assign(ICStringUnique());
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_EQ(s.GetCapacity(), 6);
}

// --- Constructors in the table ---------------------------------------------------------------

TEST(ConstructNarrow, ZeroCharacterAllocatesEmptyTextDoesNot) {
  AllocationScope scope;
  {
    ICStringUnique zero('\0');
    EXPECT_FALSE(ic::test::HoldsEmptyData(zero));
    EXPECT_EQ(zero.GetCapacity(), 1);
    EXPECT_EQ(scope.Allocations(), 1);
    ICStringUnique empty("");
    EXPECT_TRUE(ic::test::HoldsEmptyData(empty));
    EXPECT_EQ(scope.Allocations(), 1);
  }
}

TEST(ConstructNarrow, LatinOneCharacterTakesTwoBytes) {
  ICStringShared s('\xfc');
  EXPECT_EQ(TextOf(s), "\xc3\xbc");
  EXPECT_EQ(s.GetCapacity(), 2);
}

TEST(ConstructNarrow, CodePoint) {
  ICStringUnique s(U'\u00e9');
  EXPECT_EQ(TextOf(s), "\xc3\xa9");
  EXPECT_EQ(s.GetCapacity(), 2);
}

}  // namespace
}  // namespace ic
