// System texts: FormatMessageW, LocalFree, GetLocaleInfoW.
//
// On Windows these are the system's calls. Elsewhere the platform layer answers them itself:
// - FormatMessageW with FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS |
//   FORMAT_MESSAGE_FROM_SYSTEM (0x1300) takes the number for an errno value and gives the C
//   library's message for it in the user's locale (made once from the environment, LC_ALL /
//   LC_MESSAGES / LANG, as a locale object: the process locale is not touched), as the C
//   library writes it, without a line end (Windows' own messages end in "\r\n"). A number that
//   the C library does not know answers 0, as Windows does for a number without a message. Any
//   other flags, a source or inserts answer 0.
// - GetLocaleInfoW answers from the POSIX locale data for the types below, for the locale ids
//   0x400 (the user's default, from the environment), 0x800 (the system's default: LANG of
//   /etc/default/locale or /etc/locale.conf, else "C.UTF-8") and the ids of
//   KnownLocaleIds(); an unknown type, an unknown id or a locale that is not installed answers 0.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>

#include <ic/platform/export.h>

namespace ic::platform {

/// FormatMessageW flags.
inline constexpr uint32_t FormatMessageAllocateBuffer = 0x100;
inline constexpr uint32_t FormatMessageIgnoreInserts = 0x200;
inline constexpr uint32_t FormatMessageFromSystem = 0x1000;

/// Locale ids: the user's and the system's defaults.
inline constexpr uint32_t LocaleUserDefault = 0x400;
inline constexpr uint32_t LocaleSystemDefault = 0x800;

/// GetLocaleInfoW information types (the Windows values) that every platform answers.
enum LocaleInfoType : uint32_t {
  LocaleDecimalSeparator = 0x0E,   ///< LOCALE_SDECIMAL
  LocaleThousandSeparator = 0x0F,  ///< LOCALE_STHOUSAND
  LocaleGrouping = 0x10,           ///< LOCALE_SGROUPING, "3;0" style
  LocaleCurrencySymbol = 0x14,     ///< LOCALE_SCURRENCY
  LocaleShortDate = 0x1F,          ///< LOCALE_SSHORTDATE, a date picture ("dd.MM.yyyy")
  LocaleLongDate = 0x20,           ///< LOCALE_SLONGDATE
  LocaleDayName1 = 0x2A,           ///< LOCALE_SDAYNAME1 (Monday) .. +6 (Sunday)
  LocaleAbbrevDayName1 = 0x31,     ///< LOCALE_SABBREVDAYNAME1 (Monday) .. +6
  LocaleMonthName1 = 0x38,         ///< LOCALE_SMONTHNAME1 (January) .. +11
  LocaleAbbrevMonthName1 = 0x44,   ///< LOCALE_SABBREVMONTHNAME1 .. +11
  LocaleIsoLanguageName = 0x59,    ///< LOCALE_SISO639LANGNAME ("de")
  LocaleIsoCountryName = 0x5A,     ///< LOCALE_SISO3166CTRYNAME ("DE")
  LocaleName = 0x5C,               ///< LOCALE_SNAME ("de-DE")
  LocaleShortTime = 0x79,          ///< LOCALE_SSHORTTIME ("HH:mm")
  LocaleTimeFormat = 0x1003,       ///< LOCALE_STIMEFORMAT ("HH:mm:ss")
};

/// A locale id and its name.
struct KnownLocaleId {
  uint32_t id;
  const char* name;  ///< "en-US"
};

/// The locale ids that GetLocaleInfoW maps to locale names off Windows (en-US, en-GB, de-DE,
/// fr-FR, es-ES, it-IT, pt-BR, ru-RU, ja-JP, zh-CN, zh-TW, ko-KR); `count` receives their number.
IC_API const KnownLocaleId* KnownLocaleIds(size_t& count) noexcept;

/// Formats the message `messageId`; with FormatMessageAllocateBuffer, `buffer` is taken as a
/// char16_t** that receives a block to be given back with LocalFree. Returns the units written
/// without the terminator, 0 on failure (nothing allocated then).
IC_API uint32_t FormatMessageW(uint32_t flags, const void* source, uint32_t messageId,
                               uint32_t languageId, char16_t* buffer, uint32_t size,
                               va_list* arguments) noexcept;

/// Frees a block of FormatMessageW; null on success and for null.
IC_API void* LocalFree(void* block) noexcept;

/// Locale information `type` of `locale`: with `size` 0 the units needed with the terminator
/// (nothing written), else the text with its terminator in `data` and its units with the
/// terminator; 0 for an unknown type or locale, a locale that is not installed, or a `size`
/// too small (then nothing is written).
IC_API int GetLocaleInfoW(uint32_t locale, uint32_t type, char16_t* data, int size) noexcept;

}  // namespace ic::platform
