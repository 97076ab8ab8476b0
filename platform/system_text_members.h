// Members of the wide unique string that fill it from the system: the text of a system error
// number and locale information. Mixed into BasicICString (they exist for ICStringUniqueW only).
//
// On Windows the texts are the system's (FormatMessageW, GetLocaleInfoW). Elsewhere the number
// is an errno value with the C library's message in the user's locale, and locale information
// comes from the POSIX locale data for the types and locale ids of platform/system_text.h.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringSystemTextMembers;

template <class Unit, class Storage>
class ICStringSystemTextMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringSystemTextMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringSystemTextMembers);

 public:
  /// @name System texts
  /// @{

  /// Replaces the text with the system's message for `number`, as the system gives it (on
  /// Windows with its line end), or "Unknown error 0x%08x" with the number for one the system
  /// has no message for. Never fails but for exhausted memory (std::bad_alloc or the string's
  /// out-of-memory error).
  Str& SetFromSystemMessage(uint32_t number) requires(IsUnique&& IsWide);
  /// Replaces the text with the information `type` of the user's default locale (0x400). False,
  /// with the string untouched, if the system has no such information. If the second, writing
  /// call fails after the first answered, false with the old text kept and its length left to
  /// be measured.
  bool SetFromLocaleInfo(uint32_t type) requires(IsUnique&& IsWide);
  /// The same for the locale id `locale`; an unknown id (or a locale not installed) gives false
  /// and leaves the string as it was.
  bool SetFromLocaleInfo(uint32_t locale, uint32_t type) requires(IsUnique&& IsWide);
  /// @}
};

IC_EXTERN_STRING_MIXIN(ICStringSystemTextMembers)

}  // namespace ic
