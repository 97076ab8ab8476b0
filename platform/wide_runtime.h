// The run-time's wide-character case functions, for one UTF-16 code unit at a time.
//
// The library lower-cases language codes and override texts, compares language codes without
// regard to case and maps wide text for case-insensitive search with the platform's own wide
// run-time functions. On Windows these are the C run-time's functions of the same names. On
// other platforms each 16-bit unit is mapped with the C library's Unicode case mapping under a
// UTF-8 locale object that is made once for the process, so that the result does not depend on
// the locale that the process happens to have set ('É' and 'é' compare equal either way).
// Surrogate units are never mapped: a pair passes through unchanged.
#pragma once

#include <cstddef>
#include <cstdint>

#include <ic/platform/export.h>

namespace ic::platform {

/// True where the functions below map by the Unicode simple case mapping whatever the process
/// locale (every platform but Windows); false on Windows, where they are the C run-time's and map
/// by its locale: in the default "C" locale only "A" to "Z" and "a" to "z".
#ifdef _WIN32
inline constexpr bool WideCaseFollowsUnicode = false;
#else
inline constexpr bool WideCaseFollowsUnicode = true;
#endif

/// Result of the bounded wide functions: 0 on success, else an errno value (EINVAL).
using errno_t = int;

/// Result of _wcsicmp when an argument is null.
inline constexpr int NlsCompareError = 0x7fffffff;

/// The lower-case form of one code unit, or the unit itself if it has none that fits in one
/// unit. Surrogates map to themselves.
IC_API char16_t towlower(char16_t unit) noexcept;

/// The upper-case form of one code unit, or the unit itself (as towlower).
IC_API char16_t towupper(char16_t unit) noexcept;

/// Lower-cases the zero-terminated `text` in place. `size` is the buffer size in code units,
/// terminator included. Returns EINVAL for a null text, and when no terminator lies within
/// `size` units (a size of 0 included), in which case the text is made empty: its first unit
/// becomes 0, even for a size of 0, as the Windows run-time does. Returns 0 otherwise.
IC_API errno_t _wcslwr_s(char16_t* text, size_t size) noexcept;

/// Upper-cases the zero-terminated `text` in place; the same contract as _wcslwr_s.
IC_API errno_t _wcsupr_s(char16_t* text, size_t size) noexcept;

/// Compares two zero-terminated texts unit by unit after lower-casing each unit. Returns a
/// negative value, 0 or a positive value as `left` sorts before, equal to or after `right`;
/// NlsCompareError if either is null.
IC_API int _wcsicmp(const char16_t* left, const char16_t* right) noexcept;

}  // namespace ic::platform
