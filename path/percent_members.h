// Members of every string that percent-escape URL text (PercentEncode) and undo escapes
// (PercentDecode). Mixed into BasicICString.
//
// The always-unsafe set is every byte outside 0x21-0x7E (space, controls, 0x7F and all bytes of
// multi-byte UTF-8) and " % < > ^ ` { | }. The reserved set is # ; / ? : @ & = + $ ,. Everything
// else is copied, among it [ ] ! ' ( ) * - . _ ~ and, unless the mode says otherwise, the
// backslash. Wide strings escape the bytes of their UTF-8 form.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

/// What PercentEncode escapes besides the always-unsafe set.
enum PercentEscapeMode : int {
  /// Nothing more; the backslash stays.
  EscapeUnsafe = 0,
  /// The reserved set.
  EscapeReserved = 1,
  /// The reserved set and the backslash.
  EscapeReservedAndBackslash = 2,
};

template <class Str>
class ICStringPercentMembers;

template <class Unit, class Storage>
class ICStringPercentMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringPercentMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringPercentMembers);

 public:
  /// Replaces the text by its escaped form: each byte to escape becomes '%' and two upper-case
  /// hexadecimal digits. `mode` is a PercentEscapeMode; any other value acts as EscapeUnsafe.
  /// The new block has room for three times the length (in bytes of UTF-8 for wide strings)
  /// and is swapped in. A wide text is first turned into its UTF-8 bytes, one per unit, through
  /// the platform converter, so the result holds only ASCII. Returns the string.
  Str& PercentEncode(int mode = EscapeUnsafe);

  /// Undoes escapes in place, from the first '%' on; a text without one is not touched. "%%"
  /// gives '%', a '%' at the very end stays, '%' and a non-hex character are both dropped, '%'
  /// with one hex digit and anything else drops all three (at the end of the text: the two).
  /// Narrow strings keep the decoded bytes as they come and never allocate. Wide strings decode
  /// into bytes (units above 0xFF outside an escape are dropped, 0x80-0xFF are single bytes)
  /// and convert them from UTF-8 through the platform converter, invalid bytes becoming
  /// U+FFFD; a failed conversion throws std::runtime_error("ICString::ConvertFromUTF8String
  /// failed!"). Returns the string.
  Str& PercentDecode();
};

IC_EXTERN_STRING_MIXIN(ICStringPercentMembers)

}  // namespace ic
