// Conversion of UTF-16 text to UTF-8 strings, written by hand, and the UTF-8 text holder.
//
// ConvertToUTF8 makes no call to the platform: it runs twice over the text, once to measure and
// once to write, so that the result takes exactly one allocation. It does not validate. A unit in
// the surrogate range, high or low, is always taken with the unit behind it as a pair:
// (((u AND 0x3ff) << 10) OR (next AND 0x3ff)) + 0x10000, and encoded in four bytes. So a reversed
// pair still gives a 4-byte sequence, a lone surrogate swallows the unit behind it, and a lone
// surrogate in the last place pairs with the terminator, after which the walk goes on behind it
// (the caller's memory must be readable there). No replacement character is ever produced.
// The other direction, ConvertFromUTF8String, is a member of the strings (utf_members.h) and goes
// through the platform converter, which replaces invalid input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include <ic/platform/export.h>
#include <ic/string/ic_string.h>

namespace ic {

/// The UTF-8 form of the zero-terminated wide `text`, up to its first zero code point. An empty
/// result is the empty data (no block); otherwise the block's capacity is the exact size.
/// A null text gives the empty data.
IC_API ICStringUnique ConvertToUTF8(const char16_t* text);

/// The UTF-8 form of `range.Length` units at `range.Text`; zero units inside become zero bytes.
/// A null text, a length of 0 and a negative length (which here does not mean "up to the
/// terminator") give the empty data. A surrogate in the last place reads one unit beyond.
IC_API ICStringUnique ConvertToUTF8(ICStringRangeW range);

/// A copy of the zero-terminated narrow `text`; null or empty gives the empty data.
IC_API ICStringUnique ConvertToUTF8(const char* text);

/// A null text written as nullptr, of no width: the empty data.
inline ICStringUnique ConvertToUTF8(std::nullptr_t) {
  return ICStringUnique();
}

/// The UTF-8 bytes of a wide text, converted by the platform converter (a lone surrogate becomes
/// U+FFFD), zero-terminated.
struct IC_API Utf8TextBuffer {
  /// Converts the zero-terminated `text`. A null text, or a conversion that fails, leaves Text
  /// null and Size 0.
  explicit Utf8TextBuffer(const char16_t* text);

  /// The bytes, terminator included; null if the conversion failed.
  std::unique_ptr<char[]> Text;
  /// Bytes in Text, terminator included; 0 if the conversion failed.
  int32_t Size = 0;
};

namespace internal {

/// Where a measuring walk of ConvertToUTF8 ended and how many bytes it counted.
struct Utf8Measure {
  const char16_t* end;
  size_t bytes;
};

/// The measuring walk over a zero-terminated text: up to the first zero code point.
IC_API Utf8Measure MeasureUTF8(const char16_t* text) noexcept;
/// The measuring walk over `length` units (at least 1), zero units included.
IC_API Utf8Measure MeasureUTF8(const char16_t* text, int32_t length) noexcept;
/// The writing walk over [text, end), the end that a measuring walk found, into [out, outEnd).
/// A code point whose bytes do not fit is skipped. Returns the position behind the last byte.
IC_API char* WriteUTF8(const char16_t* text, const char16_t* end, char* out, char* outEnd) noexcept;

}  // namespace internal
}  // namespace ic
