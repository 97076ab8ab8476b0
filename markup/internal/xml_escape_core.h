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

#include <ic/platform/internal/stop_walk.h>
#include <ic/platform/internal/unit_scan.h>
#include <ic/string/internal/positions.h>
#include <ic/string/utf8.h>

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

/// The units that escaping without alsoEscape must look at: the replaced characters, the zero
/// unit and, in narrow text, every non-ASCII byte (whose character is encoded again).
template <class Unit>
const platform::internal::UnitStopSet& XmlQuietStops(bool escapeQuotes) noexcept;

/// The named replacement of each ASCII unit: "&lt;", "&gt;", "&amp;", "&quot;", "&apos;", and
/// length 0 for the others.
template <class Unit>
struct XmlEntity {
  int32_t length;
  Unit text[6];
};
template <class Unit>
constexpr std::array<XmlEntity<Unit>, 128> MakeXmlEntities() {
  std::array<XmlEntity<Unit>, 128> table{};
  const auto set = [&](char c, const char* name) {
    XmlEntity<Unit>& e = table[static_cast<size_t>(c)];
    for (e.length = 0; name[e.length] != 0; ++e.length)
      e.text[e.length] = static_cast<Unit>(name[e.length]);
  };
  set('<', "&lt;");
  set('>', "&gt;");
  set('&', "&amp;");
  set('"', "&quot;");
  set('\'', "&apos;");
  return table;
}
template <class Unit>
inline constexpr std::array<XmlEntity<Unit>, 128> kXmlEntities = MakeXmlEntities<Unit>();

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
    // The common case: the marked units (see WalkStops) are visited in order and the runs
    // between them added in one piece. The markup characters take their entity from a table;
    // controls and (narrow) non-ASCII characters the general steps, which may carry the walk
    // past marks it then skips.
    using U = std::make_unsigned_t<Unit>;
    const Unit* const stop = platform::internal::WalkStops(
        p, end, XmlQuietStops<Unit>(escapeQuotes), [&](const Unit* at, const Unit* mark) {
          if (mark != at) sink.Add(at, static_cast<int32_t>(mark - at));
          const uint32_t unit = static_cast<U>(*mark);
          if (unit == 0) return static_cast<const Unit*>(nullptr);
          // A marked quote is one that is escaped: quotes are marked only then.
          if (unit < 128 && kXmlEntities<Unit>[unit].length != 0) {
            sink.Add(kXmlEntities<Unit>[unit].text, kXmlEntities<Unit>[unit].length);
            return mark + 1;
          }
          const Unit* next = mark;
          const uint32_t code = TakeCode(next);
          int written = XmlReplacement(code, escapeQuotes, alsoEscape, piece);
          if (written == 0 && sizeof(Unit) == 1) {
            char* out = reinterpret_cast<char*>(piece);
            EncodeCodePoint(out, code);  // writes nothing for a value UTF-8 cannot hold
            written = static_cast<int>(out - reinterpret_cast<char*>(piece));
          }
          if (written > 0) sink.Add(piece, written);
          return next;
        });
    if (stop != nullptr && stop < end) sink.Add(stop, static_cast<int32_t>(end - stop));
    return;
  }
  while (p < end && *p) {
    const int32_t span = XmlPlainSpan(p, static_cast<int32_t>(end - p), escapeQuotes, alsoEscape);
    if (span > 0) {
      sink.Add(p, span);
      p += span;
      if (p == end || *p == 0) break;
    }
    const uint32_t code = TakeCode(p);
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
