// The run-time's bounded printf-style formatters, narrow and wide.
//
// Both forms write at most `count` code units, the terminator included, into `buffer`, and
// always terminate the text when `count` is at least 1. They answer the number of units
// written without the terminator, or -1 when the text did not fit (it is then truncated to
// count - 1 units) or the format was refused, in the manner of the Windows run-time's
// _vsnprintf_s / _vsnwprintf_s with _TRUNCATE. A `count` of 0 writes nothing and answers -1.
//
// On Windows both forms are the run-time's own bounded formatters (_vsnprintf_s and
// _vsnwprintf_s with _TRUNCATE). Elsewhere narrow formats go to vsnprintf, and wide ones,
// as wchar_t is 32 bits wide there, to the platform layer's own 16-bit formatter
// (wide_format.h), which takes its arguments as the Windows one does: "%s" a 16-bit text, "%S"
// and "%hs" a narrow one, "%c" a 16-bit unit; numbers format as the narrow formatter does.
#pragma once

#include <cstdarg>
#include <cstddef>

#include <ic/platform/export.h>

namespace ic::platform {

/// Formats into `buffer` of `count` units; see above.
IC_API int BoundedFormat(char* buffer, size_t count, const char* format, ...) noexcept;
IC_API int BoundedFormatV(char* buffer, size_t count, const char* format,
                          va_list arguments) noexcept;

/// The wide twin: 16-bit units in and out.
IC_API int BoundedFormat(char16_t* buffer, size_t count, const char16_t* format, ...) noexcept;
IC_API int BoundedFormatV(char16_t* buffer, size_t count, const char16_t* format,
                          va_list arguments) noexcept;

}  // namespace ic::platform
