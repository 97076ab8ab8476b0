// Members of every string that write list labels: SetAlphabeticNumber and SetRomanNumber.
// Mixed into BasicICString; the cores are in internal/numbering.h.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringNumberingMembers;

template <class Unit, class Storage>
class ICStringNumberingMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringNumberingMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringNumberingMembers);

 public:
  /// Replaces the text by the letter label of `value` in bijective base 26, as spreadsheet
  /// columns are named: 1 "A", 26 "Z", 27 "AA", 702 "ZZ", 703 "AAA" ("a", ... with upperCase
  /// false). A value below 1 gives the empty text. Returns the string.
  Str& SetAlphabeticNumber(int32_t value, bool upperCase = true);

  /// Replaces the text by the Roman numeral of `value` ("MCMXCIX"; "mcmxcix" with upperCase
  /// false), thousands written as repeated "M" up to 9999 ("MMMMMMMMMCMXCIX"). A value below 1
  /// or above 9999 gives the empty text. Reserves at least 22 units. Returns the string.
  Str& SetRomanNumber(int32_t value, bool upperCase = true);
};

IC_EXTERN_STRING_MIXIN(ICStringNumberingMembers)

}  // namespace ic
