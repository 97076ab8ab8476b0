// UTF-8 decoding and UTF-16 encoding for the resource string compiler.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ic::rescomp {

// Decodes UTF-8 into code points. Returns nothing for ill-formed input: a bad lead or
// continuation byte, a truncated sequence, an overlong form, a surrogate or a value above
// U+10FFFF. Empty input gives an empty result.
std::optional<std::u32string> DecodeUtf8(std::string_view bytes);

// Appends the UTF-8 form of one code point (which must be a Unicode scalar value).
void AppendUtf8(std::string& out, char32_t codePoint);

// UTF-8 form of a sequence of code points.
std::string ToUtf8(std::u32string_view codePoints);

// UTF-16 code units of a sequence of code points; code points above U+FFFF become a
// surrogate pair.
std::u16string ToUtf16(std::u32string_view codePoints);

}  // namespace ic::rescomp
