// Ownership of the four string shapes: construction, copy and move within and between shapes.
#include <stdexcept>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/inline.h>

#include "block_probe.h"
#include "counting_allocator.h"
#include "layer_access.h"

namespace ic {
namespace {

using test::AllocationScope;
using test::CapacityWord;
using test::LengthWord;
using test::ShareWord;

static_assert(!std::is_same_v<ICStringUnique, ICStringUniqueW>);
static_assert(std::is_same_v<ICStringUnique::UnitType, char>);
static_assert(std::is_same_v<ICStringViewW::UnitType, char16_t>);
static_assert(std::is_base_of_v<ICStringUnique, ICStringInline<8>>);
static_assert(sizeof(ICStringInline<10>) >= sizeof(void*) + 6 + 11);

template <class S>
std::basic_string<typename S::UnitType> Text(const S& s) {
  return std::basic_string<typename S::UnitType>(s.GetText(), static_cast<size_t>(s.GetLength()));
}

// --- All shapes: empty strings and construction from text ----------------------------

template <class T>
class AnyShape : public ::testing::Test {};
using AllShapes = test::AllStringShapes;
TYPED_TEST_SUITE(AnyShape, AllShapes);

TYPED_TEST(AnyShape, EmptyStringsAllocateNothing) {
  using Unit = typename TypeParam::UnitType;
  AllocationScope scope;
  {
    TypeParam a;
    TypeParam b(a);
    TypeParam c(std::move(b));
    TypeParam d(static_cast<const Unit*>(nullptr));
    const Unit empty[] = {0};
    TypeParam e(empty, 0);
    EXPECT_EQ(a.GetLength(), 0);
    EXPECT_EQ(a.GetCapacity(), 0);
    EXPECT_EQ(a.GetText(), EmptyText<Unit>());
    EXPECT_EQ(d.GetText(), EmptyText<Unit>());
    EXPECT_EQ(e.GetText(), EmptyText<Unit>());
  }
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_EQ(scope.Frees(), 0);
}

TYPED_TEST(AnyShape, FromPointerAndLengthCopiesExactly) {
  using Unit = typename TypeParam::UnitType;
  const Unit text[] = {'a', 'b', 0, 'c', 'd', 0};
  TypeParam s(text, 4);
  EXPECT_NE(s.GetText(), text);
  EXPECT_EQ(s.GetCapacity(), 4);
  EXPECT_EQ(s.GetText()[2], 0);
  EXPECT_EQ(s.GetText()[3], Unit('c'));
  EXPECT_EQ(s.GetText()[4], 0);
  // The stored length is the given one, zero units inside included.
  EXPECT_EQ(s.GetLength(), 4);
}

TYPED_TEST(AnyShape, GetEndRangeAndDuplicate) {
  using Unit = typename TypeParam::UnitType;
  const Unit text[] = {'x', 'y', 'z', 0};
  TypeParam s(text);
  EXPECT_EQ(s.GetEnd(), s.GetText() + 3);
  ICStringRangeT<Unit> range;
  EXPECT_EQ(&s.GetRange(range), &range);
  EXPECT_EQ(range.Text, s.GetText());
  EXPECT_EQ(range.Length, 3);
  Unit* copy = s.DuplicateText();
  EXPECT_NE(copy, s.GetText());
  EXPECT_EQ(std::basic_string<Unit>(copy), std::basic_string<Unit>(text));
  delete[] copy;
}

// --- One character ------------------------------------------------------------------

TEST(OneCharacter, NarrowAsciiUsesTheSingleUnitBlock) {
  AllocationScope scope;
  ICStringUnique s('A');
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_EQ(s.GetCapacity(), 1);
  EXPECT_EQ(s.GetLength(), 1);
  EXPECT_EQ(std::string(s.GetText()), "A");
}

TEST(OneCharacter, NarrowHighByteIsLatin1AsTwoUtf8Bytes) {
  ICStringShared s(static_cast<char>(0xe9));
  EXPECT_EQ(s.GetCapacity(), 2);
  EXPECT_EQ(std::string(s.GetText()), "\xc3\xa9");
}

TEST(OneCharacter, ZeroCharacterAllocatesABlockWithEmptyText) {
  AllocationScope scope;
  ICStringUnique s('\0');
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_FALSE(ic::test::HoldsEmptyData(s));
  EXPECT_EQ(s.GetCapacity(), 1);
  EXPECT_EQ(s.GetLength(), 0);
}

TEST(OneCharacter, WideFromAnEightBitCharacterMasksTo255) {
  ICStringUniqueW s(static_cast<char>(0xe9));
  EXPECT_EQ(s.GetLength(), 1);
  EXPECT_EQ(s.GetText()[0], 0xe9);
  EXPECT_EQ(s.GetCapacity(), 1);
  ICStringSharedW u(u'\x4e2d');
  EXPECT_EQ(u.GetText()[0], 0x4e2d);
  EXPECT_EQ(u.GetCapacity(), 1);
}

TEST(OneCharacter, ViewUsesTinyTextWithoutAllocating) {
  AllocationScope scope;
  ICStringView a('q');
  ICStringView b(static_cast<char>(0xe9));
  ICStringViewW c(u'\x4e2d');
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_FALSE(a.OwnsBlock());
  EXPECT_TRUE(ic::test::LayerAccess::_IsTiny(a));
  EXPECT_EQ(a.ViewLength(), 1);
  EXPECT_EQ(std::string(a.GetText()), "q");
  EXPECT_EQ(b.ViewLength(), 2);
  EXPECT_EQ(std::string(b.GetText()), "\xc3\xa9");
  EXPECT_EQ(c.GetLength(), 1);
  EXPECT_EQ(c.GetText()[0], 0x4e2d);
}

TEST(OneCharacter, CodePointGetsItsUtf8Size) {
  ICStringUnique s(char32_t{0x1f600});
  EXPECT_EQ(s.GetCapacity(), 4);
  EXPECT_EQ(std::string(s.GetText()), "\xf0\x9f\x98\x80");
  ICStringUnique bad(char32_t{0xd800});
  EXPECT_EQ(bad.GetCapacity(), 3);
  EXPECT_EQ(bad.GetLength(), 0);
}

// --- Begin and end pointers ------------------------------------------------------------

TYPED_TEST(AnyShape, BeginAndEndPointersCopyTheUnitsBetween) {
  using Unit = typename TypeParam::UnitType;
  const Unit text[] = {'a', 'b', 'c', 'd', 0};
  TypeParam s(text + 1, text + 3);
  EXPECT_EQ(s.GetCapacity(), 2);
  EXPECT_EQ(s.GetLength(), 2);
  EXPECT_EQ(s.GetText()[0], Unit('b'));
  EXPECT_EQ(s.GetText()[2], 0);
  AllocationScope scope;
  TypeParam same(text + 2, text + 2);
  TypeParam reversed(text + 3, text + 1);
  TypeParam null(static_cast<const Unit*>(nullptr), text + 2);
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_TRUE(ic::test::HoldsEmptyData(same));
  EXPECT_TRUE(ic::test::HoldsEmptyData(reversed));
  EXPECT_TRUE(ic::test::HoldsEmptyData(null));
}

// --- Capacity and concatenation constructors ------------------------------------------

TEST(CapacityConstructor, CharactersTakeFourBytesEach) {
  ICStringUnique narrow(10, false, false);
  EXPECT_EQ(narrow.GetCapacity(), 40);
  EXPECT_EQ(narrow.GetLength(), 0);
  EXPECT_EQ(narrow.GetText()[0], 0);
  ICStringUnique units(10, true, false);
  EXPECT_EQ(units.GetCapacity(), 10);
  ICStringUniqueW wide(10, false, false);  // the flag is not read for wide strings
  EXPECT_EQ(wide.GetCapacity(), 10);
}

TEST(CapacityConstructor, ZeroFillClearsEveryUnit) {
  ICStringSharedW s(6, true, true);
  for (int i = 0; i <= 6; ++i)
    EXPECT_EQ(s.GetText()[i], 0) << i;
  EXPECT_EQ(s.GetLength(), 0);
  ICStringView v(3, true, true);
  EXPECT_TRUE(v.OwnsBlock());
  EXPECT_EQ(v.GetCapacity(), 3);
}

TEST(CapacityConstructor, BelowOneGivesTheEmptyData) {
  AllocationScope scope;
  ICStringUnique a(0, true, true);
  ICStringUnique b(-5, false, false);
  EXPECT_TRUE(ic::test::HoldsEmptyData(a));
  EXPECT_TRUE(ic::test::HoldsEmptyData(b));
  EXPECT_EQ(scope.Allocations(), 0);
}

TEST(ChainConstructor, WritesTheWholeExpressionWithOneAllocation) {
  const ICStringUnique left("left");
  const ICStringShared right("right");
  AllocationScope scope;
  ICStringUnique joined(left + "-" + right);
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_EQ(Text(joined), "left-right");
  EXPECT_EQ(joined.GetCapacity(), 10);
  ICStringViewW wide;
  wide = ICStringUniqueW(u"a") + u"b";
  EXPECT_TRUE(wide.OwnsBlock());
  EXPECT_EQ(Text(wide), u"ab");
}

// --- Unique -------------------------------------------------------------------------

TEST(Unique, CopyIsDeep) {
  ICStringUnique a("abc");
  AllocationScope scope;
  ICStringUnique b(a);
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_NE(a.GetText(), b.GetText());
  EXPECT_EQ(Text(b), "abc");
}

TEST(Unique, MoveHandsTheBlockOver) {
  ICStringUnique a("abc");
  const char* block = a.GetText();
  AllocationScope scope;
  ICStringUnique b(std::move(a));
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_EQ(b.GetText(), block);
  EXPECT_TRUE(ic::test::HoldsEmptyData(a));
}

TEST(Unique, CopyAssignmentKeepsALargeEnoughBlock) {
  ICStringUnique a;
  ic::test::LayerAccess::_Reserve(a, 100, ReserveTerminate);
  const char* block = a.GetText();
  ICStringUnique b("a");
  a = b;
  EXPECT_EQ(a.GetText(), block);
  EXPECT_EQ(a.GetCapacity(), 100);
  EXPECT_EQ(Text(a), "a");
  a = a;
  EXPECT_EQ(Text(a), "a");
}

TEST(Unique, AssigningEmptyKeepsTheBlock) {
  ICStringUnique a("abc");
  const char* block = a.GetText();
  const ICStringUnique empty;
  a = empty;
  EXPECT_EQ(a.GetText(), block);
  EXPECT_EQ(a.GetLength(), 0);
  EXPECT_EQ(LengthWord(a.GetText()), 0);
}

TEST(Unique, MoveAssignmentOfAnEmptyStringHandsTheEmptyDataOver) {
  ICStringUnique a("abc");
  a = ICStringUnique();
  EXPECT_TRUE(ic::test::HoldsEmptyData(a));
}

TEST(Unique, AssignTextFromItsOwnPointerChangesNothing) {
  ICStringUnique a("abcdef");
  ic::test::LayerAccess::_AssignText(a, a.GetText(), 2);
  EXPECT_EQ(a.GetLength(), 6);
}

TEST(Unique, CloneIsADeepCopyOnTheHeap) {
  ICStringUnique a("clone me");
  ICStringUnique* c = a.Clone();
  ASSERT_NE(c, nullptr);
  EXPECT_NE(c->GetText(), a.GetText());
  EXPECT_EQ(Text(*c), "clone me");
  delete c;
  ICStringUniqueW empty;
  ICStringUniqueW* e = empty.Clone();
  ASSERT_NE(e, nullptr);
  EXPECT_TRUE(ic::test::HoldsEmptyData(*e));
  delete e;
}

TEST(Unique, CloneFreesTheObjectWhenTheTextCannotBeCopied) {
  ICStringUnique a("x");
  test::AllocationScope count;
  {
    test::FailNothrowAllocations fail(1);  // the object is made, its block is not
    EXPECT_THROW(a.Clone(), std::runtime_error);
  }
  EXPECT_GE(count.Allocations(), 1);
  EXPECT_EQ(count.Frees(), count.Allocations());  // the object included
}

TEST(Unique, CloneReportsAFailedAllocationAsNull) {
  ICStringUnique a("x");
  test::FailNothrowAllocations fail;
  EXPECT_EQ(a.Clone(), nullptr);
}

// --- Shared -------------------------------------------------------------------------

TEST(Shared, CopySharesTheBlock) {
  ICStringShared a("abc");
  AllocationScope scope;
  ICStringShared b(a);
  ICStringShared c;
  c = b;
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_EQ(a.GetText(), c.GetText());
  EXPECT_EQ(ShareWord(a.GetText()), 2);
}

TEST(Shared, MoveHandsTheBlockOver) {
  ICStringShared a("abc");
  const char* block = a.GetText();
  ICStringShared b(std::move(a));
  EXPECT_EQ(b.GetText(), block);
  EXPECT_TRUE(ic::test::HoldsEmptyData(a));
  EXPECT_EQ(ShareWord(block), 0);
}

TEST(Shared, AssignmentLetsGoOfTheOldBlock) {
  ICStringShared a("abc"), b("xyz");
  ICStringShared c(b);
  EXPECT_EQ(ShareWord(b.GetText()), 1);
  c = a;
  EXPECT_EQ(ShareWord(b.GetText()), 0);
  EXPECT_EQ(ShareWord(a.GetText()), 1);
  c = c;
  EXPECT_EQ(ShareWord(a.GetText()), 1);
}

TEST(Shared, AssignTextOnASharedBlockLeavesTheOtherOwnersAlone) {
  ICStringShared a("abcdef");
  ICStringShared b(a);
  ic::test::LayerAccess::_AssignText(b, "xy", 2);
  EXPECT_NE(a.GetText(), b.GetText());
  EXPECT_EQ(Text(a), "abcdef");
  EXPECT_EQ(Text(b), "xy");
  EXPECT_EQ(ShareWord(a.GetText()), 0);
}

// --- View ---------------------------------------------------------------------------

TEST(View, ForeignTextIsViewedWithoutCopying) {
  const char foreign[] = "foreign";
  AllocationScope scope;
  ICStringView v(foreign);
  EXPECT_EQ(v.GetText(), foreign);
  EXPECT_FALSE(v.OwnsBlock());
  EXPECT_EQ(v.ViewLength(), -1);
  EXPECT_EQ(v.GetLength(), 7);
  EXPECT_EQ(v.ViewLength(), 7);
  EXPECT_EQ(scope.Allocations(), 0);
}

TEST(View, SecondLengthReadUsesViewLength) {
  char foreign[] = "abcd";
  ICStringView v(foreign);
  EXPECT_EQ(v.GetLength(), 4);
  foreign[2] = 0;  // not seen: the measured length stays
  EXPECT_EQ(v.GetLength(), 4);
}

TEST(View, NullGivesAnOwningEmptyString) {
  ICStringView v(static_cast<const char*>(nullptr));
  EXPECT_TRUE(v.OwnsBlock());
  EXPECT_TRUE(ic::test::HoldsEmptyData(v));
  ICStringView w("abc");
  w = static_cast<const char*>(nullptr);
  EXPECT_TRUE(w.OwnsBlock());
  EXPECT_TRUE(ic::test::HoldsEmptyData(w));
}

TEST(View, FirstWriteCopiesAndLeavesTheForeignTextAlone) {
  const char foreign[] = "abc";
  ICStringView v(foreign);
  ic::test::LayerAccess::_PrepareGrow(v, 3);
  EXPECT_TRUE(v.OwnsBlock());
  EXPECT_NE(v.GetText(), foreign);
  EXPECT_EQ(v.GetCapacity(), 3);
  ic::test::LayerAccess::_GetBuffer(v)[0] = 'X';
  EXPECT_STREQ(foreign, "abc");
  EXPECT_EQ(Text(v), "Xbc");
}

TEST(View, CopyOfAForeignViewSharesThePointer) {
  const char foreign[] = "abc";
  ICStringView a(foreign);
  a.GetLength();
  AllocationScope scope;
  ICStringView b(a);
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_EQ(b.GetText(), foreign);
  EXPECT_EQ(b.ViewLength(), 3);
  EXPECT_FALSE(b.OwnsBlock());
}

TEST(View, CopyOfAnOwningViewIsDeep) {
  ICStringView a(ICStringUnique("owned"));
  ASSERT_TRUE(a.OwnsBlock());
  ICStringView b(a);
  EXPECT_TRUE(b.OwnsBlock());
  EXPECT_NE(b.GetText(), a.GetText());
  EXPECT_EQ(Text(b), "owned");
}

TEST(View, CopyOfATinyViewPointsAtItsOwnTinyText) {
  ICStringView a('z');
  ICStringView b(a);
  EXPECT_TRUE(ic::test::LayerAccess::_IsTiny(b));
  EXPECT_NE(b.GetText(), a.GetText());
  EXPECT_EQ(Text(b), "z");
  ICStringView c(std::move(b));
  EXPECT_TRUE(ic::test::LayerAccess::_IsTiny(c));
  EXPECT_NE(c.GetText(), b.GetText());
  ICStringView d;
  d = c;
  EXPECT_TRUE(ic::test::LayerAccess::_IsTiny(d));
  EXPECT_EQ(Text(d), "z");
}

TEST(View, MovingAnOwningViewLeavesTheSourceViewingTheText) {
  ICStringView a(ICStringUnique("abc"));
  const char* block = a.GetText();
  ICStringView b(std::move(a));
  EXPECT_TRUE(b.OwnsBlock());
  EXPECT_EQ(b.GetText(), block);
  EXPECT_FALSE(a.OwnsBlock());
  EXPECT_EQ(a.GetText(), block);
  // Destroying the source frees nothing.
  AllocationScope scope;
  { ICStringView gone(std::move(b)); }  // b is now foreign, gone owns the block
  EXPECT_EQ(scope.Frees(), 1);
}

TEST(View, AssignmentFromAPointerMakesAForeignView) {
  ICStringView v(ICStringUnique("owned"));
  AllocationScope scope;
  const char foreign[] = "other";
  v = foreign;
  EXPECT_EQ(scope.Frees(), 1);
  EXPECT_EQ(v.GetText(), foreign);
  EXPECT_FALSE(v.OwnsBlock());
  EXPECT_EQ(v.ViewLength(), -1);
}

TEST(View, FromRangeWithNegativeLengthViews) {
  const char16_t foreign[] = u"wide";
  ICStringViewW v(ICStringRangeW{foreign, -1});
  EXPECT_EQ(v.GetText(), foreign);
  ICStringViewW w(ICStringRangeW{foreign, 2});
  EXPECT_TRUE(w.OwnsBlock());
  EXPECT_EQ(w.GetLength(), 2);
}

// --- Moves between shapes ------------------------------------------------------------

TEST(CrossShape, UniqueFromUnsharedSharedTakesTheBlock) {
  ICStringShared s("abc");
  const char* block = s.GetText();
  ICStringUnique u(std::move(s));
  EXPECT_EQ(u.GetText(), block);
  EXPECT_TRUE(ic::test::HoldsEmptyData(s));
}

TEST(CrossShape, UniqueFromASharedBlockWithOtherOwnersCopies) {
  ICStringShared s("abc");
  ICStringShared other(s);
  ICStringUnique u(std::move(s));
  EXPECT_NE(u.GetText(), s.GetText());
  EXPECT_EQ(s.GetText(), other.GetText());
  EXPECT_EQ(Text(u), "abc");
}

TEST(CrossShape, UniqueAssignedFromAnEmptySharedTakesTheEmptyData) {
  ICStringUnique u("abc");
  u = ICStringShared();
  EXPECT_TRUE(ic::test::HoldsEmptyData(u));
}

TEST(CrossShape, SharedFromUniqueTakesTheBlock) {
  ICStringUnique u("abc");
  const char* block = u.GetText();
  ICStringShared s(std::move(u));
  EXPECT_EQ(s.GetText(), block);
  EXPECT_TRUE(ic::test::HoldsEmptyData(u));
  EXPECT_EQ(ShareWord(block), 0);
}

TEST(CrossShape, SharedFromAnInlineStringCopies) {
  ICStringInline<4> small("abcdefgh");  // spilled to the heap, with InlineCapable
  ASSERT_FALSE(small.IsInBuffer());
  ICStringShared s(std::move(static_cast<ICStringUnique&>(small)));
  EXPECT_NE(s.GetText(), small.GetText());
  EXPECT_EQ(Text(small), "abcdefgh");
  EXPECT_EQ(ShareWord(s.GetText()), 0);
}

TEST(CrossShape, ViewFromUniqueTakesTheBlockAndOwnsIt) {
  ICStringUnique u("abc");
  const char* block = u.GetText();
  ICStringView v(std::move(u));
  EXPECT_EQ(v.GetText(), block);
  EXPECT_TRUE(v.OwnsBlock());
  EXPECT_TRUE(ic::test::HoldsEmptyData(u));
}

TEST(CrossShape, CopiesBetweenShapesAreDeep) {
  ICStringShared s("shared");
  ICStringUnique u(s);
  ICStringView v(s);
  EXPECT_NE(u.GetText(), s.GetText());
  EXPECT_TRUE(v.OwnsBlock());
  EXPECT_NE(v.GetText(), s.GetText());
  EXPECT_EQ(ShareWord(s.GetText()), 0);
  ICStringShared back(v);
  EXPECT_EQ(Text(back), "shared");
}

// --- Inline -------------------------------------------------------------------------

TEST(Inline, StartsInItsBufferWithTheFlagsSet) {
  AllocationScope scope;
  ICStringInline<16> s;
  EXPECT_TRUE(s.IsInBuffer());
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_EQ(s.GetCapacity(), 16);
  EXPECT_EQ(ShareWord(s.GetText()), InlineCapable | InlineBlock);
  EXPECT_EQ(CapacityWord(s.GetText()), 16);
  // The header words lie in the object, directly before the buffer.
  const char* object = reinterpret_cast<const char*>(&s);
  EXPECT_EQ(reinterpret_cast<const char*>(s.GetText()), object + sizeof(void*) + 6);
  s = "fits";
  EXPECT_TRUE(s.IsInBuffer());
  EXPECT_EQ(scope.Allocations(), 0);
}

TEST(Inline, SpillsToTheHeapAndComesBack) {
  ICStringInlineW<4> s(u"abc");
  EXPECT_TRUE(s.IsInBuffer());
  ic::test::LayerAccess::_Reserve(s, 10, ReserveKeepText);
  EXPECT_FALSE(s.IsInBuffer());
  EXPECT_EQ(ShareWord(s.GetText()), InlineCapable);
  EXPECT_EQ(s.GetLength(), 3);
  // While spilled, an exact request that fits brings the text back.
  AllocationScope scope;
  ic::test::LayerAccess::_Reserve(s, 4, ReserveExact | ReserveKeepText);
  EXPECT_TRUE(s.IsInBuffer());
  EXPECT_EQ(scope.Frees(), 1);
  EXPECT_EQ(s.GetLength(), 3);
  EXPECT_EQ(s.GetText()[2], u'c');
}

TEST(Inline, ReleaseReturnsToTheBufferWithEmptyText) {
  ICStringInline<4> s("a longer text");
  ASSERT_FALSE(s.IsInBuffer());
  ic::test::LayerAccess::_ReleaseStorage(s);
  EXPECT_TRUE(s.IsInBuffer());
  EXPECT_EQ(s.GetLength(), 0);
  ic::test::LayerAccess::_ReleaseStorage(s);
  EXPECT_TRUE(s.IsInBuffer());
}

TEST(Inline, MovingFromAnInlineStringCopies) {
  ICStringInline<8> s("abc");
  ICStringUnique u(std::move(static_cast<ICStringUnique&>(s)));
  EXPECT_EQ(Text(s), "abc");
  EXPECT_EQ(Text(u), "abc");
  EXPECT_NE(u.GetText(), s.GetText());
  ICStringInline<8> t(std::move(s));
  EXPECT_EQ(Text(s), "abc");
  EXPECT_TRUE(t.IsInBuffer());
}

TEST(Inline, MoveAssignmentIntoAnInlineStringCopies) {
  ICStringInline<8> s;
  ICStringUnique u("xyz");
  const char* block = u.GetText();
  static_cast<ICStringUnique&>(s) = std::move(u);
  EXPECT_TRUE(s.IsInBuffer());
  EXPECT_EQ(u.GetText(), block);
  EXPECT_EQ(Text(s), "xyz");
}

TEST(Inline, ViewTakingFromTheBufferCopies) {
  ICStringInline<8> s("abc");
  ICStringView v(std::move(static_cast<ICStringUnique&>(s)));
  EXPECT_TRUE(v.OwnsBlock());
  EXPECT_NE(v.GetText(), s.GetText());
  EXPECT_EQ(Text(v), "abc");
}

}  // namespace
}  // namespace ic
