// Substrings, cutting, inserting, overwriting, replacing and line ends, for all six strings,
// with copy-on-write checks for every member that writes.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include <ic/string/chain.h>
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
class EditAnyShape : public ::testing::Test {};
using AllShapes = test::AllStringShapes;
TYPED_TEST_SUITE(EditAnyShape, AllShapes);

#define U(text) Units<typename TypeParam::UnitType>(text)

// --- Reading parts ---------------------------------------------------------------------------

TYPED_TEST(EditAnyShape, Left) {
  const TypeParam s = Own<TypeParam>("abcdef");
  EXPECT_TRUE(ic::test::HoldsEmptyData(s.Left(0)));
  EXPECT_TRUE(ic::test::HoldsEmptyData(s.Left(-1)));
  EXPECT_EQ(TextOf(s.Left(2)), U("ab"));
  EXPECT_EQ(s.Left(2).GetCapacity(), 2);
  EXPECT_EQ(TextOf(s.Left(6)), U("abcdef"));
  EXPECT_EQ(TextOf(s.Left(60)), U("abcdef"));
}

TEST(EditView, LeftOfTheWholeViewIsAView) {
  const char* foreign = "abc";
  const ICStringView v(foreign);
  const ICStringView whole = v.Left(3);
  EXPECT_FALSE(whole.OwnsBlock());
  EXPECT_EQ(whole.GetText(), foreign);
  const ICStringView part = v.Left(2);
  EXPECT_TRUE(part.OwnsBlock());
  EXPECT_EQ(TextOf(part), "ab");
}

TYPED_TEST(EditAnyShape, Mid) {
  const TypeParam s = Own<TypeParam>("abcdef");
  EXPECT_EQ(TextOf(s.Mid(0)), U("abcdef"));
  EXPECT_EQ(TextOf(s.Mid(-3)), U("abcdef"));
  EXPECT_EQ(TextOf(s.Mid(2)), U("cdef"));
  EXPECT_TRUE(ic::test::HoldsEmptyData(s.Mid(6)));
  EXPECT_TRUE(ic::test::HoldsEmptyData(s.Mid(7)));
  EXPECT_EQ(TextOf(s.Mid(1, true, 3)), U("bcd"));
  EXPECT_EQ(TextOf(s.Mid(-2, true, 5)), U("abc"));
  EXPECT_EQ(TextOf(s.Mid(4, true, 50)), U("ef"));
  EXPECT_TRUE(ic::test::HoldsEmptyData(s.Mid(6, true, 2)));
  EXPECT_TRUE(ic::test::HoldsEmptyData(s.Mid(-3, true, 3)));
  EXPECT_TRUE(ic::test::HoldsEmptyData(s.Mid(1, true, 0)));
}

TYPED_TEST(EditAnyShape, PointersWithoutCopies) {
  using Unit = typename TypeParam::UnitType;
  const TypeParam s = Own<TypeParam>("abcdef");
  const Unit* text = s.GetText();
  EXPECT_EQ(s.GetTailPointer(0), text);
  EXPECT_EQ(s.GetTailPointer(3), text + 3);
  EXPECT_EQ(s.GetTailPointer(6), text + 6);
  EXPECT_EQ(s.GetTailPointer(7), nullptr);

  int32_t length = -99;
  EXPECT_EQ(s.GetSpan(length, 2, true, 3), text + 2);
  EXPECT_EQ(length, 3);
  EXPECT_EQ(s.GetSpan(length, 4, true, 30), text + 4);
  EXPECT_EQ(length, 2);
  EXPECT_EQ(s.GetSpan(length, -2, true, 3), text);
  EXPECT_EQ(length, 1);
  length = -99;
  EXPECT_EQ(s.GetSpan(length, 6, true, 3), nullptr);
  EXPECT_EQ(length, -99);

  const Unit* slot = nullptr;
  EXPECT_TRUE(s.GetPositionAt(slot, -1));
  EXPECT_EQ(slot, text);
  EXPECT_TRUE(s.GetPositionAt(slot, 4));
  EXPECT_EQ(slot, text + 4);
  slot = nullptr;
  EXPECT_FALSE(s.GetPositionAt(slot, 7));
  EXPECT_EQ(slot, nullptr);

  EXPECT_FALSE(s.GetPositionFromEnd(slot, -1));
  EXPECT_EQ(slot, nullptr);
  EXPECT_TRUE(s.GetPositionFromEnd(slot, 2));
  EXPECT_EQ(slot, text + 4);
  EXPECT_TRUE(s.GetPositionFromEnd(slot, 6));
  EXPECT_EQ(slot, text);
  EXPECT_TRUE(s.GetPositionFromEnd(slot, 0));
  EXPECT_EQ(slot, text + 6);
}

TYPED_TEST(EditAnyShape, TextFromAndFromEnd) {
  const TypeParam s = Own<TypeParam>("abcdef");
  ICStringUniqueT<typename TypeParam::UnitType> r = Own<decltype(r)>("keep");
  s.GetTextFrom(r, 7);
  EXPECT_EQ(TextOf(r), U("keep"));
  s.GetTextFrom(r, 4);
  EXPECT_EQ(TextOf(r), U("ef"));
  s.GetTextFrom(r, 0);
  EXPECT_EQ(TextOf(r), U("abcdef"));
  s.GetTextFromEnd(r, 2);
  EXPECT_EQ(TextOf(r), U("ef"));
  r = Own<decltype(r)>("keep");
  s.GetTextFromEnd(r, -1);
  EXPECT_EQ(TextOf(r), U("keep"));
  s.GetTextFromEnd(r, 10);
  EXPECT_EQ(TextOf(r), U("abcdef"));
}

TEST(EditView, TextFromOfAViewIsAViewOfTheTail) {
  const char* foreign = "head:tail";
  const ICStringView v(foreign);
  ICStringView tail;
  AllocationScope scope;
  v.GetTextFrom(tail, 5);
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_EQ(tail.GetText(), foreign + 5);
  EXPECT_FALSE(tail.OwnsBlock());
}

TYPED_TEST(EditAnyShape, AssignMid) {
  TypeParam s;
  const ICStringSharedT<typename TypeParam::UnitType> other =
      Own<ICStringSharedT<typename TypeParam::UnitType>>("0123456");
  s.AssignMid(other, 3);
  EXPECT_EQ(TextOf(s), U("3456"));
  s.AssignMid(other, -1);
  EXPECT_EQ(TextOf(s), U("0123456"));
  s.AssignMid(other, 8);
  EXPECT_EQ(s.GetLength(), 0);
  s = Own<TypeParam>("abcdef");
  s.AssignMid(s, 2);  // the same object: KeepFrom
  EXPECT_EQ(TextOf(s), U("cdef"));
}

TEST(EditNarrow, CharacterPositions) {
  // "é" and "€" take 2 and 3 bytes, "😀" 4.
  const ICStringUnique s(
      "a\xc3\xa9\xe2\x82\xac"
      "b\xf0\x9f\x98\x80");
  EXPECT_EQ(s.GetCharCount(false), 5);
  EXPECT_EQ(s.GetCharCount(true), 11);
  EXPECT_EQ(TextOf(s.Left(3, false)), "a\xc3\xa9\xe2\x82\xac");
  EXPECT_EQ(TextOf(s.Mid(2, false)),
            "\xe2\x82\xac"
            "b\xf0\x9f\x98\x80");
  EXPECT_EQ(TextOf(s.Mid(1, false, 2)), "\xc3\xa9\xe2\x82\xac");
  EXPECT_EQ(s.GetTailPointer(4, false), s.GetText() + 7);
  EXPECT_EQ(s.GetTailPointer(6, false), nullptr);
  const char* slot = nullptr;
  EXPECT_TRUE(s.GetPositionFromEnd(slot, 2, false));
  EXPECT_EQ(slot, s.GetText() + 6);
  int32_t length = 0;
  EXPECT_EQ(s.GetSpan(length, 1, false, 3), s.GetText() + 1);
  EXPECT_EQ(length, 6);
  ICStringUnique t(s);
  t.Remove(1, false, 2);
  EXPECT_EQ(TextOf(t), "ab\xf0\x9f\x98\x80");
  t = s;
  t.Insert(U'\u00fc', 2, false);
  EXPECT_EQ(TextOf(t),
            "a\xc3\xa9\xc3\xbc\xe2\x82\xac"
            "b\xf0\x9f\x98\x80");
  t = s;
  t.KeepRange(1, false, 2);
  EXPECT_EQ(TextOf(t), "\xc3\xa9\xe2\x82\xac");
  t = s;
  t.ReplaceRange(2, false, 1, "E");
  EXPECT_EQ(TextOf(t),
            "a\xc3\xa9"
            "Eb\xf0\x9f\x98\x80");
  EXPECT_TRUE(ICStringUnique("\xc3\xa9\n").IsLineEndAt(1, false));
  // 0x7fffffff stands for the end and is not converted.
  EXPECT_EQ(TextOf(s.Mid(1, false, 0x7fffffff)), TextOf(s.Mid(1, false)));
}

TEST(EditNarrow, StrayContinuationBytesStepByTheSizeTable) {
  // A stray 0xa0 counts as a 3-byte lead: "x\xa0yz" has the characters x, \xa0yz.
  const ICStringUnique s("x\xa0yzw");
  EXPECT_EQ(s.GetTailPointer(2, false), s.GetText() + 4);
}

// --- Cutting ---------------------------------------------------------------------------------

TYPED_TEST(EditAnyShape, KeepLeftFromRange) {
  TypeParam s = Own<TypeParam>("abcdef");
  s.KeepLeft(10);
  EXPECT_EQ(TextOf(s), U("abcdef"));
  s.KeepLeft(4);
  EXPECT_EQ(TextOf(s), U("abcd"));
  s.KeepFrom(1);
  EXPECT_EQ(TextOf(s), U("bcd"));
  s.KeepFrom(0);
  EXPECT_EQ(TextOf(s), U("bcd"));
  s.KeepFrom(3);
  EXPECT_EQ(s.GetLength(), 0);
  s = Own<TypeParam>("abcdef");
  s.KeepFrom(7);
  EXPECT_EQ(s.GetLength(), 0);
  s = Own<TypeParam>("abcdef");
  s.KeepRange(-1, true, 3);
  EXPECT_EQ(TextOf(s), U("ab"));
  s = Own<TypeParam>("abcdef");
  s.KeepRange(2, true, 2);
  EXPECT_EQ(TextOf(s), U("cd"));
  s = Own<TypeParam>("abcdef");
  s.KeepRange(3, true, 100);
  EXPECT_EQ(TextOf(s), U("def"));
  s.KeepRange(3, true, 1);
  EXPECT_EQ(s.GetLength(), 0);
  s = Own<TypeParam>("abcdef");
  s.KeepLeft(0);
  EXPECT_EQ(s.GetLength(), 0);
}

TYPED_TEST(EditAnyShape, Remove) {
  TypeParam s = Own<TypeParam>("abcdef");
  s.Remove(-2, true, 5);  // removes the first 3 units
  EXPECT_EQ(TextOf(s), U("def"));
  s.Remove(-5, true, 2);  // count negative after the adjustment: nothing
  EXPECT_EQ(TextOf(s), U("def"));
  s.Remove(3, true, 1);  // at the end: nothing
  EXPECT_EQ(TextOf(s), U("def"));
  s.Remove(1, true, 10);
  EXPECT_EQ(TextOf(s), U("d"));
  s = Own<TypeParam>("abcdef");
  s.Remove(2, true, 2);
  EXPECT_EQ(TextOf(s), U("abef"));
  EXPECT_EQ(s.GetText()[4], 0);
}

TYPED_TEST(EditAnyShape, RemoveBefore) {
  TypeParam s = Own<TypeParam>("abcdef");
  ic::test::LayerAccess::_RemoveBefore(s, s.GetText());
  EXPECT_EQ(TextOf(s), U("abcdef"));
  ic::test::LayerAccess::_RemoveBefore(s, s.GetText() + 4);
  EXPECT_EQ(TextOf(s), U("ef"));
}

// --- Inserting and overwriting ---------------------------------------------------------------

TYPED_TEST(EditAnyShape, Insert) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("abc");
  const auto xy = U("xy");
  s.Insert(xy.c_str(), 3);  // at the length: appends
  EXPECT_EQ(TextOf(s), U("abcxy"));
  s.Insert(xy.c_str(), 6);  // past the end: nothing
  s.Insert(xy.c_str(), -1);
  s.Insert(static_cast<const Unit*>(nullptr), 1);
  EXPECT_EQ(TextOf(s), U("abcxy"));
  s.Insert(Own<ICStringSharedT<Unit>>("12"), 0);
  EXPECT_EQ(TextOf(s), U("12abcxy"));
  s.Insert(s, 2);  // its own text
  EXPECT_EQ(TextOf(s), U("1212abcxyabcxy"));
  s = Own<TypeParam>("ac");
  if constexpr (sizeof(Unit) == 1)
    s.Insert(U'b', 1);
  else
    s.Insert(u'b', 1);
  EXPECT_EQ(TextOf(s), U("abc"));
  EXPECT_EQ(s.GetCapacity(), 3);
}

TYPED_TEST(EditAnyShape, OpenGap) {
  TypeParam s = Own<TypeParam>("abef");
  auto* gap = ic::test::LayerAccess::_OpenGap(s, 2, 2);
  gap[0] = 'c';
  gap[1] = 'd';
  EXPECT_EQ(TextOf(s), U("abcdef"));
  EXPECT_EQ(s.GetCapacity(), 6);
}

TYPED_TEST(EditAnyShape, SetTail) {
  using Unit = typename TypeParam::UnitType;
  const auto x = U("x");
  TypeParam s = Own<TypeParam>("abc");
  s.SetTail(0, true, x.c_str());
  EXPECT_EQ(TextOf(s), U("x"));
  TypeParam e;
  e.SetTail(0, true, x.c_str());
  EXPECT_EQ(e.GetLength(), 0);
  s = Own<TypeParam>("abc");
  s.SetTail(1, true, Units<Unit>("XYZW").c_str());
  EXPECT_EQ(TextOf(s), U("aXYZW"));
  s.SetTail(-4, true, static_cast<const Unit*>(nullptr));
  EXPECT_EQ(s.GetLength(), 0);
  s = Own<TypeParam>("abc");
  s.SetTail(3, true, x.c_str());  // length at or below position: nothing
  EXPECT_EQ(TextOf(s), U("abc"));
  s.SetTail(2, true, U'Q');
  EXPECT_EQ(TextOf(s), U("abQ"));
}

TYPED_TEST(EditAnyShape, PutRepeated) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("abcdef");
  s.PutRepeated(Unit('x'), 2, 1);
  EXPECT_EQ(TextOf(s), U("axx"));
  s.PutRepeated(U("-=").c_str(), 3, 3);
  EXPECT_EQ(TextOf(s), U("axx-=-=-="));
  s.PutRepeated(Unit('y'), 0, 1);
  s.PutRepeated(Unit('y'), 1, -1);
  s.PutRepeated(Unit('y'), 1, 10);
  s.PutRepeated(Unit(0), 1, 1);
  s.PutRepeated(U("").c_str(), 1, 1);
  EXPECT_EQ(TextOf(s), U("axx-=-=-="));
}

// --- Replacing -------------------------------------------------------------------------------

TYPED_TEST(EditAnyShape, ReplaceRange) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("abc");
  s.ReplaceRange(1, true, 1, U("").c_str());  // cannot delete
  EXPECT_EQ(TextOf(s), U("abc"));
  s.ReplaceRange(-1, true, 1, U("X").c_str());
  s.ReplaceRange(4, true, 1, U("X").c_str());
  EXPECT_EQ(TextOf(s), U("abc"));
  s.ReplaceRange(1, true, 1, U("X").c_str());
  EXPECT_EQ(TextOf(s), U("aXc"));
  s.ReplaceRange(1, true, -5, U("Y").c_str());  // count 0: an insertion
  EXPECT_EQ(TextOf(s), U("aYXc"));
  EXPECT_EQ(s.GetCapacity(), 4);  // grown into an exact new block
  s.ReplaceRange(2, true, 50, U("Z").c_str());
  EXPECT_EQ(TextOf(s), U("aYZ"));
  s.ReplaceRange(3, true, 0, U("!").c_str());
  EXPECT_EQ(TextOf(s), U("aYZ!"));
  s.ReplaceRange(0, true, 1, U'A');
  s.ReplaceRange(0, true, 1, char32_t{0});
  EXPECT_EQ(TextOf(s), U("AYZ!"));
  const auto longer = Units<Unit>("0123456789");
  s.ReplaceRange(1, true, 2, longer.c_str(), 3);
  EXPECT_EQ(TextOf(s), U("A012!"));
  EXPECT_EQ(s.GetCapacity(), 5);
}

TYPED_TEST(EditAnyShape, ReplaceAll) {
  TypeParam s = Own<TypeParam>("aaa");
  EXPECT_EQ(s.ReplaceAll(U("aa").c_str(), 2, U("b").c_str(), 1), 1);
  EXPECT_EQ(TextOf(s), U("ba"));
  s = Own<TypeParam>("one two one two one");
  EXPECT_EQ(s.ReplaceAll(U("one").c_str(), -1, U("1").c_str(), -1, 1), 1);
  EXPECT_EQ(TextOf(s), U("1 two one two one"));
  EXPECT_EQ(s.ReplaceAll(U("two").c_str(), -1, U("three").c_str(), -1), 2);
  EXPECT_EQ(TextOf(s), U("1 three one three one"));
  EXPECT_EQ(s.GetCapacity(), s.GetLength());  // exact growth
  EXPECT_EQ(s.ReplaceAll(U("one").c_str(), -1, U("ONE").c_str(), -1), 2);
  EXPECT_EQ(TextOf(s), U("1 three ONE three ONE"));
  EXPECT_EQ(s.ReplaceAll(U(" ").c_str(), -1, nullptr, 0), 4);
  EXPECT_EQ(TextOf(s), U("1threeONEthreeONE"));
  EXPECT_EQ(s.ReplaceAll(U("").c_str(), 0, U("x").c_str(), 1), 0);
  EXPECT_EQ(s.ReplaceAll(U("zz").c_str(), -1, U("x").c_str(), 1), 0);
  EXPECT_EQ(s.ReplaceAll(U("three").c_str(), -1, U("3").c_str(), -1, 0), 2);
  EXPECT_EQ(TextOf(s), U("13ONE3ONE"));
  // The replacement is not searched again.
  s = Own<TypeParam>("aXa");
  EXPECT_EQ(s.ReplaceAll(U("a").c_str(), -1, U("aa").c_str(), -1), 2);
  EXPECT_EQ(TextOf(s), U("aaXaa"));
}

TYPED_TEST(EditAnyShape, ReplaceAllShrinkingKeepsTheBlock) {
  TypeParam s = Own<TypeParam>("xxabxxabxx");
  s.GetLength();
  const auto* block = s.GetText();
  AllocationScope scope;
  EXPECT_EQ(s.ReplaceAll(U("ab").c_str(), -1, U("").c_str(), -1), 2);
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(TextOf(s), U("xxxxxx"));
  EXPECT_EQ(s.GetCapacity(), 10);
}

TYPED_TEST(EditAnyShape, ReplaceAllGrowingWithinRoomKeepsTheBlock) {
  TypeParam s = Own<TypeParam>("0123456789012345678901234567890123456789");
  s.Assign(U("a-b-c").c_str(), 5, true);
  const auto* block = s.GetText();
  AllocationScope scope;
  EXPECT_EQ(s.ReplaceAll(U("-").c_str(), -1, U("<->").c_str(), -1), 2);
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(s.GetCapacity(), 40);
  EXPECT_EQ(TextOf(s), U("a<->b<->c"));
}

TYPED_TEST(EditAnyShape, ReplaceAllGrowingAllocatesOnce) {
  TypeParam s = Own<TypeParam>("x.y.z.");
  AllocationScope scope;
  EXPECT_EQ(s.ReplaceAll(U(".").c_str(), -1, U("...").c_str(), -1), 3);
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_EQ(TextOf(s), U("x...y...z..."));
  EXPECT_EQ(s.GetCapacity(), 12);
}

TYPED_TEST(EditAnyShape, ReplaceAdapters) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("a-b-c");
  const ICStringUniqueT<Unit> dash = Own<ICStringUniqueT<Unit>>("-");
  const ICStringViewT<Unit> plus = Own<ICStringViewT<Unit>>("+");
  EXPECT_EQ(s.Replace(dash, plus, 0), 2);
  EXPECT_EQ(TextOf(s), U("a+b+c"));
  EXPECT_EQ(s.Replace(U'+', U("::").c_str(), 1), 1);
  EXPECT_EQ(TextOf(s), U("a::b+c"));
  EXPECT_EQ(s.Replace(U("::").c_str(), U'/', 0), 1);
  EXPECT_EQ(TextOf(s), U("a/b+c"));
  EXPECT_EQ(s.Replace(static_cast<const Unit*>(nullptr), U'/', 0), 0);
  EXPECT_EQ(s.Replace(plus, static_cast<const Unit*>(nullptr), 0), 1);
  EXPECT_EQ(TextOf(s), U("a/bc"));
}

TYPED_TEST(EditAnyShape, ReplaceOneCharacterByAnother) {
  using Unit = typename TypeParam::UnitType;
  using Char = std::conditional_t<sizeof(Unit) == 1, char32_t, char16_t>;
  TypeParam s = Own<TypeParam>("banana");
  AllocationScope scope;
  EXPECT_EQ(s.Replace(Char('a'), Char('o')), 3);
  EXPECT_EQ(TextOf(s), U("bonono"));
  EXPECT_EQ(s.Replace(Char('o'), Char(0)), 0);  // a zero replacement: nothing
  EXPECT_EQ(TextOf(s), U("bonono"));
  EXPECT_EQ(s.Replace(Char('z'), Char('y')), 0);
  if constexpr (!TypeParam::IsView) {
    EXPECT_EQ(scope.Allocations(), 0);
  }
}

TEST(EditNarrow, ReplaceMultiByteCharacters) {
  ICStringUnique s("caf\xc3\xa9 caf\xc3\xa9");
  EXPECT_EQ(s.Replace(U'\u00e9', U'e'), 2);
  EXPECT_EQ(TextOf(s), "cafe cafe");
  EXPECT_EQ(s.Replace(U'e', U'\u20ac'), 2);
  EXPECT_EQ(TextOf(s), "caf\xe2\x82\xac caf\xe2\x82\xac");
  EXPECT_EQ(s.Replace(char32_t{0xd800}, U'x'), 0);  // refused needle: nothing
}

TYPED_TEST(EditAnyShape, ReplaceAnyOf) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("a,b;c d");
  s.ReplaceAnyOf(U(",; ").c_str(), Unit('_'));
  EXPECT_EQ(TextOf(s), U("a_b_c_d"));
  s.ReplaceAnyOf(U("").c_str(), Unit('x'));
  s.ReplaceAnyOf(static_cast<const Unit*>(nullptr), Unit('x'));
  s.ReplaceAnyOf(U("_").c_str(), Unit(0));
  EXPECT_EQ(TextOf(s), U("a_b_c_d"));
}

TEST(EditNarrow, ReplaceAnyOfDecodesCharacters) {
  ICStringUnique s("\xc3\xa9t\xc3\xa9 \xe2\x82\xac");
  s.ReplaceAnyOf("\xc3\xa9\xe2\x82\xac", '?');
  EXPECT_EQ(TextOf(s), "?t? ?");
  s.ReplaceAnyOf("t", static_cast<char>(0x80));  // out of 1 to 0x7f: nothing
  EXPECT_EQ(TextOf(s), "?t? ?");
}

// --- Line ends -------------------------------------------------------------------------------

TYPED_TEST(EditAnyShape, NormalizeLineEnds) {
  TypeParam s = Own<TypeParam>("a\r\nb\rc\nd");
  s.NormalizeLineEnds(ICLineEnd::LineFeed);
  EXPECT_EQ(TextOf(s), U("a\nb\nc\nd"));
  s = Own<TypeParam>("a\r\nb\rc\nd");
  s.NormalizeLineEnds(U("\r\n").c_str());
  EXPECT_EQ(TextOf(s), U("a\r\nb\r\nc\r\nd"));
  s.NormalizeLineEnds(ICLineEnd::CarriageReturn);
  EXPECT_EQ(TextOf(s), U("a\rb\rc\rd"));
  s.NormalizeLineEnds(U("x").c_str());
  EXPECT_EQ(TextOf(s), U("a\rb\rc\rd"));
  s.NormalizeLineEnds(U("abc").c_str());
  EXPECT_EQ(TextOf(s), U("a\rb\rc\rd"));
  // A line feed followed by a carriage return is two ends.
  s = Own<TypeParam>("x\n\ry");
  s.NormalizeLineEnds(ICLineEnd::CarriageReturnLineFeed);
  EXPECT_EQ(TextOf(s), U("x\r\n\r\ny"));
  // Another text as the source.
  const auto source = U("1\r2\n3");
  s.NormalizeLineEnds(source.c_str(), ICLineEnd::CarriageReturnLineFeed);
  EXPECT_EQ(TextOf(s), U("1\r\n2\r\n3"));
  s.NormalizeLineEnds(source.c_str(), ICLineEnd::LineFeed);
  EXPECT_EQ(TextOf(s), U("1\n2\n3"));
  s.NormalizeLineEnds(U("no ends").c_str(), ICLineEnd::CarriageReturnLineFeed);
  EXPECT_EQ(TextOf(s), U("no ends"));
}

TYPED_TEST(EditAnyShape, NormalizeWithoutChangesDoesNotWrite) {
  TypeParam s = Own<TypeParam>("a\nb\nc");
  const auto* block = s.GetText();
  AllocationScope scope;
  s.NormalizeLineEnds(ICLineEnd::LineFeed);
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(scope.Allocations(), 0);
  s = Own<TypeParam>("a\r\nb");
  block = s.GetText();
  s.NormalizeLineEnds(ICLineEnd::CarriageReturnLineFeed);
  EXPECT_EQ(s.GetText(), block);
}

TEST(EditNarrow, NormalizeCopiesMultiByteSequencesWhole) {
  // 0xc3 takes the next byte as its continuation, even a line feed.
  ICStringUnique s("\xc3\na\rb");
  s.NormalizeLineEnds(ICLineEnd::CarriageReturnLineFeed);
  EXPECT_EQ(TextOf(s), "\xc3\na\r\nb");
}

TYPED_TEST(EditAnyShape, IsLineEndAt) {
  const TypeParam s = Own<TypeParam>("a\rb\n");
  EXPECT_FALSE(s.IsLineEndAt(0));
  EXPECT_TRUE(s.IsLineEndAt(1));
  EXPECT_TRUE(s.IsLineEndAt(3));
  EXPECT_FALSE(s.IsLineEndAt(4));
  EXPECT_FALSE(s.IsLineEndAt(-1));
}

// --- Copy on write: other owners never see a write ---------------------------------------------

template <class S>
using Edit = std::function<void(S&)>;

template <class S>
std::vector<std::pair<const char*, Edit<S>>> AllEdits() {
  using Unit = typename S::UnitType;
  static const auto x = Units<Unit>("xy");
  static const auto needle = Units<Unit>("c");
  static const auto lf = Units<Unit>("\n");
  return {
      {"KeepLeft", [](S& s) { s.KeepLeft(3); }},
      {"KeepFrom", [](S& s) { s.KeepFrom(2); }},
      {"KeepRange", [](S& s) { s.KeepRange(1, true, 3); }},
      {"Remove", [](S& s) { s.Remove(1, true, 2); }},
      {"RemoveBefore", [](S& s) { ic::test::LayerAccess::_RemoveBefore(s, s.GetText() + 2); }},
      {"Insert", [](S& s) { s.Insert(x.c_str(), 2); }},
      {"OpenGap", [](S& s) { ic::test::LayerAccess::_OpenGap(s, 1, 1)[0] = Unit('#'); }},
      {"SetTail", [](S& s) { s.SetTail(2, true, x.c_str()); }},
      {"PutRepeated", [](S& s) { s.PutRepeated(Unit('z'), 3, 1); }},
      {"ReplaceRangeShorter", [](S& s) { s.ReplaceRange(1, true, 3, x.c_str()); }},
      {"ReplaceRangeLonger", [](S& s) { s.ReplaceRange(1, true, 1, x.c_str()); }},
      {"ReplaceAllSame", [](S& s) { s.ReplaceAll(needle.c_str(), 1, x.c_str(), 1); }},
      {"ReplaceAllLonger", [](S& s) { s.ReplaceAll(needle.c_str(), 1, x.c_str(), 2); }},
      {"ReplaceAllShorter", [](S& s) { s.ReplaceAll(x.c_str(), 1, needle.c_str(), 0); }},
      {"ReplaceChar",
       [](S& s) {
         if constexpr (sizeof(Unit) == 1)
           s.Replace(U'c', U'C');
         else
           s.Replace(u'c', u'C');
       }},
      {"ReplaceAnyOf", [](S& s) { s.ReplaceAnyOf(needle.c_str(), Unit('!')); }},
      {"NormalizeLF", [](S& s) { s.NormalizeLineEnds(ICLineEnd::LineFeed); }},
      {"NormalizeCRLF", [](S& s) { s.NormalizeLineEnds(ICLineEnd::CarriageReturnLineFeed); }},
      {"NormalizeFrom", [](S& s) { s.NormalizeLineEnds(lf.c_str(), ICLineEnd::LineFeed); }},
      {"Append", [](S& s) { s.Append(x.c_str()); }},
      {"Assign", [](S& s) { s.Assign(x.c_str(), 2, true); }},
      {"AssignChar", [](S& s) { s.Assign('q'); }},
      {"PutAtCursor",
       [](S& s) {
         uint32_t cursor = 1;
         s.PutAtCursor(x.c_str(), 2, cursor, 0);
       }},
  };
}

template <class T>
class EditSharedCopyOnWrite : public ::testing::Test {};
using SharedShapes = ::testing::Types<ICStringShared, ICStringSharedW>;
TYPED_TEST_SUITE(EditSharedCopyOnWrite, SharedShapes);

TYPED_TEST(EditSharedCopyOnWrite, EveryEditLeavesOtherOwnersAlone) {
  for (const auto& [name, edit] : AllEdits<TypeParam>()) {
    SCOPED_TRACE(name);
    const TypeParam original = Own<TypeParam>("abcxy\r\nd\n");
    TypeParam edited(original);
    TypeParam third(original);
    ASSERT_EQ(edited.GetText(), original.GetText());
    edit(edited);
    EXPECT_EQ(TextOf(original), U("abcxy\r\nd\n"));
    EXPECT_EQ(TextOf(third), U("abcxy\r\nd\n"));
    EXPECT_NE(TextOf(edited), U("abcxy\r\nd\n"));
    EXPECT_NE(edited.GetText(), original.GetText());
    EXPECT_EQ(test::ShareWord(original.GetText()), 1);  // two owners left
  }
}

template <class T>
class EditViewCopyOnWrite : public ::testing::Test {};
using ViewShapes = ::testing::Types<ICStringView, ICStringViewW>;
TYPED_TEST_SUITE(EditViewCopyOnWrite, ViewShapes);

TYPED_TEST(EditViewCopyOnWrite, EveryEditLeavesTheForeignTextAlone) {
  for (const auto& [name, edit] : AllEdits<TypeParam>()) {
    SCOPED_TRACE(name);
    auto foreign = U("abcxy\r\nd\n");
    TypeParam view(foreign.c_str());
    ASSERT_FALSE(view.OwnsBlock());
    edit(view);
    EXPECT_EQ(foreign, U("abcxy\r\nd\n"));
    EXPECT_NE(TextOf(view), U("abcxy\r\nd\n"));
    EXPECT_TRUE(view.OwnsBlock());
  }
}

TYPED_TEST(EditSharedCopyOnWrite, EditsThatChangeNothingDoNotDetach) {
  const TypeParam original = Own<TypeParam>("abc");
  TypeParam s(original);
  s.KeepLeft(3);
  s.KeepFrom(0);
  s.Remove(3, true, 1);
  s.Remove(1, true, 0);
  s.ReplaceAll(U("zz").c_str(), -1, U("y").c_str(), -1);
  s.NormalizeLineEnds(ICLineEnd::LineFeed);
  s.NormalizeLineEnds(ICLineEnd::CarriageReturnLineFeed);
  s.ReplaceAnyOf(U("xyz").c_str(), 'q');
  s.Insert(U("").c_str(), 1);
  s.ReplaceRange(1, true, 1, U("").c_str());
  EXPECT_EQ(s.GetText(), original.GetText());
}

#undef U

}  // namespace
}  // namespace ic
