// The wide run-time's case mapping (towupper, towlower in wide_runtime.h) over whole texts, as
// fast as a table lookup per unit.
//
// Off Windows the mapping of a unit is fixed for the process (one locale object, made once), so
// it is remembered: each block of 256 units is mapped once, on its first use, and looked up after
// that; runs of ASCII are mapped by MapAsciiCaseRun. On Windows the run-time's mapping follows the
// thread's locale, so every unit is mapped by the run-time as it comes. Either way the result is
// that of mapping each unit with towupper or towlower.
#pragma once

#include <cstddef>

#include <ic/platform/export.h>

namespace ic::platform::internal {

/// Maps the `n` units at `p` in place with towupper (`upper`) or towlower, up to the first zero
/// unit, which stays, as _wcsupr_s and _wcslwr_s do. Returns the offset of that zero unit, or
/// `n`. Reads and writes only the `n` units.
IC_API size_t MapWideCase(char16_t* p, size_t n, bool upper) noexcept;

/// The offset of the first of the `n` units at `p` that towupper (`upper`) or towlower changes,
/// or `n` when none does.
IC_API size_t FindFirstWideCaseChange(const char16_t* p, size_t n, bool upper) noexcept;

}  // namespace ic::platform::internal
