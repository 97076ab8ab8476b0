// The unit-only core of FormatDouble: writes the text of a double into a buffer that grows
// through the owner's callback, so that the string members only forward to it.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>

namespace ic::internal {

/// The settings of FormatDouble, in the order of its arguments.
struct DoubleFormatSettings {
  int32_t fractionDigits;  ///< digits behind the point that may be written; 0 or less: none
  bool round;              ///< round at the last digit, else cut there
  double tolerance;        ///< a fraction strictly closer than this to 0 or 1 counts as that
  bool padFraction;        ///< fill the fraction with "0" up to fractionDigits
  bool keepNegativeZero;   ///< keep the "-" also when the text comes out as zero
  bool forceFraction;      ///< write ".0" when no fraction is written
};

/// A text under construction in storage that belongs to someone else (a string's block).
template <class Unit>
struct GrowableText {
  Unit* text;        ///< the storage; room for `capacity` units plus a terminator
  int32_t capacity;  ///< units that fit
  int32_t length;    ///< units written
  void* owner;       ///< handed to `grow`
  /// Makes room for at least `capacity` units keeping the first `length` units, and returns the
  /// (possibly moved) storage.
  Unit* (*grow)(void* owner, int32_t capacity, int32_t length);

  void Put(Unit unit) {
    if (length >= capacity) {
      capacity = length + 1 + 16;  // the needed size plus 16
      text = grow(owner, capacity, length);
    }
    text[length++] = unit;
  }
};

/// Writes the text of `value` behind out.length (normally 0); does not write a terminator.
/// An infinite value gives "INF" or "-INF". A NaN passes every comparison as false and comes
/// out as the text of zero.
template <class Unit>
void FormatDoubleText(GrowableText<Unit>& out, double value, const DoubleFormatSettings& settings);

extern template IC_API void FormatDoubleText(GrowableText<char>&, double,
                                             const DoubleFormatSettings&);
extern template IC_API void FormatDoubleText(GrowableText<char16_t>&, double,
                                             const DoubleFormatSettings&);

}  // namespace ic::internal
