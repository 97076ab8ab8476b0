// FormatMessageW, LocalFree and GetLocaleInfoW: the system's on Windows; elsewhere the C
// library's error texts and the POSIX locale data (internal/posix_locale_info.h).
#include <ic/platform/system_text.h>

#if defined(_WIN32)
#include <ic/platform/internal/windows_api.h>
#else
#include <ic/platform/internal/posix_locale_info.h>
#endif

namespace ic::platform {

namespace {

// Ids whose locales most hosts ask for, with their names; es-ES is the modern sort (0x0C0A).
constexpr KnownLocaleId kKnownLocaleIds[] = {
    {0x0409, "en-US"}, {0x0809, "en-GB"}, {0x0407, "de-DE"}, {0x040C, "fr-FR"},
    {0x0C0A, "es-ES"}, {0x0410, "it-IT"}, {0x0416, "pt-BR"}, {0x0419, "ru-RU"},
    {0x0411, "ja-JP"}, {0x0804, "zh-CN"}, {0x0404, "zh-TW"}, {0x0412, "ko-KR"},
};

}  // namespace

const KnownLocaleId* KnownLocaleIds(size_t& count) noexcept {
  count = sizeof kKnownLocaleIds / sizeof kKnownLocaleIds[0];
  return kKnownLocaleIds;
}

#if defined(_WIN32)

// wchar_t is a 16-bit UTF-16 unit on Windows, so the pointer types alias the same text.
uint32_t FormatMessageW(uint32_t flags, const void* source, uint32_t messageId, uint32_t languageId,
                        char16_t* buffer, uint32_t size, va_list* arguments) noexcept {
  return ::FormatMessageW(flags, source, messageId, languageId, reinterpret_cast<LPWSTR>(buffer),
                          size, arguments);
}

void* LocalFree(void* block) noexcept {
  return ::LocalFree(block);
}

int GetLocaleInfoW(uint32_t locale, uint32_t type, char16_t* data, int size) noexcept {
  return ::GetLocaleInfoW(locale, type, reinterpret_cast<LPWSTR>(data), size);
}

#else

uint32_t FormatMessageW(uint32_t flags, const void* source, uint32_t messageId,
                        uint32_t /*languageId*/, char16_t* buffer, uint32_t /*size*/,
                        va_list* arguments) noexcept {
  constexpr uint32_t kSupported =
      FormatMessageAllocateBuffer | FormatMessageIgnoreInserts | FormatMessageFromSystem;
  if (flags != kSupported || source || arguments || !buffer) return 0;
  char16_t** out = reinterpret_cast<char16_t**>(buffer);
  *out = nullptr;
  return internal::AllocateErrorText(messageId, *out);
}

void* LocalFree(void* block) noexcept {
  internal::FreeErrorText(static_cast<char16_t*>(block));
  return nullptr;
}

int GetLocaleInfoW(uint32_t locale, uint32_t type, char16_t* data, int size) noexcept {
  if (size < 0) return 0;
  std::u16string text;
  if (!internal::LocaleInfo(locale, type, text)) return 0;
  const int needed = static_cast<int>(text.size()) + 1;
  if (size == 0) return needed;
  if (!data || size < needed) return 0;
  text.copy(data, text.size());
  data[text.size()] = 0;
  return needed;
}

#endif

}  // namespace ic::platform
