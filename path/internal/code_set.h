// Membership of a code point in a zero-terminated set of characters, for the path and markup
// text work: a narrow set is UTF-8 and is compared by code point, a wide set by unit.
#pragma once

#include <cstdint>

#include <ic/string/utf8.h>

namespace ic::internal {

/// True if the zero-terminated `set` (null: empty) holds `code`; 0 is never held.
template <class Unit>
inline bool CodeSetHolds(const Unit* set, uint32_t code) noexcept {
  if (set == nullptr || code == 0) return false;
  if constexpr (sizeof(Unit) == 1) {
    return FindCodePoint(set, code) != nullptr;
  } else {
    for (; *set; ++set)
      if (*set == code) return true;
    return false;
  }
}

}  // namespace ic::internal
