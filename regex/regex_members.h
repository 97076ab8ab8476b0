// Members of every string that search with a regular expression: RegexSearch, RegexFind,
// RegexMatches. Mixed into BasicICString.
//
// The pattern is zero-terminated text of the string's own width, compiled by the standard
// library's engine with the ECMAScript grammar and no other flag (case matters). Narrow strings
// are matched byte by byte and wide strings unit by unit, so `.` takes one byte of a multi-byte
// character or one unit of a surrogate pair. The subject runs from the first unit up to the first
// zero unit; the stored length plays no part in it. There is no replace and no access to groups.
//
// A pattern that does not compile, a search beyond the engine's limits and a failed allocation
// all answer as no match: null, -1 or false. Compiled patterns are kept per thread (see
// internal/pattern_cache.h), which changes no result.
//
// The members forward to the unit-only cores of internal/regex_core.h; they are defined once in
// regex_members.cpp and instantiated there for the six strings.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/regex/regex_mask.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringRegexMembers;

template <class Unit, class Storage>
class ICStringRegexMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringRegexMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringRegexMembers);

 public:
  /// The mask type of this width.
  using RegexMask = RegexSubjectMaskT<Unit>;

  /// A pointer to the unit of this string at which the first match of `pattern` begins, or null.
  /// `start` is a gate and does not narrow the search: a negative value counts as 0; above 0 it
  /// is turned into units (narrow with `lengthInUnits` false: code points walked; 0x7fffffff is
  /// never turned) and must not exceed the length, else the result is null. The search always
  /// runs from the first unit, so a start of 5 still finds a match at 2. A null or empty pattern
  /// gives null. With the mask on, the search runs over the mask's copy and the pointer is into
  /// this string's own text.
  const Unit* RegexSearch(const Unit* pattern, int32_t start, bool lengthInUnits,
                          RegexMask& mask) const;
  /// RegexSearch with the mask off.
  const Unit* RegexSearch(const Unit* pattern, int32_t start = 0, bool lengthInUnits = false) const;

  /// The index of RegexSearch's match, or -1: wide, in units (the flag is ignored); narrow, in
  /// bytes with `lengthInUnits`, else the number of code points before the match.
  int32_t RegexFind(const Unit* pattern, int32_t start, bool lengthInUnits, RegexMask& mask) const;
  /// RegexFind with the mask off.
  int32_t RegexFind(const Unit* pattern, int32_t start = 0, bool lengthInUnits = false) const;

  /// True if the whole text, up to its first zero unit, matches `pattern`; false for a null or
  /// empty pattern. A pattern that can match the empty text matches an empty string.
  bool RegexMatches(const Unit* pattern, RegexMask& mask) const;
  /// RegexMatches with the mask off.
  bool RegexMatches(const Unit* pattern) const;
};

IC_EXTERN_STRING_MIXIN(ICStringRegexMembers)

}  // namespace ic
