// How icres writes texts: one-line escaped rows for show and dump, and JSON strings.
#pragma once

#include <string>
#include <string_view>

namespace ic::icres {

/// `text` on one line: backslash, line feed, carriage return and tab become \\, \n, \r and \t
/// (the escapes of the catalogue row listings); everything else stands as it is.
std::string EscapeRowText(std::string_view text);

/// `text` (UTF-8) as a JSON string with its quotes: '"' and '\' escaped, control characters
/// below U+0020 as \b \f \n \r \t or \u00XX; other characters, including non-ASCII ones, as
/// they are.
std::string JsonString(std::string_view text);

}  // namespace ic::icres
