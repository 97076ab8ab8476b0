// The text work of XML escaping over plain units, for char (UTF-8) and char16_t (UTF-16).
//
// The escaper is split so that its common case (nothing to escape) is a scan and nothing else:
// FindXmlEscape finds the first character to replace; only then does EscapeXmlFrom write, into
// any sink with Add(const Unit*, int32_t).
#pragma once

#include <cstdint>

#include <ic/string/utf8.h>
#include <ic/text/utf8_walk.h>

namespace ic::internal {

/// The first character of the `length` units at `source` (zero-terminated there, or at an
/// earlier zero unit) that escaping replaces, or null. Narrow text is walked by code point, wide
/// text by unit.
template <class Unit>
const Unit* FindXmlEscape(const Unit* source, int32_t length, bool escapeQuotes,
                          const Unit* alsoEscape) noexcept;

/// Writes the replacement of code point (narrow) or unit (wide) `code` into `out` (room for 16
/// units) and returns its length; 0 when the character stays as it is.
template <class Unit>
int XmlReplacement(uint32_t code, bool escapeQuotes, const Unit* alsoEscape, Unit* out) noexcept;

/// Units from `p` on, up to the terminator, that are copied as they stand once the output has
/// started: narrow, ASCII bytes that are not replaced; wide, units that are not replaced.
template <class Unit>
int32_t XmlPlainSpan(const Unit* p, bool escapeQuotes, const Unit* alsoEscape) noexcept;

/// Escapes the zero-terminated `source` into `sink`, given `first`, its first character to
/// replace (from FindXmlEscape): what lies before it goes in one piece, the rest character by
/// character, runs of unchanged ASCII (narrow) or units (wide) together. In the narrow form an
/// unchanged non-ASCII character is encoded again from its code point, so a value that UTF-8
/// cannot hold (a surrogate, above U+10FFFF) is dropped.
template <class Unit, class Sink>
void EscapeXmlFrom(const Unit* source, const Unit* first, bool escapeQuotes, const Unit* alsoEscape,
                   Sink& sink) {
  sink.Add(source, static_cast<int32_t>(first - source));
  Unit piece[16];
  const Unit* p = first;
  while (*p) {
    const int32_t span = XmlPlainSpan(p, escapeQuotes, alsoEscape);
    if (span > 0) {
      sink.Add(p, span);
      p += span;
      if (*p == 0) break;
    }
    uint32_t code;
    if constexpr (sizeof(Unit) == 1)
      code = textdetail::DecodeCodePoint(p);
    else
      code = *p++;
    int n = XmlReplacement(code, escapeQuotes, alsoEscape, piece);
    if (n == 0) {
      if constexpr (sizeof(Unit) == 1) {
        char* end = piece;
        EncodeCodePoint(end, code);  // writes nothing for a value UTF-8 cannot hold
        n = static_cast<int>(end - piece);
      } else {
        piece[0] = static_cast<Unit>(code);
        n = 1;
      }
    }
    if (n > 0) sink.Add(piece, n);
  }
}

/// UnescapeXml over the `length` units at `text`, in place from the first ampersand on: returns
/// the new length (the text is never longer); writes no terminator.
template <class Unit>
int32_t UnescapeXmlUnits(Unit* text, int32_t length, bool decodeCharRefs,
                         bool decodeEntities) noexcept;

}  // namespace ic::internal
