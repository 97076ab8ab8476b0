// The text work of XML escaping over plain units, for char (UTF-8) and char16_t (UTF-16).
//
// The escaper is split so that its common case (nothing to escape) is a scan and nothing else:
// FindXmlEscape finds the first character to replace; only then does EscapeXmlFrom write, into
// any sink with Add(const Unit*, int32_t).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <ic/string/utf8.h>
#include <ic/string/internal/positions.h>

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

/// Units of the first `n` at `p` that are copied as they stand once the output has started
/// (stopping at a zero unit): narrow, ASCII bytes that are not replaced; wide, units that are
/// not replaced.
template <class Unit>
int32_t XmlPlainSpan(const Unit* p, int32_t n, bool escapeQuotes, const Unit* alsoEscape) noexcept;

/// Escapes the `length` units at `source` (zero-terminated there, or ending at an earlier zero
/// unit) into `sink`, given `first`, its first character to replace (from FindXmlEscape): what
/// lies before it goes in one piece, the rest character by character, runs of unchanged ASCII
/// (narrow) or units (wide) together. In the narrow form an unchanged non-ASCII character is
/// encoded again from its code point, so a value that UTF-8 cannot hold (a surrogate, above
/// U+10FFFF) is dropped.
template <class Unit, class Sink>
void EscapeXmlFrom(const Unit* source, int32_t length, const Unit* first, bool escapeQuotes,
                   const Unit* alsoEscape, Sink& sink) {
  sink.Add(source, static_cast<int32_t>(first - source));
  const Unit* const end = source + length;
  Unit piece[16];
  const Unit* p = first;
  if (alsoEscape == nullptr || *alsoEscape == 0) {
    // The common case, inline: runs from the plain-span scan, the markup characters from a
    // switch; controls and (narrow) non-ASCII characters take the general steps below.
    using U = std::make_unsigned_t<Unit>;
    while (p < end) {
      const Unit* run = p;
      p += XmlPlainSpan(p, static_cast<int32_t>(end - p), escapeQuotes, alsoEscape);
      if (p != run) sink.Add(run, static_cast<int32_t>(p - run));
      if (p == end || *p == 0) return;
      static constexpr Unit kLt[] = {Unit('&'), Unit('l'), Unit('t'), Unit(';')};
      static constexpr Unit kGt[] = {Unit('&'), Unit('g'), Unit('t'), Unit(';')};
      static constexpr Unit kAmp[] = {Unit('&'), Unit('a'), Unit('m'), Unit('p'), Unit(';')};
      switch (*p) {
        case Unit('<'):
          sink.Add(kLt, 4);
          ++p;
          continue;
        case Unit('>'):
          sink.Add(kGt, 4);
          ++p;
          continue;
        case Unit('&'):
          sink.Add(kAmp, 5);
          ++p;
          continue;
        default:
          break;
      }
      uint32_t code;
      if constexpr (sizeof(Unit) == 1)
        code = internal::DecodeCodePoint(p);
      else
        code = static_cast<U>(*p++);
      int n = XmlReplacement(code, escapeQuotes, alsoEscape, piece);
      if (n == 0 && sizeof(Unit) == 1) {
        char* out = reinterpret_cast<char*>(piece);
        EncodeCodePoint(out, code);  // writes nothing for a value UTF-8 cannot hold
        n = static_cast<int>(out - reinterpret_cast<char*>(piece));
      }
      if (n > 0) sink.Add(piece, n);
    }
    return;
  }
  while (p < end && *p) {
    const int32_t span = XmlPlainSpan(p, static_cast<int32_t>(end - p), escapeQuotes, alsoEscape);
    if (span > 0) {
      sink.Add(p, span);
      p += span;
      if (p == end || *p == 0) break;
    }
    uint32_t code;
    if constexpr (sizeof(Unit) == 1)
      code = internal::DecodeCodePoint(p);
    else
      code = *p++;
    int n = XmlReplacement(code, escapeQuotes, alsoEscape, piece);
    if (n == 0) {
      if constexpr (sizeof(Unit) == 1) {
        char* out = piece;
        EncodeCodePoint(out, code);  // writes nothing for a value UTF-8 cannot hold
        n = static_cast<int>(out - piece);
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
