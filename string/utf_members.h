// Members of every string that convert between UTF-8 and UTF-16 (ConvertFromUTF8String,
// ConvertToUTF8, ConvertToUTF8Units). Mixed into BasicICString.
//
// The mixin is specialised on BasicICString<Unit, Storage>, so that width and shape are known
// from the template arguments alone, before the string class itself is complete; the members
// are defined once in utf_members.cpp and instantiated there for the six strings.
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/range.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringUtfMembers;

template <class Unit, class Storage>
class ICStringUtfMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringUtfMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringUtfMembers);
  using NarrowUnique = BasicICString<char, ICStringUniqueStorage<char>>;

 public:
  /// Replaces the text by the conversion of `length` bytes of UTF-8 at `text` (negative: up to
  /// the terminator). A null text, a length of 0, or an empty text with a negative length empty
  /// the string (a shared block that others hold is let go of; a view becomes owning).
  ///
  /// Wide strings convert through the platform converter (code page 65001, flags 0), which
  /// replaces invalid input by U+FFFD: the size is measured first, room is made for exactly
  /// that (a unique string keeps a block that is large enough; a shared block that others hold
  /// is replaced; a view becomes owning), and the text is converted into the string's own block.
  /// A converter that answers 0 throws std::runtime_error("ICString::ConvertFromUTF8String
  /// failed!"); the string may by then have a new block. Narrow strings take the bytes as they
  /// are: a plain assignment (a view with a negative length views the text).
  Str& ConvertFromUTF8String(const char* text, int32_t length = -1);
  /// The same with the pointer and length of a range.
  Str& ConvertFromUTF8String(ICStringRange range);
  /// The same with the text and length of a narrow string.
  Str& ConvertFromUTF8String(const NarrowUnique& text);

  /// The UTF-8 form of the text, as the free ConvertToUTF8 of a zero-terminated wide text makes
  /// it (utf_convert.h): up to the first zero code point, surrogates always taken as pairs, one
  /// allocation of exactly the size.
  NarrowUnique ConvertToUTF8() const requires(IsWide);

  /// Replaces the text by its own UTF-8 bytes, one byte per 16-bit unit (values 0 to 0xff), for
  /// byte-oriented routines. Converts through the platform converter, so a lone surrogate
  /// becomes the three bytes of U+FFFD. Room is made for the converted size with its terminator.
  Str& ConvertToUTF8Units() requires(IsWide);
};

IC_EXTERN_STRING_MIXIN(ICStringUtfMembers)

}  // namespace ic
