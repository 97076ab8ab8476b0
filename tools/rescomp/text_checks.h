// Decoding and checking of the text of one resource string.
//
// A text is written with backslash escapes: \n, \r and \t stand for U+000A, U+000D and
// U+0009, \\ for one backslash. \{ and \} stay as written (backslash and brace), because
// in a message they mark a literal brace for the host's parameter substitution. Parameters
// are written {name}. Positions in fault messages count code points of the decoded text
// from 0, which is the text that the generated table holds and the host scans.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ic::rescomp {

struct DecodedText {
  std::u32string text;              // the text with its escapes replaced
  std::vector<std::string> faults;  // one message per unknown or incomplete escape
};

// Replaces the escapes of a source text. An unknown escape is reported and left as written,
// so that the checks after it still see the rest of the text.
DecodedText DecodeEscapes(std::u32string_view source);

// Checks the {name} parameters of a decoded text: an opening brace without a closing one, a
// closing brace without an opening one, an opening brace inside a parameter, and a parameter
// name that is not well formed. A backslash before a brace makes the brace literal. When
// `params` is not null, a parameter that it does not hold is a fault too; `moduleName` is
// used in that message. Returns one message per fault, in text order.
std::vector<std::string> CheckParameters(std::u32string_view decoded,
                                         const std::set<std::string>* params,
                                         std::string_view moduleName);

// True when a decoded text is empty or holds only white space, which is worth a warning:
// a catalogue row without a message.
bool LooksEmpty(std::u32string_view decoded);

// The note that tells how the positions in fault messages are counted.
inline constexpr std::string_view kPositionNote = "(0-based code point index in the decoded text)";

}  // namespace ic::rescomp
