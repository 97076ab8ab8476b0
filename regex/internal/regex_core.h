// The regular expression searches behind regex_members.h, over a text pointer and its stored
// length, for both widths. Instantiated for char and char16_t in regex_core.cpp.
//
// The matching is the standard library's engine with the ECMAScript grammar and no other flag.
// Narrow text goes to the engine's char form byte by byte; wide text to its wchar_t form, each
// UTF-16 unit widened to one wchar_t, so a surrogate pair is two characters to the engine on
// every platform and offsets map back one to one.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/regex/regex_mask.h>

namespace ic::internal {

/// The first match of `pattern` in the text up to its first zero unit, as a pointer into `text`;
/// null if there is none. `start` is only a gate: negative counts as 0, and above 0 (turned
/// into units for narrow text with `lengthInUnits` false, 0x7fffffff never) it must not exceed
/// `length`; the search itself always runs from the first unit. A null or empty pattern, a
/// pattern that does not compile and any standard exception of the search give null. `mask`
/// may be null.
template <class Unit>
const Unit* RegexSearchUnits(const Unit* text, int32_t length, const Unit* pattern, int32_t start,
                             bool lengthInUnits, RegexSubjectMaskT<Unit>* mask);

/// True if the whole text up to its first zero unit matches `pattern`; false for a null or
/// empty pattern, a pattern that does not compile and any standard exception. `mask` may be
/// null.
template <class Unit>
bool RegexMatchesUnits(const Unit* text, int32_t length, const Unit* pattern,
                       RegexSubjectMaskT<Unit>* mask);

/// The index of a match found by RegexSearchUnits, or -1 for null: wide, the distance in units;
/// narrow, the distance in bytes with `lengthInUnits`, else the code points before it.
template <class Unit>
int32_t RegexIndexOf(const Unit* text, const Unit* match, bool lengthInUnits) noexcept;

}  // namespace ic::internal
