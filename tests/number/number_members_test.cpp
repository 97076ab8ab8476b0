// AssignNumber and AppendNumber in every shape and width: text, room, allocations and sharing.
#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include <ic/number/number_format.h>
#include <ic/string/ic_string.h>
#include <ic/string/inline.h>

#include "../string/counting_allocator.h"

namespace ic {
namespace {

using test::AllocationScope;

template <class S>
std::string Text(const S& s) {
  std::string out;
  for (int32_t i = 0; i < s.GetLength(); ++i)
    out += static_cast<char>(s.GetText()[i]);
  return out;
}

// A string of type S holding a copy of the ASCII text (a view gets a block of its own).
template <class S>
S Make(const char* ascii) {
  std::basic_string<typename S::UnitType> units(ascii,
                                                ascii + std::char_traits<char>::length(ascii));
  return S(units.c_str(), static_cast<int32_t>(units.size()));
}

template <class T>
std::string ToChars(T value) {
  char buffer[32];
  return std::string(buffer, std::to_chars(buffer, buffer + 32, value).ptr);
}

template <class T>
class NumberMembers : public ::testing::Test {};
using AllShapes = ::testing::Types<ICStringUnique, ICStringUniqueW, ICStringShared, ICStringSharedW,
                                   ICStringView, ICStringViewW>;
TYPED_TEST_SUITE(NumberMembers, AllShapes);

TYPED_TEST(NumberMembers, AssignEveryValueType) {
  TypeParam s = Make<TypeParam>("old");
  EXPECT_EQ(&s.AssignNumber(static_cast<signed char>(-128)), &s);
  EXPECT_EQ(Text(s), "-128");
  EXPECT_EQ(Text(s.AssignNumber(static_cast<unsigned char>(255))), "255");
  EXPECT_EQ(Text(s.AssignNumber(static_cast<short>(-32768))), "-32768");
  EXPECT_EQ(Text(s.AssignNumber(static_cast<unsigned short>(65535))), "65535");
  EXPECT_EQ(Text(s.AssignNumber(std::numeric_limits<int>::min())), "-2147483648");
  EXPECT_EQ(Text(s.AssignNumber(4294967295u)), "4294967295");
  EXPECT_EQ(Text(s.AssignNumber(-7L)), "-7");
  EXPECT_EQ(Text(s.AssignNumber(7UL)), "7");
  EXPECT_EQ(Text(s.AssignNumber(std::numeric_limits<long long>::min())), "-9223372036854775808");
  EXPECT_EQ(Text(s.AssignNumber(std::numeric_limits<unsigned long long>::max())),
            "18446744073709551615");
  EXPECT_EQ(Text(s.AssignNumber(0)), "0");
  EXPECT_EQ(s.GetText()[s.GetLength()], 0);
}

TYPED_TEST(NumberMembers, AssignAgreesWithToChars) {
  std::mt19937_64 rng(64);
  TypeParam s;
  for (int i = 0; i < 3000; ++i) {
    const auto bits = rng() >> (i % 64);
    ASSERT_EQ(Text(s.AssignNumber(static_cast<long long>(bits))),
              ToChars(static_cast<long long>(bits)));
    ASSERT_EQ(Text(s.AssignNumber(static_cast<unsigned>(bits))),
              ToChars(static_cast<unsigned>(bits)));
    ASSERT_EQ(Text(s.AssignNumber(static_cast<short>(bits))), ToChars(static_cast<short>(bits)));
  }
}

TYPED_TEST(NumberMembers, AssignAllocatesExactlyOnceAndKeepsALargeEnoughBlock) {
  TypeParam s;
  long allocations;
  {
    AllocationScope scope;
    s.AssignNumber(-1234567);
    allocations = scope.Allocations();
  }
  EXPECT_EQ(allocations, 1);
  EXPECT_EQ(s.GetCapacity(), 8);
  EXPECT_EQ(s.GetLength(), 8);
  {
    AllocationScope scope;
    s.AssignNumber(42u);
    s.AssignNumber(-9999999LL);
    allocations = scope.Allocations();
  }
  EXPECT_EQ(allocations, 0);
  EXPECT_EQ(Text(s), "-9999999");
  EXPECT_EQ(s.GetCapacity(), 8);
}

TYPED_TEST(NumberMembers, AppendToEmptyEqualsAssign) {
  TypeParam a, b;
  a.AssignNumber(-31415);
  b.AppendNumber(-31415);
  EXPECT_EQ(Text(a), Text(b));
  TypeParam c, d;
  c.AssignNumber(static_cast<const void*>(&a));
  d.AppendNumber(static_cast<const void*>(&a));
  EXPECT_EQ(Text(c), Text(d));
}

TYPED_TEST(NumberMembers, AppendKeepsTheOldText) {
  TypeParam s = Make<TypeParam>("n=");
  s.AppendNumber(static_cast<short>(-12));
  s.AppendNumber(44);
  EXPECT_EQ(Text(s), "n=-1244");
  s.AppendNumber(3000000000LL);
  s.AppendNumber(-5L);
  EXPECT_EQ(Text(s), "n=-12443000000000-5");
  EXPECT_EQ(s.GetText()[s.GetLength()], 0);
}

TYPED_TEST(NumberMembers, PointersInHexadecimal) {
  TypeParam s;
  const void* p = reinterpret_cast<const void*>(uintptr_t{0x1a2b});
  EXPECT_EQ(Text(s.AssignNumber(p)), "0x1A2B");
  EXPECT_EQ(Text(s.AssignNumber(static_cast<const void*>(nullptr))), "0x0");
  s.AppendNumber(p);
  EXPECT_EQ(Text(s), "0x00x1A2B");
}

TYPED_TEST(NumberMembers, SixtyFourBitHexWithOptions) {
  using Unit = typename TypeParam::UnitType;
  const Unit prefix[] = {'#', 0};
  TypeParam s;
  s.AssignNumber(uint64_t{0xabcdef}, 2, StringHexFormatOptions<Unit>{false, prefix, 7, Unit('0')});
  EXPECT_EQ(Text(s), "#00cdef");
  s.AssignNumber(uint64_t{0x100}, 1, StringHexFormatOptions<Unit>{true, nullptr, 0, Unit(0)});
  EXPECT_EQ(Text(s), "");  // cut to zero, no prefix: the empty text
  EXPECT_EQ(s.GetText()[0], 0);
}

TYPED_TEST(NumberMembers, SharedBlocksAndViewedTextStayAsTheyWere) {
  using Unit = typename TypeParam::UnitType;
  Unit foreign[] = {'t', 'e', 'x', 't', 0};
  TypeParam s(foreign);
  const TypeParam copy(s);
  s.AssignNumber(12345);
  EXPECT_EQ(Text(s), "12345");
  EXPECT_EQ(Text(copy), "text");
  EXPECT_EQ(foreign[0], Unit('t'));
  TypeParam t(foreign);
  const TypeParam other(t);
  t.AppendNumber(-1);
  EXPECT_EQ(Text(t), "text-1");
  EXPECT_EQ(Text(other), "text");
  EXPECT_EQ(std::basic_string<Unit>(foreign).size(), 4u);
}

// The forms with options exist for shared strings and views.
template <class T>
class NumberMembersWithOptions : public ::testing::Test {};
using SharedAndViews =
    ::testing::Types<ICStringShared, ICStringSharedW, ICStringView, ICStringViewW>;
TYPED_TEST_SUITE(NumberMembersWithOptions, SharedAndViews);

TYPED_TEST(NumberMembersWithOptions, DecimalAndHexOptions) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s;
  EXPECT_EQ(Text(s.AssignNumber(-12, StringNumberFormatOptions<Unit>{6, Unit(' ')})), "   -12");
  EXPECT_EQ(Text(s.AssignNumber(-12L, StringNumberFormatOptions<Unit>{6, Unit('0')})), "-00012");
  EXPECT_EQ(
      Text(s.AssignNumber(static_cast<short>(7), StringNumberFormatOptions<Unit>{3, Unit('0')})),
      "007");
  EXPECT_EQ(Text(s.AssignNumber(static_cast<signed char>(-1),
                                StringNumberFormatOptions<Unit>{-3, Unit('0')})),
            "-1");
  const Unit prefix[] = {'0', 'x', 0};
  EXPECT_EQ(
      Text(s.AssignNumber(uint32_t{255}, StringHexFormatOptions<Unit>{true, prefix, 8, Unit(' ')})),
      "    0xFF");
  EXPECT_EQ(
      Text(s.AssignNumber(uint32_t{0xfff}, StringHexFormatOptions<Unit>{false, nullptr, 0, 0})),
      "fff");
}

template <class S>
concept HasDecimalOptions = requires(S& s) {
  s.AssignNumber(1, StringNumberFormatOptions<typename S::UnitType>{});
};
template <class S>
concept HasUnsignedAppend = requires(S& s) {
  s.AppendNumber(1u);
};

static_assert(!HasDecimalOptions<ICStringUnique> && !HasDecimalOptions<ICStringUniqueW>);
static_assert(HasDecimalOptions<ICStringShared> && HasDecimalOptions<ICStringViewW>);
static_assert(!HasUnsignedAppend<ICStringUnique> && !HasUnsignedAppend<ICStringSharedW>);

TEST(NumberMembersInline, AssignStaysInTheBuffer) {
  ICStringInline<24> s;
  long allocations;
  {
    AllocationScope scope;
    s.AssignNumber(std::numeric_limits<long long>::min());
    s.AppendNumber(12);
    allocations = scope.Allocations();
  }
  EXPECT_TRUE(s.IsInBuffer());
  EXPECT_EQ(Text(s), "-922337203685477580812");
  EXPECT_EQ(allocations, 0);
}

}  // namespace
}  // namespace ic
