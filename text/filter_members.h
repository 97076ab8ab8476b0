// Members of every string that rewrite it character by character: Squeeze, SqueezeTrim,
// KeepOnly, RemoveAll, Translate, ExpandDoubleSpaces, RemoveBalanced, Reverse and CountCode;
// and the free CountCode. Mixed into BasicICString; the cores are in internal/filter_core.h.
//
// Sets are zero-terminated texts of the string's width (null counts as empty), read as sets of
// code points in narrow strings and of units in wide ones. Each rewriting member reads until the
// first character that needs a change and only then makes the block writable (a shared block
// detaches, a view takes a block of its own): a text that needs no change is neither detached,
// copied nor reallocated. Narrow characters are re-encoded as they are copied, so a value that
// UTF-8 cannot hold (a surrogate, or above U+10FFFF) is dropped from a text that changes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

/// @name CountCode over a plain text (null counts as empty)
/// The occurrences of `code` from `position` on (code points of narrow text with lengthInUnits
/// false, else units; a negative position counts as 0). A position beyond the end gives 0.
/// @{
IC_API int32_t CountCode(const char* text, char32_t code, int32_t position = 0,
                         bool lengthInUnits = true) noexcept;
IC_API int32_t CountCode(const char16_t* text, char16_t code, int32_t position = 0,
                         bool lengthInUnits = true) noexcept;
/// A null text written as nullptr, of no width: counts as empty, so 0. Takes a code of any
/// character or integer type, so that it is the one match for nullptr whatever the code.
template <class Code>
  requires std::is_integral_v<Code>
inline int32_t CountCode(std::nullptr_t, Code code, int32_t position = 0,
                         bool lengthInUnits = true) noexcept {
  return CountCode(static_cast<const char*>(nullptr), static_cast<char32_t>(code), position,
                   lengthInUnits);
}
/// @}

template <class Str>
class ICStringFilterMembers;

template <class Unit, class Storage>
class ICStringFilterMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringFilterMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringFilterMembers);
  using Code = std::conditional_t<sizeof(Unit) == 1, char32_t, char16_t>;

 public:
  /// Turns each run of characters of `collapseSet` into one `replacement` unit; characters of
  /// `keepSet` (may be null) are never collapsed. In narrow strings a replacement of 0 or of 128
  /// and above counts as the space. 'a  b' with ' ' and '_' gives 'a_b'. Returns the string.
  Str& Squeeze(const Unit* keepSet, Unit replacement, const Unit* collapseSet);
  /// As Squeeze, and a run at the start or the end of the text is removed altogether:
  /// '  a  b  ' gives 'a_b'.
  Str& SqueezeTrim(const Unit* keepSet, Unit replacement, const Unit* collapseSet);

  /// Removes every character not in `setSpec`, in which a code point, two points and a code
  /// point stand for an inclusive range: '0..9', 'a..cz'. A null or empty spec empties the
  /// string. Throws std::length_error("list too long") beyond 0xFFFFFFF ranges.
  Str& KeepOnly(const Unit* setSpec);

  /// Removes every character in `set` (null or empty: nothing), or every copy of one code.
  Str& RemoveAll(const Unit* set);
  Str& RemoveAll(Code code);

  /// Replaces each character of `from` by the one at the same place of `to`, or deletes it when
  /// `to` is shorter; the first place of a character in `from` counts. An empty `from` does
  /// nothing. Narrow text may grow when a character of `to` needs more bytes than its
  /// counterpart. 'aabbcc' from 'abc' to 'xy' gives 'xxyy'. Returns the string.
  Str& Translate(const Unit* from, const Unit* to);
  Str& Translate(Code from, const Unit* to);
  Str& Translate(const Unit* from, Code to);
  /// One character for another: Replace(from, to).
  Str& Translate(Code from, Code to);

  /// Replaces each space that a further space follows by `text` (null counts as empty), so that
  /// of a run of n spaces n - 1 are replaced and the last stays: 'a   b' with '&nbsp;' gives
  /// 'a&nbsp;&nbsp; b'. The text moves into a new block. Does not let exceptions escape: a
  /// failed allocation ends the process.
  Str& ExpandDoubleSpaces(const Unit* text) noexcept;

  /// Removes the stretches from an `open` to its matching `close`, delimiters included, as
  /// FindBalanced walks them (with `flat` nesting does not deepen beyond 1; the same open and
  /// close toggle). Text behind an unclosed open is removed. An empty open or close does
  /// nothing. 'a(b(c)d)e' gives 'ae'; with flat 'ad)e'.
  Str& RemoveBalanced(const Unit* open, const Unit* close, bool flat = false);
  /// The same with single characters, and an escape character (0 for none): at depth 0 it is
  /// kept with the character behind it, inside a stretch both go; an escape as the very last
  /// character ends the walk and is dropped.
  Str& RemoveBalanced(Code open, Code close, Code escape, bool flat = false);

  /// Reverses the characters from `first` to `last` (exclusive). Positions count code points in
  /// narrow strings with the flags false (0x7fffffff is the end); both flags must agree, or
  /// nothing happens. A negative first counts as 0; a negative last, or a first not below last,
  /// does nothing; a last beyond the length counts as the length. Narrow multi-byte sequences
  /// keep their bytes in order; a wide surrogate pair comes out reversed.
  Str& Reverse(int32_t first, bool firstLengthInUnits, int32_t last, bool lastLengthInUnits);
  /// Reverses the first `count` characters (below 1: nothing; beyond the length: all).
  Str& Reverse(int32_t count, bool lengthInUnits = true);

  /// The occurrences of `code` from `position` on, as the free CountCode counts them.
  int32_t CountCode(Code code, int32_t position = 0, bool lengthInUnits = true) const noexcept;
};

IC_EXTERN_STRING_MIXIN(ICStringFilterMembers)

}  // namespace ic
