#include <ic/text/qualified_name_members.h>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/utf8.h>
#include <ic/string/write_steps.h>

namespace ic {
namespace {

// The first colon of a zero-terminated text, or null.
inline const char* FirstColon(const char* text) noexcept {
  return FindCodePoint(text, ':');
}
inline const char16_t* FirstColon(const char16_t* text) noexcept {
  for (; *text != 0; ++text)
    if (*text == u':') return text;
  return nullptr;
}

}  // namespace

template <class Unit, class Storage>
auto ICStringQualifiedNameMembers<BasicICString<Unit, Storage>>::GetTextBeforeColon() const noexcept
    -> Str {
  const Str& self = Self();
  const Unit* const colon = FirstColon(self.GetText());
  if (colon == nullptr) return Str();
  return self.Left(static_cast<int32_t>(colon - self.GetText()), true);
}

template <class Unit, class Storage>
auto ICStringQualifiedNameMembers<BasicICString<Unit, Storage>>::GetTextAfterColon() const noexcept
    -> Str {
  const Str& self = Self();
  const Unit* const text = self.GetText();
  const Unit* const colon = FirstColon(text);
  const Unit* const from = colon == nullptr ? text : colon + 1;
  return Str(from, static_cast<int32_t>(self.GetEnd() - from));  // below 1 unit: the empty data
}

template <class Unit, class Storage>
auto ICStringQualifiedNameMembers<BasicICString<Unit, Storage>>::KeepTextBeforeColon() -> Str& {
  Str& self = Self();
  if constexpr (Str::IsView) internal::StringAccess::_MakeOwned(self);
  const Unit* const colon = FirstColon(self.GetText());
  if (colon == nullptr) {
    internal::StringAccess::_Clear(self);
    return self;
  }
  const int32_t position = static_cast<int32_t>(colon - self.GetText());
  internal::StringAccess::PrepareInPlace(self);
  internal::StringAccess::_SetStringEnd(self, position);
  return self;
}

template <class Unit, class Storage>
auto ICStringQualifiedNameMembers<BasicICString<Unit, Storage>>::MakeQualifiedName(
    const Unit* localName) const noexcept -> Str {
  const Str& self = Self();
  if (self.GetLength() == 0) {
    if (localName == nullptr || localName[0] == 0) return Str();
    return Str(localName);  // a view views it; the other shapes copy it
  }
  static const Unit kEmpty[1] = {0};
  return Str(self + Unit(':') + (localName == nullptr ? kEmpty : localName));
}

IC_INSTANTIATE_STRING_MIXIN(ICStringQualifiedNameMembers)

}  // namespace ic
