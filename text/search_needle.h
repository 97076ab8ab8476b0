// SearchNeedle: a needle decoded once for repeated matching, as the case-insensitive and
// nesting searches use it.
//
// The narrow form decodes UTF-8 into 32-bit code points; the wide form holds 16-bit units. With
// ignoreCase, every code of the needle is mapped to upper case (ToUpperCodePoint, or the
// run-time's towupper for wide text) and text is mapped the same way before it is compared.
// Needles below 256 codes live in an array inside the object, so that a needle on the stack
// costs no allocation; longer ones go to a heap array that the object owns.
#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>

#include <ic/platform/export.h>

namespace ic {

template <class Unit>
class IC_API SearchNeedle {
 public:
  /// A code of the needle: a code point (narrow) or a unit (wide).
  using Code = std::conditional_t<sizeof(Unit) == 1, uint32_t, char16_t>;
  static constexpr int InlineCodes = 256;

  /// Decodes `text` (null or empty gives an empty needle that counts as singleCode). A wide
  /// needle that is not case-folded and not to be copied is used in place, without a copy.
  SearchNeedle(const Unit* text, bool ignoreCase, bool copy = false);
  SearchNeedle(const SearchNeedle&) = delete;
  SearchNeedle& operator=(const SearchNeedle&) = delete;

  /// True for a null or empty needle, which never matches.
  bool IsEmpty() const noexcept { return _codes[0] == 0; }

  /// `code`, mapped to upper case with ignoreCase, equals the first code of the needle.
  bool MatchesFirst(uint32_t code) const noexcept;

  /// The codes behind the first equal the text at `cursor` (decoded and mapped as it goes): on
  /// success the cursor moves behind the match; on failure it stays. Reaching the end of the
  /// text first is a failure. True at once for a singleCode needle.
  bool MatchesRest(const Unit*& cursor) const noexcept;

  /// The needle in use, zero-terminated: the array inside the object, a heap array, or the
  /// text itself (a wide needle used in place).
  const Code* Codes() const noexcept { return _codes; }
  /// True if the needle lives in the array inside the object (no allocation was made).
  bool IsInline() const noexcept { return _codes == _inlineCodes; }
  /// True if the needle went to a heap array of its own, freed with the object.
  bool IsOnHeap() const noexcept { return _heapCodes != nullptr; }
  /// At most one code: there is no rest to compare.
  bool IsSingleCode() const noexcept { return _singleCode; }

 private:
  Code _inlineCodes[InlineCodes];
  std::unique_ptr<Code[]> _heapCodes;  ///< the needle when it does not fit in _inlineCodes
  const Code* _codes;
  bool _singleCode;
  bool _ignoreCase;  ///< codes are upper case; text is mapped before comparing
};

extern template class IC_API SearchNeedle<char>;
extern template class IC_API SearchNeedle<char16_t>;

}  // namespace ic
