// The conversion members of the strings: ConvertFromUTF8String in every shape and width, and
// ConvertToUTF8Units of the wide shapes.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>

#include <ic/string/ic_string.h>
#include <ic/string/inline.h>
#include <ic/string/null_data.h>

#include "block_probe.h"
#include "counting_allocator.h"

namespace ic {
namespace {

using test::AllocationScope;

template <class S>
std::basic_string<typename S::UnitType> Text(const S& s) {
  return std::basic_string<typename S::UnitType>(s.GetText(), static_cast<size_t>(s.GetLength()));
}

// What a valid UTF-8 text becomes in a string of the unit's width.
template <class Unit>
std::basic_string<Unit> Expected(const char* utf8, const char16_t* utf16) {
  if constexpr (sizeof(Unit) == 1)
    return utf8;
  else
    return utf16;
}

template <class T>
class ConvertFromUTF8 : public ::testing::Test {};
using AllShapes = test::AllStringShapes;
TYPED_TEST_SUITE(ConvertFromUTF8, AllShapes);

TYPED_TEST(ConvertFromUTF8, ConvertsAWholeText) {
  using Unit = typename TypeParam::UnitType;
  const char* utf8 = "caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80";
  TypeParam s;
  EXPECT_EQ(&s.ConvertFromUTF8String(utf8, -1), &s);
  EXPECT_EQ(Text(s), Expected<Unit>(utf8, u"caf\u00e9 \u20ac \U0001F600"));
  EXPECT_EQ(s.GetText()[s.GetLength()], 0);
}

TYPED_TEST(ConvertFromUTF8, AnExplicitLengthStopsEarlyAndKeepsZeroBytes) {
  using Unit = typename TypeParam::UnitType;
  const char utf8[] = "a\0\xc3\xa9zzz";
  TypeParam s;
  s.ConvertFromUTF8String(utf8, 4);
  const Unit expected[] = {Unit('a'), 0, static_cast<Unit>(sizeof(Unit) == 1 ? 0xc3 : 0xe9),
                           static_cast<Unit>(0xa9)};
  EXPECT_EQ(Text(s), std::basic_string<Unit>(expected, sizeof(Unit) == 1 ? 4 : 3));
}

TYPED_TEST(ConvertFromUTF8, RangeAndStringForms) {
  using Unit = typename TypeParam::UnitType;
  TypeParam a, b, c;
  a.ConvertFromUTF8String(ICStringRange{"\xc3\xa9t\xc3\xa9xx", 5});
  EXPECT_EQ(Text(a), Expected<Unit>("\xc3\xa9t\xc3\xa9", u"\u00e9t\u00e9"));
  b.ConvertFromUTF8String(ICStringRange{"\xc3\xa9t\xc3\xa9", -1});
  EXPECT_EQ(Text(b), Expected<Unit>("\xc3\xa9t\xc3\xa9", u"\u00e9t\u00e9"));
  const ICStringUnique source("na\xc3\xafve");
  c.ConvertFromUTF8String(source);
  EXPECT_EQ(Text(c), Expected<Unit>("na\xc3\xafve", u"na\u00efve"));
}

TYPED_TEST(ConvertFromUTF8, NullZeroLengthOrEmptyTextEmptiesTheString) {
  TypeParam s;
  s.ConvertFromUTF8String("old text", -1);
  s.ConvertFromUTF8String(static_cast<const char*>(nullptr), 5);
  EXPECT_EQ(s.GetLength(), 0);
  s.ConvertFromUTF8String("old text", -1);
  s.ConvertFromUTF8String("abc", 0);
  EXPECT_EQ(s.GetLength(), 0);
  s.ConvertFromUTF8String("old text", -1);
  s.ConvertFromUTF8String("", -1);
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_EQ(s.GetText()[0], 0);
  s.ConvertFromUTF8String(ICStringUnique());
  EXPECT_EQ(s.GetLength(), 0);
}

TYPED_TEST(ConvertFromUTF8, ASharedBlockKeepsTheOtherOwnersText) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s;
  s.ConvertFromUTF8String("first text", -1);
  const TypeParam other(s);
  s.ConvertFromUTF8String("x\xc3\xa9", -1);
  EXPECT_EQ(Text(other), Expected<Unit>("first text", u"first text"));
  EXPECT_EQ(Text(s), Expected<Unit>("x\xc3\xa9", u"x\u00e9"));
}

TYPED_TEST(ConvertFromUTF8, AViewDoesNotWriteTheTextItViews) {
  using Unit = typename TypeParam::UnitType;
  if constexpr (TypeParam::IsView) {
    Unit foreign[] = {'f', 'o', 'r', 'e', 'i', 'g', 'n', 0};
    TypeParam view(foreign);
    ASSERT_FALSE(view.OwnsBlock());
    view.ConvertFromUTF8String("new", 3);
    EXPECT_TRUE(view.OwnsBlock());
    EXPECT_EQ(Text(view), Expected<Unit>("new", u"new"));
    EXPECT_EQ(std::basic_string<Unit>(foreign), Expected<Unit>("foreign", u"foreign"));
    TypeParam emptied(foreign);
    emptied.ConvertFromUTF8String(nullptr, -1);
    EXPECT_TRUE(emptied.OwnsBlock());
    EXPECT_EQ(emptied.GetLength(), 0);
    EXPECT_EQ(std::basic_string<Unit>(foreign), Expected<Unit>("foreign", u"foreign"));
  }
}

TYPED_TEST(ConvertFromUTF8, OneAllocationForANewTextAndNoneWhenTheBlockIsLargeEnough) {
  // Explicit lengths: a narrow view given -1 would view the text instead of copying it.
  const char* utf8 = "\xe4\xb8\xad\xe6\x96\x87 text \xf0\x9f\x98\x80";
  TypeParam s;
  long allocations, frees;
  {
    AllocationScope scope;
    s.ConvertFromUTF8String(utf8, 16);
    allocations = scope.Allocations();
  }
  EXPECT_EQ(allocations, 1);
  const int32_t capacity = s.GetCapacity();
  EXPECT_EQ(capacity, s.GetLength());  // exactly the size
  {
    AllocationScope scope;
    s.ConvertFromUTF8String(utf8, 3);
    s.ConvertFromUTF8String(utf8, 16);
    allocations = scope.Allocations();
    frees = scope.Frees();
  }
  EXPECT_EQ(allocations, 0);
  EXPECT_EQ(frees, 0);
  EXPECT_EQ(s.GetCapacity(), capacity);
}

TEST(ConvertFromUTF8Wide, InvalidBytesGetTheReplacementCharacterWithoutAnException) {
  ICStringUniqueW s;
  EXPECT_NO_THROW(s.ConvertFromUTF8String("\xff", -1));
  EXPECT_EQ(Text(s), std::u16string(u"\ufffd"));
  s.ConvertFromUTF8String(
      "a\xed\xa0\x80"
      "b\xe4\xb8",
      -1);
  EXPECT_EQ(Text(s), std::u16string(u"a\ufffd\ufffd"
                                    "b\ufffd"));
}

TEST(ConvertFromUTF8Wide, LengthMinusOneReadsUpToTheTerminator) {
  ICStringSharedW s;
  s.ConvertFromUTF8String("abc\0def", -1);
  EXPECT_EQ(Text(s), std::u16string(u"abc"));
}

TEST(ConvertFromUTF8Wide, ABlockTooSmallForTheTextIsReplacedByOneOfTheExactSize) {
  // Capacity 4 for 10 bytes of ASCII: the direct conversion into the block cannot succeed.
  ICStringUniqueW s;
  s.ConvertFromUTF8String("abcd", -1);
  ASSERT_EQ(s.GetCapacity(), 4);
  long allocations, frees;
  {
    AllocationScope scope;
    s.ConvertFromUTF8String("0123456789", -1);
    allocations = scope.Allocations();
    frees = scope.Frees();
  }
  EXPECT_EQ(Text(s), std::u16string(u"0123456789"));
  EXPECT_EQ(s.GetCapacity(), 10);
  EXPECT_EQ(allocations, 1);
  EXPECT_EQ(frees, 1);
}

TEST(ConvertFromUTF8Wide, AResultOfExactlyTheCapacityStaysInTheBlock) {
  ICStringUniqueW s;
  s.ConvertFromUTF8String("\xe4\xb8\xad\xe6\x96\x87\xe5\xad\x97", -1);  // three units
  ASSERT_EQ(s.GetCapacity(), 3);
  const char16_t* block = s.GetText();
  s.ConvertFromUTF8String("xyz", -1);
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(Text(s), std::u16string(u"xyz"));
  s.ConvertFromUTF8String("wxyz", -1);  // one more than fits
  EXPECT_EQ(Text(s), std::u16string(u"wxyz"));
  EXPECT_EQ(s.GetCapacity(), 4);
}

TEST(ConvertFromUTF8Wide, AnInlineStringConvertsIntoItsBuffer) {
  ICStringInlineW<16> s;
  long allocations;
  {
    AllocationScope scope;
    s.ConvertFromUTF8String("\xc3\xa9t\xc3\xa9", -1);
    allocations = scope.Allocations();
  }
  EXPECT_TRUE(s.IsInBuffer());
  EXPECT_EQ(Text(s), std::u16string(u"\u00e9t\u00e9"));
  EXPECT_EQ(allocations, 0);
}

TEST(ConvertFromUTF8Narrow, IsAPlainAssignment) {
  ICStringUnique s;
  s.ConvertFromUTF8String("\xff\xfe", -1);  // bytes as they are, no replacement
  EXPECT_EQ(Text(s), std::string("\xff\xfe"));
  const char* text = "viewed";
  ICStringView view;
  view.ConvertFromUTF8String(text, -1);
  EXPECT_FALSE(view.OwnsBlock());
  EXPECT_EQ(view.GetText(), text);
  view.ConvertFromUTF8String(text, 4);
  EXPECT_TRUE(view.OwnsBlock());
  EXPECT_EQ(Text(view), std::string("view"));
}

template <class T>
class ConvertToUTF8Units : public ::testing::Test {};
using WideShapes = ::testing::Types<ICStringUniqueW, ICStringSharedW, ICStringViewW>;
TYPED_TEST_SUITE(ConvertToUTF8Units, WideShapes);

TYPED_TEST(ConvertToUTF8Units, OneUnitPerByte) {
  TypeParam s(u"a\u00e9\u20ac\U0001F600");
  EXPECT_EQ(&s.ConvertToUTF8Units(), &s);
  const char16_t expected[] = {'a', 0xc3, 0xa9, 0xe2, 0x82, 0xac, 0xf0, 0x9f, 0x98, 0x80};
  EXPECT_EQ(Text(s), std::u16string(expected, 10));
  EXPECT_EQ(s.GetText()[10], 0);
}

TYPED_TEST(ConvertToUTF8Units, ALoneSurrogateGetsTheReplacementBytes) {
  const char16_t text[] = {'x', 0xdc00, 'y', 0};
  TypeParam s(text);
  s.ConvertToUTF8Units();
  const char16_t expected[] = {'x', 0xef, 0xbf, 0xbd, 'y'};
  EXPECT_EQ(Text(s), std::u16string(expected, 5));
}

TYPED_TEST(ConvertToUTF8Units, LeavesOtherOwnersAndForeignTextAlone) {
  char16_t foreign[] = u"\u00e9t\u00e9";
  TypeParam s(foreign);
  const TypeParam other(s);
  s.ConvertToUTF8Units();
  const char16_t expected[] = {0xc3, 0xa9, 't', 0xc3, 0xa9};
  EXPECT_EQ(Text(s), std::u16string(expected, 5));
  EXPECT_EQ(Text(other), std::u16string(u"\u00e9t\u00e9"));
  EXPECT_EQ(std::u16string(foreign), std::u16string(u"\u00e9t\u00e9"));
}

TYPED_TEST(ConvertToUTF8Units, RoomIsMadeForTheSizeWithTheTerminator) {
  TypeParam s;
  s.ConvertToUTF8Units();
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_EQ(s.GetCapacity(), 1);  // the measured size counts the terminator
}

template <class S>
concept HasConvertToUTF8 = requires(const S& s) {
  s.ConvertToUTF8();
};
template <class S>
concept HasConvertToUTF8Units = requires(S& s) {
  s.ConvertToUTF8Units();
};

static_assert(!HasConvertToUTF8<ICStringUnique> && !HasConvertToUTF8<ICStringView>,
              "ConvertToUTF8 is a member of the wide shapes only");
static_assert(!HasConvertToUTF8Units<ICStringShared>,
              "ConvertToUTF8Units is a member of the wide shapes only");
static_assert(HasConvertToUTF8<ICStringViewW> && HasConvertToUTF8Units<ICStringUniqueW>);

}  // namespace
}  // namespace ic
