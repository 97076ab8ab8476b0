// Members of every string that read and write the form prefix:local of a qualified name:
// GetTextBeforeColon, GetTextAfterColon, KeepTextBeforeColon, MakeQualifiedName. Mixed into
// BasicICString.
//
// The string is plain text here: the first colon (code unit 0x3A) splits it, neither side is
// checked to be a valid name, and a second colon stays in the local part.
#pragma once

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringQualifiedNameMembers;

template <class Unit, class Storage>
class ICStringQualifiedNameMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringQualifiedNameMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringQualifiedNameMembers);

 public:
  /// A new string of the same shape with the text ahead of the first colon: 'a:b:c' gives 'a'.
  /// Without a colon, or with one at the start, the empty data. The string stays as it is.
  Str GetTextBeforeColon() const noexcept;

  /// A new string with the text behind the first colon: 'a:b:c' gives 'b:c'. Without a colon, a
  /// copy of the whole text (a view copies too). An empty result is the empty data. The string
  /// stays as it is. Does not let exceptions escape: a failed allocation ends the process.
  Str GetTextAfterColon() const noexcept;

  /// Cuts the string to the text ahead of its first colon, in place. Without a colon the string
  /// is cleared ('x' becomes empty, unlike GetTextAfterColon). A view of foreign text first takes
  /// a block of its own, colon or not; a shared block that others hold is detached when a colon
  /// is found, and let go of when none is. Returns the string.
  Str& KeepTextBeforeColon();

  /// A new string of the same shape: this string as the prefix, a colon and `localName` (a
  /// zero-terminated text, null counting as empty), written in one allocation: 'p' and 'n' give
  /// 'p:n', 'p' and "" give 'p:'. With an empty prefix the result is the local name alone (null
  /// or empty: the empty data); a view then views the caller's text without copying. Does not
  /// let exceptions escape: a failed allocation ends the process.
  Str MakeQualifiedName(const Unit* localName) const noexcept;
};

IC_EXTERN_STRING_MIXIN(ICStringQualifiedNameMembers)

}  // namespace ic
