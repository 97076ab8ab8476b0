#include <ic/platform/bounded_format.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#if defined(_WIN32)
#include <wchar.h>
#endif

namespace ic::platform {

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

namespace {

// UTF-16 to UTF-8 for the format text; a lone surrogate becomes U+FFFD.
std::unique_ptr<char[]> FormatToUtf8(const char16_t* format) {
  size_t units = 0;
  while (format[units])
    ++units;
  auto narrow = std::unique_ptr<char[]>(new (std::nothrow) char[units * 3 + 1]);
  if (!narrow) return narrow;
  char* out = narrow.get();
  for (size_t i = 0; i < units; ++i) {
    uint32_t c = format[i];
    if (c >= 0xd800 && c <= 0xdbff && format[i + 1] >= 0xdc00 && format[i + 1] <= 0xdfff) {
      c = 0x10000 + ((c - 0xd800) << 10) + (format[i + 1] - 0xdc00);
      ++i;
    } else if (c >= 0xd800 && c <= 0xdfff) {
      c = 0xfffd;
    }
    if (c < 0x80) {
      *out++ = static_cast<char>(c);
    } else if (c < 0x800) {
      *out++ = static_cast<char>(0xc0 | (c >> 6));
      *out++ = static_cast<char>(0x80 | (c & 63));
    } else if (c < 0x10000) {
      *out++ = static_cast<char>(0xe0 | (c >> 12));
      *out++ = static_cast<char>(0x80 | ((c >> 6) & 63));
      *out++ = static_cast<char>(0x80 | (c & 63));
    } else {
      *out++ = static_cast<char>(0xf0 | (c >> 18));
      *out++ = static_cast<char>(0x80 | ((c >> 12) & 63));
      *out++ = static_cast<char>(0x80 | ((c >> 6) & 63));
      *out++ = static_cast<char>(0x80 | (c & 63));
    }
  }
  *out = 0;
  return narrow;
}

// Widens UTF-8 into at most `count` - 1 units plus a terminator; answers the units written, or
// -1 if the text did not fit.
int WidenInto(char16_t* buffer, size_t count, const unsigned char* text, size_t length) {
  size_t out = 0;
  size_t i = 0;
  while (i < length) {
    uint32_t c = text[i];
    int extra = c < 0x80 ? 0 : c < 0xe0 ? 1 : c < 0xf0 ? 2 : 3;
    if (c >= 0x80 && c < 0xc0) extra = 0;  // a stray continuation byte stands for itself
    if (extra && i + static_cast<size_t>(extra) >= length) extra = 0;  // cut off at the end
    if (extra) {
      c &= 0x3fu >> extra;
      for (int k = 1; k <= extra; ++k)
        c = (c << 6) | (text[i + static_cast<size_t>(k)] & 63u);
    }
    i += static_cast<size_t>(extra) + 1;
    const size_t need = c >= 0x10000 ? 2 : 1;
    if (out + need > count - 1) {
      buffer[out] = 0;
      return -1;
    }
    if (need == 2) {
      c -= 0x10000;
      buffer[out++] = static_cast<char16_t>(0xd800 + (c >> 10));
      buffer[out++] = static_cast<char16_t>(0xdc00 + (c & 0x3ff));
    } else {
      buffer[out++] = static_cast<char16_t>(c);
    }
  }
  buffer[out] = 0;
  return static_cast<int>(out);
}

}  // namespace

int BoundedFormatV(char16_t* buffer, size_t count, const char16_t* format,
                   va_list arguments) noexcept {
  if (buffer == nullptr || count == 0) return -1;
  buffer[0] = 0;
  if (format == nullptr) return -1;
  const std::unique_ptr<char[]> narrowFormat = FormatToUtf8(format);
  if (!narrowFormat) return -1;
  // Most texts fit a small local buffer; a longer one is measured and formatted again.
  char local[256];
  va_list again;
  va_copy(again, arguments);
  const int needed = std::vsnprintf(local, sizeof local, narrowFormat.get(), arguments);
  int result = -1;
  if (needed >= 0 && static_cast<size_t>(needed) < sizeof local) {
    result = WidenInto(buffer, count, reinterpret_cast<const unsigned char*>(local),
                       static_cast<size_t>(needed));
  } else if (needed >= 0) {
    std::unique_ptr<char[]> large(new (std::nothrow) char[static_cast<size_t>(needed) + 1]);
    if (large && std::vsnprintf(large.get(), static_cast<size_t>(needed) + 1, narrowFormat.get(),
                                again) == needed)
      result = WidenInto(buffer, count, reinterpret_cast<const unsigned char*>(large.get()),
                         static_cast<size_t>(needed));
  }
  va_end(again);
  return result;
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
