// Members of every string that work with lines: FirstLineEnd, EnsureLineEnds, LineColumnAt,
// OffsetAt; the printf-style Format; the line-end constants and the free FindForeignLineEnd and
// Format. Mixed into BasicICString; the cores are in internal/line_core.h.
//
// Text comes from files of any origin, so three line ends count as equals when reading:
// "\r\n", "\r" alone and "\n" alone. Line and column numbers start at 0; columns and offsets
// count code units.
#pragma once

#include <cstdarg>
#include <cstdint>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

/// @name The line ends, narrow and wide
/// @{
template <class Unit>
inline constexpr Unit LineEndCRLF[3] = {Unit('\r'), Unit('\n'), 0};
template <class Unit>
inline constexpr Unit LineEndCR[2] = {Unit('\r'), 0};
template <class Unit>
inline constexpr Unit LineEndLF[2] = {Unit('\n'), 0};
/// @}

/// @name FindForeignLineEnd
/// The first line end of `text` (null counts as empty) that is not `lineEnd`, or null. The line
/// end must be exactly "\r", "\n" or "\r\n"; any other (empty, null, "\n\r") answers null. For a
/// "\r\n" in the text that is foreign its carriage return is answered, so with "\r" the pair is
/// foreign and with "\n" too.
/// @{
IC_API const char* FindForeignLineEnd(const char* text, const char* lineEnd) noexcept;
IC_API const char16_t* FindForeignLineEnd(const char16_t* text, const char16_t* lineEnd) noexcept;
/// @}

template <class Str>
class ICStringLineMembers;

template <class Unit, class Storage>
class ICStringLineMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringLineMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringLineMembers);

 public:
  /// A new string with the first line end of the text ("\r\n", "\r" or "\n"), or `fallback`
  /// when the text has none (empty if that is null). A view answers a view of the "\r\n"
  /// constant or of the fallback, without copying.
  Str FirstLineEnd(const Unit* fallback = nullptr) const;

  /// `source` itself when all its line ends are `lineEnd` (the string is then left alone);
  /// otherwise the string's own text after NormalizeLineEnds(source, lineEnd).
  const Unit* EnsureLineEnds(const Unit* source, const Unit* lineEnd) noexcept;

  /// The line and column of a code unit offset; true if the offset lies within the text (a
  /// "\r\n" is passed whole, so an offset between its units answers the next line and false).
  bool LineColumnAt(int32_t offset, int32_t& line, int32_t& column) const noexcept;

  /// The code unit offset of a line and column. False, with the offset of the line end, if the
  /// column lies beyond the end of its line; a line beyond the text answers its end and true.
  bool OffsetAt(int32_t line, int32_t column, int32_t& offset) const noexcept;

  /// Replaces the text by the printf-style `format` (null counts as empty) with the arguments,
  /// through the run-time's bounded formatter (wide: see platform/wide_format.h off Windows).
  /// Tries a capacity of 1024 units and grows by 1024 while the text does not fit; the block
  /// then shrinks to the text exactly. A format the formatter refuses (such as "%n") is retried
  /// until allocation fails, which throws. Returns the string.
  Str& Format(const Unit* format, ...);
  /// The same with an argument list.
  Str& FormatV(const Unit* format, va_list arguments);
};

IC_EXTERN_STRING_MIXIN(ICStringLineMembers)

/// The free-standing Format: target.FormatV(format, arguments); returns the target.
template <class Unit, class Storage>
BasicICString<Unit, Storage>& Format(BasicICString<Unit, Storage>& target, const Unit* format,
                                     ...) {
  va_list arguments;
  va_start(arguments, format);
  target.FormatV(format, arguments);
  va_end(arguments);
  return target;
}

}  // namespace ic
