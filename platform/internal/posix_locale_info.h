// The C library's error texts and POSIX locale data in the form of the Windows calls, for
// system_text.cpp off Windows.
#pragma once

#include <cstdint>
#include <string>

namespace ic::platform::internal {

/// The C library's message for the errno value `number` in the user's locale, in a block of
/// UTF-16 with a terminator for FreeErrorText; its units without the terminator. 0 (and null)
/// for a number the C library has no message for, or if allocation fails.
uint32_t AllocateErrorText(uint32_t number, char16_t*& text) noexcept;
/// Frees a block of AllocateErrorText; null does nothing.
void FreeErrorText(char16_t* text) noexcept;

/// True if the C library has a message of its own for the errno value `number`.
bool IsKnownErrorNumber(uint32_t number) noexcept;

/// The information `type` of the locale `locale` (see system_text.h); false for an unknown type
/// or id, or a locale that is not installed.
bool LocaleInfo(uint32_t locale, uint32_t type, std::u16string& text) noexcept;

/// The locale name ("de_DE.UTF-8", "C") that a Windows-style name ("de-DE") is looked up under,
/// in the order tried.
std::string PosixLocaleName(const std::string& windowsName, int attempt);

/// A strftime format turned into a Windows date or time picture ("%d.%m.%Y" -> "dd.MM.yyyy").
std::string DatePicture(const std::string& format);

/// A POSIX grouping ("\3\3") in the Windows form ("3;0").
std::string WindowsGrouping(const std::string& grouping);

}  // namespace ic::platform::internal
