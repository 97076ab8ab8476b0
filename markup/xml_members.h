// Members of every string that escape text for XML character data or attribute values, and turn
// such text back. Mixed into BasicICString.
//
// The escaper is written for the common case that nothing needs escaping: it then scans, writes
// nothing and allocates nothing.
#pragma once

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringXmlMembers;

template <class Unit, class Storage>
class ICStringXmlMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringXmlMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringXmlMembers);

 public:
  /// Escapes the zero-terminated `source` (null: nothing) onto the end of `out`: '<', '>', '&'
  /// become "&lt;", "&gt;", "&amp;"; with `escapeQuotes` '"' and '\'' become "&quot;" and
  /// "&apos;"; control characters other than tab, LF and CR, and the characters that
  /// `alsoEscape` (null-safe) holds (quotes only when they are escaped anyway), become "&#N;"
  /// with the decimal code point (narrow) or unit (wide). Returns true if anything was written;
  /// false when nothing needed escaping, and then `out` is untouched. Narrow source is walked by
  /// code point; once writing has started, an unchanged character that UTF-8 cannot hold is
  /// dropped. `out` grows to the larger of twice the needed length and 1024 units;
  /// `source` must not lie in `out`'s own block (EscapeXml covers that case).
  static bool EscapeXmlInto(const Unit* source, Str& out, bool escapeQuotes = false,
                            const Unit* alsoEscape = nullptr);
  /// In place: the text escaped as by EscapeXmlInto; a text with nothing to escape keeps its
  /// block untouched. Returns the string.
  Str& EscapeXml(bool escapeQuotes = false, const Unit* alsoEscape = nullptr);
  /// A new string with `text` (null: empty) escaped as by EscapeXmlInto.
  static Str EscapedXml(const Unit* text, bool escapeQuotes = false,
                        const Unit* alsoEscape = nullptr);

  /// In place, from the first '&' on: with `decodeCharRefs` "&#N;" and "&#xH;" (lower-case x,
  /// at least one digit, no range check: 32-bit wrap narrow, 16-bit wide; 0 gives '?'), and
  /// with `decodeEntities` "&lt;", "&gt;", "&amp;", "&apos;", "&quot;" become their character.
  /// Narrow writes UTF-8 (nothing for a surrogate or a value above U+10FFFF), wide the low 16
  /// bits as one unit. Anything else stays, the result is never decoded twice. Returns the
  /// string; a text without '&' is not touched.
  Str& UnescapeXml(bool decodeCharRefs = true, bool decodeEntities = true);
  /// UnescapeXml(true, false).
  Str& UnescapeXmlCharRefs() { return UnescapeXml(true, false); }
  /// UnescapeXml(false, true).
  Str& UnescapeXmlEntities() { return UnescapeXml(false, true); }
};

IC_EXTERN_STRING_MIXIN(ICStringXmlMembers)

}  // namespace ic
