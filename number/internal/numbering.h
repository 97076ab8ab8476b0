// The unit-only cores of the list labels: letters in bijective base 26 and Roman numerals.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>

namespace ic::internal {

/// Units of the longest Roman numeral (9888: "MMMMMMMMMDCCCLXXXVIII", 21 units) plus one.
inline constexpr int32_t kRomanNumberUnits = 22;
/// Units of the longest letter label (the largest 32-bit value gives seven letters) plus one.
inline constexpr int32_t kAlphabeticNumberUnits = 8;

/// Writes the letter label of `value` ("A".."Z", "AA", ...; lower case unless `upperCase`) into
/// `out` (kAlphabeticNumberUnits units) and returns its length; 0 for a value below 1. No
/// terminator is written.
template <class Unit>
int32_t WriteAlphabeticNumber(Unit* out, int32_t value, bool upperCase) noexcept;

/// Writes the Roman numeral of `value` (thousands as repeated "M") into `out`
/// (kRomanNumberUnits units) and returns its length; 0 for a value below 1 or above 9999.
/// No terminator is written.
template <class Unit>
int32_t WriteRomanNumber(Unit* out, int32_t value, bool upperCase) noexcept;

extern template IC_API int32_t WriteAlphabeticNumber(char*, int32_t, bool) noexcept;
extern template IC_API int32_t WriteAlphabeticNumber(char16_t*, int32_t, bool) noexcept;
extern template IC_API int32_t WriteRomanNumber(char*, int32_t, bool) noexcept;
extern template IC_API int32_t WriteRomanNumber(char16_t*, int32_t, bool) noexcept;

}  // namespace ic::internal
