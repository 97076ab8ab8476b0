// Integer parsing for the ten value types, narrow and wide, with options from the input.
// Checks: narrow and wide text of the same units give the same value; with the default options
// the value is what a plain reading written here gives; a value formatted in decimal and in
// hexadecimal and parsed again comes back unchanged.
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

#include <ic/number/number_format.h>
#include <ic/number/number_parse.h>

#include "fuzz_input.h"

namespace {

using ic::StringNumberParseOptions;
using ic::fuzz::ExactText;

// The default reading: one sign directly ahead of the digits ("-" for signed types only), the
// digits saturating at the maximum, "-" negating in the type's width and taking one more off a
// saturated value. No digit: 0.
template <class T>
T ReferenceDecimal(const std::string& text) {
  using UInt = std::make_unsigned_t<T>;
  size_t i = 0;
  bool negative = false;
  if (std::is_signed_v<T> && i < text.size() && text[i] == '-') {
    negative = true;
    ++i;
  } else if (i < text.size() && text[i] == '+') {
    ++i;
  }
  const UInt max = static_cast<UInt>(std::numeric_limits<T>::max());
  UInt value = 0;
  bool saturated = false;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    const UInt digit = static_cast<UInt>(text[i] - '0');
    if (saturated || value > (max - digit) / 10) {
      saturated = true;
      continue;
    }
    value = static_cast<UInt>(value * 10 + digit);
  }
  if (saturated) return negative ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
  return negative ? static_cast<T>(static_cast<UInt>(UInt{0} - value)) : static_cast<T>(value);
}

template <class T, class Unit>
T Parse(const std::basic_string<Unit>& text, const StringNumberParseOptions& options) {
  const ExactText<Unit> exact(text);
  T value{};
  ic::ParseNumber(exact.Get(), value, options);
  return value;
}

template <class T, class Unit>
void RoundTrip(T value) {
  // Measuring gives the size with the terminator; writing gives 0 and writes the terminator.
  Unit buffer[80];
  const int32_t size = ic::FormatNumber(static_cast<Unit*>(nullptr), 0, value);
  IC_FUZZ_CHECK(size > 1 && size <= 21);
  IC_FUZZ_CHECK(ic::FormatNumber(buffer, size, value) == 0 && buffer[size - 1] == 0);
  T back{};
  ic::ParseNumber(buffer, back);
  IC_FUZZ_CHECK(back == value);

  using UInt = std::make_unsigned_t<T>;
  const uint64_t bits = static_cast<UInt>(value);
  const int byteSize = static_cast<int>(sizeof(T));
  const int32_t hexSize = ic::FormatHex(static_cast<Unit*>(nullptr), 0, bits, byteSize);
  IC_FUZZ_CHECK(hexSize > 1 && hexSize <= 19);
  IC_FUZZ_CHECK(ic::FormatHex(buffer, hexSize, bits, byteSize) == 0 && buffer[hexSize - 1] == 0);
  StringNumberParseOptions hex;
  hex.allowHexPrefix = true;
  T hexBack{};
  ic::ParseNumber(buffer, hexBack, hex);
  IC_FUZZ_CHECK(hexBack == value);
}

template <class T>
void Check(const std::string& narrow, const StringNumberParseOptions& options) {
  std::u16string widened;
  for (char c : narrow)
    widened.push_back(static_cast<char16_t>(static_cast<unsigned char>(c)));
  const T fromNarrow = Parse<T>(narrow, options);
  IC_FUZZ_CHECK(fromNarrow == Parse<T>(widened, options));
  if (!options.skipBlanks && !options.allowHexPrefix && options.emptyMode == 0) {
    IC_FUZZ_CHECK(fromNarrow == ReferenceDecimal<T>(narrow.substr(0, narrow.find('\0'))));
  }
  RoundTrip<T, char>(fromNarrow);
  RoundTrip<T, char16_t>(fromNarrow);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ic::fuzz::FuzzInput input(data, size);
  const uint8_t flags = input.Byte();
  StringNumberParseOptions options;
  options.skipBlanks = (flags & 1) != 0;
  options.allowHexPrefix = (flags & 2) != 0;
  options.emptyMode = static_cast<int8_t>((flags >> 2) % 3) - 1;
  if ((flags & 0x10) == 0) options.emptyMode = 0;
  int64_t defaultValue = 0;
  for (int i = 0; i < 8; ++i)
    defaultValue = static_cast<int64_t>(static_cast<uint64_t>(defaultValue) << 8 | input.Byte());
  options.defaultValue = defaultValue;
  const std::string text = input.Rest();
#define IC_FUZZ_CHECK_TYPE(Unit, T) Check<T>(text, options);
  IC_FOR_EACH_INTEGER_TYPE(IC_FUZZ_CHECK_TYPE, char)
#undef IC_FUZZ_CHECK_TYPE
  return 0;
}
