#include <ic/number/double_members.h>

#include <ic/number/double_text.h>
#include <ic/number/internal/double_format.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>

namespace ic {
namespace {

// Storage growth of FormatDouble's text: the string keeps what was written so far.
template <class Str>
typename Str::UnitType* GrowString(void* owner, int32_t capacity, int32_t /*length*/) {
  Str& self = *static_cast<Str*>(owner);
  internal::StringAccess::_PrepareGrow(self, capacity);
  return internal::StringAccess::_GetBuffer(self);
}

}  // namespace

template <class Unit, class Storage>
auto ICStringDoubleMembers<BasicICString<Unit, Storage>>::FormatDouble(
    double value, int32_t fractionDigits, bool round, double tolerance, bool padFraction,
    bool keepNegativeZero, bool forceFraction) -> Str& requires(IsUnique) {
  Str& self = Self();
  constexpr int32_t kFirstReserve = sizeof(Unit) == 1 ? 64 : 16;
  internal::StringAccess::_PrepareReplace(self, kFirstReserve);
  internal::GrowableText<Unit> out{internal::StringAccess::_GetBuffer(self), self.GetCapacity(), 0,
                                   &self, &GrowString<Str>};
  internal::FormatDoubleText(
      out, value, {fractionDigits, round, tolerance, padFraction, keepNegativeZero, forceFraction});
  internal::StringAccess::_SetStringEnd(self, out.length);
  return self;
}

template <class Unit, class Storage>
double ICStringDoubleMembers<BasicICString<Unit, Storage>>::ParseDouble(
    Unit decimalSeparator, Unit groupSeparator) const noexcept {
  const Unit* cursor = Self().GetText();
  return _ParseDoubleAt(&cursor, decimalSeparator, groupSeparator);
}

template <class Unit, class Storage>
double ICStringDoubleMembers<BasicICString<Unit, Storage>>::ParseDouble(
    int32_t& position, Unit decimalSeparator, Unit groupSeparator) const noexcept {
  const Str& self = Self();
  if (position < 0 || position > self.GetLength()) return 0.0;
  const Unit* const text = self.GetText();
  const Unit* cursor = text + position;
  const double value = _ParseDoubleAt(&cursor, decimalSeparator, groupSeparator);
  position = static_cast<int32_t>(cursor - text);
  return value;
}

template <class Unit, class Storage>
int32_t ICStringDoubleMembers<BasicICString<Unit, Storage>>::ParseInteger(
    Unit groupSeparator) const noexcept {
  const Unit* cursor = Self().GetText();
  return _ParseIntegerAt(&cursor, groupSeparator);
}

template <class Unit, class Storage>
int32_t ICStringDoubleMembers<BasicICString<Unit, Storage>>::ParseInteger(
    int32_t& position, Unit groupSeparator) const noexcept {
  const Str& self = Self();
  if (position < 0 || position > self.GetLength()) return 0;
  const Unit* const text = self.GetText();
  const Unit* cursor = text + position;
  const int32_t value = _ParseIntegerAt(&cursor, groupSeparator);
  position = static_cast<int32_t>(cursor - text);
  return value;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringDoubleMembers)

}  // namespace ic
