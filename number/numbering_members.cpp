#include <ic/number/numbering_members.h>

#include <ic/number/internal/numbering.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>

namespace ic {

template <class Unit, class Storage>
auto ICStringNumberingMembers<BasicICString<Unit, Storage>>::SetAlphabeticNumber(int32_t value,
                                                                                 bool upperCase)
    -> Str& {
  Unit text[internal::kAlphabeticNumberUnits];
  const int32_t length = internal::WriteAlphabeticNumber(text, value, upperCase);
  return Self().Assign(text, length);  // a length of 0 clears
}

template <class Unit, class Storage>
auto ICStringNumberingMembers<BasicICString<Unit, Storage>>::SetRomanNumber(int32_t value,
                                                                            bool upperCase)
    -> Str& {
  Str& self = Self();
  Unit text[internal::kRomanNumberUnits];
  const int32_t length = internal::WriteRomanNumber(text, value, upperCase);
  if (length > 0) internal::StringAccess::_PrepareReplace(self, internal::kRomanNumberUnits);
  return self.Assign(text, length);
}

IC_INSTANTIATE_STRING_MIXIN(ICStringNumberingMembers)

}  // namespace ic
