// Append, PutAtCursor, the builder and Join, for all six strings.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <ic/string/builder.h>
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
class AppendAnyShape : public ::testing::Test {};
using AllShapes = test::AllStringShapes;
TYPED_TEST_SUITE(AppendAnyShape, AllShapes);

TYPED_TEST(AppendAnyShape, TextAndLengthGrowsExactly) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("abc");
  const auto tail = Units<Unit>("defgh");
  s.Append(tail.c_str(), 2);
  EXPECT_EQ(TextOf(s), Units<Unit>("abcde"));
  EXPECT_EQ(s.GetCapacity(), 5);
  s.Append(tail.c_str());
  EXPECT_EQ(TextOf(s), Units<Unit>("abcdedefgh"));
  EXPECT_EQ(s.GetCapacity(), 10);
}

TYPED_TEST(AppendAnyShape, NothingForEmptyNullOrZero) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("abc");
  const Unit* before = s.GetText();
  s.Append(static_cast<const Unit*>(nullptr));
  s.Append(before, 0);
  s.Append(ICStringRangeT<Unit>{before, -1});  // negative: not measured, nothing
  s.Append('\0');
  EXPECT_EQ(s.GetText(), before);
  EXPECT_EQ(TextOf(s), Units<Unit>("abc"));
}

TYPED_TEST(AppendAnyShape, StringOfAnyShapeAndItself) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("ab");
  s.Append(Own<ICStringSharedT<Unit>>("cd"));
  s.Append(Own<ICStringUniqueT<Unit>>("ef"));
  s.Append(s);
  EXPECT_EQ(TextOf(s), Units<Unit>("abcdefabcdef"));
  s += Own<ICStringViewT<Unit>>("!");
  EXPECT_EQ(TextOf(s), Units<Unit>("abcdefabcdef!"));
}

TYPED_TEST(AppendAnyShape, Character) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s;
  s.Append('x');
  s.Append('\xe9');
  if constexpr (sizeof(Unit) == 1)
    EXPECT_EQ(TextOf(s), std::string("x\xc3\xa9"));
  else
    EXPECT_EQ(TextOf(s), std::u16string(u"x\u00e9"));
}

TEST(AppendNarrow, CodePoint) {
  ICStringUnique s("a");
  s.Append(U'\U0001F600');
  EXPECT_EQ(TextOf(s), "a\xf0\x9f\x98\x80");
  s.Append(char32_t{0});
  EXPECT_EQ(s.GetLength(), 5);
  // A refused code point still raises the length by the size reserved.
  s.Append(char32_t{0xd800});
  EXPECT_EQ(s.GetLength(), 8);
}

TEST(AppendShared, OtherOwnersNeverSeeTheWrite) {
  ICStringShared a("abc");
  ICStringShared b(a);
  b.Append("def");
  EXPECT_EQ(TextOf(a), "abc");
  EXPECT_EQ(TextOf(b), "abcdef");
  // Nothing appended: the shared block is not detached.
  ICStringShared c(a);
  c.Append(static_cast<const char*>(nullptr));
  c.Append('\0');
  EXPECT_EQ(c.GetText(), a.GetText());
}

TEST(AppendView, ForeignTextIsCopiedFirst) {
  char foreign[] = "abc";
  ICStringView v(foreign);
  v.Append("d");
  EXPECT_STREQ(foreign, "abc");
  EXPECT_EQ(TextOf(v), "abcd");
}

// --- PutAtCursor -----------------------------------------------------------------------------

TEST(PutAtCursor, MeasureThenWrite) {
  ICStringUnique s;
  const char* parts[] = {"alpha", ",", "beta"};
  uint32_t cursor = 0;
  for (const char* p : parts)
    s.PutAtCursor(false, p, -1, cursor, 0);
  EXPECT_EQ(cursor, 10u);
  EXPECT_TRUE(ic::test::HoldsEmptyData(s));
  ic::test::LayerAccess::_Reserve(s, static_cast<int32_t>(cursor), 0);
  cursor = 0;
  AllocationScope scope;
  for (const char* p : parts)
    s.PutAtCursor(true, p, -1, cursor, 0);
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_EQ(test::LengthWord(s.GetText()), 0x8000);  // left unknown
  EXPECT_EQ(TextOf(s), "alpha,beta");
}

TEST(PutAtCursor, GrowthRule) {
  ICStringUnique s;
  uint32_t cursor = 0;
  s.PutAtCursor('a', cursor, 0);
  EXPECT_EQ(s.GetCapacity(), 1024);
  ICStringUnique t;
  cursor = 0;
  t.PutAtCursor("abcdefghij", 10, cursor, 5);
  EXPECT_EQ(t.GetCapacity(), 15);
  ICStringSharedW w;
  cursor = 0;
  w.PutAtCursor(u"xy", -1, cursor, 0);
  w.PutAtCursor(Own<ICStringUniqueW>("z"), cursor, 0);
  EXPECT_EQ(TextOf(w), std::u16string(u"xyz"));
  EXPECT_EQ(cursor, 3u);
}

TEST(PutAtCursor, DetachesASharedBlock) {
  ICStringShared a("abcdef");
  ICStringShared b(a);
  uint32_t cursor = 3;
  b.PutAtCursor("X", 1, cursor, 0);
  EXPECT_EQ(TextOf(a), "abcdef");
  EXPECT_EQ(TextOf(b), "abcX");
}

// --- Builder ---------------------------------------------------------------------------------

TEST(Builder, GeometricGrowthFrom1024) {
  ICStringUnique s;
  ICStringBuilder<ICStringUnique> b{&s, 0, 0, true};
  b.Add("0123456789");
  EXPECT_EQ(s.GetCapacity(), 1024);
  const std::string filler(1014, 'f');
  b.Add(filler.c_str());
  EXPECT_EQ(b.Count, 1024);
  EXPECT_EQ(s.GetCapacity(), 1024);
  b.Add('!');
  EXPECT_EQ(s.GetCapacity(), 2050);
  EXPECT_EQ(s.GetLength(), 1025);
}

TEST(Builder, ReserveHint) {
  ICStringUnique s("0123456789");
  ASSERT_EQ(s.GetCapacity(), 10);
  ICStringBuilder<ICStringUnique> b{&s, s.GetLength(), 100, true};
  b.Add('x');
  EXPECT_EQ(s.GetCapacity(), 111);
  EXPECT_EQ(TextOf(s), "0123456789x");
}

TEST(Builder, MeasuringLeavesTheTargetAlone) {
  ICStringShared s("keep");
  ICStringBuilder<ICStringShared> b{&s, 0, 0, false};
  b.Add("abc").Add(U'\u20ac').Add('\xe9').Add(ICStringRange{"xyz", 2}).Add(s);
  EXPECT_EQ(b.Count, 3 + 3 + 2 + 2 + 4);
  EXPECT_EQ(TextOf(s), "keep");
}

TEST(Builder, TwoPassWritesWithOneAllocation) {
  ICStringUnique s;
  auto run = [&](ICStringBuilder<ICStringUnique>& b) {
    for (int i = 0; i < 50; ++i)
      b.Add("piece").Add(U'\u00e9');
  };
  ICStringBuilder<ICStringUnique> b{&s, 0, 0, false};
  run(b);
  AllocationScope scope;
  ic::test::LayerAccess::_Reserve(s, b.Count, 0);
  b.Count = 0;
  b.Writing = true;
  run(b);
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_EQ(s.GetLength(), 50 * 7);
}

TEST(Builder, EmptyAddOnTheEmptyDataWritesOnlyTheTerminator) {
  ICStringUnique s;
  ICStringBuilder<ICStringUnique> b{&s, 0, 0, true};
  AllocationScope scope;
  b.Add("");
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_TRUE(ic::test::HoldsEmptyData(s));
  EXPECT_EQ(s.GetLength(), 0);  // measures 0 and stores it again
  EXPECT_EQ(test::LengthWord(s.GetText()), 0);
}

TEST(Builder, WideAndViewTargets) {
  char16_t foreign[] = u"ab";
  ICStringViewW v(foreign);
  ICStringBuilder<ICStringViewW> b{&v, 2, 0, true};
  b.Add(u'c').Add('\xe9').Add(u"de", 1);
  EXPECT_EQ(TextOf(v), std::u16string(u"abc\u00e9d"));
  EXPECT_EQ(std::u16string(foreign), u"ab");
}

TEST(Builder, SharedTargetDetaches) {
  ICStringShared a("abc");
  ICStringShared b(a);
  a.GetLength();
  ICStringBuilder<ICStringShared> builder{&b, 1, 0, true};
  builder.Add("Z");
  EXPECT_EQ(TextOf(a), "abc");
  EXPECT_EQ(TextOf(b), "aZ");
}

// The target's own text added while there is room: the block stays, so the source is read in
// place, at each of the copy sizes.
TEST(Builder, AddsTheTargetsOwnTextWithoutGrowing) {
  ICStringUnique s;
  ic::test::LayerAccess::_Reserve(s, 100, 0);
  ICStringBuilder<ICStringUnique> b{&s, 0, 0, true};
  b.Add("abcdefghij");
  const char* block = s.GetText();
  b.Add(s.GetText(), 10);
  b.Add(s.GetText() + 15, 5);
  b.Add(s.GetText(), 25);
  b.Add(s.GetText(), 50);
  EXPECT_EQ(b.Count, 100);
  EXPECT_EQ(s.GetText(), block);
  const std::string a = "abcdefghijabcdefghijfghij";
  EXPECT_EQ(TextOf(s), a + a + a + a);
}

TEST(Builder, AddsTheTargetsOwnTextWhileGrowing) {
  ICStringUnique s("0123456789");
  ICStringBuilder<ICStringUnique> b{&s, s.GetLength(), 0, true};
  b.Add(s.GetText(), 10);  // capacity 10: grows while reading from the old block
  EXPECT_EQ(s.GetCapacity(), 1024);
  EXPECT_EQ(TextOf(s), "01234567890123456789");
}

// --- Join ------------------------------------------------------------------------------------

TYPED_TEST(AppendAnyShape, JoinAllocatesOnceAndExactly) {
  using Unit = typename TypeParam::UnitType;
  std::vector<ICStringUniqueT<Unit>> items;
  items.push_back(Own<ICStringUniqueT<Unit>>("one"));
  items.push_back(Own<ICStringUniqueT<Unit>>("two"));
  items.push_back(Own<ICStringUniqueT<Unit>>("three"));
  const auto sep = Units<Unit>(", ");
  TypeParam s;
  AllocationScope scope;
  s.Join(items, sep.c_str());
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_EQ(TextOf(s), Units<Unit>("one, two, three"));
  EXPECT_EQ(s.GetCapacity(), 15);
}

TYPED_TEST(AppendAnyShape, JoinWithCodePointAndEmpty) {
  using Unit = typename TypeParam::UnitType;
  std::vector<ICStringUniqueT<Unit>> items;
  items.push_back(Own<ICStringUniqueT<Unit>>("a"));
  items.push_back(Own<ICStringUniqueT<Unit>>("b"));
  TypeParam s = Own<TypeParam>("old text");
  s.Join(items, U';');
  EXPECT_EQ(TextOf(s), Units<Unit>("a;b"));
  s.Join(items.data(), 0, static_cast<const Unit*>(nullptr));
  EXPECT_EQ(s.GetLength(), 0);
  s.Join(items, static_cast<const Unit*>(nullptr));
  EXPECT_EQ(TextOf(s), Units<Unit>("ab"));
}

TEST(JoinShared, LeavesOtherOwnersAlone) {
  std::vector<ICStringUnique> items{ICStringUnique("x"), ICStringUnique("y")};
  ICStringShared a("keep me");
  ICStringShared b(a);
  b.Join(items, "+");
  EXPECT_EQ(TextOf(a), "keep me");
  EXPECT_EQ(TextOf(b), "x+y");
}

TEST(JoinNarrow, MultiByteSeparator) {
  std::vector<ICStringUnique> items{ICStringUnique("x"), ICStringUnique("y")};
  ICStringUnique s;
  s.Join(items, U'\u2022');
  EXPECT_EQ(TextOf(s), "x\xe2\x80\xa2y");
}

}  // namespace
}  // namespace ic
