// The searches behind the members of search_members.h, over a text pointer and its length, for
// both widths. Internal to the text subsystem; instantiated for char and char16_t.
//
// Offsets are in code units; positions become offsets by UnitOffsetWithin (positions.h).
#pragma once

#include <cstdint>
#include <cstring>

#include <ic/platform/wide_runtime.h>
#include <ic/platform/wide_search.h>
#include <ic/string/internal/positions.h>

namespace ic::internal {

/// Forward start: a negative position counts as 0; -1 if the offset lies beyond the length.
template <class Unit>
int32_t ForwardOffset(const Unit* text, int32_t length, int32_t position,
                      bool lengthInUnits) noexcept {
  if (position < 0) position = 0;
  const int32_t offset = UnitOffsetWithin(text, length, position, lengthInUnits);
  return offset > length ? -1 : offset;
}

/// Backward limit: -1 for a position of 0 or below; otherwise the units, at most the length.
template <class Unit>
int32_t BackwardLimit(const Unit* text, int32_t length, int32_t position,
                      bool lengthInUnits) noexcept {
  if (position <= 0) return -1;
  const int32_t limit = UnitOffsetWithin(text, length, position, lengthInUnits);
  return limit > length ? length : limit;
}

/// The index of a found pointer as the caller counts it, or -1 for null.
template <class Unit>
int32_t IndexOf(const Unit* text, const Unit* found, bool lengthInUnits) noexcept;

/// True if the code point (narrow) or unit (wide) is in the zero-terminated set; 0 never is.
template <class Unit>
bool InSet(const Unit* set, uint32_t code) noexcept;

template <class Unit>
size_t TextLength(const Unit* text) noexcept {
  if constexpr (sizeof(Unit) == 1)
    return std::strlen(text);
  else
    return platform::wcslen(text);
}

/// Decodes the code point (narrow) or unit (wide) at `p` and moves `p` behind it.
template <class Unit>
uint32_t Next(const Unit*& p) noexcept {
  if constexpr (sizeof(Unit) == 1)
    return DecodeCodePoint(p);
  else
    return *p++;
}

/// Decodes the code point or unit that ends at `end` and moves `end` to its start.
template <class Unit>
uint32_t Previous(const Unit* text, const Unit*& end) noexcept {
  if constexpr (sizeof(Unit) == 1)
    return DecodeBackward(text, end);
  else
    return *--end;
}

template <class Unit>
const Unit* FindText(const Unit* text, int32_t length, int32_t offset, const Unit* needle) noexcept;
template <class Unit>
const Unit* FindCode(const Unit* text, int32_t length, int32_t offset, uint32_t code) noexcept;
template <class Unit>
const Unit* FindTextNoCase(const Unit* text, int32_t length, int32_t offset,
                           const Unit* needle) noexcept;
/// The last occurrence that ends at or before `limit` (units); `position` is the limit as the
/// caller gave it, against which the needle's length in units is also checked.
template <class Unit>
const Unit* FindLastText(const Unit* text, int32_t length, int32_t limit, int32_t position,
                         const Unit* needle) noexcept;
template <class Unit>
const Unit* FindLastCode(const Unit* text, int32_t limit, uint32_t code) noexcept;
/// The first code point at or behind `offset` whose membership in `set` is `member`.
template <class Unit>
const Unit* FindFirstInSet(const Unit* text, int32_t length, int32_t offset, const Unit* set,
                           bool member) noexcept;
/// The last code point before `limit` whose membership in `set` is `member`.
template <class Unit>
const Unit* FindLastInSet(const Unit* text, int32_t limit, const Unit* set, bool member) noexcept;
template <class Unit>
int32_t FindWordOffset(const Unit* text, int32_t length, const Unit* needle, const Unit* breakSet,
                       int32_t position, bool lengthInUnits, bool reverse) noexcept;
template <class Unit>
const Unit* FindBalancedIn(const Unit* text, int32_t length, int32_t offset, const Unit* open,
                           const Unit* close, uint32_t escape, bool flat, int32_t depth);
template <class Unit>
bool EndsWithText(const Unit* text, int32_t length, const Unit* suffix, bool ignoreCase) noexcept;

}  // namespace ic::internal
