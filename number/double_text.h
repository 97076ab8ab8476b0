// Reading doubles and plain 32-bit integers at a cursor, with caller-chosen decimal and group
// separators. These parsers never fail and never throw: text that holds no number gives 0, and
// the cursor always stands on the first unit not consumed. No locale, no allocation; only the
// ASCII digits count. A null cursor, or a cursor on a null text, reads nothing and gives 0.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>

namespace ic {

/// @name _ParseDoubleAt
/// Reads an optional "-" or "+", integer digits (skipping every unit equal to a non-zero
/// `groupSeparator`), then, if the next unit is a non-zero `decimalSeparator`, fraction digits
/// (no group separators there), then an optional "E" or "e" with an exponent read as by
/// _ParseIntegerAt without group separator; the value is multiplied by 10 to that power (correctly
/// rounded on every platform for exponents up to 22 either way, else the C library's pow). A text
/// without digits gives 0.0, or -0.0 after "-", with the cursor behind the sign; "1e" gives 1.0
/// with the cursor behind the "e". Digits beyond the range of a double give an infinite value.
/// @{
IC_API double _ParseDoubleAt(const char** cursor, char decimalSeparator,
                             char groupSeparator) noexcept;
IC_API double _ParseDoubleAt(const char16_t** cursor, char16_t decimalSeparator,
                             char16_t groupSeparator) noexcept;
/// @}

/// @name _ParseIntegerAt
/// Reads an optional "-" or "+" and decimal digits, skipping every unit equal to a non-zero
/// `groupSeparator`, into a signed 32-bit value with wrapping arithmetic ("2147483648" gives
/// -2147483648). No digit gives 0 with the cursor behind any sign.
/// @{
IC_API int32_t _ParseIntegerAt(const char** cursor, char groupSeparator) noexcept;
IC_API int32_t _ParseIntegerAt(const char16_t** cursor, char16_t groupSeparator) noexcept;
/// @}

/// @name ParseFraction
/// Reads the digits at the cursor as the digits behind a decimal point ("25" gives 0.25). No
/// sign and no point are read; no digit gives 0.0 and leaves the cursor.
/// @{
IC_API double ParseFraction(const char** cursor) noexcept;
IC_API double ParseFraction(const char16_t** cursor) noexcept;
/// @}

}  // namespace ic
