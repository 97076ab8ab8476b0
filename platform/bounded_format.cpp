#include <ic/platform/bounded_format.h>

#include <ic/platform/wide_format.h>

#include <cstdio>
#if defined(_WIN32)
#include <stdio.h>
#include <wchar.h>
#endif

namespace ic::platform {

#if defined(_WIN32)

// The run-time's own bounded formatter: it cuts the text at count - 1 units, terminates it and
// answers -1 when it did not fit.
int BoundedFormatV(char* buffer, size_t count, const char* format, va_list arguments) noexcept {
  if (buffer == nullptr || count == 0) return -1;
  if (format == nullptr) {
    buffer[0] = 0;
    return -1;
  }
  return _vsnprintf_s(buffer, count, _TRUNCATE, format, arguments);
}

#else

int BoundedFormatV(char* buffer, size_t count, const char* format, va_list arguments) noexcept {
  if (buffer == nullptr || count == 0) return -1;
  if (format == nullptr) {
    buffer[0] = 0;
    return -1;
  }
  const int written = std::vsnprintf(buffer, count, format, arguments);
  if (written < 0) {
    buffer[0] = 0;
    return -1;
  }
  // vsnprintf has cut the text at count - 1 units and terminated it.
  return static_cast<size_t>(written) < count ? written : -1;
}

#endif

int BoundedFormat(char* buffer, size_t count, const char* format, ...) noexcept {
  va_list arguments;
  va_start(arguments, format);
  const int result = BoundedFormatV(buffer, count, format, arguments);
  va_end(arguments);
  return result;
}

#if defined(_WIN32)

int BoundedFormatV(char16_t* buffer, size_t count, const char16_t* format,
                   va_list arguments) noexcept {
  static_assert(sizeof(wchar_t) == sizeof(char16_t));
  if (buffer == nullptr || count == 0) return -1;
  if (format == nullptr) {
    buffer[0] = 0;
    return -1;
  }
  return _vsnwprintf_s(reinterpret_cast<wchar_t*>(buffer), count, _TRUNCATE,
                       reinterpret_cast<const wchar_t*>(format), arguments);
}

#else

int BoundedFormatV(char16_t* buffer, size_t count, const char16_t* format,
                   va_list arguments) noexcept {
  return FormatWide16(buffer, count, format, arguments);
}

#endif

int BoundedFormat(char16_t* buffer, size_t count, const char16_t* format, ...) noexcept {
  va_list arguments;
  va_start(arguments, format);
  const int result = BoundedFormatV(buffer, count, format, arguments);
  va_end(arguments);
  return result;
}

}  // namespace ic::platform
