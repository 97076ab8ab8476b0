// The quoted-printable encoder of wide unique strings. Mixed into BasicICString; the member
// exists only for ICStringUniqueW. The library has no decoder.
#pragma once

#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringQuotedPrintableMembers;

template <class Unit, class Storage>
class ICStringQuotedPrintableMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringQuotedPrintableMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringQuotedPrintableMembers);
  static constexpr bool IsWideUnique =
      std::is_same_v<Unit, char16_t> && std::is_same_v<Storage, ICStringUniqueStorage<char16_t>>;

 public:
  /// In place: encodes the 16-bit units (meant to be below 256) in the quoted-printable style:
  /// tab and printable ASCII other than '=' pass; a '.' at the start of a line becomes "=2E";
  /// CR LF and a lone CR end a line with CR LF, a space or tab just before it written as
  /// "=20"/"=09"; a lone LF and everything else become '=' with upper-case hex digits (two at
  /// least: U+4E2D gives "=4E2D"). A soft break "=\r\n" follows the first piece that finds its
  /// line at 70 units or more; no break or line end is added at the end. Returns the string.
  Str& EncodeQuotedPrintable() requires(IsWideUnique);
};

IC_EXTERN_STRING_MIXIN(ICStringQuotedPrintableMembers)

}  // namespace ic
