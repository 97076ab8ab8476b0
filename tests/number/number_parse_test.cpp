// Integer parsing: the edge cases, the rule for text without digits, hexadecimal reading, and
// agreement with an exact model (128-bit arithmetic) on random text for every value type.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <type_traits>

#include <ic/number/number_parse.h>

namespace ic {
namespace {

using Options = StringNumberParseOptions;

template <class T, class Unit = char>
T Parse(const Unit* text, const Options& options = {}) {
  T value = static_cast<T>(99);  // always overwritten
  ParseNumber(text, value, options);
  return value;
}

template <class T>
T ParseWide(const char* ascii, const Options& options = {}) {
  const std::u16string wide(ascii, ascii + std::char_traits<char>::length(ascii));
  return Parse<T, char16_t>(wide.c_str(), options);
}

Options Blanks() {
  return Options{true, 0, 0, false};
}
Options HexPrefix() {
  return Options{false, 0, 0, true};
}
Options Empty(int8_t mode, int64_t value) {
  return Options{false, mode, value, false};
}

TEST(ParseNumber, NullAndEmptyTextsBehaveAlike) {
  EXPECT_EQ(Parse<int>(static_cast<const char*>(nullptr)), 0);
  EXPECT_EQ(Parse<int>(""), 0);
  EXPECT_EQ(Parse<int>(static_cast<const char*>(nullptr), Empty(1, 7)), 7);
  EXPECT_EQ(Parse<int>("", Empty(1, 7)), 7);
  EXPECT_EQ(Parse<unsigned short>(static_cast<const char16_t*>(nullptr), Empty(-1, 9)), 9);
}

TEST(ParseNumber, DigitsThenAnything) {
  EXPECT_EQ(Parse<int>("12abc"), 12);
  EXPECT_EQ(Parse<int>("007"), 7);
  EXPECT_EQ(Parse<int>("-0"), 0);
  EXPECT_EQ(Parse<long long>("+42 and more"), 42);
  EXPECT_EQ(ParseWide<int>("12abc"), 12);
}

TEST(ParseNumber, SignsAloneGoToTheNoDigitRule) {
  EXPECT_EQ(Parse<int>("+"), 0);
  EXPECT_EQ(Parse<int>("-"), 0);
  EXPECT_EQ(Parse<int>("+", Empty(1, 5)), 5);
  EXPECT_EQ(Parse<int>("-", Empty(1, 5)), -5);  // the sign negates what the rule produced
  EXPECT_EQ(Parse<int>("-", Empty(-1, 5)), -5);
  EXPECT_EQ(Parse<int>("+-5"), 0);  // one sign only
  EXPECT_EQ(Parse<int>("--5", Empty(1, 3)), -3);
}

TEST(ParseNumber, NoBlankBehindTheSign) {
  EXPECT_EQ(Parse<int>("- 5"), 0);
  EXPECT_EQ(Parse<int>("- 5", Blanks()), 0);
  EXPECT_EQ(Parse<int>("- 5", Empty(1, 8)), -8);
}

TEST(ParseNumber, BlanksAreSpaceAndTabOnly) {
  EXPECT_EQ(Parse<int>(" \t5", Blanks()), 5);
  EXPECT_EQ(Parse<int>(" \t5"), 0);
  EXPECT_EQ(Parse<int>(" \t5", Empty(1, 4)), 4);
  EXPECT_EQ(Parse<int>("\n5", Blanks()), 0);
  EXPECT_EQ(Parse<int>("\r5", Blanks()), 0);
  EXPECT_EQ(Parse<int>("  -17", Blanks()), -17);
  EXPECT_EQ(ParseWide<int>(" \t5", Blanks()), 5);
}

TEST(ParseNumber, MinusIntoUnsignedIsNoDigit) {
  EXPECT_EQ(Parse<unsigned>("-5"), 0u);
  EXPECT_EQ(Parse<unsigned char>("-5", Empty(1, 6)), 6);
  EXPECT_EQ(Parse<uint64_t>("-5", Empty(-1, 6)), 6u);
  EXPECT_EQ(Parse<unsigned short>("+5"), 5);
}

TEST(ParseNumber, SaturationOfSmallTypes) {
  EXPECT_EQ(Parse<signed char>("127"), 127);
  EXPECT_EQ(Parse<signed char>("128"), 127);
  EXPECT_EQ(Parse<signed char>("-127"), -127);
  EXPECT_EQ(Parse<signed char>("-128"), -128);
  EXPECT_EQ(Parse<signed char>("-129"), -128);
  EXPECT_EQ(Parse<unsigned char>("255"), 255);
  EXPECT_EQ(Parse<unsigned char>("256"), 255);
  EXPECT_EQ(Parse<short>("-32769"), -32768);
  EXPECT_EQ(Parse<unsigned short>("65536"), 65535);
  EXPECT_EQ(Parse<int>("2147483648"), 2147483647);
  EXPECT_EQ(Parse<int>("-2147483648"), std::numeric_limits<int>::min());
  EXPECT_EQ(Parse<unsigned>("4294967296"), 4294967295u);
  EXPECT_EQ(Parse<unsigned>("99999999999999999999999"), 4294967295u);
}

TEST(ParseNumber, SaturationOf64Bits) {
  EXPECT_EQ(Parse<long long>("9223372036854775807"), std::numeric_limits<long long>::max());
  EXPECT_EQ(Parse<long long>("9223372036854775808"), std::numeric_limits<long long>::max());
  EXPECT_EQ(Parse<long long>("-9223372036854775808"), std::numeric_limits<long long>::min());
  EXPECT_EQ(Parse<long long>("-9223372036854775807"), -9223372036854775807ll);
  EXPECT_EQ(Parse<unsigned long long>("18446744073709551615"), ~0ull);
  EXPECT_EQ(Parse<unsigned long long>("18446744073709551616"), ~0ull);
  EXPECT_EQ(ParseWide<long long>("-9223372036854775809"), std::numeric_limits<long long>::min());
}

TEST(ParseNumber, UpperCaseXIsNoPrefix) {
  EXPECT_EQ(Parse<int>("0X10", HexPrefix()), 0);
  EXPECT_EQ(Parse<int>("0X10", Options{false, 1, 55, true}), 0);  // a digit was read
}

TEST(ParseNumber, HexPrefixWithoutDigits) {
  EXPECT_EQ(Parse<int>("0x", Options{false, 1, 55, true}), 0);
  EXPECT_EQ(Parse<int>("0xg", Options{false, 1, 55, true}), 0);
}

TEST(ParseNumber, HexPrefixOnlyWhenAllowed) {
  EXPECT_EQ(Parse<int>("0x10"), 0);
  EXPECT_EQ(Parse<int>("0x10", HexPrefix()), 16);
  EXPECT_EQ(Parse<int>("-0x10", HexPrefix()), 0);  // the prefix test stands before the sign
  EXPECT_EQ(Parse<int>("0x0x1F", HexPrefix()), 31);
  EXPECT_EQ(Parse<int>("0x0x0x1F", HexPrefix()), 0);
  EXPECT_EQ(ParseWide<unsigned>("0xDeadBeef", HexPrefix()), 0xdeadbeefu);
}

TEST(ParseNumber, LeadingHexZerosDoNotCount) {
  EXPECT_EQ(Parse<unsigned char>("0x000000000000000000FF", HexPrefix()), 255);
  EXPECT_EQ(Parse<unsigned char>("0x100", HexPrefix()), 255);
  EXPECT_EQ(Parse<signed char>("0x100", HexPrefix()), 127);
}

TEST(ParseNumber, BlanksBeforeTheHexPrefix) {
  EXPECT_EQ(Parse<int>("  0x1F", Options{true, 0, 0, true}), 31);
  EXPECT_EQ(Parse<int>("  0x1F", HexPrefix()), 0);
}

TEST(ParseNumber, SignedHexIsABitPatternAndSaturationKeepsTheSign) {
  EXPECT_EQ(Parse<signed char>("0xFF", HexPrefix()), -1);
  EXPECT_EQ(Parse<int>("0x80000000", HexPrefix()), std::numeric_limits<int>::min());
  EXPECT_EQ(Parse<signed char>("0xFFF", HexPrefix()), -128);
  EXPECT_EQ(Parse<signed char>("0x1FF", HexPrefix()), 127);
  EXPECT_EQ(Parse<long long>("0xFFFFFFFFFFFFFFFF", HexPrefix()), -1);
  EXPECT_EQ(Parse<long long>("0x8000000000000000F", HexPrefix()),
            std::numeric_limits<long long>::min());
  EXPECT_EQ(Parse<unsigned long long>("0x10000000000000000", HexPrefix()), ~0ull);
}

TEST(ParseNumber, OnlyAsciiDigitsCount) {
  const char16_t fullWidth[] = {0xff11, 0xff12, 0};  // full-width "12"
  EXPECT_EQ(Parse<int>(fullWidth, Empty(1, 3)), 3);
  const char16_t arabic[] = {'1', 0x0662, 0};
  EXPECT_EQ(Parse<int>(arabic), 1);
  EXPECT_EQ(Parse<int>("1\xd9\xa2"), 1);
  const char16_t high[] = {0x0131, 0};  // a unit whose low byte is '1'
  EXPECT_EQ(Parse<int>(high, Empty(1, 3)), 3);
}

// The no-digit rule, per signedness and width.
TEST(ParseNumber, NoDigitRule) {
  // Zero mode: 0 whatever the default.
  EXPECT_EQ(Parse<int>("x", Empty(0, 5)), 0);
  // Negative mode: the signed reading, clamped.
  EXPECT_EQ(Parse<signed char>("x", Empty(-1, 300)), 127);
  EXPECT_EQ(Parse<signed char>("x", Empty(-1, -300)), -128);
  EXPECT_EQ(Parse<signed char>("x", Empty(-1, -5)), -5);
  EXPECT_EQ(Parse<long long>("x", Empty(-1, std::numeric_limits<int64_t>::min())),
            std::numeric_limits<long long>::min());
  EXPECT_EQ(Parse<unsigned char>("x", Empty(-1, -5)), 0);
  EXPECT_EQ(Parse<unsigned char>("x", Empty(-1, 256)), 255);
  EXPECT_EQ(Parse<unsigned char>("x", Empty(-1, 200)), 200);
  EXPECT_EQ(Parse<unsigned long long>("x", Empty(-1, -1)), 0u);
  EXPECT_EQ(Parse<unsigned long long>("x", Empty(-1, 1234)), 1234u);
  // Positive mode: the unsigned reading; a negative default is large and gives the maximum.
  EXPECT_EQ(Parse<signed char>("x", Empty(1, -5)), 127);
  EXPECT_EQ(Parse<int>("x", Empty(1, -5)), std::numeric_limits<int>::max());
  EXPECT_EQ(Parse<long long>("x", Empty(1, -5)), std::numeric_limits<long long>::max());
  EXPECT_EQ(Parse<unsigned short>("x", Empty(1, 70000)), 65535);
  EXPECT_EQ(Parse<unsigned short>("x", Empty(1, -1)), 65535);
  EXPECT_EQ(Parse<unsigned long long>("x", Empty(1, -2)), ~0ull - 1);
  EXPECT_EQ(Parse<int>("x", Empty(5, 12)), 12);
  // The sign then negates it, in the type's width.
  EXPECT_EQ(Parse<int>("-x", Empty(1, -5)), -std::numeric_limits<int>::max());
  EXPECT_EQ(Parse<signed char>("-", Empty(-1, -128)), -128);  // -(-128) wraps to -128
}

TEST(ParseStages, PrefixMovesToTheFirstNonBlankOrReadsHex) {
  const char* text = " \t 42";
  const char* p = text;
  int value = -1;
  EXPECT_TRUE(_ParseNumberPrefix(&p, value, Blanks()));
  EXPECT_EQ(p, text + 3);
  EXPECT_EQ(value, -1);  // not written on the decimal path
  p = text;
  EXPECT_TRUE(_ParseNumberPrefix(&p, value, Options{}));
  EXPECT_EQ(p, text);
  const char16_t hex[] = u"  0x2A rest";
  const char16_t* q = hex;
  unsigned short h = 0;
  EXPECT_FALSE(_ParseNumberPrefix(&q, h, Options{true, 0, 0, true}));
  EXPECT_EQ(q, hex);
  EXPECT_EQ(h, 42);
}

TEST(ParseStages, DecimalReportsSaturation) {
  signed char small = 0;
  EXPECT_TRUE(_ParseDecimal("128", small, Options{}));
  EXPECT_EQ(small, 127);
  EXPECT_FALSE(_ParseDecimal("127", small, Options{}));
  EXPECT_EQ(small, 127);
  EXPECT_FALSE(_ParseDecimal("-1", small, Empty(1, 3)));  // no sign here: no digit
  EXPECT_EQ(small, 3);
  unsigned long long big = 0;
  EXPECT_TRUE(_ParseDecimal(u"18446744073709551616", big, Options{}));
  EXPECT_EQ(big, ~0ull);
}

TEST(ParseStages, HexAlone) {
  int value = 5;
  _ParseHex(static_cast<const char*>(nullptr), value);
  EXPECT_EQ(value, 0);
  _ParseHex("1f", value);
  EXPECT_EQ(value, 31);
  _ParseHex("0x0x1f", value);
  EXPECT_EQ(value, 0);  // one prefix only at this level
  _ParseHex(u"0xABCDEF0123", value);
  EXPECT_EQ(value, std::numeric_limits<int>::min());  // 0xABCDEF01 has the sign bit
  unsigned short u = 0;
  _ParseHex("00000000000001234zz", u);
  EXPECT_EQ(u, 0x1234);
}

TEST(HexDigitValue, EveryUnit) {
  for (uint32_t u = 0; u < 0x10000; ++u) {
    int expected = -1;
    if (u >= '0' && u <= '9') expected = static_cast<int>(u - '0');
    if (u >= 'a' && u <= 'f') expected = static_cast<int>(u - 'a' + 10);
    if (u >= 'A' && u <= 'F') expected = static_cast<int>(u - 'A' + 10);
    long long digit = -77;
    ASSERT_EQ(_HexDigitValue(static_cast<char16_t>(u), digit), expected >= 0) << u;
    ASSERT_EQ(digit, expected >= 0 ? expected : -77) << u;  // untouched when false
    if (u < 0x100) {
      unsigned char narrowDigit = 200;
      ASSERT_EQ(_HexDigitValue(static_cast<char>(u), narrowDigit), expected >= 0) << u;
      ASSERT_EQ(narrowDigit, expected >= 0 ? expected : 200) << u;
    }
  }
}

// ---------------------------------------------------------------------------------------------
// An exact model: 128-bit arithmetic, no shortcuts.

using Wide = __int128;

template <class T>
T ModelNoDigit(const Options& o) {
  const Wide lo = std::numeric_limits<T>::min();
  const Wide hi = std::numeric_limits<T>::max();
  if (o.emptyMode == 0) return 0;
  Wide d = o.emptyMode < 0 ? Wide{o.defaultValue} : Wide{static_cast<uint64_t>(o.defaultValue)};
  if (d < lo) d = lo;
  if (d > hi) d = hi;
  return static_cast<T>(d);
}

template <class T>
T ModelParse(const std::string& s, const Options& o) {
  using UInt = std::make_unsigned_t<T>;
  const Wide hi = std::numeric_limits<T>::max();
  size_t i = 0;
  if (o.skipBlanks)
    while (s[i] == ' ' || s[i] == '\t')
      ++i;
  if (o.allowHexPrefix && s.compare(i, 2, "0x") == 0) {
    i += 2;
    if (s.compare(i, 2, "0x") == 0) i += 2;
    Wide v = 0;
    int significant = 0;
    for (; std::isxdigit(static_cast<unsigned char>(s[i])); ++i) {
      if (significant == static_cast<int>(sizeof(T) * 2)) {  // one digit too many
        if (std::is_signed_v<T> && static_cast<T>(static_cast<UInt>(v)) < 0)
          return std::numeric_limits<T>::min();
        return std::numeric_limits<T>::max();
      }
      const int digit = std::isdigit(static_cast<unsigned char>(s[i]))
                            ? s[i] - '0'
                            : std::tolower(static_cast<unsigned char>(s[i])) - 'a' + 10;
      if (v != 0 || digit != 0) ++significant;
      v = v * 16 + digit;
    }
    return static_cast<T>(static_cast<UInt>(v));
  }
  bool negative = false;
  if (std::is_signed_v<T> && s[i] == '-') {
    negative = true;
    ++i;
  } else if (s[i] == '+') {
    ++i;
  }
  Wide v = 0;
  bool any = false;
  for (; s[i] >= '0' && s[i] <= '9'; ++i) {
    any = true;
    v = v * 10 + (s[i] - '0');
    if (v > hi) return negative ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
  }
  if (!any) {
    const T d = ModelNoDigit<T>(o);
    return negative ? static_cast<T>(static_cast<UInt>(UInt{0} - static_cast<UInt>(d))) : d;
  }
  return static_cast<T>(negative ? -v : v);
}

std::string RandomNumberText(std::mt19937_64& rng) {
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  std::string s;
  for (int n = pick(0, 2) == 0 ? pick(1, 3) : 0; n > 0; --n)
    s += " \t\n"[pick(0, 2)];
  switch (pick(0, 5)) {
    case 0:
      s += "0x";
      break;
    case 1:
      s += pick(0, 1) ? "0X" : "0x0x";
      break;
    default:
      break;
  }
  switch (pick(0, 6)) {
    case 0:
      s += '-';
      break;
    case 1:
      s += '+';
      break;
    case 2:
      s += pick(0, 1) ? "--" : "- ";
      break;
    default:
      break;
  }
  for (int n = pick(0, 3) == 0 ? pick(1, 12) : 0; n > 0; --n)
    s += '0';
  const int digits = pick(0, 4) == 0 ? pick(0, 45) : pick(0, 21);
  const bool hex = pick(0, 2) == 0;
  for (int k = 0; k < digits; ++k)
    s += hex ? "0123456789abcdefABCDEF"[pick(0, 21)] : static_cast<char>('0' + pick(0, 9));
  switch (pick(0, 3)) {
    case 0:
      s += "xyz";
      break;
    case 1:
      s += " 12";
      break;
    default:
      break;
  }
  return s;
}

template <class T>
void CheckAgainstModel(std::mt19937_64& rng, int rounds) {
  for (int round = 0; round < rounds; ++round) {
    const std::string text = RandomNumberText(rng);
    Options o;
    o.skipBlanks = rng() % 2 == 0;
    o.allowHexPrefix = rng() % 2 == 0;
    o.emptyMode = static_cast<int8_t>(static_cast<int>(rng() % 3) - 1);
    o.defaultValue = static_cast<int64_t>(rng()) >> (rng() % 64);
    const T expected = ModelParse<T>(text, o);
    T narrow = static_cast<T>(42);
    ParseNumber(text.c_str(), narrow, o);
    ASSERT_EQ(narrow, expected) << "'" << text << "'";
    const std::u16string wide(text.begin(), text.end());
    T fromWide = static_cast<T>(42);
    ParseNumber(wide.c_str(), fromWide, o);
    ASSERT_EQ(fromWide, expected) << "'" << text << "' (wide)";
  }
}

TEST(ParseNumber, AgreesWithAnExactModelForEveryType) {
  std::mt19937_64 rng(8675309);
  CheckAgainstModel<signed char>(rng, 20000);
  CheckAgainstModel<unsigned char>(rng, 20000);
  CheckAgainstModel<short>(rng, 20000);
  CheckAgainstModel<unsigned short>(rng, 20000);
  CheckAgainstModel<int>(rng, 20000);
  CheckAgainstModel<unsigned int>(rng, 20000);
  CheckAgainstModel<long>(rng, 20000);
  CheckAgainstModel<unsigned long>(rng, 20000);
  CheckAgainstModel<long long>(rng, 20000);
  CheckAgainstModel<unsigned long long>(rng, 20000);
}

}  // namespace
}  // namespace ic
