// Code page conversion between UTF-8 and UTF-16, with the contract of the Windows functions of
// the same names for code page 65001 (UTF-8) and flags 0.
//
// Under _WIN32 these call the system's functions. Elsewhere the library carries its own
// converter with the same observable behaviour:
//
//   UTF-8 to UTF-16. Bytes 00-7F give themselves, a zero byte included. A byte 80-C1 or F5-FF
//   in lead position gives one U+FFFD. A lead C2-DF expects one continuation byte, E0-EF two,
//   F0-F4 three. If fewer bytes than expected remain after the lead, the lead and everything
//   after it up to the end of the input give one U+FFFD. Otherwise the continuation bytes are
//   read one at a time; a byte outside 80-BF ends the sequence early: the bytes read so far give
//   one U+FFFD, and that byte is decoded afresh. After E0 a first continuation byte 80-9F
//   (overlong), after ED one of A0-BF (surrogate) and after F0 one of 80-8F (overlong) is
//   consumed with the lead and the two bytes give one U+FFFD; after F4 a first continuation
//   byte 90-BF (beyond U+10FFFF) does the same. A complete sequence gives its code point, as a
//   surrogate pair above U+FFFF.
//
//   UTF-16 to UTF-8. A high surrogate followed by a low one gives the 4 bytes of the pair's code
//   point; every other surrogate unit gives U+FFFD (EF BF BD).
//
// Both take a source length in units; -1 means up to and including the terminator, which is then
// converted and counted like any other unit. A destination size of 0 measures: the result is the
// number of units the conversion writes. Otherwise the result is the number of units written, or
// 0 if they do not fit (the destination may then have been written within its size, never
// beyond it). 0 is also the answer to invalid arguments: a null or empty source, a negative size,
// a null destination with a non-zero size, another code page or non-zero flags.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>

namespace ic::platform {

/// The code page number of UTF-8.
inline constexpr uint32_t CodePageUTF8 = 65001;

/// Converts `srcLength` bytes of UTF-8 at `src` (-1: up to and including the terminator) to
/// UTF-16 at `dst`, which holds `dstSize` units; with `dstSize` 0 only measures. Returns the
/// units written or needed, or 0 on failure. Invalid input is replaced, never refused.
IC_API int MultiByteToWideChar(uint32_t codePage, uint32_t flags, const char* src, int srcLength,
                               char16_t* dst, int dstSize) noexcept;

/// Converts `srcLength` units of UTF-16 at `src` (-1: up to and including the terminator) to
/// UTF-8 at `dst`, which holds `dstSize` bytes; with `dstSize` 0 only measures. Returns the
/// bytes written or needed, or 0 on failure. `defaultChar` and `usedDefaultChar` must be null
/// for UTF-8, as on Windows; anything else is a failure.
IC_API int WideCharToMultiByte(uint32_t codePage, uint32_t flags, const char16_t* src,
                               int srcLength, char* dst, int dstSize,
                               const char* defaultChar = nullptr,
                               int* usedDefaultChar = nullptr) noexcept;

}  // namespace ic::platform
