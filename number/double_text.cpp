#include <ic/number/double_text.h>

#include <cmath>
#include <iterator>

#include <ic/number/internal/double_format.h>

namespace ic {
namespace {

// 10 to the power `exponent`, correctly rounded. The powers up to 10^22 are exact doubles, and
// their reciprocals are one correctly rounded division, so these come from a table on every
// platform; beyond them the C library's pow (glibc's is correctly rounded; other run-times may
// differ in the last bit there).
double PowerOfTen(int32_t exponent) noexcept {
  static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  constexpr int32_t kLast = static_cast<int32_t>(std::size(kPowers)) - 1;
  if (exponent >= 0 && exponent <= kLast) return kPowers[exponent];
  if (exponent < 0 && exponent >= -kLast) return 1.0 / kPowers[-exponent];
  return std::pow(10.0, exponent);
}

template <class Unit>
bool DigitAt(Unit unit, uint32_t& digit) noexcept {
  const uint32_t d = static_cast<uint32_t>(unit) - '0';
  if (d >= 10) return false;
  digit = d;
  return true;
}

template <class Unit>
int32_t ParseIntegerAt(const Unit** cursor, Unit groupSeparator) noexcept {
  if (cursor == nullptr || *cursor == nullptr) return 0;
  const Unit* p = *cursor;
  uint32_t sign = 1;
  if (*p == Unit('-')) {
    sign = static_cast<uint32_t>(-1);
    ++p;
  } else if (*p == Unit('+')) {
    ++p;
  }
  uint32_t value = 0;  // unsigned, so that the 32-bit arithmetic wraps without overflow
  for (uint32_t digit; *p != 0; ++p) {
    if (DigitAt(*p, digit))
      value = value * 10u + digit;
    else if (groupSeparator == 0 || *p != groupSeparator)
      break;
  }
  *cursor = p;
  return static_cast<int32_t>(value * sign);
}

// The digits at p as a fraction: value and scale accumulated in doubles.
template <class Unit>
double FractionAt(const Unit*& p) noexcept {
  double value = 0.0;
  double scale = 1.0;
  for (uint32_t digit; DigitAt(*p, digit); ++p) {
    value = value * 10.0 + digit;
    scale *= 10.0;
  }
  return value / scale;
}

template <class Unit>
double ParseDoubleAt(const Unit** cursor, Unit decimalSeparator, Unit groupSeparator) noexcept {
  if (cursor == nullptr || *cursor == nullptr) return 0.0;
  const Unit* p = *cursor;
  double factor = 1.0;
  if (*p == Unit('-')) {
    factor = -1.0;
    ++p;
  } else if (*p == Unit('+')) {
    ++p;
  }
  double value = 0.0;
  for (uint32_t digit; *p != 0; ++p) {
    if (DigitAt(*p, digit))
      value = value * 10.0 + digit;
    else if (groupSeparator == 0 || *p != groupSeparator)
      break;
  }
  if (decimalSeparator != 0 && *p == decimalSeparator) {
    ++p;
    value += FractionAt(p);
  }
  if (*p == Unit('E') || *p == Unit('e')) {
    ++p;
    const int32_t exponent = ParseIntegerAt(&p, Unit(0));
    value *= PowerOfTen(exponent) * factor;
  } else {
    value *= factor;
  }
  *cursor = p;
  return value;
}

template <class Unit>
double ParseFractionAt(const Unit** cursor) noexcept {
  if (cursor == nullptr || *cursor == nullptr) return 0.0;
  const Unit* p = *cursor;
  const double value = FractionAt(p);
  *cursor = p;
  return value;
}

}  // namespace

double _ParseDoubleAt(const char** cursor, char decimalSeparator, char groupSeparator) noexcept {
  return ParseDoubleAt(cursor, decimalSeparator, groupSeparator);
}
double _ParseDoubleAt(const char16_t** cursor, char16_t decimalSeparator,
                      char16_t groupSeparator) noexcept {
  return ParseDoubleAt(cursor, decimalSeparator, groupSeparator);
}
int32_t _ParseIntegerAt(const char** cursor, char groupSeparator) noexcept {
  return ParseIntegerAt(cursor, groupSeparator);
}
int32_t _ParseIntegerAt(const char16_t** cursor, char16_t groupSeparator) noexcept {
  return ParseIntegerAt(cursor, groupSeparator);
}
double ParseFraction(const char** cursor) noexcept {
  return ParseFractionAt(cursor);
}
double ParseFraction(const char16_t** cursor) noexcept {
  return ParseFractionAt(cursor);
}

namespace internal {
namespace {

// "Closer to `to` than tolerance", strictly: a tolerance of 0 never holds.
inline bool Near(double value, double to, double tolerance) noexcept {
  return std::fabs(value - to) < tolerance;
}

template <class Unit>
void PutDigit(GrowableText<Unit>& out, double digit) {
  // No carry into digits already written: a digit of ten comes out as the unit after "9".
  out.Put(static_cast<Unit>(Unit('0') + static_cast<int>(digit)));
}

}  // namespace

template <class Unit>
void FormatDoubleText(GrowableText<Unit>& out, double value, const DoubleFormatSettings& settings) {
  const int32_t fractionDigits = settings.fractionDigits;
  const double tolerance = settings.tolerance;
  bool negative = std::signbit(value);
  if (std::isinf(value)) {
    if (negative) out.Put(Unit('-'));
    out.Put(Unit('I'));
    out.Put(Unit('N'));
    out.Put(Unit('F'));
    return;
  }
  double integer;
  double fraction = std::modf(std::fabs(value), &integer);

  // Rounding in advance, so that a carry out of the last digit reaches the integer part.
  if (fractionDigits > 0 && settings.round) {
    const double p = PowerOfTen(fractionDigits);
    if (std::isfinite(p)) {
      double scaled;
      const double scaledFraction = std::modf(fraction * p, &scaled);
      if (scaledFraction >= 0.5) {
        fraction = (scaled + 1.0) / p;
        if (Near(fraction, 1.0, tolerance)) {
          integer += 1.0;
          fraction = 0.0;
        }
      }
    }
  }
  // Snapping.
  if (Near(fraction, 1.0, tolerance)) {
    integer += 1.0;
    fraction = 0.0;
  } else if (fractionDigits == 0 && settings.round && fraction >= 0.5) {
    integer += 1.0;
    fraction = 0.0;
  } else if (Near(fraction, 0.0, tolerance)) {
    fraction = 0.0;
  }
  if (!settings.keepNegativeZero)
    negative = negative && (integer > 0.0 || (fraction > 0.0 && fractionDigits > 0));

  // Integer digits, least significant first, then the sign; the whole text is reversed after.
  const int32_t begin = out.length;
  // Below 2^53 every step is exact, so the digits of the integer are those of its uint64 value,
  // computed without the slow fmod; above, the double steps run as they are.
  while (integer >= 9007199254740992.0) {
    PutDigit(out, std::fmod(integer, 10.0));
    integer = std::floor(integer / 10.0);
  }
  if (integer > 0.0)  // a NaN passes no comparison
    for (uint64_t n = static_cast<uint64_t>(integer); n != 0; n /= 10)
      out.Put(static_cast<Unit>(Unit('0') + n % 10));
  if (out.length == begin) out.Put(Unit('0'));
  if (negative) out.Put(Unit('-'));
  for (Unit *a = out.text + begin, *b = out.text + out.length - 1; a < b; ++a, --b) {
    const Unit t = *a;
    *a = *b;
    *b = t;
  }

  if (fractionDigits > 0 && (fraction > 0.0 || settings.padFraction)) {
    out.Put(Unit('.'));
    int32_t remaining = fractionDigits;
    double digit;
    while (remaining > 1 && fraction > 0.0) {
      fraction = std::modf(fraction * 10.0, &digit);
      if (Near(fraction, 1.0, tolerance)) {
        fraction = 0.0;
        digit += 1.0;
      } else if (Near(fraction, 0.0, tolerance)) {
        fraction = 0.0;
      }
      PutDigit(out, digit);
      --remaining;
    }
    if (remaining <= 1 && fraction > 0.0) {
      fraction = std::modf(fraction * 10.0, &digit);
      if (settings.round && fraction >= 0.5) digit += 1.0;
      PutDigit(out, digit);
      --remaining;
    }
    if (settings.padFraction)
      for (; remaining > 0; --remaining)
        out.Put(Unit('0'));
  } else if (settings.forceFraction) {
    out.Put(Unit('.'));
    out.Put(Unit('0'));
  }
}

template IC_API void FormatDoubleText(GrowableText<char>&, double, const DoubleFormatSettings&);
template IC_API void FormatDoubleText(GrowableText<char16_t>&, double, const DoubleFormatSettings&);

}  // namespace internal
}  // namespace ic
