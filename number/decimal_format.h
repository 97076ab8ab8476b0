// The decimal formatter itself, inline so that FormatNumber can be expanded where it is called
// (as the standard library's to_chars is); the exported _FormatDecimal overloads run the same code.
// Included by number_format.h; not meant to be included on its own.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace ic::internal {

/// "00" to "99": two digits per division.
inline constexpr char kDigitPairs[201] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

template <class Unit>
inline void WriteDigitPair(Unit* at, uint32_t pair) noexcept {
  at[0] = static_cast<Unit>(kDigitPairs[2 * pair]);
  at[1] = static_cast<Unit>(kDigitPairs[2 * pair + 1]);
}

/// Writes the digits of `value` so that they end just ahead of `end`; returns the leftmost.
template <class Unit>
inline Unit* WriteDigits32(Unit* end, uint32_t value) noexcept {
  Unit* p = end;
  while (value >= 100) {
    const uint32_t pair = value % 100;
    value /= 100;
    p -= 2;
    WriteDigitPair(p, pair);
  }
  if (value >= 10) {
    p -= 2;
    WriteDigitPair(p, value);
  } else {
    *--p = static_cast<Unit>('0' + value);
  }
  return p;
}

/// The eight digits of `value` (below 10^8, with leading zeros) as bytes, the first in the lowest
/// byte: two fours, four pairs and eight digits split by multiplications in lanes of one word.
inline uint64_t EightDigitBytes(uint32_t value) noexcept {
  const uint64_t x = value;
  const uint64_t high = (x * 109951163) >> 40;         // value / 10000
  uint64_t lanes = high | ((x - high * 10000) << 32);  // 32-bit lanes: the two fours
  const uint64_t hundreds = ((lanes * 10486) >> 20) & 0x0000007F0000007Fu;
  lanes = hundreds | ((lanes - hundreds * 100) << 16);  // 16-bit lanes: the four pairs
  const uint64_t tens = ((lanes * 103) >> 10) & 0x000F000F000F000Fu;
  lanes = tens | ((lanes - tens * 10) << 8);  // bytes: the eight digits
  return lanes + 0x3030303030303030u;
}

/// The same for 64 bits: eight digits at a time while the value has more, each eight from one
/// division (by a constant: a multiplication by its reciprocal); the rest, below 10^8, goes the
/// 32-bit way. Narrow text on a little-endian machine stores each eight as one word.
template <class Unit>
inline Unit* WriteDigits64(Unit* end, uint64_t value) noexcept {
  Unit* p = end;
  while (value >= 100000000) {
    const auto eight = static_cast<uint32_t>(value % 100000000);
    value /= 100000000;
    p -= 8;
    if constexpr (sizeof(Unit) == 1 && std::endian::native == std::endian::little) {
      const uint64_t bytes = EightDigitBytes(eight);
      std::memcpy(p, &bytes, 8);
    } else {
      const uint32_t high = eight / 10000, low = eight % 10000;
      WriteDigitPair(p, high / 100);
      WriteDigitPair(p + 2, high % 100);
      WriteDigitPair(p + 4, low / 100);
      WriteDigitPair(p + 6, low % 100);
    }
  }
  return WriteDigits32(p, static_cast<uint32_t>(value));
}

/// _FormatDecimal: measure or write.
template <class Unit, class UInt>
inline int32_t FormatDecimal(Unit* buffer, int32_t bufferLength, UInt magnitude,
                             const StringNumberFormatOptions<Unit>& options,
                             bool negative) noexcept {
  const int32_t needed = DecimalSizeNeeded(magnitude, negative, options.minWidth);
  if (buffer == nullptr || needed > bufferLength) return needed;

  Unit* const end = buffer + needed - 1;
  *end = 0;
  Unit* p;
  // A 64-bit magnitude whose high word is zero goes the 32-bit way.
  if (sizeof(UInt) > 4 && (static_cast<uint64_t>(magnitude) >> 32) != 0)
    p = WriteDigits64(end, static_cast<uint64_t>(magnitude));
  else
    p = WriteDigits32(end, static_cast<uint32_t>(magnitude));

  bool signDone = false;
  if (p > buffer && options.minWidth >= 1) {
    Unit* limit = buffer;
    if (negative && options.fill == Unit(' ')) {
      *--p = Unit('-');  // the sign next to the digits, the blanks ahead of it
      signDone = true;
    } else if (negative) {
      limit = buffer + 1;  // the sign goes first, the fill between it and the digits
    }
    while (p > limit)
      *--p = options.fill;
  }
  if (negative && !signDone) *--p = Unit('-');
  return 0;
}

}  // namespace ic::internal
