// Searching and comparing plain zero-terminated text: the narrow helpers over UTF-8 that the
// search members build on, and the free comparisons of both widths.
//
// Narrow text is walked in code points, each sequence sized by its lead byte; a sequence cut
// short by the terminator ends at the terminator. Case-insensitive comparisons map both sides
// with ToLowerCodePoint (narrow) or the run-time's towlower (wide; on Windows the C run-time's,
// ASCII letters only in its default locale: platform/wide_runtime.h).
#pragma once

#include <cstddef>
#include <cstdint>

#include <ic/platform/export.h>

namespace ic {

/// @name Narrow plain-text helpers
/// @{

/// The last sequence of `text` that decodes to `code`, or null. Below 128 the run-time's
/// strrchr (so 0 finds the terminator); otherwise a walk back from the end.
IC_API const char* FindLastCodePoint(const char* text, uint32_t code) noexcept;

/// Number of code points from `begin` up to `end`, each step decided by the lead byte alone.
IC_API int32_t CodePointsBetween(const char* begin, const char* end) noexcept;

/// Number of code points at the start of `text` that are in `set` (stops at the first
/// non-member). A null text or set gives 0.
IC_API int32_t SpanOf(const char* text, const char* set) noexcept;

/// Number of code points at the start of `text` that are not in `set` (stops at the first
/// member). A null text gives 0; a null or empty set spans the whole text.
IC_API int32_t SpanNotOf(const char* text, const char* set) noexcept;

/// The run-time's strspn, except that a set holding a byte of 128 or more gives 0 at once: it
/// is for ASCII sets only, and does not fall back on a code-point search.
IC_API size_t AsciiSpanOf(const char* text, const char* set) noexcept;

/// The run-time's strcspn, except that a set holding a byte of 128 or more gives 0 at once.
IC_API size_t AsciiSpanNotOf(const char* text, const char* set) noexcept;

/// Copies at most `count` code points from `source` to `target`, whole sequences at a time. No
/// terminator is added when the count is reached. If the source ends earlier, zero bytes follow
/// the copy up to `count` bytes in all, as the run-time's strncpy pads (at least one zero is
/// written). Returns `target`.
IC_API char* CopyCodePoints(char* target, const char* source, int32_t count) noexcept;
/// @}

/// @name Comparisons
/// @{

/// Case-insensitive comparison of UTF-8 texts by code points mapped with ToLowerCodePoint:
/// -1, 0 or 1. Null counts as empty.
IC_API int CompareNoCase(const char* a, const char* b) noexcept;

/// Exact comparison of at most `count` code points: -1, 0 or 1. Null counts as empty.
IC_API int CompareCount(const char* a, const char* b, int32_t count) noexcept;

/// Case-insensitive comparison of at most `count` code points: -1, 0 or 1.
IC_API int CompareCountNoCase(const char* a, const char* b, int32_t count) noexcept;

/// With `exact`, the same units; without, equal regardless of case (narrow: CompareNoCase; wide:
/// the run-time's _wcsicmp). Null counts as empty.
IC_API bool Equals(const char* a, const char* b, bool exact = true) noexcept;
IC_API bool Equals(const char16_t* a, const char16_t* b, bool exact = true) noexcept;
/// Two null texts written as nullptr, of no width: both count as empty, so true.
inline bool Equals(std::nullptr_t, std::nullptr_t, bool exact = true) noexcept {
  return Equals(static_cast<const char*>(nullptr), static_cast<const char*>(nullptr), exact);
}

/// True if `text` (null counts as empty) begins with `prefix`; an empty or null prefix gives
/// false. With `ignoreCase`, narrow code points are compared after ToLowerCodePoint and wide
/// units after towlower.
IC_API bool StartsWith(const char* text, const char* prefix, bool ignoreCase = false) noexcept;
IC_API bool StartsWith(const char16_t* text, const char16_t* prefix,
                       bool ignoreCase = false) noexcept;
/// Null text and prefix written as nullptr, of no width: a null prefix gives false.
inline bool StartsWith(std::nullptr_t, std::nullptr_t, bool ignoreCase = false) noexcept {
  return StartsWith(static_cast<const char*>(nullptr), static_cast<const char*>(nullptr),
                    ignoreCase);
}
/// @}

}  // namespace ic
