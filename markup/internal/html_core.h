// The text work of the HTML encoder over plain units, writing into any sink with
// Add(const Unit*, int32_t).
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/markup/html_entities.h>
#include <ic/number/number_format.h>
#include <ic/string/internal/positions.h>

namespace ic::internal {

/// Encodes the zero-terminated `text` (null: nothing) as HTML text into `sink`: a line break
/// (CR LF, lone CR, lone LF) as "<BR>\r\n" with `lineBreakTags`, else as it stands; a value
/// below 256 with an entity name as "&name;"; other printable ASCII as it stands; anything else
/// as "&#value;". Narrow text is decoded by code point, wide text taken by unit.
template <class Unit, class Sink>
void EncodeHtmlTo(const Unit* text, bool lineBreakTags, Sink& sink) {
  if (text == nullptr) return;
  using U = std::make_unsigned_t<Unit>;
  static constexpr Unit kBreak[] = {Unit('<'),  Unit('B'),  Unit('R'), Unit('>'),
                                    Unit('\r'), Unit('\n'), Unit(0)};
  const Unit* p = text;
  Unit piece[24];
  while (*p) {
    // A run of printable ASCII without a name goes in one piece.
    const Unit* run = p;
    while (static_cast<U>(*p) >= 0x20 && static_cast<U>(*p) <= 0x7E && *p != Unit('"') &&
           *p != Unit('&') && *p != Unit('<') && *p != Unit('>'))
      ++p;
    if (p != run) sink.Add(run, static_cast<int32_t>(p - run));
    if (*p == 0) break;
    if (*p == Unit('\r') || *p == Unit('\n')) {
      const int n = (*p == Unit('\r') && p[1] == Unit('\n')) ? 2 : 1;
      if (lineBreakTags)
        sink.Add(kBreak, 6);
      else
        sink.Add(p, n);
      p += n;
      continue;
    }
    const uint32_t value = TakeCode(p);
    const Unit* name = nullptr;
    if (value < 256) {
      if constexpr (sizeof(Unit) == 1)
        name = HtmlEntityTable[value];
      else
        name = HtmlEntityTableW[value];
    }
    if (name == nullptr && value >= 0x20 && value <= 0x7E) {
      // Printable ASCII reached through a decoded sequence (an overlong form) is copied.
      piece[0] = static_cast<Unit>(value);
      sink.Add(piece, 1);
      continue;
    }
    int n = 0;
    piece[n++] = Unit('&');
    if (name != nullptr) {
      while (*name)
        piece[n++] = *name++;
    } else {
      piece[n++] = Unit('#');
      FormatNumber(piece + n, 12, value);
      while (piece[n] != 0)
        ++n;
    }
    piece[n++] = Unit(';');
    sink.Add(piece, n);
  }
}

}  // namespace ic::internal
