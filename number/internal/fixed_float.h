// The one text form of a 32-bit float in the number formatters and the string builder: the
// run-time's "%10.2f" (narrow) or u"%10.2f" (wide) of the value widened to double, padded on the
// left to ten units with two decimals ('      3.50'). The decimal point is the run-time locale's.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>

namespace ic::internal {

/// Units of the buffer that FormatFixedFloat writes: enough for any 32-bit float.
inline constexpr int32_t kFixedFloatUnits = 100;

/// Writes the text of `value` with its terminator into `buffer` (kFixedFloatUnits units) and
/// returns its length without the terminator.
IC_API int32_t FormatFixedFloat(char* buffer, float value) noexcept;
IC_API int32_t FormatFixedFloat(char16_t* buffer, float value) noexcept;

}  // namespace ic::internal
