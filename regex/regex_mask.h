// RegexSubjectMask: runs a regular expression search over an altered copy of the subject without
// moving any offset.
//
// Where a code unit equals LeadUnit, it and the unit after it are overwritten by the two units
// of Pair in a copy of the text; the search then runs over the copy, and a match found in it is
// reported at the same offset in the string itself. A caller picks a LeadUnit that is always
// followed by a further unit: at the very last unit the overwrite would take the terminator.
#pragma once

namespace ic {

/// The mask of one code-unit width; owned by the caller and passed to every regex member.
template <class Unit>
struct RegexSubjectMaskT {
  /// The unit that marks a place to overwrite.
  Unit LeadUnit = 0;
  /// The two units written at such a place; null switches the mask off.
  const Unit* Pair = nullptr;
  /// The altered copy of the subject, set by each member that runs with the mask on (allocated
  /// with std::malloc). The members never free it, and a later call overwrites the pointer: the
  /// owner frees it with std::free.
  Unit* MaskedCopy = nullptr;
};

/// The mask for narrow (UTF-8) strings.
using RegexSubjectMask = RegexSubjectMaskT<char>;
/// The mask for wide (UTF-16) strings.
using RegexSubjectMaskW = RegexSubjectMaskT<char16_t>;

}  // namespace ic
