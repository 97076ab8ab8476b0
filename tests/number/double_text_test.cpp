// FormatDouble, ParseDouble, ParseInteger, their cores and the fixed float form, narrow and wide.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include <ic/number/double_text.h>
#include <ic/number/internal/fixed_float.h>
#include <ic/number/number_format.h>
#include <ic/platform/bounded_format.h>
#include <ic/string/chain.h>
#include <ic/string/ic_string.h>

#include "../string/block_probe.h"
#include "../string/counting_allocator.h"
#include "../string/owned_text.h"

namespace ic {
namespace {

using test::AllocationScope;
using test::Owned;
using test::Units;

using test::TextOf;

template <class S>
class DoubleFormat : public ::testing::Test {};
using UniqueShapes = ::testing::Types<ICStringUnique, ICStringUniqueW>;
TYPED_TEST_SUITE(DoubleFormat, UniqueShapes);

template <class S>
std::string Format(double value, int32_t digits, bool round, double tolerance, bool pad,
                   bool keepNegativeZero, bool force) {
  S s;
  s.FormatDouble(value, digits, round, tolerance, pad, keepNegativeZero, force);
  EXPECT_EQ(s.GetText()[s.GetLength()], 0);
  return TextOf(s);
}

TYPED_TEST(DoubleFormat, ExamplesOfTheContract) {
  EXPECT_EQ(Format<TypeParam>(2.5, 3, true, 1e-9, false, false, false), "2.5");
  EXPECT_EQ(Format<TypeParam>(2.5, 3, true, 1e-9, true, false, false), "2.500");
  EXPECT_EQ(Format<TypeParam>(2.0, 3, true, 1e-9, false, false, true), "2.0");
  EXPECT_EQ(Format<TypeParam>(-0.0, 3, true, 1e-9, false, false, false), "0");
  EXPECT_EQ(Format<TypeParam>(-0.0, 3, true, 1e-9, false, true, false), "-0");
}

TYPED_TEST(DoubleFormat, InfinitiesAreNamedAndNaNIsZero) {
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Format<TypeParam>(inf, 2, true, 0, true, false, true), "INF");
  EXPECT_EQ(Format<TypeParam>(-inf, 2, true, 0, true, false, true), "-INF");
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(Format<TypeParam>(nan, 2, true, 1e-9, false, false, false), "0");
  EXPECT_EQ(Format<TypeParam>(nan, 2, true, 1e-9, false, false, true), "0.0");
  EXPECT_EQ(Format<TypeParam>(-nan, 2, true, 1e-9, false, true, false), "-0");
}

TYPED_TEST(DoubleFormat, NegativeDigitsWriteNoFractionAndDoNotRound) {
  EXPECT_EQ(Format<TypeParam>(2.75, -1, true, 1e-9, true, false, false), "2");
  EXPECT_EQ(Format<TypeParam>(2.75, 0, true, 1e-9, true, false, false), "3");
  EXPECT_EQ(Format<TypeParam>(2.75, 0, false, 1e-9, true, false, false), "2");
  EXPECT_EQ(Format<TypeParam>(2.75, -3, true, 1e-9, false, false, true), "2.0");
}

TYPED_TEST(DoubleFormat, FractionWithinToleranceOfOneGivesTheNextInteger) {
  EXPECT_EQ(Format<TypeParam>(0.9999999999, 4, true, 1e-9, false, false, false), "1");
  EXPECT_EQ(Format<TypeParam>(0.9999999999, 4, false, 1e-9, false, false, false), "1");
  EXPECT_EQ(Format<TypeParam>(7.0000000001, 4, false, 1e-9, true, false, false), "7.0000");
  // Tolerance comparisons are strict: 0 snaps nothing.
  EXPECT_EQ(Format<TypeParam>(0.9999999999, 4, false, 0.0, false, false, false), "0.9999");
}

TYPED_TEST(DoubleFormat, RoundingInAdvanceCarriesIntoTheIntegerPart) {
  EXPECT_EQ(Format<TypeParam>(1.996, 2, true, 1e-9, false, false, false), "2");
  EXPECT_EQ(Format<TypeParam>(1.996, 2, false, 1e-9, false, false, false), "1.99");
  EXPECT_EQ(Format<TypeParam>(-1.996, 2, true, 1e-9, true, false, false), "-2.00");
  EXPECT_EQ(Format<TypeParam>(0.125, 2, true, 1e-9, false, false, false), "0.13");
}

TYPED_TEST(DoubleFormat, WithoutToleranceADigitCanPassNine) {
  // 0.96 rounds in advance to a fraction of exactly 1.0, which a tolerance of 0 does not snap:
  // the one digit comes out as ten, the unit after "9".
  EXPECT_EQ(Format<TypeParam>(0.96, 1, true, 0.0, false, false, false), "0.:");
}

TYPED_TEST(DoubleFormat, SignStaysOnlyOnNonZeroText) {
  // A fraction that is written keeps the sign, even when its digits come out as zeros.
  EXPECT_EQ(Format<TypeParam>(-0.004, 2, true, 1e-9, false, false, false), "-0.00");
  EXPECT_EQ(Format<TypeParam>(-0.0000000001, 2, true, 1e-9, false, false, false), "0");
  EXPECT_EQ(Format<TypeParam>(-0.0000000001, 2, true, 1e-9, false, true, false), "-0");
  EXPECT_EQ(Format<TypeParam>(-0.25, 0, false, 1e-9, false, false, false), "0");
  EXPECT_EQ(Format<TypeParam>(-0.25, 2, false, 1e-9, false, false, false), "-0.25");
  EXPECT_EQ(Format<TypeParam>(-12.0, 2, false, 1e-9, false, false, false), "-12");
}

TYPED_TEST(DoubleFormat, LargeValuesGrowTheBlockAndShowPlainArithmeticDigits) {
  const std::string text = Format<TypeParam>(1e300, 2, true, 1e-9, false, false, false);
  ASSERT_EQ(text.size(), 301u);
  EXPECT_EQ(text[0], '1');
  for (char c : text)
    EXPECT_TRUE(c >= '0' && c <= '9');
  const std::string max =
      Format<TypeParam>(-std::numeric_limits<double>::max(), 0, true, 0, false, false, false);
  EXPECT_EQ(max.size(), 310u);
  EXPECT_EQ(max[0], '-');
}

TYPED_TEST(DoubleFormat, OneAllocationForCommonValuesAndNoneWithRoom) {
  TypeParam s;
  {
    AllocationScope scope;
    s.FormatDouble(-12345.678, 3, true, 1e-9, true, false, false);
    EXPECT_EQ(scope.Allocations(), 1);
  }
  EXPECT_EQ(TextOf(s), "-12345.678");
  EXPECT_GE(s.GetCapacity(), sizeof(typename TypeParam::UnitType) == 1 ? 64 : 16);
  {
    AllocationScope scope;
    s.FormatDouble(3.0, 0, true, 1e-9, false, false, false);
    EXPECT_EQ(scope.Allocations(), 0);
  }
  EXPECT_EQ(TextOf(s), "3");
  EXPECT_EQ(s.GetLength(), 1);
}

// The reference for values whose arithmetic is exact: n + k / 2^m with m below 5, written with
// at least m fraction digits (so nothing is rounded inside the fraction), or with none.
std::string Reference(bool negative, uint64_t integer, uint32_t k, int m, int32_t digits,
                      bool round, bool pad, bool keepNegativeZero, bool force) {
  std::string fractionText;  // the exact decimal digits of k / 2^m, m of them
  if (k != 0) {
    uint64_t scaled = k;
    for (int i = 0; i < m; ++i)
      scaled *= 5;
    fractionText = std::to_string(scaled);
    fractionText.insert(0, static_cast<size_t>(m) - fractionText.size(), '0');
    while (fractionText.back() == '0')  // an even k has fewer digits than m
      fractionText.pop_back();
  }
  const bool half = k != 0 && 2 * static_cast<uint64_t>(k) >= (uint64_t{1} << m);
  if (digits <= 0) {
    if (digits == 0 && round && half) ++integer;
    fractionText.clear();
  }
  std::string text = std::to_string(integer);
  const bool sign =
      keepNegativeZero ? negative : negative && (integer > 0 || (!fractionText.empty()));
  if (sign) text = "-" + text;
  if (digits > 0 && (!fractionText.empty() || pad)) {
    text += "." + fractionText;
    if (pad) text.append(static_cast<size_t>(digits) - fractionText.size(), '0');
  } else if (force) {
    text += ".0";
  }
  return text;
}

TYPED_TEST(DoubleFormat, MatchesAReferenceWhereTheArithmeticIsExact) {
  std::mt19937_64 random(12);
  for (int trial = 0; trial < 20000; ++trial) {
    const bool negative = random() & 1;
    const uint64_t integer = (random() & 1) ? random() % 100 : random() % (uint64_t{1} << 40);
    const int m = static_cast<int>(random() % 5);
    const uint32_t k = static_cast<uint32_t>(random() % (uint64_t{1} << m));
    int32_t digits = static_cast<int32_t>(random() % 10) - 2;
    if (digits > 0 && digits < m) digits = m;
    const bool round = random() & 1, pad = random() & 1, keep = random() & 1, force = random() & 1;
    const double tolerance = (random() & 1) ? 0.0 : 1e-9;
    double value = static_cast<double>(integer) + std::ldexp(static_cast<double>(k), -m);
    if (negative) value = -value;
    SCOPED_TRACE(std::to_string(value) + " digits " + std::to_string(digits));
    EXPECT_EQ(Format<TypeParam>(value, digits, round, tolerance, pad, keep, force),
              Reference(negative, integer, k, m, digits, round, pad, keep, force));
  }
}

// ---------------------------------------------------------------------------------------------
// Parsing.

template <class Unit>
class DoubleParse : public ::testing::Test {};
using Widths = ::testing::Types<char, char16_t>;
TYPED_TEST_SUITE(DoubleParse, Widths);

// Reads with _ParseDoubleAt and answers the value and the units consumed.
template <class Unit>
std::pair<double, long> ReadDouble(const std::string& ascii, char decimal, char group) {
  const std::basic_string<Unit> text = Units<Unit>(ascii);
  const Unit* cursor = text.c_str();
  const double value =
      _ParseDoubleAt(&cursor, static_cast<Unit>(decimal), static_cast<Unit>(group));
  return {value, static_cast<long>(cursor - text.c_str())};
}

TYPED_TEST(DoubleParse, GroupSeparatorsOnlyInTheIntegerPart) {
  EXPECT_EQ(ReadDouble<TypeParam>("1,234.5", '.', ','), std::make_pair(1234.5, 7L));
  EXPECT_EQ(ReadDouble<TypeParam>("1,234.5,6", '.', ','), std::make_pair(1234.5, 7L));
  EXPECT_EQ(ReadDouble<TypeParam>("1,234.5", '.', 0), std::make_pair(1.0, 1L));
  EXPECT_EQ(ReadDouble<TypeParam>("1 234,25", ',', ' '), std::make_pair(1234.25, 8L));
}

TYPED_TEST(DoubleParse, Exponents) {
  EXPECT_EQ(ReadDouble<TypeParam>("1e3", '.', 0), std::make_pair(1000.0, 3L));
  EXPECT_EQ(ReadDouble<TypeParam>("1E-2", '.', 0), std::make_pair(0.01, 4L));
  EXPECT_EQ(ReadDouble<TypeParam>("1e", '.', 0), std::make_pair(1.0, 2L));
  EXPECT_EQ(ReadDouble<TypeParam>("-2.5e+1x", '.', 0), std::make_pair(-25.0, 7L));
  // The exponent takes no group separator.
  EXPECT_EQ(ReadDouble<TypeParam>("1e1,0", '.', ','), std::make_pair(10.0, 3L));
}

// The power of ten is correctly rounded wherever the platform's pow may not be: the same value
// as the correctly rounding strtod for every exponent up to 22 either way.
TYPED_TEST(DoubleParse, PowersOfTenAreCorrectlyRounded) {
  for (int exponent = -22; exponent <= 22; ++exponent) {
    const std::string text = "1e" + std::to_string(exponent);
    SCOPED_TRACE(text);
    EXPECT_EQ(ReadDouble<TypeParam>(text.c_str(), '.', 0).first,
              std::strtod(text.c_str(), nullptr));
  }
  EXPECT_EQ(ReadDouble<TypeParam>("3e-5", '.', 0).first, 3 * 1e-5);
}

TYPED_TEST(DoubleParse, PointWithAndWithoutDecimalSeparator) {
  EXPECT_EQ(ReadDouble<TypeParam>(".5", '.', 0), std::make_pair(0.5, 2L));
  EXPECT_EQ(ReadDouble<TypeParam>(".5", 0, 0), std::make_pair(0.0, 0L));
}

TYPED_TEST(DoubleParse, NoNumberGivesSignedZeroBehindTheSign) {
  auto [value, used] = ReadDouble<TypeParam>("-x", '.', 0);
  EXPECT_EQ(value, 0.0);
  EXPECT_TRUE(std::signbit(value));
  EXPECT_EQ(used, 1);
  auto [plus, plusUsed] = ReadDouble<TypeParam>("+", '.', 0);
  EXPECT_EQ(plus, 0.0);
  EXPECT_FALSE(std::signbit(plus));
  EXPECT_EQ(plusUsed, 1);
  EXPECT_EQ(ReadDouble<TypeParam>("", '.', 0), std::make_pair(0.0, 0L));
}

TYPED_TEST(DoubleParse, DigitsBeyondTheRangeGiveInfinity) {
  const std::string digits(400, '9');
  EXPECT_TRUE(std::isinf(ReadDouble<TypeParam>(digits, '.', 0).first));
}

TYPED_TEST(DoubleParse, IntegersWrapIn32Bits) {
  auto read = [](const std::string& ascii, char group, long expectUsed) {
    const std::basic_string<TypeParam> text = Units<TypeParam>(ascii);
    const TypeParam* cursor = text.c_str();
    const int32_t value = _ParseIntegerAt(&cursor, static_cast<TypeParam>(group));
    EXPECT_EQ(cursor - text.c_str(), expectUsed) << ascii;
    return value;
  };
  EXPECT_EQ(read("2147483648", 0, 10), INT32_MIN);
  EXPECT_EQ(read("4294967297", 0, 10), 1);
  EXPECT_EQ(read("-12'345x", '\'', 7), -12345);
  EXPECT_EQ(read("+7", 0, 2), 7);
  EXPECT_EQ(read("-", 0, 1), 0);
  EXPECT_EQ(read("x", 0, 0), 0);
}

TYPED_TEST(DoubleParse, FractionReadsDigitsOnly) {
  const std::basic_string<TypeParam> text = Units<TypeParam>("25x");
  const TypeParam* cursor = text.c_str();
  EXPECT_EQ(ParseFraction(&cursor), 0.25);
  EXPECT_EQ(cursor - text.c_str(), 2);
  const std::basic_string<TypeParam> none = Units<TypeParam>("-5");
  cursor = none.c_str();
  EXPECT_EQ(ParseFraction(&cursor), 0.0);
  EXPECT_EQ(cursor, none.c_str());
}

TYPED_TEST(DoubleParse, NullCursorsReadNothing) {
  EXPECT_EQ(_ParseDoubleAt(static_cast<const TypeParam**>(nullptr), TypeParam('.'), TypeParam(0)),
            0.0);
  const TypeParam* null = nullptr;
  EXPECT_EQ(_ParseIntegerAt(&null, TypeParam(0)), 0);
  EXPECT_EQ(ParseFraction(&null), 0.0);
}

TYPED_TEST(DoubleParse, RandomDecimalsMatchTheirExactValue) {
  // Integer and fraction parts of up to 6 digits are exact in doubles, and so is their sum
  // divided by a power of ten computed the same way.
  std::mt19937 random(5);
  for (int trial = 0; trial < 5000; ++trial) {
    const uint32_t whole = random() % 1000000, part = random() % 1000;
    char text[64];
    std::snprintf(text, sizeof text, "%u.%03u", whole, part);
    const auto [value, used] = ReadDouble<TypeParam>(text, '.', 0);
    EXPECT_EQ(value, whole + part / 1000.0) << text;
    EXPECT_EQ(used, static_cast<long>(std::char_traits<char>::length(text)));
  }
}

template <class S>
class ParseMembers : public ::testing::Test {};
TYPED_TEST_SUITE(ParseMembers, test::AllStringShapes);

TYPED_TEST(ParseMembers, FromTheStartAndFromAnIndex) {
  using Unit = typename TypeParam::UnitType;
  const TypeParam s = Owned<TypeParam>("x-1,250.5e1;2147483648");
  EXPECT_EQ(s.ParseDouble(), 0.0);
  int32_t position = 1;
  EXPECT_EQ(s.ParseDouble(position, Unit('.'), Unit(',')), -12505.0);
  EXPECT_EQ(position, 11);
  position = 12;
  EXPECT_EQ(s.ParseInteger(position), INT32_MIN);
  EXPECT_EQ(position, 22);
  position = 1;
  EXPECT_EQ(s.ParseInteger(position, Unit(',')), -1250);
  EXPECT_EQ(position, 7);
  EXPECT_EQ(Owned<TypeParam>("12.75").ParseDouble(), 12.75);
  EXPECT_EQ(Owned<TypeParam>("12,75").ParseDouble(Unit(','), Unit(0)), 12.75);
  EXPECT_EQ(Owned<TypeParam>("1 000").ParseInteger(Unit(' ')), 1000);
}

TYPED_TEST(ParseMembers, PositionsOutsideTheTextReadNothing) {
  const TypeParam s = Owned<TypeParam>("42");
  int32_t position = 3;
  EXPECT_EQ(s.ParseDouble(position), 0.0);
  EXPECT_EQ(position, 3);
  position = -1;
  EXPECT_EQ(s.ParseInteger(position), 0);
  EXPECT_EQ(position, -1);
  position = 2;  // the terminator: nothing to read, the position stays on it
  EXPECT_EQ(s.ParseInteger(position), 0);
  EXPECT_EQ(position, 2);
  const TypeParam empty;
  EXPECT_EQ(empty.ParseDouble(), 0.0);
  EXPECT_EQ(empty.ParseInteger(), 0);
}

// ---------------------------------------------------------------------------------------------
// The fixed float form: FormatNumber, AssignNumber, AppendNumber and the builder's float piece
// give the same text, that of the run-time's "%10.2f": the C library's printf, or on Windows the
// C run-time's (which rounds a halfway value such as 1598.125 up and writes a NaN as "-1.#J").

template <class S>
class FixedFloat : public ::testing::Test {};
TYPED_TEST_SUITE(FixedFloat, test::AllStringShapes);

std::string Printf(float value) {
  char text[128];
  ic::platform::BoundedFormat(text, sizeof text, "%10.2f", static_cast<double>(value));
  return text;
}

TYPED_TEST(FixedFloat, EveryCallerWritesThePrintfText) {
  using Unit = typename TypeParam::UnitType;
  std::mt19937 random(3);
  for (int trial = 0; trial < 2000; ++trial) {
    uint32_t bits = static_cast<uint32_t>(random());
    float value;
    std::memcpy(&value, &bits, sizeof value);
    if (trial % 2)
      value = static_cast<float>(static_cast<int32_t>(random() % 2000000) - 1000000) / 64;
    const std::string expected = Printf(value);
    SCOPED_TRACE(expected);

    Unit buffer[internal::kFixedFloatUnits + 1];
    const int32_t needed = FormatNumber(static_cast<Unit*>(nullptr), 0, value);
    ASSERT_EQ(needed, static_cast<int32_t>(expected.size()) + 1);
    EXPECT_EQ(FormatNumber(buffer, needed - 1, value), needed);
    ASSERT_EQ(FormatNumber(buffer, needed, value), 0);
    EXPECT_EQ(std::basic_string<Unit>(buffer), Units<Unit>(expected));

    TypeParam s = Owned<TypeParam>("old");
    s.AssignNumber(value);
    EXPECT_EQ(TextOf(s), expected);
    s.AppendNumber(value);
    EXPECT_EQ(TextOf(s), expected + expected);

    const TypeParam open = Owned<TypeParam>("<");
    TypeParam built(open + ICStringPieceT<Unit>(value));
    EXPECT_EQ(TextOf(built), "<" + expected);
  }
}

TYPED_TEST(FixedFloat, PadsToTenUnitsWithTwoDecimals) {
  TypeParam s;
  s.AssignNumber(3.5f);
  EXPECT_EQ(TextOf(s), "      3.50");
  s.AppendNumber(-1234567.0f);
  EXPECT_EQ(TextOf(s), "      3.50-1234567.00");
}

}  // namespace
}  // namespace ic
