// Block layout and the low-level storage operations shared by all string shapes.
#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <ic/string/ic_string.h>
#include <ic/string/null_data.h>

#include "block_probe.h"
#include "counting_allocator.h"
#include "layer_access.h"

namespace ic {
namespace {

using test::AllocationScope;
using test::CapacityLow;
using test::CapacityWord;
using test::LengthLow;
using test::LengthWord;
using test::ShareWord;

static_assert(sizeof(ICStringUnique) == sizeof(void*));
static_assert(sizeof(ICStringSharedW) == sizeof(void*));
static_assert(UnknownLength == static_cast<int16_t>(0x8000));

template <class Unit>
void Fill(Unit* text, int32_t count, Unit value) {
  for (int32_t i = 0; i < count; ++i)
    text[i] = value;
}

template <class T>
class StorageTest : public ::testing::Test {};
using UniqueWidths = ::testing::Types<ICStringUnique, ICStringUniqueW>;
TYPED_TEST_SUITE(StorageTest, UniqueWidths);

TYPED_TEST(StorageTest, CapacityOf7fffIsShortAnd8000IsLong) {
  TypeParam shortForm, longForm;
  ic::test::LayerAccess::_AllocateStorage(shortForm, 0x7fff);
  ic::test::LayerAccess::_AllocateStorage(longForm, 0x8000);
  EXPECT_EQ(CapacityWord(shortForm.GetText()), 0x7fff);
  EXPECT_EQ(LengthWord(shortForm.GetText()), 0x8000);
  EXPECT_EQ(ShareWord(shortForm.GetText()), 0);
  EXPECT_EQ(CapacityWord(longForm.GetText()), 0xffff);
  EXPECT_EQ(CapacityLow(longForm.GetText()), 0x8000);
  EXPECT_EQ(LengthWord(longForm.GetText()), 0x8000);
  EXPECT_EQ(shortForm.GetCapacity(), 0x7fff);
  EXPECT_EQ(longForm.GetCapacity(), 0x8000);
  ic::test::LayerAccess::_SetStringEnd(shortForm, 0);
  ic::test::LayerAccess::_SetStringEnd(longForm, 0);
}

TYPED_TEST(StorageTest, LongFormStoresNegatedHalves) {
  TypeParam s;
  ic::test::LayerAccess::_AllocateStorage(s, 0x12345);
  EXPECT_EQ(s.GetCapacity(), 0x12345);
  const uint32_t negCap = 0u - 0x12345u;
  EXPECT_EQ(CapacityWord(s.GetText()), negCap >> 16);
  EXPECT_EQ(CapacityLow(s.GetText()), negCap & 0xffff);
  Fill(ic::test::LayerAccess::_GetBuffer(s), 5, typename TypeParam::UnitType('x'));
  ic::test::LayerAccess::_SetStringEnd(s, 5);
  EXPECT_EQ(LengthWord(s.GetText()), 0xffff);
  EXPECT_EQ(LengthLow(s.GetText()), 0xfffb);
  EXPECT_EQ(s.GetLength(), 5);
  Fill(ic::test::LayerAccess::_GetBuffer(s), 0x10001, typename TypeParam::UnitType('y'));
  ic::test::LayerAccess::_SetStringEnd(s, 0x10001);
  EXPECT_EQ(LengthWord(s.GetText()), 0xfffe);
  EXPECT_EQ(LengthLow(s.GetText()), 0xffff);
  EXPECT_EQ(s.GetLength(), 0x10001);
}

TYPED_TEST(StorageTest, LongFormLengthZeroIsTwoZeroWords) {
  TypeParam s;
  ic::test::LayerAccess::_AllocateStorage(s, 0x8000);
  ic::test::LayerAccess::_SetStringEnd(s, 0);
  EXPECT_EQ(LengthWord(s.GetText()), 0);
  EXPECT_EQ(LengthLow(s.GetText()), 0);
  EXPECT_EQ(s.GetLength(), 0);
}

TYPED_TEST(StorageTest, UnknownLengthIsMeasuredOnceAndStored) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s;
  ic::test::LayerAccess::_AllocateStorage(s, 10);
  Fill(ic::test::LayerAccess::_GetBuffer(s), 5, Unit('a'));
  ic::test::LayerAccess::_GetBuffer(s)[5] = 0;
  EXPECT_EQ(LengthWord(s.GetText()), 0x8000);
  EXPECT_EQ(s.GetLength(), 5);
  EXPECT_EQ(LengthWord(s.GetText()), 5);
  // A second read uses the stored length and does not scan: moving the terminator is not seen.
  ic::test::LayerAccess::_GetBuffer(s)[5] = Unit('b');
  ic::test::LayerAccess::_GetBuffer(s)[6] = 0;
  EXPECT_EQ(s.GetLength(), 5);
}

TYPED_TEST(StorageTest, SetStringEndOnEmptyDataThrowsOnlyForPositiveLengths) {
  TypeParam s;
  EXPECT_NO_THROW(ic::test::LayerAccess::_SetStringEnd(s, 0));
  EXPECT_NO_THROW(ic::test::LayerAccess::_SetStringEnd(s, -3));
  try {
    ic::test::LayerAccess::_SetStringEnd(s, 1);
    FAIL() << "no exception";
  } catch (const std::logic_error& e) {
    EXPECT_STREQ(e.what(), "ICString::_SetStringEnd attempt to write to a NULL string!");
  }
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_TRUE(ic::test::HoldsEmptyData(s));
}

TYPED_TEST(StorageTest, SetStringEndFromAnEndPointer) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s;
  ic::test::LayerAccess::_AllocateStorage(s, 8);
  Fill(ic::test::LayerAccess::_GetBuffer(s), 8, Unit('e'));
  ic::test::LayerAccess::_SetStringEnd(s, s.GetText() + 4);
  EXPECT_EQ(s.GetLength(), 4);
  EXPECT_EQ(s.GetText()[4], 0);
  EXPECT_EQ(s.GetText()[5], Unit('e'));
  // The length is not compared with the capacity: only the terminator and the header change.
  ic::test::LayerAccess::_SetStringEnd(s, s.GetText() + 8);
  EXPECT_EQ(s.GetLength(), 8);
}

TYPED_TEST(StorageTest, AllocationFailureThrowsRuntimeError) {
  TypeParam s;
  try {
    test::FailNothrowAllocations fail;
    ic::test::LayerAccess::_AllocateStorage(s, 16);
    FAIL() << "no exception";
  } catch (const std::runtime_error& e) {
    EXPECT_STREQ(e.what(), "ICString::_AllocateStorage out of memory!");
  }
  // The handle is still usable afterwards.
  EXPECT_TRUE(ic::test::HoldsEmptyData(s));
}

TYPED_TEST(StorageTest, BlockSizeBeyond32BitsIsRefused) {
  TypeParam s;
  EXPECT_THROW(ic::test::LayerAccess::_AllocateStorage(s, 0xffffffffu), std::bad_array_new_length);
  EXPECT_TRUE(ic::test::HoldsEmptyData(s));
}

TEST(StorageWide, OversizedWideRequestIsRefused) {
  ICStringUniqueW s;
  // 2 x (0x7fffffff + 1 + 5) does not fit in 32 bits.
  EXPECT_THROW(ic::test::LayerAccess::_AllocateStorage(s, 0x7fffffffu), std::bad_array_new_length);
}

TYPED_TEST(StorageTest, SingleUnitBlockHeader) {
  TypeParam s;
  {
    AllocationScope scope;
    ic::test::LayerAccess::_AllocateSingleUnit(s);
    EXPECT_EQ(scope.Allocations(), 1);
  }
  EXPECT_EQ(LengthWord(s.GetText()), 0x8000);
  EXPECT_EQ(CapacityWord(s.GetText()), 1);
  EXPECT_EQ(ShareWord(s.GetText()), 0);
  ic::test::LayerAccess::_GetBuffer(s)[0] = 'q';
  ic::test::LayerAccess::_SetStringEnd(s, 1);
  EXPECT_EQ(s.GetLength(), 1);
}

TYPED_TEST(StorageTest, ReserveWithoutExactNeverShrinks) {
  TypeParam s;
  ic::test::LayerAccess::_Reserve(s, 20, ReserveTerminate);
  const auto* block = s.GetText();
  ic::test::LayerAccess::_Reserve(s, 10, 0);
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(s.GetCapacity(), 20);
  ic::test::LayerAccess::_Reserve(s, 20, 0);
  EXPECT_EQ(s.GetText(), block);
}

TYPED_TEST(StorageTest, ReserveExactShrinksAndKeepTextCutsAtTheNewCapacity) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s;
  ic::test::LayerAccess::_Reserve(s, 20, 0);
  Fill(ic::test::LayerAccess::_GetBuffer(s), 12, Unit('k'));
  ic::test::LayerAccess::_SetStringEnd(s, 12);
  ic::test::LayerAccess::_Reserve(
      s, 20, ReserveExact | ReserveKeepText);  // same capacity: nothing happens
  EXPECT_EQ(s.GetCapacity(), 20);
  ic::test::LayerAccess::_Reserve(s, 8, ReserveExact | ReserveKeepText);
  EXPECT_EQ(s.GetCapacity(), 8);
  // The old length 12 is above the capacity: it stays unknown and no terminator is written.
  EXPECT_EQ(LengthWord(s.GetText()), 0x8000);
  for (int i = 0; i < 9; ++i)
    EXPECT_EQ(s.GetText()[i], Unit('k')) << i;
  ic::test::LayerAccess::_Reserve(s, 6, ReserveExact | ReserveKeepText | ReserveTerminate);
  EXPECT_EQ(s.GetCapacity(), 6);
  EXPECT_EQ(s.GetText()[6], 0);
  EXPECT_EQ(s.GetLength(), 6);
}

TYPED_TEST(StorageTest, ReserveKeepTextCarriesAKnownLength) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s;
  ic::test::LayerAccess::_Reserve(s, 4, 0);
  Fill(ic::test::LayerAccess::_GetBuffer(s), 3, Unit('m'));
  ic::test::LayerAccess::_SetStringEnd(s, 3);
  ic::test::LayerAccess::_Reserve(s, 100, ReserveKeepText);
  EXPECT_EQ(s.GetCapacity(), 100);
  EXPECT_EQ(LengthWord(s.GetText()), 3);
  EXPECT_EQ(s.GetText()[2], Unit('m'));
  EXPECT_EQ(s.GetText()[3], 0);
}

TYPED_TEST(StorageTest, ReserveWithoutKeepTextLeavesUnknownLength) {
  auto s = test::Make<TypeParam>("abc");
  ic::test::LayerAccess::_Reserve(s, 50, 0);
  EXPECT_EQ(LengthWord(s.GetText()), 0x8000);
  ic::test::LayerAccess::_GetBuffer(s)[0] = 0;
  EXPECT_EQ(s.GetLength(), 0);
}

TYPED_TEST(StorageTest, ReserveOnEmptyData) {
  TypeParam plain, terminated;
  ic::test::LayerAccess::_Reserve(plain, 5, 0);
  EXPECT_EQ(LengthWord(plain.GetText()), 0x8000);
  ic::test::LayerAccess::_SetStringEnd(plain, 0);
  ic::test::LayerAccess::_Reserve(terminated, 5, ReserveKeepText);
  EXPECT_EQ(LengthWord(terminated.GetText()), 0);
  EXPECT_EQ(terminated.GetText()[0], 0);
  TypeParam untouched;
  {
    AllocationScope scope;
    ic::test::LayerAccess::_Reserve(untouched, 0, 0);
    ic::test::LayerAccess::_Reserve(untouched, 0, ReserveExact | ReserveTerminate);
    EXPECT_EQ(scope.Allocations(), 0);
  }
  EXPECT_TRUE(ic::test::HoldsEmptyData(untouched));
}

TYPED_TEST(StorageTest, ReserveZeroExactReleasesAHeapBlock) {
  auto s = test::Make<TypeParam>("text");
  AllocationScope scope;
  ic::test::LayerAccess::_Reserve(s, 0, ReserveExact);
  EXPECT_TRUE(ic::test::HoldsEmptyData(s));
  EXPECT_EQ(scope.Frees(), 1);
}

TYPED_TEST(StorageTest, ReserveZeroTerminateClearsButKeepsTheBlock) {
  auto s = test::Make<TypeParam>("text");
  const auto* block = s.GetText();
  ic::test::LayerAccess::_Reserve(s, 0, ReserveTerminate);
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_EQ(s.GetCapacity(), 4);
}

TYPED_TEST(StorageTest, TrimIdiomExactWithKeepText) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s;
  ic::test::LayerAccess::_Reserve(s, 1000, 0);
  Fill(ic::test::LayerAccess::_GetBuffer(s), 7, Unit('t'));
  ic::test::LayerAccess::_SetStringEnd(s, 7);
  ic::test::LayerAccess::_Reserve(s, s.GetLength(), ReserveExact | ReserveKeepText);
  EXPECT_EQ(s.GetCapacity(), 7);
  EXPECT_EQ(s.GetLength(), 7);
  EXPECT_EQ(s.GetText()[7], 0);
}

TYPED_TEST(StorageTest, ClearTextKeepsTheBlock) {
  auto s = test::Make<TypeParam>("hello");
  const auto* block = s.GetText();
  s.ClearText();
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_EQ(s.GetCapacity(), 5);
  TypeParam empty;
  empty.ClearText();
  EXPECT_TRUE(ic::test::HoldsEmptyData(empty));
}

TYPED_TEST(StorageTest, ReleaseStorageReturnsToTheEmptyData) {
  auto s = test::Make<TypeParam>("hello");
  ic::test::LayerAccess::_ReleaseStorage(s);
  EXPECT_TRUE(ic::test::HoldsEmptyData(s));
  ic::test::LayerAccess::_ReleaseStorage(s);
  EXPECT_TRUE(ic::test::HoldsEmptyData(s));
}

TEST(EmptyData, BothBlocksAreZeroAndChecked) {
  EXPECT_NO_THROW(CheckNullData<char>());
  EXPECT_NO_THROW(CheckNullData<char16_t>());
  const auto& narrow = ICStringNullData<char>::TNullData;
  EXPECT_EQ(narrow.LengthWord, 0);
  EXPECT_EQ(narrow.CapacityWord, 0);
  EXPECT_EQ(narrow.ShareWord, 0);
  EXPECT_EQ(narrow.text[0], 0);
  ICStringUnique a;
  ICStringSharedW b;
  ICStringView c;
  EXPECT_EQ(a.GetText(), EmptyText<char>());
  EXPECT_EQ(b.GetText(), EmptyText<char16_t>());
  EXPECT_EQ(c.GetText(), EmptyText<char>());
  EXPECT_EQ(a.GetLength(), 0);
  EXPECT_EQ(a.GetCapacity(), 0);
  EXPECT_EQ(b.GetCapacity(), 0);
}

TEST(EmptyData, CheckFailsOnADirtyBlock) {
  auto& narrow = ICStringNullData<char>::TNullData;
  narrow.ShareWord = 1;
  try {
    CheckNullData<char>();
    ADD_FAILURE() << "no exception";
  } catch (const std::logic_error& e) {
    EXPECT_STREQ(e.what(), "ICString::TNullData has not been zero initialized!");
  }
  narrow.ShareWord = 0;
  auto& wide = ICStringNullData<char16_t>::TNullData;
  wide.text[0] = u'x';
  EXPECT_THROW(CheckNullData<char16_t>(), std::logic_error);
  wide.text[0] = 0;
  EXPECT_NO_THROW(CheckNullData<char16_t>());
}

TEST(EmptyData, UnknownLengthMarkIsMeasuredBackToZero) {
  // The one write that the empty data ever sees: a writer marks it unmeasured.
  ICStringUniqueW s;
  ic::test::LayerAccess::_SetStoredLength(s, UnknownLength);
  EXPECT_EQ(LengthWord(EmptyText<char16_t>()), 0x8000);
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_EQ(LengthWord(EmptyText<char16_t>()), 0);
  EXPECT_NO_THROW(CheckNullData<char16_t>());
}

// Lengths from 0x7fff0001 on have a negated high half of 0x8000 and collide with the mark:
// they are measured on each read, and still come out right.
TEST(StorageHuge, LengthsCollidingWithTheMarkAreMeasured) {
  constexpr int32_t length = 0x7fff0001;
  ICStringUnique s;
  ic::test::LayerAccess::_AllocateStorage(s, static_cast<uint32_t>(length));
  std::memset(ic::test::LayerAccess::_GetBuffer(s), 'z', static_cast<size_t>(length));
  ic::test::LayerAccess::_SetStringEnd(s, length);
  EXPECT_EQ(LengthWord(s.GetText()), 0x8000);
  EXPECT_EQ(LengthLow(s.GetText()), 0xffff);
  EXPECT_EQ(s.GetLength(), length);
  EXPECT_EQ(s.GetLength(), length);
}

// --- Shared blocks -----------------------------------------------------------------------

template <class T>
class SharedStorageTest : public ::testing::Test {};
using SharedWidths = ::testing::Types<ICStringShared, ICStringSharedW>;
TYPED_TEST_SUITE(SharedStorageTest, SharedWidths);

TYPED_TEST(SharedStorageTest, CopiesCountOwnersUntilTheLimit) {
  auto original = test::Make<TypeParam>("shared");
  std::vector<TypeParam> copies;
  copies.reserve(65536);
  {
    AllocationScope scope;
    for (int i = 0; i < 65535; ++i)
      copies.emplace_back(original);
    EXPECT_EQ(scope.Allocations(), 0);
  }
  EXPECT_EQ(ShareWord(original.GetText()), 0xffff);
  for (const auto& c : copies)
    ASSERT_EQ(c.GetText(), original.GetText());
  // The 65537th handle gets a block of its own; the count stays at 0xffff.
  {
    AllocationScope scope;
    copies.emplace_back(original);
    EXPECT_EQ(scope.Allocations(), 1);
  }
  EXPECT_NE(copies.back().GetText(), original.GetText());
  EXPECT_EQ(ShareWord(original.GetText()), 0xffff);
  EXPECT_EQ(ShareWord(copies.back().GetText()), 0);
  EXPECT_EQ(copies.back().GetLength(), 6);
  copies.clear();
  EXPECT_EQ(ShareWord(original.GetText()), 0);
}

TYPED_TEST(SharedStorageTest, ClearTextReachesEveryOwner) {
  auto a = test::Make<TypeParam>("abc");
  TypeParam b(a);
  a.ClearText();
  EXPECT_EQ(b.GetLength(), 0);
  EXPECT_EQ(b.GetText()[0], 0);
}

TYPED_TEST(SharedStorageTest, DetachGivesAnOwnCopyAndDropsAnOwner) {
  auto a = test::Make<TypeParam>("abcdef");
  TypeParam b(a);
  EXPECT_EQ(ShareWord(a.GetText()), 1);
  ic::test::LayerAccess::_Detach(b, -1);
  EXPECT_NE(a.GetText(), b.GetText());
  EXPECT_EQ(ShareWord(a.GetText()), 0);
  EXPECT_EQ(ShareWord(b.GetText()), 0);
  EXPECT_EQ(b.GetCapacity(), 6);
  EXPECT_EQ(LengthWord(b.GetText()), 6);
  ic::test::LayerAccess::_GetBuffer(b)[0] = 'X';
  EXPECT_EQ(a.GetText()[0], 'a');
}

TYPED_TEST(SharedStorageTest, DetachToASmallerCapacityLeavesTheLengthUnknown) {
  auto a = test::Make<TypeParam>("abcdef");
  TypeParam b(a);
  ic::test::LayerAccess::_Detach(b, 3);
  EXPECT_EQ(b.GetCapacity(), 3);
  EXPECT_EQ(LengthWord(b.GetText()), 0x8000);
  ic::test::LayerAccess::_SetStringEnd(b, 3);
  EXPECT_EQ(b.GetLength(), 3);
  EXPECT_EQ(a.GetLength(), 6);
}

TYPED_TEST(SharedStorageTest, DetachToZeroTakesTheEmptyData) {
  auto a = test::Make<TypeParam>("abc");
  TypeParam b(a);
  ic::test::LayerAccess::_Detach(b, 0);
  EXPECT_TRUE(ic::test::HoldsEmptyData(b));
  EXPECT_EQ(ShareWord(a.GetText()), 0);
}

TYPED_TEST(SharedStorageTest, ReallocateDetachedCopiesTheOldCapacityAndForgetsTheLength) {
  auto a = test::Make<TypeParam>("abc");
  TypeParam b(a);
  ic::test::LayerAccess::_ReallocateDetached(b, 10);
  EXPECT_EQ(b.GetCapacity(), 10);
  EXPECT_EQ(LengthWord(b.GetText()), 0x8000);
  EXPECT_EQ(b.GetLength(), 3);  // measured through the copied terminator
  EXPECT_EQ(ShareWord(a.GetText()), 0);
  auto sole = test::Make<TypeParam>("xy");
  AllocationScope scope;
  ic::test::LayerAccess::_ReallocateDetached(sole, 5);
  EXPECT_EQ(scope.Frees(), 1);  // a sole owner's old block is freed
  EXPECT_EQ(sole.GetLength(), 2);
}

TYPED_TEST(SharedStorageTest, DestructionDropsOneOwnerAtATime) {
  auto* a = new TypeParam(test::Make<TypeParam>("abc"));
  TypeParam b(*a);
  {
    AllocationScope scope;
    delete a;
    EXPECT_EQ(scope.Frees(), 1);  // the handle object only
  }
  EXPECT_EQ(ShareWord(b.GetText()), 0);
  EXPECT_EQ(b.GetLength(), 3);
}

// --- Views ---------------------------------------------------------------------------

TEST(ViewStorage, MakeOwnedCopiesAndLeavesTheBlockUnmeasured) {
  const char foreign[] = "abc";
  ICStringView v(foreign);
  EXPECT_FALSE(v.OwnsBlock());
  EXPECT_EQ(v.GetLength(), 3);
  EXPECT_EQ(v.ViewLength(), 3);
  ic::test::LayerAccess::_MakeOwned(v);
  EXPECT_TRUE(v.OwnsBlock());
  EXPECT_NE(v.GetText(), foreign);
  EXPECT_EQ(v.GetCapacity(), 3);
  EXPECT_EQ(LengthWord(v.GetText()), 0x8000);
  EXPECT_EQ(v.GetLength(), 3);
  EXPECT_EQ(LengthWord(v.GetText()), 3);
  EXPECT_STREQ(foreign, "abc");
}

TEST(ViewStorage, ClearTextOnAForeignViewWritesThroughThePointer) {
  char foreign[] = "abc";
  ICStringView v(foreign);
  v.ClearText();
  EXPECT_EQ(foreign[0], 0);
  EXPECT_EQ(v.GetLength(), 0);
  EXPECT_FALSE(v.OwnsBlock());
}

TEST(ViewStorage, MakeOwnedOfAnEmptyViewTakesTheEmptyData) {
  ICStringViewW v(u"");
  AllocationScope scope;
  ic::test::LayerAccess::_MakeOwned(v);
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_TRUE(ic::test::HoldsEmptyData(v));
  EXPECT_TRUE(v.OwnsBlock());
}

}  // namespace
}  // namespace ic
