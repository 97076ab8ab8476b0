#include <ic/number/number_parse.h>

#include <cstddef>
#include <limits>
#include <type_traits>

namespace ic {
namespace {

template <class Unit>
inline uint32_t UnitValue(Unit unit) noexcept {
  return static_cast<uint32_t>(static_cast<std::make_unsigned_t<Unit>>(unit));
}

template <class Unit>
inline bool IsBlank(Unit unit) noexcept {
  return unit == Unit(' ') || unit == Unit('\t');
}

template <class Unit>
inline bool StartsWithHexPrefix(const Unit* text) noexcept {
  return text[0] == Unit('0') && text[1] == Unit('x');  // text[1] exists: text[0] is no terminator
}

// What a reading without digits stores.
template <class T>
T NoDigitValue(const StringNumberParseOptions& options) noexcept {
  constexpr T kMin = std::numeric_limits<T>::min();
  constexpr T kMax = std::numeric_limits<T>::max();
  const int64_t d = options.defaultValue;
  if (options.emptyMode == 0) return 0;
  if (options.emptyMode < 0) {  // the signed reading
    if constexpr (std::is_signed_v<T>) {
      if constexpr (sizeof(T) < sizeof(int64_t)) {
        if (d < kMin) return kMin;
        if (d > kMax) return kMax;
      }
      return static_cast<T>(d);
    } else {
      if (d < 0) return 0;
      if constexpr (sizeof(T) < sizeof(int64_t))
        if (d > static_cast<int64_t>(kMax)) return kMax;
      return static_cast<T>(d);
    }
  }
  // The unsigned reading: a negative default is a large value, and gives the maximum.
  const auto u = static_cast<uint64_t>(d);
  if (u > static_cast<uint64_t>(kMax)) return kMax;
  return static_cast<T>(u);
}

// The decimal loop. Saturation happens exactly when the value read would exceed the maximum:
// either it already exceeds max / 10, or ten times it exceeds max minus the digit. Fewer digits
// than the type's digits10 cannot come near the maximum (leading zeros included), so the first
// ones are read without the two comparisons.
template <class Unit, class T>
inline bool ReadDecimal(const Unit* p, T& value, const StringNumberParseOptions& options) noexcept {
  using UInt = std::make_unsigned_t<T>;
  constexpr UInt kMax = static_cast<UInt>(std::numeric_limits<T>::max());
  constexpr UInt kGuard = kMax / 10;
  constexpr int kSafeDigits = std::numeric_limits<T>::digits10;
  UInt v = 0;
  int count = 0;
  for (; count < kSafeDigits; ++count) {
    const uint32_t digit = UnitValue(p[count]) - '0';
    if (digit > 9) {
      value = count == 0 ? NoDigitValue<T>(options) : static_cast<T>(v);
      return false;
    }
    v = static_cast<UInt>(v * 10 + digit);
  }
  for (p += count;; ++p) {
    const uint32_t digit = UnitValue(*p) - '0';
    if (digit > 9) break;
    if (v > kGuard || static_cast<UInt>(v * 10) > kMax - digit) {
      value = static_cast<T>(kMax);
      return true;
    }
    v = static_cast<UInt>(v * 10 + digit);
  }
  value = static_cast<T>(v);
  return false;
}

template <class Unit, class T>
inline void ReadHex(const Unit* text, T& value) noexcept {
  using UInt = std::make_unsigned_t<T>;
  constexpr Unit kEmpty[1] = {0};
  constexpr std::ptrdiff_t kWidth = sizeof(T) * 2;  // digits that fit
  const Unit* p = text != nullptr ? text : kEmpty;
  if (StartsWithHexPrefix(p)) p += 2;
  UInt v = 0;
  const Unit* significant = nullptr;  // the first non-zero digit
  for (;; ++p) {
    uint32_t digit;
    if (!_HexDigitValue(*p, digit)) break;
    if (significant == nullptr) {
      if (digit != 0) significant = p;
    } else if (p - significant >= kWidth) {
      if constexpr (std::is_signed_v<T>)
        value =
            static_cast<T>(v) < 0 ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
      else
        value = std::numeric_limits<T>::max();
      return;
    }
    v = static_cast<UInt>((v << 4) | digit);
  }
  value = static_cast<T>(v);
}

// Blanks and the hexadecimal prefix; false (and the value read) for hexadecimal text.
template <class Unit, class T>
inline bool ReadPrefix(const Unit*& p, T& value, const StringNumberParseOptions& options) noexcept {
  if (options.skipBlanks)
    while (IsBlank(*p))
      ++p;
  if (options.allowHexPrefix && StartsWithHexPrefix(p)) {
    ReadHex(p + 2, value);
    return false;
  }
  return true;
}

template <class Unit, class T>
void ReadNumber(const Unit* text, T& value, const StringNumberParseOptions& options) noexcept {
  using UInt = std::make_unsigned_t<T>;
  constexpr Unit kEmpty[1] = {0};
  const Unit* p = text != nullptr ? text : kEmpty;
  if (!ReadPrefix(p, value, options)) return;
  bool negative = false;
  if (std::is_signed_v<T> && *p == Unit('-')) {
    negative = true;
    ++p;
  } else if (*p == Unit('+')) {
    ++p;
  }
  const bool saturated = ReadDecimal(p, value, options);
  if (negative) {
    UInt result = static_cast<UInt>(UInt{0} - static_cast<UInt>(value));
    if (saturated) result = static_cast<UInt>(result - 1);
    value = static_cast<T>(result);
  }
}

}  // namespace

#define IC_DEFINE_INTEGER_PARSERS(Unit, T)                                                         \
  void ParseNumber(const Unit* text, T& value, const StringNumberParseOptions& options) noexcept { \
    ReadNumber(text, value, options);                                                              \
  }                                                                                                \
  bool _ParseNumberPrefix(const Unit** text, T& value,                                             \
                          const StringNumberParseOptions& options) noexcept {                      \
    const Unit* p = *text;                                                                         \
    if (!ReadPrefix(p, value, options)) return false;                                              \
    *text = p;                                                                                     \
    return true;                                                                                   \
  }                                                                                                \
  bool _ParseDecimal(const Unit* digits, T& value,                                                 \
                     const StringNumberParseOptions& options) noexcept {                           \
    return ReadDecimal(digits, value, options);                                                    \
  }                                                                                                \
  void _ParseHex(const Unit* text, T& value) noexcept {                                            \
    ReadHex(text, value);                                                                          \
  }

IC_FOR_EACH_INTEGER_TYPE(IC_DEFINE_INTEGER_PARSERS, char)
IC_FOR_EACH_INTEGER_TYPE(IC_DEFINE_INTEGER_PARSERS, char16_t)

#undef IC_DEFINE_INTEGER_PARSERS

}  // namespace ic
