// Simple case mapping of code points and of zero-terminated UTF-8 text.
//
// Narrow text is mapped code point by code point with CaseTable (case_table.h); a mapped code
// point may need more or fewer bytes than the one that it replaces, so the text can change its
// length. ASCII never touches the table.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/text/case_table.h>

namespace ic {

/// A mapping of one code point to another, such as ToLowerCodePoint.
using CodePointMapper = uint32_t (*)(uint32_t code);

/// Result of MapCodePoints for a null text or a buffer size of 0 (the run-time's EINVAL).
inline constexpr int32_t MapInvalidArgument = 22;

/// The record of `code` (binary search on CaseRecord::code), or null if it has no case.
IC_API const CaseRecord* FindCaseRecord(uint32_t code) noexcept;

namespace internal {
IC_API uint32_t LowerFromTable(uint32_t code) noexcept;
IC_API uint32_t UpperFromTable(uint32_t code) noexcept;
}  // namespace internal

/// Below 128: "A" to "Z" plus 32, else unchanged. Otherwise the record's lower, or the code
/// itself when it has no record.
inline uint32_t ToLowerCodePoint(uint32_t code) noexcept {
  if (code < 0x80) return (code - 'A' < 26u) ? code + 32 : code;
  return internal::LowerFromTable(code);
}

/// Below 128: "a" to "z" minus 32, else unchanged. Otherwise the record's upper, or the code
/// itself when it has no record.
inline uint32_t ToUpperCodePoint(uint32_t code) noexcept {
  if (code < 0x80) return (code - 'a' < 26u) ? code - 32 : code;
  return internal::UpperFromTable(code);
}

/// Applies `mapper` to each code point of the zero-terminated UTF-8 `text` in place, changing
/// only what keeps its byte length: a code point whose mapping has another UTF-8 size, or cannot
/// be encoded, stays as it was. A null or empty text is left alone. Never changes the length.
IC_API void MapCodePointsInPlace(char* text, CodePointMapper mapper) noexcept;

/// Rewrites the zero-terminated UTF-8 `text` with `mapper` applied to each code point, in a
/// buffer of `bufferSize` bytes (terminator included).
///
/// Returns MapInvalidArgument (22) for a null text or a bufferSize of 0, changing nothing.
/// Otherwise measures the result, T bytes: if T is not below bufferSize, returns T + 1 (the size
/// needed) and leaves the text alone. Else writes the result and its terminator and returns 0:
/// in place when no code point grows, else through a temporary of T + 1 bytes. A mapped value in
/// the surrogate range or above U+10FFFF is dropped (it is counted in T but not written). A
/// sequence that the terminator cuts short stays as it is.
IC_API int32_t MapCodePoints(char* text, int32_t bufferSize, CodePointMapper mapper) noexcept;

}  // namespace ic
