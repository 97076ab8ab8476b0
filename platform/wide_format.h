// The platform layer's own printf-style formatter for 16-bit text, used off Windows, where the
// C library has no formatter for UTF-16 (its wchar_t has 32 bits).
//
// It behaves as the Windows run-time's wide formatter does: the format is UTF-16; "%s", "%ls"
// and "%ws" take a 16-bit text (char16_t*), "%S" and "%hs" a narrow text (char*, read as UTF-8);
// "%c", "%lc" and "%wc" a 16-bit unit, "%C" and "%hc" a narrow char; numbers, floats and
// pointers format as the C library's narrow formatter does, with the same flags, width,
// precision and length modifiers, and come out widened. "*" takes the width or precision from
// the arguments; "%%" writes "%". "%n" is refused: nothing is stored through its argument and
// the call fails. A null text argument writes "(null)". Widths and precisions of texts count
// units (16-bit for wide texts, bytes for narrow ones).
#pragma once

#include <cstdarg>
#include <cstddef>

#include <ic/platform/export.h>

namespace ic::platform {

/// Writes at most `count` units, terminator included, into `buffer` and always terminates it
/// when `count` is at least 1. Answers the units written without the terminator, or -1 when the
/// text did not fit (it is then cut to count - 1 units) or the format was refused (the buffer
/// then holds the empty text). A null buffer or a count of 0 writes nothing and answers -1.
IC_API int FormatWide16(char16_t* buffer, size_t count, const char16_t* format,
                        va_list arguments) noexcept;

}  // namespace ic::platform
