// nullptr as the text or buffer of the narrow/wide pairs: it picks no width, so the calls
// below would not compile without the overloads that take it. Each must give what the null
// pointer of a width gives. Also the per-width default formats without a template argument.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include <ic/number/number_format.h>
#include <ic/number/number_parse.h>

namespace ic {
namespace {

template <class T>
void ExpectMeasuresAsEitherWidth(T value) {
  const int32_t narrow = FormatNumber(static_cast<char*>(nullptr), 0, value);
  EXPECT_EQ(FormatNumber(nullptr, 0, value), narrow) << +value;
  EXPECT_EQ(FormatNumber(nullptr, 0, value),
            FormatNumber(static_cast<char16_t*>(nullptr), 0, value));
  EXPECT_EQ(narrow, static_cast<int32_t>(std::to_string(value).size()) + 1) << +value;
}

TEST(NullBuffer, FormatNumberMeasuresEveryIntegerType) {
  std::mt19937_64 rng(17);
  for (int i = 0; i < 200; ++i) {
    const uint64_t bits = rng() >> (rng() % 64);
    ExpectMeasuresAsEitherWidth(static_cast<int8_t>(bits));
    ExpectMeasuresAsEitherWidth(static_cast<uint8_t>(bits));
    ExpectMeasuresAsEitherWidth(static_cast<int16_t>(bits));
    ExpectMeasuresAsEitherWidth(static_cast<uint16_t>(bits));
    ExpectMeasuresAsEitherWidth(static_cast<int32_t>(bits));
    ExpectMeasuresAsEitherWidth(static_cast<uint32_t>(bits));
    ExpectMeasuresAsEitherWidth(static_cast<int64_t>(bits));
    ExpectMeasuresAsEitherWidth(bits);
  }
  ExpectMeasuresAsEitherWidth(std::numeric_limits<int64_t>::min());
}

TEST(NullBuffer, FormatNumberWithOptionsTakesTheirWidth) {
  const StringNumberFormatOptions<char16_t> wide{8, u'0'};
  const StringNumberFormatOptions<char> narrow{8, ' '};
  EXPECT_EQ(FormatNumber(nullptr, 0, -12, wide), 9);
  EXPECT_EQ(FormatNumber(nullptr, 0, 123456789, narrow), 10);
  EXPECT_EQ(FormatNumber(nullptr, 0, 7, wide),
            FormatNumber(static_cast<char16_t*>(nullptr), 0, 7, wide));
}

TEST(NullBuffer, FloatHexAndPointerMeasure) {
  EXPECT_EQ(FormatNumber(nullptr, 0, 3.5f), 11);  // "      3.50"
  EXPECT_EQ(FormatNumber(nullptr, 0, 3.5f), FormatNumber(static_cast<char16_t*>(nullptr), 0, 3.5f));
  EXPECT_EQ(FormatHex(nullptr, 0, 0x1A2B, 4), 7);  // "0x1A2B"
  EXPECT_EQ(
      FormatHex(nullptr, 0, 0xFF, 1, StringHexFormatOptions<char16_t>{false, nullptr, 6, u'0'}), 7);
  EXPECT_EQ(FormatPointer(nullptr, 0, 0xFFFFFFFFu), 11);
  EXPECT_EQ(FormatPointer(nullptr, 0, 1u), FormatPointer(static_cast<char16_t*>(nullptr), 0, 1u));
}

TEST(NullText, ParseNumberReadsItAsEmpty) {
  int32_t value = 99;
  ParseNumber(nullptr, value);
  EXPECT_EQ(value, 0);
  StringNumberParseOptions options;
  options.emptyMode = -1;
  options.defaultValue = -5;
  int16_t small = 0;
  ParseNumber(nullptr, small, options);
  EXPECT_EQ(small, -5);
  uint64_t wide = 0;
  options.emptyMode = 1;
  options.defaultValue = 40;
  ParseNumber(nullptr, wide, options);
  uint64_t viaNarrow = 0;
  ParseNumber(static_cast<const char*>(nullptr), viaNarrow, options);
  EXPECT_EQ(wide, viaNarrow);
  EXPECT_EQ(wide, 40u);
}

TEST(DefaultFormats, PerWidthConstantsAreTheTemplateOnes) {
  EXPECT_EQ(&DefaultDecimalFormatA, &DefaultDecimalFormat<char>);
  EXPECT_EQ(&DefaultDecimalFormatW, &DefaultDecimalFormat<char16_t>);
  EXPECT_EQ(&DefaultDecimalFormat<>, &DefaultDecimalFormat<char>);
  EXPECT_EQ(&DefaultHexFormatA, &DefaultHexFormat<char>);
  EXPECT_EQ(&DefaultHexFormatW, &DefaultHexFormat<char16_t>);
  EXPECT_EQ(&DefaultHexFormat<>, &DefaultHexFormat<char>);
}

TEST(DefaultFormats, UsableWithoutATemplateArgument) {
  char narrow[32];
  char16_t wide[32];
  ASSERT_EQ(FormatNumber(narrow, 32, -42, DefaultDecimalFormatA), 0);
  EXPECT_STREQ(narrow, "-42");
  ASSERT_EQ(FormatNumber(wide, 32, 42u, DefaultDecimalFormatW), 0);
  EXPECT_EQ(std::u16string(wide), u"42");
  ASSERT_EQ(FormatHex(narrow, 32, 0x1A2B, 4, DefaultHexFormatA), 0);
  EXPECT_STREQ(narrow, "0x1A2B");
  ASSERT_EQ(FormatHex(wide, 32, 0xBEEF, 2, DefaultHexFormatW), 0);
  EXPECT_EQ(std::u16string(wide), u"0xBEEF");
}

}  // namespace
}  // namespace ic
