// FormatNumber then ParseNumber gives the value back, for every integer type and both widths.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include <ic/number/number_format.h>
#include <ic/number/number_parse.h>

namespace ic {
namespace {

template <class T>
class RoundTrip : public ::testing::Test {};
using ValueTypes =
    ::testing::Types<signed char, unsigned char, short, unsigned short, int, unsigned int, long,
                     unsigned long, long long, unsigned long long>;
TYPED_TEST_SUITE(RoundTrip, ValueTypes);

template <class Unit, class T>
void CheckRoundTrip(T value, const StringNumberFormatOptions<Unit>& format,
                    const StringNumberParseOptions& parse) {
  Unit buffer[40];
  const int32_t needed = FormatNumber(static_cast<Unit*>(nullptr), 0, value, format);
  ASSERT_LE(needed, 40);
  ASSERT_EQ(FormatNumber(buffer, needed, value, format), 0);
  T back = static_cast<T>(~value);  // anything but the value
  ParseNumber(static_cast<const Unit*>(buffer), back, parse);
  ASSERT_EQ(back, value);
}

TYPED_TEST(RoundTrip, RandomValuesAndLimits) {
  using T = TypeParam;
  std::mt19937_64 rng(sizeof(T) * 1000 + std::is_signed_v<T>);
  std::vector<T> values = {std::numeric_limits<T>::min(),
                           std::numeric_limits<T>::max(),
                           0,
                           1,
                           static_cast<T>(std::numeric_limits<T>::max() - 1),
                           static_cast<T>(std::numeric_limits<T>::min() + 1)};
  for (int i = 0; i < 20000; ++i)
    values.push_back(static_cast<T>(rng() >> (i % 64)));
  const StringNumberParseOptions plain{};
  // Blanks from a space fill are skipped; zeros from a zero fill are leading zeros.
  const StringNumberParseOptions blanks{true, 0, 0, false};
  for (T value : values) {
    CheckRoundTrip<char>(value, DefaultDecimalFormat<char>, plain);
    CheckRoundTrip<char16_t>(value, DefaultDecimalFormat<char16_t>, plain);
    CheckRoundTrip<char>(value, StringNumberFormatOptions<char>{25, ' '}, blanks);
    CheckRoundTrip<char16_t>(value, StringNumberFormatOptions<char16_t>{25, u'0'}, plain);
    if (::testing::Test::HasFatalFailure()) return;
  }
}

TYPED_TEST(RoundTrip, HexadecimalText) {
  using T = TypeParam;
  using UInt = std::make_unsigned_t<T>;
  std::mt19937_64 rng(42 + sizeof(T));
  const StringNumberParseOptions hex{false, 0, 0, true};
  for (int i = 0; i < 20000; ++i) {
    const auto value = static_cast<T>(rng() >> (i % 64));
    char buffer[24];
    ASSERT_EQ(FormatHex(buffer, 24, static_cast<UInt>(value), sizeof(T), DefaultHexFormat<char>),
              0);
    T back = 0;
    ParseNumber(static_cast<const char*>(buffer), back, hex);
    ASSERT_EQ(back, value) << buffer;
  }
}

}  // namespace
}  // namespace ic
