// The inputs that the library's contract lets an entry point read past the end of its text on.
//
// A few walks step through a text by the size that a lead unit announces without looking at
// what they step over. On ill-formed input such a step can jump over the terminator, and the
// walk then runs on into whatever lies behind the text: that is the documented behaviour of
// those entry points, not a fault. A fuzz target calls such an entry point only when the
// predicate that names its case is false; every other input reaches it.
#pragma once

#include <cstddef>
#include <string>

#include <ic/string/utf8.h>

namespace ic::fuzz {

/// Narrow walks by lead byte (CountCodePoints, GetUTF8Offset, the editing members given
/// positions in code points): a sequence's size comes from its lead byte alone (0x80-0xbf lead
/// 3 or 4 bytes, 0xc0-0xff lead 2 to 4) and the bytes it covers are not examined, so a sequence
/// that the terminator cuts short steps over the terminator, and the walk reads on behind the
/// text. A zero byte at the start of a step ends the walk. True when the walk of `text` (held
/// with a terminator behind it) steps behind that terminator.
inline bool Utf8WalkStepsOverTerminator(const std::string& text) {
  size_t at = 0;
  while (at < text.size() && text[at] != '\0')
    at += static_cast<size_t>(GetUTF8SequenceSize(static_cast<unsigned char>(text[at])));
  return at > text.size();
}

/// The wide-to-narrow walk of ConvertToUTF8 on a zero-terminated text: a unit in
/// 0xd800-0xdfff is taken with the unit behind it as a pair, unchecked, so a surrogate as the
/// last unit pairs with the terminator and the next step starts behind it. A zero unit at the
/// start of a step ends the walk (one taken as the second half of a pair does not). True when
/// the walk of `text` (held with a terminator behind it) steps behind that terminator.
inline bool Utf16WalkStepsOverTerminator(const std::u16string& text) {
  size_t at = 0;
  while (at < text.size() && text[at] != u'\0')
    at += (text[at] >= 0xd800 && text[at] <= 0xdfff) ? 2 : 1;
  return at > text.size();
}

}  // namespace ic::fuzz
