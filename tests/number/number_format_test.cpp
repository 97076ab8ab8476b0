// Integer formatting into caller buffers: decimal with width, fill and sign; hexadecimal with
// prefix; the measure-or-write contract.
#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include <ic/number/number_format.h>

namespace ic {
namespace {

// The formatted text of a value, with the size the measuring call asked for.
template <class Unit, class T>
std::basic_string<Unit> Format(T value, const StringNumberFormatOptions<Unit>& options,
                               int32_t* needed = nullptr) {
  const int32_t size = FormatNumber(static_cast<Unit*>(nullptr), 0, value, options);
  if (needed) *needed = size;
  std::vector<Unit> buffer(static_cast<size_t>(size));
  EXPECT_EQ(FormatNumber(buffer.data(), size, value, options), 0);
  EXPECT_EQ(buffer.back(), 0);
  return std::basic_string<Unit>(buffer.data());
}

std::string Narrow(int64_t value, int8_t width = 0, char fill = 0) {
  return Format<char>(value, StringNumberFormatOptions<char>{width, fill});
}

template <class Unit>
std::basic_string<Unit> Hex(uint64_t value, int byteSize, const StringHexFormatOptions<Unit>& o) {
  const int32_t size = FormatHex(static_cast<Unit*>(nullptr), 0, value, byteSize, o);
  std::vector<Unit> buffer(static_cast<size_t>(size));
  EXPECT_EQ(FormatHex(buffer.data(), size, value, byteSize, o), 0);
  EXPECT_EQ(buffer.back(), 0);
  return std::basic_string<Unit>(buffer.data());
}

std::string Hex(uint64_t value, int byteSize = 8,
                const StringHexFormatOptions<char>& o = DefaultHexFormat<char>) {
  return Hex<char>(value, byteSize, o);
}

TEST(FormatNumber, ZeroWithTheDefaultFormat) {
  int32_t needed = 0;
  EXPECT_EQ(Format<char>(0, DefaultDecimalFormat<char>, &needed), "0");
  EXPECT_EQ(needed, 2);
  EXPECT_EQ(Format<char16_t>(0u, DefaultDecimalFormat<char16_t>), u"0");
}

TEST(FormatNumber, MinimumValuesDoNotOverflow) {
  EXPECT_EQ(Format<char>(static_cast<signed char>(-128), DefaultDecimalFormat<char>), "-128");
  EXPECT_EQ(Format<char>(std::numeric_limits<int64_t>::min(), DefaultDecimalFormat<char>),
            "-9223372036854775808");
  EXPECT_EQ(Format<char16_t>(std::numeric_limits<short>::min(), DefaultDecimalFormat<char16_t>),
            u"-32768");
  EXPECT_EQ(Format<char>(std::numeric_limits<int>::min(), DefaultDecimalFormat<char>),
            "-2147483648");
  EXPECT_EQ(Format<char>(std::numeric_limits<uint64_t>::max(), DefaultDecimalFormat<char>),
            "18446744073709551615");
}

TEST(FormatNumber, WidthAndFill) {
  EXPECT_EQ(Narrow(-12, 6, ' '), "   -12");
  EXPECT_EQ(Narrow(-12, 6, '0'), "-00012");
  EXPECT_EQ(Narrow(12, 6, '0'), "000012");
  EXPECT_EQ(Narrow(12, 6, ' '), "    12");
  EXPECT_EQ(Narrow(-123456, 6, '0'), "-123456");  // the width is a minimum only
  EXPECT_EQ(Narrow(-12, 3, '0'), "-12");
  EXPECT_EQ(Narrow(-12, 3, ' '), "-12");
  EXPECT_EQ(Narrow(-12, 4, '*'), "-*12");
  EXPECT_EQ(Narrow(7, 1, '0'), "7");
  EXPECT_EQ(Format<char16_t>(-5, StringNumberFormatOptions<char16_t>{4, u'\u00b7'}),
            u"-\u00b7\u00b75");
}

// The eight digits of 64-bit values written at once: against a printf of the eight, on every
// value below 20000 (every four-digit half with small high halves), on values of every low
// and high four digits at a stride, and on the edges.
TEST(FormatNumber, EightDigitBytes) {
  auto check = [](uint32_t value) {
    const uint64_t bytes = internal::EightDigitBytes(value);
    char text[8];
    for (int k = 0; k < 8; ++k)
      text[k] = static_cast<char>(bytes >> (8 * k));
    char expected[9];
    std::snprintf(expected, sizeof expected, "%08u", static_cast<unsigned>(value));
    ASSERT_EQ(std::string(text, 8), std::string(expected, 8)) << value;
  };
  for (uint32_t v = 0; v < 20000; ++v)
    check(v);
  for (uint32_t v = 0; v < 100000000; v += 997)
    check(v);
  for (uint32_t high = 0; high < 10000; high += 1)
    for (const uint32_t low : {0u, 1u, 9u, 10u, 99u, 100u, 999u, 1000u, 9999u})
      check(high * 10000 + low);
  check(99999999);
}

// 64-bit values whose eight-digit groups hold every edge.
TEST(FormatNumber, SixtyFourBitGroupsAgreeWithToChars) {
  for (const uint64_t high : {1ull, 9ull, 10ull, 12345678901ull, 99999999999ull, 184467440737ull})
    for (const uint64_t low :
         {0ull, 1ull, 9999ull, 10000ull, 10001000ull, 12345678ull, 99999999ull}) {
      const uint64_t value = high * 100000000 + low;
      char expected[32];
      const std::string text(expected, std::to_chars(expected, expected + 32, value).ptr);
      ASSERT_EQ(Format<char>(value, DefaultDecimalFormat<char>), text);
      ASSERT_EQ(Format<char16_t>(value, DefaultDecimalFormat<char16_t>),
                std::u16string(text.begin(), text.end()));
      const auto negative = static_cast<int64_t>(0 - (value % 9000000000000000000ull));
      const std::string signedText(expected, std::to_chars(expected, expected + 32, negative).ptr);
      ASSERT_EQ(Format<char>(negative, DefaultDecimalFormat<char>), signedText);
    }
}

TEST(FormatNumber, NegativeWidthBehavesAsZero) {
  int32_t needed = 0;
  EXPECT_EQ(Format<char>(-42, StringNumberFormatOptions<char>{-10, '0'}, &needed), "-42");
  EXPECT_EQ(needed, 4);
  EXPECT_EQ(Narrow(42, -128, '0'), "42");
}

TEST(FormatNumber, AgreesWithToChars) {
  std::mt19937_64 rng(123);
  auto check = [&](auto value) {
    char expected[32];
    const auto result = std::to_chars(expected, expected + sizeof expected, value);
    const std::string text(expected, result.ptr);
    ASSERT_EQ(Format<char>(value, DefaultDecimalFormat<char>), text) << text;
    const std::u16string wide(text.begin(), text.end());
    ASSERT_EQ(Format<char16_t>(value, DefaultDecimalFormat<char16_t>), wide) << text;
  };
  auto all = [&](uint64_t bits) {
    check(static_cast<signed char>(bits));
    check(static_cast<unsigned char>(bits));
    check(static_cast<short>(bits));
    check(static_cast<unsigned short>(bits));
    check(static_cast<int>(bits));
    check(static_cast<unsigned int>(bits));
    check(static_cast<long>(bits));
    check(static_cast<unsigned long>(bits));
    check(static_cast<long long>(bits));
    check(static_cast<unsigned long long>(bits));
  };
  // Every power of ten and its neighbours, the limits, then random values of every magnitude.
  uint64_t power = 1;
  for (int i = 0; i < 20; ++i, power *= 10) {
    all(power - 1);
    all(power);
    all(power + 1);
    all(0 - power);
  }
  for (uint64_t bits : {0ull, 1ull, 0x7full, 0x80ull, 0xffull, 0x7fffull, 0x8000ull, 0xffffull,
                        0x7fffffffull, 0x80000000ull, 0xffffffffull, 0x100000000ull,
                        0x7fffffffffffffffull, 0x8000000000000000ull, ~0ull})
    all(bits);
  for (int i = 0; i < 20000; ++i)
    all(rng() >> (i % 64));
}

// The exported _FormatDecimal overloads (what the string members call) and the inline
// FormatNumber give the same sizes and texts.
TEST(FormatDecimal, EveryOverloadAgreesWithFormatNumber) {
  std::mt19937_64 rng(2024);
  auto check = [&](auto magnitude, bool negative, int8_t width, char fill) {
    using UInt = decltype(magnitude);
    const StringNumberFormatOptions<char> narrow{width, fill};
    const StringNumberFormatOptions<char16_t> wide{width, static_cast<char16_t>(fill)};
    char a[64], b[64];
    char16_t wa[64], wb[64];
    const int32_t needed =
        _FormatDecimal(static_cast<char*>(nullptr), 0, magnitude, narrow, negative);
    ASSERT_EQ(needed,
              _FormatDecimal(static_cast<char16_t*>(nullptr), 0, magnitude, wide, negative));
    ASSERT_EQ(_FormatDecimal(a, needed - 1, magnitude, narrow, negative), needed);
    ASSERT_EQ(_FormatDecimal(a, 64, magnitude, narrow, negative), 0);
    ASSERT_EQ(_FormatDecimal(wa, 64, magnitude, wide, negative), 0);
    if (!negative) {
      ASSERT_EQ(FormatNumber(b, 64, magnitude, narrow), 0);
      ASSERT_EQ(FormatNumber(wb, 64, magnitude, wide), 0);
    } else {
      using Int = std::make_signed_t<UInt>;
      if (magnitude == 0 || magnitude > static_cast<UInt>(std::numeric_limits<Int>::max()) + 1u)
        return;
      const auto value = static_cast<Int>(UInt{0} - magnitude);
      ASSERT_EQ(FormatNumber(b, 64, value, narrow), 0);
      ASSERT_EQ(FormatNumber(wb, 64, value, wide), 0);
    }
    ASSERT_STREQ(a, b);
    ASSERT_EQ(std::u16string(wa), std::u16string(wb));
    ASSERT_EQ(std::u16string(wa), std::u16string(a, a + std::strlen(a)));
  };
  for (int i = 0; i < 5000; ++i) {
    const uint64_t bits = rng() >> (i % 64);
    const bool negative = i % 3 == 0;
    const auto width = static_cast<int8_t>(static_cast<int>(rng() % 30) - 5);
    const char fill = " 0*"[i % 3];
    check(static_cast<unsigned char>(bits), negative, width, fill);
    check(static_cast<unsigned short>(bits), negative, width, fill);
    check(static_cast<unsigned int>(bits), negative, width, fill);
    check(static_cast<unsigned long>(bits), negative, width, fill);
    check(static_cast<unsigned long long>(bits), negative, width, fill);
    if (HasFatalFailure()) return;
  }
}

TEST(FormatNumber, MeasureIsExactAndAShortBufferStaysUntouched) {
  std::mt19937_64 rng(77);
  constexpr char kCanary = '\x5a';
  for (int i = 0; i < 20000; ++i) {
    const auto value = static_cast<int64_t>(rng()) >> (i % 64);
    const StringNumberFormatOptions<char> options{
        static_cast<int8_t>(static_cast<int>(rng() % 40) - 8), "0 *x"[i % 4]};
    const int32_t needed = FormatNumber(static_cast<char*>(nullptr), 0, value, options);
    ASSERT_GE(needed, 2);
    // Canaries on both sides of the buffer.
    std::vector<char> storage(static_cast<size_t>(needed) + 16, kCanary);
    char* const buffer = storage.data() + 8;
    ASSERT_EQ(FormatNumber(buffer, needed - 1, value, options), needed);
    for (char c : storage)
      ASSERT_EQ(c, kCanary);
    ASSERT_EQ(FormatNumber(buffer, 0, value, options), needed);
    ASSERT_EQ(FormatNumber(buffer, needed, value, options), 0);
    ASSERT_EQ(std::char_traits<char>::length(buffer), static_cast<size_t>(needed - 1));
    for (int k = 0; k < 8; ++k)
      ASSERT_EQ(storage[static_cast<size_t>(k)], kCanary);
    for (size_t k = static_cast<size_t>(needed) + 8; k < storage.size(); ++k)
      ASSERT_EQ(storage[k], kCanary);
    // A larger buffer gives the same text.
    std::vector<char> large(static_cast<size_t>(needed) + 30, kCanary);
    ASSERT_EQ(FormatNumber(large.data(), static_cast<int32_t>(large.size()), value, options), 0);
    ASSERT_STREQ(large.data(), buffer);
  }
}

TEST(FormatNumber, ExactBufferIsEnoughAndOneLessWritesNothing) {
  char16_t buffer[8] = {'#', '#', '#', '#', '#', '#', '#', '#'};
  EXPECT_EQ(FormatNumber(buffer + 1, 5, -1234), 6);
  for (char16_t u : buffer)
    EXPECT_EQ(u, u'#');
  EXPECT_EQ(FormatNumber(buffer + 1, 6, -1234), 0);
  EXPECT_EQ(std::u16string(buffer, 8), std::u16string(u"#-1234\0#", 8));
}

TEST(FormatHex, DefaultsAndCase) {
  EXPECT_EQ(Hex(0), "0x0");
  EXPECT_EQ(Hex(0x1a2b), "0x1A2B");
  EXPECT_EQ(Hex(255, 8, StringHexFormatOptions<char>{false, "0x", 0, 0}), "0xff");
  EXPECT_EQ(Hex(0xfedcba9876543210ull), "0xFEDCBA9876543210");
  EXPECT_EQ(Hex<char16_t>(0xabc, 8, DefaultHexFormat<char16_t>), u"0xABC");
}

TEST(FormatHex, ByteSizeCutsTheValue) {
  EXPECT_EQ(Hex(0x12345678abcdull, 1), "0xCD");
  EXPECT_EQ(Hex(0x12345678abcdull, 2), "0xABCD");
  EXPECT_EQ(Hex(0x12345678abcdull, 4), "0x5678ABCD");
  EXPECT_EQ(Hex(0x12345678abcdull, 3), "0x12345678ABCD");  // other sizes keep all 64 bits
  EXPECT_EQ(Hex(0x12345678abcdull, 8), "0x12345678ABCD");
}

TEST(FormatHex, AValueCutToZeroHasNoDigit) {
  int32_t needed = FormatHex(static_cast<char*>(nullptr), 0, 0x100, 1, DefaultHexFormat<char>);
  EXPECT_EQ(needed, 3);
  EXPECT_EQ(Hex(0x100, 1), "0x");
  EXPECT_EQ(Hex(0x100000000ull, 4), "0x");
  // Without prefix the text is empty, and nothing is written ahead of the buffer.
  const StringHexFormatOptions<char> bare{true, nullptr, 0, 0};
  char storage[4] = {'#', '#', '#', '#'};
  EXPECT_EQ(FormatHex(storage + 1, 0, 0x100, 1, bare), 1);
  EXPECT_EQ(FormatHex(storage + 1, 1, 0x100, 1, bare), 0);
  EXPECT_EQ(storage[0], '#');
  EXPECT_EQ(storage[1], 0);
  EXPECT_EQ(storage[2], '#');
  // With a width the zero stays: the text is written as for zero.
  EXPECT_EQ(Hex(0x100, 1, StringHexFormatOptions<char>{true, nullptr, 4, '0'}), "0000");
}

TEST(FormatHex, NullPrefixWidthAndFill) {
  EXPECT_EQ(Hex(255, 8, StringHexFormatOptions<char>{true, nullptr, 4, '0'}), "00FF");
  EXPECT_EQ(Hex(255, 8, StringHexFormatOptions<char>{true, nullptr, 4, ' '}), "  FF");
  EXPECT_EQ(Hex(255, 8, StringHexFormatOptions<char>{true, nullptr, 0, '0'}), "FF");
}

TEST(FormatHex, PrefixAndPadding) {
  EXPECT_EQ(Hex(255, 8, StringHexFormatOptions<char>{true, "0x", 8, ' '}), "    0xFF");
  EXPECT_EQ(Hex(255, 8, StringHexFormatOptions<char>{true, "0x", 8, '0'}), "0x0000FF");
  EXPECT_EQ(Hex(0xa, 1, StringHexFormatOptions<char>{true, "%", 3, '0'}), "%0A");  // escapes
  EXPECT_EQ(Hex(0xab, 1, StringHexFormatOptions<char>{true, "%", 3, '0'}), "%AB");
  EXPECT_EQ(Hex(0xabc, 8, StringHexFormatOptions<char>{true, "0x", 3, '0'}), "0xABC");
  EXPECT_EQ(Hex(0, 8, StringHexFormatOptions<char>{false, "#", 5, '.'}), "#...0");
  EXPECT_EQ(Hex<char16_t>(0xbeef, 2, StringHexFormatOptions<char16_t>{false, u"U+", 8, u'0'}),
            u"U+00beef");
}

TEST(FormatHex, MeasureIsExactAndAShortBufferStaysUntouched) {
  std::mt19937_64 rng(99);
  const char* prefixes[] = {nullptr, "", "0x", "%", "&#x"};
  for (int i = 0; i < 20000; ++i) {
    const uint64_t value = i % 7 == 0 ? 0 : rng() >> (i % 64);
    const int byteSize = static_cast<int>(rng() % 10);
    const char* prefix = prefixes[i % 5];
    std::u16string widePrefix = prefix ? std::u16string(prefix, prefix + std::strlen(prefix)) : u"";
    const StringHexFormatOptions<char16_t> options{i % 2 == 0,
                                                   prefix ? widePrefix.c_str() : nullptr,
                                                   static_cast<int8_t>(rng() % 24), u"0 ."[i % 3]};
    const int32_t needed = FormatHex(static_cast<char16_t*>(nullptr), 0, value, byteSize, options);
    ASSERT_GE(needed, 1);
    std::vector<char16_t> storage(static_cast<size_t>(needed) + 16, 0xa5a5);
    char16_t* const buffer = storage.data() + 8;
    if (needed > 1) {
      ASSERT_EQ(FormatHex(buffer, needed - 1, value, byteSize, options), needed);
      for (char16_t u : storage)
        ASSERT_EQ(u, 0xa5a5);
    }
    ASSERT_EQ(FormatHex(buffer, needed, value, byteSize, options), 0);
    ASSERT_EQ(std::char_traits<char16_t>::length(buffer), static_cast<size_t>(needed - 1));
    for (int k = 0; k < 8; ++k)
      ASSERT_EQ(storage[static_cast<size_t>(k)], 0xa5a5);
    for (size_t k = static_cast<size_t>(needed) + 8; k < storage.size(); ++k)
      ASSERT_EQ(storage[k], 0xa5a5);
  }
}

TEST(FormatHex, AgreesWithToCharsInBase16) {
  std::mt19937_64 rng(5150);
  const StringHexFormatOptions<char> lower{false, nullptr, 0, 0};
  for (int i = 0; i < 20000; ++i) {
    const uint64_t value = rng() >> (i % 64);
    char expected[24];
    const auto result = std::to_chars(expected, expected + sizeof expected, value, 16);
    ASSERT_EQ(Hex(value, 8, lower), std::string(expected, result.ptr));
  }
}

TEST(FormatPointer, IsFormatHexWithFourBytesAndTheDefaults) {
  char buffer[16];
  EXPECT_EQ(FormatPointer(static_cast<char*>(nullptr), 0, 0x1a2b), 7);
  EXPECT_EQ(FormatPointer(buffer, 7, 0x1a2b), 0);
  EXPECT_STREQ(buffer, "0x1A2B");
  EXPECT_EQ(FormatPointer(buffer, 16, 0xffffffffu), 0);
  EXPECT_STREQ(buffer, "0xFFFFFFFF");
  char16_t wide[16];
  EXPECT_EQ(FormatPointer(wide, 16, 0), 0);
  EXPECT_EQ(std::u16string(wide), u"0x0");
}

TEST(FormatOptions, TheDefaults) {
  EXPECT_EQ(DefaultDecimalFormat<char>.minWidth, 0);
  EXPECT_EQ(DefaultDecimalFormat<char16_t>.fill, 0);
  EXPECT_TRUE(DefaultHexFormat<char>.upperCase);
  EXPECT_STREQ(DefaultHexFormat<char>.prefix, "0x");
  EXPECT_EQ(std::u16string(DefaultHexFormat<char16_t>.prefix), u"0x");
  EXPECT_EQ(DefaultHexFormat<char16_t>.minWidth, 0);
}

}  // namespace
}  // namespace ic
