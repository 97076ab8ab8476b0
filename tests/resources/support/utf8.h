// UTF-8 helpers of the tests (apart from the converters under test).
#pragma once

#include <string>
#include <string_view>

namespace ic::test {

/// Appends the UTF-8 form of one code point.
void AppendUtf8(std::string& out, char32_t cp);

/// The UTF-8 form of UTF-16 text; a lone surrogate is written as U+FFFD. Null gives "".
std::string Utf8(std::u16string_view text);
std::string Utf8(const char16_t* text);

}  // namespace ic::test
