// Members of every string that turn plain text into HTML text showing the same characters:
// markup characters and accented Latin letters as named entities (HtmlEntityTable), everything
// else outside printable ASCII as numeric references, line breaks optionally as BR tags.
// Mixed into BasicICString. There is no reverse operation.
#pragma once

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringHtmlMembers;

template <class Unit, class Storage>
class ICStringHtmlMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringHtmlMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringHtmlMembers);

 public:
  /// Clears `out` and writes `text` (null: empty) into it as HTML: a line break (CR LF, lone
  /// CR, lone LF) as "<BR>\r\n" with `lineBreakTags`, else as it stands; a value below 256 with
  /// an entity name as "&name;"; other characters from 0x20 to 0x7E as they stand; anything
  /// else as "&#N;" in decimal. Narrow text goes by code point (U+1F600 is one reference), wide
  /// text by unit (a surrogate pair gives two references).
  static void EncodeHtmlInto(Str& out, const Unit* text, bool lineBreakTags = false);
  /// In place: the string's own text encoded as by EncodeHtmlInto. Returns the string.
  Str& ToHtml(bool lineBreakTags = false);
  /// A new string with `text` encoded as by EncodeHtmlInto.
  static Str HtmlEncoded(const Unit* text, bool lineBreakTags = false);
};

IC_EXTERN_STRING_MIXIN(ICStringHtmlMembers)

}  // namespace ic
