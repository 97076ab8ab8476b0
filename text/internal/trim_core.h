// The unit-only cores of the trim, pad and token members: functions over a unit type and
// pointers, instantiated for char and char16_t in trim_core.cpp, so that the string members only
// forward to them.
//
// Narrow text is read in code points, each sequence sized by its lead byte and cut at a zero
// byte (string/internal/positions.h); wide text in 16-bit units.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/string/internal/growable_text.h>
#include <ic/text/search_needle.h>

namespace ic::internal {

/// The characters a trim removes: the four default blanks, a zero-terminated set of code points
/// (null or empty: nothing), or one code (code point in narrow text, unit in wide).
template <class Unit>
struct TrimSet {
  enum Kind : uint8_t { Blanks, Set, One };
  Kind kind;
  const Unit* set;
  uint32_t one;

  static TrimSet DefaultBlanks() noexcept { return {Blanks, nullptr, 0}; }
  static TrimSet Of(const Unit* set) noexcept { return {Set, set, 0}; }
  static TrimSet Single(uint32_t code) noexcept { return {One, nullptr, code}; }
  /// True if the set removes nothing at all (a null or empty set, or the code 0).
  bool IsEmpty() const noexcept {
    return (kind == Set && (set == nullptr || set[0] == 0)) || (kind == One && one == 0);
  }
};

/// The first character from `begin` (up to `end`) that is not in the set, or `end`.
template <class Unit>
const Unit* SkipInSet(const Unit* begin, const Unit* end, const TrimSet<Unit>& set) noexcept;

/// The end of the text from `begin` to `end` once the characters in the set are removed from
/// its end (whole code points in narrow text); `begin` if all are in the set.
template <class Unit>
const Unit* TrimEndInSet(const Unit* begin, const Unit* end, const TrimSet<Unit>& set) noexcept;

/// True if the zero-terminated text (null counts as empty) holds only space, tab, carriage
/// return and line feed, and with `noBreak` also the no-break space (U+00A0 in wide text, the
/// single byte 160 in narrow text).
template <class Unit>
bool IsBlankText(const Unit* text, bool noBreak) noexcept;

/// Writes `count` copies of the `size` units at `code` from `out` on.
template <class Unit>
void FillRepeated(Unit* out, int32_t count, const Unit* code, int32_t size) noexcept;

/// What a token walk reads: the text, where reading ends, and the limit on positions.
template <class Unit>
struct TokenSource {
  const Unit* text;  ///< never null here
  int32_t end;       ///< units that are read
  int32_t limit;     ///< a position at or beyond this gives the empty token
};

/// The walk's settings.
template <class Unit>
struct TokenRules {
  const SearchNeedle<Unit>* delimiter;  ///< a set of codes, or a whole text with `wholeText`
  bool wholeText;
  const SearchNeedle<Unit>* quotes;  ///< null or an empty needle for none
  bool mergeDelimiters;
  int32_t skipCount;
  bool* atEnd;  ///< may be null
};

/// Reads the next token from `position` (see ExtractToken). Returns false, with nothing
/// changed, when the position is out of range; otherwise sets `begin` and `length` to the
/// token's units and moves `position` behind the delimiter, or to the end.
template <class Unit>
bool NextToken(const TokenSource<Unit>& source, int32_t& position, const TokenRules<Unit>& rules,
               const Unit*& begin, int32_t& length) noexcept;

/// Appends to `out` at most `maxLines` lines of the text from `text` to `end` (see FirstLines).
template <class Unit>
void FirstLinesOf(GrowableText<Unit>& out, const Unit* text, const Unit* end, int32_t maxLines,
                  bool skipEmptyLines, bool trimLines, const Unit* moreMarker);

/// Copies the text from `text` to `end` to `out` with `insert` (of `insertLength` units) after
/// every `count` characters (whole code points in narrow text) that more text follows, and once
/// more at the end with `atEnd` when a group has begun. Returns the units written; `out` must
/// hold (length / count + 1) * insertLength + length units.
template <class Unit>
int32_t InsertEveryInto(Unit* out, const Unit* text, const Unit* end, int32_t count,
                        const Unit* insert, int32_t insertLength, bool atEnd) noexcept;

}  // namespace ic::internal
