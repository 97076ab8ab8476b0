// Positions in text: from code-point positions to unit offsets, the end-of-text position, the
// fold of negative positions, and UTF-8 stepping that stops at the terminator. Internal to the
// library; one name for each idea.
//
// Units or code points. Wide strings always count units. A narrow member takes its positions and
// counts in code points when `lengthInUnits` is false, in bytes when it is true, and EndOfText
// (range.h) is never converted. The defaults differ by concern, for these reasons:
//   - searching and comparing (Find*, IndexOf*, FindWord, FindBalanced, StartsWithAt) default to
//     false: their positions and results are the character positions a host shows and passes
//     back, and a result comes out counted as its position went in;
//   - cutting, inserting and reading parts (Left, Mid, KeepLeft, KeepFrom, Insert, PutRepeated,
//     GetTailPointer, GetPositionAt, GetCharCount, IsLineEndAt) and the constructor from a text
//     and a length default to true: they are mostly given offsets taken from GetLength or from
//     pointer arithmetic, and units need no walk over the text.
//
// Two walks turn code points into units. The editing members use GetUTF8Offset (utf8.h), which
// stops only at a zero lead byte, so a sequence cut short by the terminator can step over it
// (UnitOffsetOf); searching never reads past the length it was given (UnitOffsetWithin).
#pragma once

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include <ic/string/range.h>
#include <ic/string/utf8.h>

namespace ic::internal {

// --- Bounded UTF-8 stepping ------------------------------------------------------------------
// The size of a sequence comes from its lead byte alone (GetUTF8SequenceSize) and continuation
// bytes are not checked; a sequence that a zero byte cuts short ends at the zero.

/// Decodes the sequence at `p` and moves `p` behind it. A sequence cut short by a zero byte
/// takes the bytes before the zero, leaves `p` at the zero and clears `whole`.
inline uint32_t DecodeCodePoint(const char*& p, bool& whole) noexcept {
  const unsigned char* u = reinterpret_cast<const unsigned char*>(p);
  const unsigned lead = u[0];
  whole = true;
  if (lead < 0x80) {
    p += 1;
    return lead;
  }
  const int n = GetUTF8SequenceSize(static_cast<unsigned char>(lead)) - 1;
  uint32_t value = lead & (63u >> n);
  int i = 1;
  for (; i <= n; ++i) {
    if (u[i] == 0) {
      whole = false;
      break;
    }
    value = (value << 6) | (u[i] & 63u);
  }
  p += i;
  return value;
}

inline uint32_t DecodeCodePoint(const char*& p) noexcept {
  bool whole;
  return DecodeCodePoint(p, whole);
}

/// The character at `p`, with `p` moved behind it: in narrow text the code point as
/// DecodeCodePoint reads it, in wide text the unit.
template <class Unit>
inline uint32_t TakeCode(const Unit*& p) noexcept {
  if constexpr (sizeof(Unit) == 1)
    return DecodeCodePoint(p);
  else
    return static_cast<std::make_unsigned_t<Unit>>(*p++);
}

/// Number of bytes of the sequence at `p`, stopping at a zero byte.
inline int StepSize(const char* p) noexcept {
  const unsigned char* u = reinterpret_cast<const unsigned char*>(p);
  if (u[0] < 0x80) return 1;
  const int n = GetUTF8SequenceSize(u[0]);
  for (int i = 1; i < n; ++i)
    if (u[i] == 0) return i;
  return n;
}

/// True for a UTF-8 continuation byte (top bits 10).
inline bool IsContinuation(char c) noexcept {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// The start of the code point that ends at `end`, stepping back over continuation bytes but not
/// before `begin`.
inline const char* StepBack(const char* begin, const char* end) noexcept {
  const char* p = end - 1;
  while (p > begin && IsContinuation(*p))
    --p;
  return p;
}

/// Decodes the code point that ends at `end` (which is above `begin`) and moves `end` to its
/// start.
inline uint32_t DecodeBackward(const char* begin, const char*& end) noexcept {
  const char* start = StepBack(begin, end);
  const char* p = start;
  const uint32_t code = DecodeCodePoint(p);
  end = start;
  return code;
}

/// The start of the code point `n` code points before `end`: one byte at a time back, each byte
/// that is not a continuation byte ends one code point; stops at `start`.
inline const char* StepBackCodePoints(const char* start, const char* end, int32_t n) noexcept {
  const char* p = end;
  while (n > 0 && p > start) {
    --p;
    if (!IsContinuation(*p)) --n;
  }
  return p;
}

/// Units of the sequence at `p` by its lead byte (GetUTF8SequenceSize), cut at `end`; 1 for a
/// wide unit.
template <class Unit>
int32_t SequenceSizeWithin(const Unit* p, const Unit* end) noexcept {
  if constexpr (sizeof(Unit) == 1) {
    const int32_t size = GetUTF8SequenceSize(static_cast<unsigned char>(*p));
    return std::min<int32_t>(size, static_cast<int32_t>(end - p));
  } else {
    (void)p, (void)end;
    return 1;
  }
}

// --- Positions to unit offsets ---------------------------------------------------------------

/// Units from `text` to the start of sequence `count`, or to `text + length`, whichever comes
/// first (bounded stepping).
inline int32_t CodePointsToUnitsWithin(const char* text, int32_t length, int32_t count) noexcept {
  const char* p = text;
  const char* const end = text + length;
  for (; count > 0 && p < end; --count)
    p += StepSize(p);
  return static_cast<int32_t>(p - text);
}

/// A position as a search member takes it, in units: narrow code points from 1 on are walked
/// within `length` units; EndOfText, 0, negative positions and unit positions stay as they are.
template <class Unit>
int32_t UnitOffsetWithin(const Unit* text, int32_t length, int32_t position,
                         bool lengthInUnits) noexcept {
  if constexpr (sizeof(Unit) == 1) {
    if (!lengthInUnits && position > 0 && position != EndOfText)
      return CodePointsToUnitsWithin(text, length, position);
  }
  (void)text, (void)length, (void)lengthInUnits;
  return position;
}

/// A position as an editing member takes it, in units: narrow code points from 1 on through
/// GetUTF8Offset; EndOfText, 0, negative positions and unit positions stay as they are.
template <class Unit>
int32_t UnitOffsetOf(const Unit* text, int32_t position, bool lengthInUnits) noexcept {
  if constexpr (sizeof(Unit) == 1) {
    if (!lengthInUnits && position > 0 && position != EndOfText)
      return GetUTF8Offset(text, static_cast<uint32_t>(position));
  }
  (void)text, (void)lengthInUnits;
  return position;
}

/// Units of `count` characters from `text` (UnitOffsetOf), never more than `available` and never
/// negative; a count of 0 or below is 0.
template <class Unit>
int32_t CountUnits(const Unit* text, int32_t count, bool lengthInUnits,
                   int32_t available) noexcept {
  if (count <= 0) return 0;
  return std::min(UnitOffsetOf(text, count, lengthInUnits), available);
}

/// A position and a count of a range: a negative position moves the start to 0 and shortens
/// the count by as much (a range that starts before the text keeps only its part inside).
struct FoldedRange {
  int32_t position;
  int64_t count;
};
inline FoldedRange FoldNegativePosition(int32_t position, int32_t count) noexcept {
  if (position < 0) return {0, int64_t{count} + position};
  return {position, count};
}

}  // namespace ic::internal
