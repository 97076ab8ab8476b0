// Integers to decimal and hexadecimal text, narrow or wide, into a caller's buffer.
//
// Every formatter here follows one contract, measure or write: called with a null buffer, or one
// shorter than the text needs with its terminator, it writes nothing and returns the size needed
// (the length of the text plus one); called with a buffer that fits, it writes the zero-terminated
// text and returns 0. Sizes count code units of the buffer's width. Text is written once, right
// to left, with no temporary buffer.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <ic/number/number_types.h>
#include <ic/platform/export.h>

namespace ic {

/// Options of decimal formatting.
template <class Unit = char>
struct StringNumberFormatOptions {
  /// Minimum units of the text, sign included, terminator not. Zero or less: no padding.
  int8_t minWidth;
  /// The pad unit.
  Unit fill;
};

/// Options of hexadecimal formatting.
template <class Unit = char>
struct StringHexFormatOptions {
  /// Digits "A" to "F" if true, "a" to "f" if false.
  bool upperCase;
  /// Zero-terminated text written ahead of the digits; not owned; null for none.
  const Unit* prefix;
  /// Minimum units of the text, prefix included, terminator not.
  int8_t minWidth;
  /// The pad unit.
  Unit fill;
};

namespace internal {
template <class Unit>
inline constexpr Unit HexPrefix[] = {Unit('0'), Unit('x'), Unit(0)};
}

/// The decimal settings of every overload without options: no padding. The width defaults to
/// narrow (DefaultDecimalFormat<>); DefaultDecimalFormatA and DefaultDecimalFormatW name each
/// width without a template argument.
template <class Unit = char>
inline constexpr StringNumberFormatOptions<Unit> DefaultDecimalFormat{0, Unit(0)};
/// DefaultDecimalFormat of narrow text.
inline constexpr const StringNumberFormatOptions<char>& DefaultDecimalFormatA =
    DefaultDecimalFormat<char>;
/// DefaultDecimalFormat of wide text.
inline constexpr const StringNumberFormatOptions<char16_t>& DefaultDecimalFormatW =
    DefaultDecimalFormat<char16_t>;

/// The hexadecimal settings of every overload without options: capitals, prefix "0x", no
/// padding, so a value reads '0x1A2B'. DefaultHexFormatA and DefaultHexFormatW name each width.
template <class Unit = char>
inline constexpr StringHexFormatOptions<Unit> DefaultHexFormat{true, internal::HexPrefix<Unit>, 0,
                                                               Unit(0)};
/// DefaultHexFormat of narrow text.
inline constexpr const StringHexFormatOptions<char>& DefaultHexFormatA = DefaultHexFormat<char>;
/// DefaultHexFormat of wide text.
inline constexpr const StringHexFormatOptions<char16_t>& DefaultHexFormatW =
    DefaultHexFormat<char16_t>;

/// Number of decimal digits of a value; 0 has one.
inline int CountDecimalDigits(uint32_t value) noexcept {
  static constexpr uint32_t kPowers[] = {1,      10,      100,      1000,      10000,
                                         100000, 1000000, 10000000, 100000000, 1000000000};
  const int bits = 32 - std::countl_zero(value | 1);
  const int guess = (bits * 1233) >> 12;  // 1233 / 4096 is just above log10(2)
  return guess + 1 - ((value | 1) < kPowers[guess]);
}
inline int CountDecimalDigits(uint64_t value) noexcept {
  if ((value >> 32) == 0) return CountDecimalDigits(static_cast<uint32_t>(value));
  static constexpr uint64_t kPowers[] = {1ull,
                                         10ull,
                                         100ull,
                                         1000ull,
                                         10000ull,
                                         100000ull,
                                         1000000ull,
                                         10000000ull,
                                         100000000ull,
                                         1000000000ull,
                                         10000000000ull,
                                         100000000000ull,
                                         1000000000000ull,
                                         10000000000000ull,
                                         100000000000000ull,
                                         1000000000000000ull,
                                         10000000000000000ull,
                                         100000000000000000ull,
                                         1000000000000000000ull,
                                         10000000000000000000ull};
  const int bits = 64 - std::countl_zero(value);
  const int guess = (bits * 1233) >> 12;
  return guess + 1 - (value < kPowers[guess]);
}

/// The size that _FormatDecimal needs for a magnitude: its digits, one more for the sign, at
/// least minWidth, plus the terminator.
template <class UInt>
inline int32_t DecimalSizeNeeded(UInt magnitude, bool negative, int8_t minWidth) noexcept {
  int32_t count;
  if constexpr (sizeof(UInt) <= 4)
    count = CountDecimalDigits(static_cast<uint32_t>(magnitude));
  else
    count = CountDecimalDigits(static_cast<uint64_t>(magnitude));
  count += negative ? 1 : 0;
  return (count > minWidth ? count : minWidth) + 1;
}

/// @name _FormatDecimal
/// Writes the magnitude in decimal, with a "-" ahead if `negative`, padded to options.minWidth
/// with options.fill. A space fill keeps the sign next to the digits ('   -12'); any other fill
/// goes between sign and digits ('-00012'). Measure or write (see above).
/// @{
#define IC_DECLARE_FORMAT_DECIMAL_(Unit, UInt)                                      \
  IC_API int32_t _FormatDecimal(Unit* buffer, int32_t bufferLength, UInt magnitude, \
                                const StringNumberFormatOptions<Unit>& options,     \
                                bool negative) noexcept;
IC_FOR_EACH_UNSIGNED_INTEGER_TYPE(IC_DECLARE_FORMAT_DECIMAL_, char)
IC_FOR_EACH_UNSIGNED_INTEGER_TYPE(IC_DECLARE_FORMAT_DECIMAL_, char16_t)
#undef IC_DECLARE_FORMAT_DECIMAL_
/// @}

}  // namespace ic

#include <ic/number/decimal_format.h>

namespace ic {

/// Writes `value` in decimal. A signed value hands its magnitude to _FormatDecimal as the two's
/// complement negation in the unsigned type of its width (so the minimum is safe) and the sign
/// apart. Measure or write. Expanded inline, with the code of _FormatDecimal.
template <NumberTextUnit Unit, IntegerValueType T>
inline int32_t FormatNumber(
    Unit* buffer, int32_t bufferLength, T value,
    const StringNumberFormatOptions<Unit>& options = DefaultDecimalFormat<Unit>) noexcept {
  using UInt = std::make_unsigned_t<T>;
  if constexpr (std::is_signed_v<T>) {
    const bool negative = value < 0;
    const UInt magnitude =
        negative ? static_cast<UInt>(UInt{0} - static_cast<UInt>(value)) : static_cast<UInt>(value);
    return internal::FormatDecimal(buffer, bufferLength, magnitude, options, negative);
  } else {
    return internal::FormatDecimal(buffer, bufferLength, value, options, false);
  }
}

/// @name Measuring with a null buffer given as nullptr
/// A nullptr buffer has no width for the overloads above to pick; every text here has as many
/// units in either width, so these measure with the narrow form (or with the width of
/// `options`) and return the size needed, terminator included. `bufferLength` plays no part.
/// @{
template <IntegerValueType T>
inline int32_t FormatNumber(std::nullptr_t, int32_t bufferLength, T value) noexcept {
  return FormatNumber(static_cast<char*>(nullptr), bufferLength, value);
}
template <NumberTextUnit Unit, IntegerValueType T>
inline int32_t FormatNumber(std::nullptr_t, int32_t bufferLength, T value,
                            const StringNumberFormatOptions<Unit>& options) noexcept {
  return FormatNumber(static_cast<Unit*>(nullptr), bufferLength, value, options);
}
/// @}

/// @name FormatHex
/// Writes `value` in hexadecimal, after options.prefix, padded to options.minWidth. A value of 0
/// has the one digit "0". Any other value is first cut to `byteSize` bytes (1, 2 or 4; any other
/// size keeps all 64 bits) and has one digit per significant four bits, so a value whose remaining
/// bytes are all zero has no digit: its text is the prefix (a "0" written under the prefix is
/// covered by it), or empty without a prefix. A space fill goes ahead of the prefix
/// ('    0xFF'); any other fill between prefix and digits ('0x0000FF'). Measure or write.
/// @{
IC_API int32_t
FormatHex(char* buffer, int32_t bufferLength, uint64_t value, int byteSize,
          const StringHexFormatOptions<char>& options = DefaultHexFormat<char>) noexcept;
IC_API int32_t
FormatHex(char16_t* buffer, int32_t bufferLength, uint64_t value, int byteSize,
          const StringHexFormatOptions<char16_t>& options = DefaultHexFormat<char16_t>) noexcept;
/// @}

/// FormatHex measuring (see FormatNumber with nullptr): the size needed, terminator included.
inline int32_t FormatHex(std::nullptr_t, int32_t bufferLength, uint64_t value, int byteSize,
                         const StringHexFormatOptions<char>& options = DefaultHexFormatA) noexcept {
  return FormatHex(static_cast<char*>(nullptr), bufferLength, value, byteSize, options);
}
inline int32_t FormatHex(std::nullptr_t, int32_t bufferLength, uint64_t value, int byteSize,
                         const StringHexFormatOptions<char16_t>& options) noexcept {
  return FormatHex(static_cast<char16_t*>(nullptr), bufferLength, value, byteSize, options);
}

/// A 32-bit value as FormatHex writes it with byteSize 4 and DefaultHexFormat ('0x1A2B').
inline int32_t FormatPointer(char* buffer, int32_t bufferLength, uint32_t value) noexcept {
  return FormatHex(buffer, bufferLength, value, 4, DefaultHexFormat<char>);
}
inline int32_t FormatPointer(char16_t* buffer, int32_t bufferLength, uint32_t value) noexcept {
  return FormatHex(buffer, bufferLength, value, 4, DefaultHexFormat<char16_t>);
}
/// FormatPointer measuring: the size needed, terminator included (11).
inline int32_t FormatPointer(std::nullptr_t, int32_t bufferLength, uint32_t value) noexcept {
  return FormatPointer(static_cast<char*>(nullptr), bufferLength, value);
}

/// Writes a 32-bit float as "%10.2f" writes it ('      3.50'; see internal/fixed_float.h).
/// Measure or write: with a null buffer or one shorter than the text and its terminator, writes
/// nothing and returns the size needed with the terminator; else writes both and returns 0.
IC_API int32_t FormatNumber(char* buffer, int32_t bufferLength, float value) noexcept;
IC_API int32_t FormatNumber(char16_t* buffer, int32_t bufferLength, float value) noexcept;
/// The float form measuring: the size needed, terminator included.
inline int32_t FormatNumber(std::nullptr_t, int32_t bufferLength, float value) noexcept {
  return FormatNumber(static_cast<char*>(nullptr), bufferLength, value);
}

}  // namespace ic
