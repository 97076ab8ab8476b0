// Members of every string that write and read floating-point text: FormatDouble (unique strings),
// ParseDouble and ParseInteger (all shapes). Mixed into BasicICString.
//
// The work is done by the unit-only cores of double_text.h and internal/double_format.h; the
// members forward to them, defined once in double_members.cpp for the six strings.
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringDoubleMembers;

template <class Unit, class Storage>
class ICStringDoubleMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringDoubleMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringDoubleMembers);

 public:
  /// Replaces the text by `value`, written digit by digit in plain double arithmetic (no
  /// locale, no exact or shortest output), and returns the string.
  ///
  /// - fractionDigits: digits behind the point that may be written; 0 or less writes none.
  /// - round: round at the last digit (rounding in advance carries into the integer part);
  ///   otherwise the text is cut there.
  /// - tolerance: a fraction strictly closer than this to 1 counts as 1, to 0 as 0 (a tolerance
  ///   of 0 snaps nothing).
  /// - padFraction: fill the fraction with "0" up to fractionDigits.
  /// - keepNegativeZero: keep "-" when the text comes out as zero (-0.0 gives "-0").
  /// - forceFraction: write ".0" when no fraction is written.
  ///
  /// Infinite values give "INF" and "-INF". A NaN comes out as the text of zero: test for it
  /// first to name it. Digits are not carried into digits already written, so with a tolerance
  /// of 0 a digit can come out as the unit after "9". Reserves 64 units (narrow) or 16 (wide) up
  /// front, so common values cost one allocation at most.
  Str& FormatDouble(double value, int32_t fractionDigits, bool round, double tolerance,
                    bool padFraction, bool keepNegativeZero, bool forceFraction) requires(IsUnique);

  /// Reads a double from the start of the text as _ParseDoubleAt does (double_text.h), with a
  /// decimal and a group separator of one code unit each (0 for none). Text without a number
  /// gives 0.0.
  double ParseDouble(Unit decimalSeparator = Unit('.'), Unit groupSeparator = 0) const noexcept;
  /// Reads a double from the code unit index `position` and moves `position` to the index of
  /// the first unit not consumed. A position below 0 or beyond the length reads nothing: 0.0,
  /// position left alone.
  double ParseDouble(int32_t& position, Unit decimalSeparator = Unit('.'),
                     Unit groupSeparator = 0) const noexcept;

  /// Reads a signed decimal 32-bit integer from the start of the text as _ParseIntegerAt does
  /// (wrapping arithmetic; units equal to a non-zero groupSeparator are skipped).
  int32_t ParseInteger(Unit groupSeparator = 0) const noexcept;
  /// The same from the code unit index `position`, which moves behind what was read. A position
  /// below 0 or beyond the length reads nothing: 0, position left alone.
  int32_t ParseInteger(int32_t& position, Unit groupSeparator = 0) const noexcept;
};

IC_EXTERN_STRING_MIXIN(ICStringDoubleMembers)

}  // namespace ic
