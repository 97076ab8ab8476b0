// Searches over zero-terminated 16-bit text in the manner of the C run-time's wide string
// functions, for UTF-16 in char16_t units.
//
// They stand in for the run-time's wcsstr, wcschr, wcsrchr, wcsncmp, wcscspn and wcsspn where
// wchar_t is not a 16-bit unit. All of them are linear in the worst case: the substring search
// starts with a plain scan for candidates and switches to Knuth-Morris-Pratt matching as soon as
// the candidates cost more comparisons than the text that has been passed.
#pragma once

#include <cstddef>

#include <ic/platform/export.h>

namespace ic::platform {

/// Number of units before the terminator.
IC_API size_t wcslen(const char16_t* text) noexcept;

/// The first occurrence of the zero-terminated `needle` in the zero-terminated `text`, or null.
/// An empty needle gives `text`.
IC_API const char16_t* wcsstr(const char16_t* text, const char16_t* needle) noexcept;

/// The first occurrence of `unit` in `text`; a unit of 0 finds the terminator. Null if absent.
IC_API const char16_t* wcschr(const char16_t* text, char16_t unit) noexcept;

/// The last occurrence of `unit` in `text`; a unit of 0 finds the terminator. Null if absent.
IC_API const char16_t* wcsrchr(const char16_t* text, char16_t unit) noexcept;

/// Compares at most `count` units, stopping after a terminator; negative, 0 or positive as the
/// unsigned unit values of `a` sort before, equal to or after those of `b`.
IC_API int wcsncmp(const char16_t* a, const char16_t* b, size_t count) noexcept;

/// Number of units at the start of `text` that are not in `set`.
IC_API size_t wcscspn(const char16_t* text, const char16_t* set) noexcept;

/// Number of units at the start of `text` that are in `set`.
IC_API size_t wcsspn(const char16_t* text, const char16_t* set) noexcept;

/// The first occurrence of `needle` (length `needleLength`, at least 1) in the `length` units at
/// `text`, as an index, or -1 (as a size_t) if there is none. Linear in the worst case. The
/// units need not be terminated.
IC_API size_t FindUnits(const char16_t* text, size_t length, const char16_t* needle,
                        size_t needleLength) noexcept;

}  // namespace ic::platform
