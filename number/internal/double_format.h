// The unit-only core of FormatDouble: writes the text of a double into a buffer that grows
// through the owner's callback, so that the string members only forward to it.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/string/internal/growable_text.h>

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
