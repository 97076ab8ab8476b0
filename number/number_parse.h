// Text to integers of every width, from zero-terminated narrow (UTF-8) or wide (UTF-16) text.
//
// A parser never fails: it always stores a value in the caller's variable, the digits it read,
// the type's limit when they do not fit, or a value derived from the caller's default when there
// were no digits at all. There is no status and no end pointer; text behind the number is not
// looked at. No allocation, no locale: only the ASCII digits count, and the only blanks are the
// space and the tab.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <ic/number/number_types.h>
#include <ic/platform/export.h>

namespace ic {

/// Options of ParseNumber. All zero (the default) reads a plain decimal number, with 0 for text
/// without digits.
struct StringNumberParseOptions {
  /// Skip leading spaces and tabs (no other white space).
  bool skipBlanks = false;
  /// What to store when no digit was read: zero stores 0; negative stores defaultValue clamped
  /// to the type's range, read as signed; positive stores defaultValue read as unsigned 64-bit,
  /// with the type's maximum when it is larger (so a negative default gives the maximum).
  int8_t emptyMode = 0;
  /// The default of emptyMode.
  int64_t defaultValue = 0;
  /// Text that begins with "0x" (after the blanks, before any sign) is hexadecimal. The
  /// upper-case "0X" is no prefix.
  bool allowHexPrefix = false;
};

/// Reads the digit value (0 to 15) of "0"-"9", "a"-"f" or "A"-"F" into `digit` and returns true;
/// returns false for anything else and leaves `digit` alone.
template <NumberTextUnit Unit, class Digit>
inline bool _HexDigitValue(Unit unit, Digit& digit) noexcept {
  const uint32_t u = static_cast<uint32_t>(static_cast<std::make_unsigned_t<Unit>>(unit));
  if (u - '0' < 10) {
    digit = static_cast<Digit>(u - '0');
    return true;
  }
  const uint32_t letter = (u | 0x20) - 'a';
  if (letter < 6) {  // only 'A'-'F' and 'a'-'f' map into 'a'-'f' here
    digit = static_cast<Digit>(letter + 10);
    return true;
  }
  return false;
}

// The operations exist for each value type, once for narrow and once for wide text:
//
// ParseNumber(text, value, options): the whole reading. A null text counts as empty. Blanks are
// skipped if asked; "0x" reads hexadecimal if allowed (see _ParseHex); then for signed types one
// "-" or "+", for unsigned types only "+", directly ahead of the digits; then the decimal digits
// (see _ParseDecimal). A "-" negates the result in the type's width, and one more is taken off
// after saturation, so that any text beyond the limits gives the minimum with "-" and the maximum
// without. The negation also applies to a value made from the default: "-" with emptyMode 1 and
// defaultValue 5 gives -5.
//
// _ParseNumberPrefix(&text, value, options): the blanks and the hexadecimal prefix alone, on a
// non-null text. Returns false when the text was hexadecimal (value holds it, the text pointer
// is untouched); true otherwise, with the text pointer moved to the first non-blank unit, where
// a decimal reading goes on.
//
// _ParseDecimal(digits, value, options): reads decimal digits, without any sign. Stops at the
// first non-digit. A value that would exceed the type's maximum saturates: the maximum is stored
// and the result is true. With no digit at all, the value comes from emptyMode and defaultValue
// and the result is false. Otherwise false.
//
// _ParseHex(text, value): skips one "0x" if present, then reads hexadecimal digits. Leading zeros
// do not count; a significant digit beyond the type's width (2, 4, 8 or 16 digits) saturates: the
// maximum for unsigned types; for signed types the minimum if the digits read so far have the
// sign bit set, else the maximum. Signed types take the digits as a bit pattern ("0xFF" into a
// signed byte is -1). No digit: 0, and the options play no part.
#define IC_DECLARE_INTEGER_PARSERS(Unit, T)                                         \
  IC_API void ParseNumber(const Unit* text, T& value,                               \
                          const StringNumberParseOptions& options = {}) noexcept;   \
  IC_API bool _ParseNumberPrefix(const Unit** text, T& value,                       \
                                 const StringNumberParseOptions& options) noexcept; \
  IC_API bool _ParseDecimal(const Unit* digits, T& value,                           \
                            const StringNumberParseOptions& options) noexcept;      \
  IC_API void _ParseHex(const Unit* text, T& value) noexcept;

IC_FOR_EACH_INTEGER_TYPE(IC_DECLARE_INTEGER_PARSERS, char)
IC_FOR_EACH_INTEGER_TYPE(IC_DECLARE_INTEGER_PARSERS, char16_t)

#undef IC_DECLARE_INTEGER_PARSERS

/// ParseNumber of a null text written as nullptr, which has no width for the overloads above to
/// pick: the text counts as empty, as a null text of either width does.
template <IntegerValueType T>
inline void ParseNumber(std::nullptr_t, T& value,
                        const StringNumberParseOptions& options = {}) noexcept {
  ParseNumber(static_cast<const char*>(nullptr), value, options);
}

}  // namespace ic
