// Members of every string that map case: MakeLower, MakeUpper, Capitalize.
// Mixed into BasicICString.
//
// Narrow strings map UTF-8 code point by code point with the case table (case_mapping.h), so
// their length may change; wide strings use the platform's wide run-time (towlower, towupper,
// _wcslwr_s, _wcsupr_s), unit by unit: on Windows the C run-time's, which in its default "C"
// locale maps ASCII letters only; elsewhere the Unicode simple mapping (platform/wide_runtime.h,
// WideCaseFollowsUnicode). Every member scans first and writes only from the first
// change: a text that needs no change is neither detached (shared) nor copied (view) nor
// reallocated.
//
// The mixin is specialised on BasicICString<Unit, Storage>, so that width and shape are known
// from the template arguments alone; the members are defined once in case_members.cpp and
// instantiated there for the six strings.
#pragma once

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringCaseMembers;

template <class Unit, class Storage>
class ICStringCaseMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringCaseMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringCaseMembers);

 public:
  /// Lower-cases the text and returns the string.
  ///
  /// Narrow: with `fast`, each code point is mapped in place where its lower-case form has the
  /// same UTF-8 size (others stay), so the length never changes and nothing is allocated.
  /// Without it, every code point is mapped by ToLowerCodePoint and the text may shrink or grow;
  /// it grows into a larger block when it must.
  /// Wide: with `fast`, only "A" to "Z" change; without it, the run-time's _wcslwr_s maps each
  /// unit.
  Str& MakeLower(bool fast = false);

  /// Upper-cases the text and returns the string; as MakeLower, with ToUpperCodePoint, "a" to
  /// "z" and _wcsupr_s.
  Str& MakeUpper(bool fast = false);

  /// Lower-cases the whole text (MakeLower without fast) and then upper-cases the first
  /// character of each word, words being separated by space, tab, carriage return and line feed.
  /// Narrow text may change its length. Returns the string. Does not let exceptions escape: a
  /// failed allocation ends the process.
  Str& Capitalize() noexcept;
};

IC_EXTERN_STRING_MIXIN(ICStringCaseMembers)

}  // namespace ic
