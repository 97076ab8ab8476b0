#include <ic/platform/system_text_members.h>

#include <ic/platform/system_text.h>
#include <ic/string/header.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>

namespace ic {
namespace {

// FormatMessageW's block, given back with LocalFree when the assignment is done or throws.
class SystemMessageBlock {
 public:
  ~SystemMessageBlock() {
    if (text) platform::LocalFree(text);
  }
  char16_t* text = nullptr;
};

}  // namespace

template <class Unit, class Storage>
auto ICStringSystemTextMembers<BasicICString<Unit, Storage>>::SetFromSystemMessage(uint32_t number)
    -> Str& requires(IsUnique&& IsWide) {
  Str& self = Self();
  SystemMessageBlock block;
  constexpr uint32_t kFlags = platform::FormatMessageAllocateBuffer |
                              platform::FormatMessageIgnoreInserts |
                              platform::FormatMessageFromSystem;
  const uint32_t written =
      platform::FormatMessageW(kFlags, nullptr, number, platform::LocaleUserDefault,
                               reinterpret_cast<char16_t*>(&block.text), 0, nullptr);
  if (written == 0) {
    self.Format(u"Unknown error 0x%08x", number);
    return self;
  }
  self = static_cast<const Unit*>(block.text);
  return self;
}

template <class Unit, class Storage>
bool ICStringSystemTextMembers<BasicICString<Unit, Storage>>::SetFromLocaleInfo(
    uint32_t type) requires(IsUnique&& IsWide) {
  return SetFromLocaleInfo(platform::LocaleUserDefault, type);
}

template <class Unit, class Storage>
bool ICStringSystemTextMembers<BasicICString<Unit, Storage>>::SetFromLocaleInfo(
    uint32_t locale, uint32_t type) requires(IsUnique&& IsWide) {
  Str& self = Self();
  const int count = platform::GetLocaleInfoW(locale, type, nullptr, 0);
  if (count <= 0) return false;
  internal::StringAccess::_Reserve(self, count, ReserveTerminate | ReserveKeepText);
  // The system writes through the text pointer: the stored length no longer holds.
  internal::SetLengthWord(internal::StringAccess::_GetBuffer(self), UnknownLength);
  return platform::GetLocaleInfoW(locale, type, internal::StringAccess::_GetBuffer(self), count) >
         0;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringSystemTextMembers)

}  // namespace ic
