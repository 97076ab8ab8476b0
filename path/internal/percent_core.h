// Percent escaping over plain units: the classes of the bytes, the escaper and the decoder.
// Defined in percent_core.cpp for char and char16_t.
#pragma once

#include <cstdint>

namespace ic::internal {

/// Escapes the `length` units at `source`, each a byte value (0 to 0xFF; wide units above
/// 0xFF take their low 8 bits), into `target`, which has room for 3 * length units. `mode` is
/// a PercentEscapeMode; other values act as 0. Writes no terminator; returns the units written.
template <class Unit>
int32_t PercentEncodeUnits(const Unit* source, int32_t length, Unit* target, int mode) noexcept;

/// Decodes escapes of the `length` units at `source` into `target` (which may be `source`
/// itself: the output never runs ahead of the input), from the first percent sign on; the
/// units before it are copied only when `target` is not `source`. Units above 0xFF outside an
/// escape are dropped. Writes no terminator; returns the units written.
template <class In, class Out>
int32_t PercentDecodeUnits(const In* source, int32_t length, Out* target) noexcept;

/// Index of the first percent sign of the `length` units, or -1.
template <class Unit>
int32_t FindPercent(const Unit* text, int32_t length) noexcept;

}  // namespace ic::internal
