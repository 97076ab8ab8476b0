// UTF-16 to UTF-8 and back, for the texts that icres reads from the module and the arguments
// that it gets on the command line.
#pragma once

#include <string>
#include <string_view>

namespace ic::icres {

/// The UTF-8 form of UTF-16 text. A lone surrogate becomes U+FFFD.
std::string ToUtf8(std::u16string_view text);

/// The UTF-8 form of a zero-terminated UTF-16 text; null gives the empty string.
std::string ToUtf8(const char16_t* text);

/// The UTF-16 form of UTF-8 text. Each byte that does not start a well-formed sequence (an
/// unexpected continuation byte, a truncated or overlong sequence, a surrogate, a value above
/// U+10FFFF) becomes one U+FFFD.
std::u16string FromUtf8(std::string_view text);

}  // namespace ic::icres
