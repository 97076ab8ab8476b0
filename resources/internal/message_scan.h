// The walk over a message text that finds its {name} parameters and its escaped braces. One walk
// serves the substitution of hosts, the host tool, the translators' check and the
// pseudo-locale, so that all of them agree on what a parameter is.
//
// A parameter is '{', one or more ASCII letters, digits, '_' or '.', and '}'. A backslash
// before a brace ("\{", "\}") makes that brace a literal one. Every other brace and backslash
// stands for itself.
#pragma once

#include <cstddef>
#include <string_view>

namespace ic::internal {

/// What a piece of a message is.
enum class MessagePiece {
  Text,          ///< plain text, to show as it stands
  EscapedBrace,  ///< "\{" or "\}", shown as the brace alone
  Parameter,     ///< "{name}", replaced by the parameter's value
};

/// True for a unit that may stand in a parameter name.
template <class Unit>
constexpr bool IsParameterNameUnit(Unit unit) noexcept {
  return (unit >= Unit('a') && unit <= Unit('z')) || (unit >= Unit('A') && unit <= Unit('Z')) ||
         (unit >= Unit('0') && unit <= Unit('9')) || unit == Unit('_') || unit == Unit('.');
}

/// Length of the parameter "{name}" that opens at text[at], or 0 if none opens there (also for
/// `at` past the end).
template <class Unit>
constexpr std::size_t ParameterLengthAt(std::basic_string_view<Unit> text,
                                        std::size_t at) noexcept {
  if (at >= text.size() || text[at] != Unit('{')) return 0;
  std::size_t end = at + 1;
  while (end < text.size() && IsParameterNameUnit(text[end]))
    ++end;
  if (end == at + 1 || end >= text.size() || text[end] != Unit('}')) return 0;
  return end + 1 - at;
}

/// Cuts `text` into pieces, in order, and calls piece(kind, span) for each, where `span` is the
/// piece as written in the text (a parameter with its braces, an escaped brace with its
/// backslash). Runs of plain text come as one piece; an empty text gives no call.
template <class Unit, class Visit>
constexpr void ScanMessage(std::basic_string_view<Unit> text, Visit&& piece) {
  std::size_t runStart = 0;
  std::size_t i = 0;
  auto flush = [&](std::size_t end) {
    if (end > runStart) piece(MessagePiece::Text, text.substr(runStart, end - runStart));
  };
  while (i < text.size()) {
    if (text[i] == Unit('\\') && i + 1 < text.size() &&
        (text[i + 1] == Unit('{') || text[i + 1] == Unit('}'))) {
      flush(i);
      piece(MessagePiece::EscapedBrace, text.substr(i, 2));
      i += 2;
      runStart = i;
      continue;
    }
    if (const std::size_t length = ParameterLengthAt(text, i)) {
      flush(i);
      piece(MessagePiece::Parameter, text.substr(i, length));
      i += length;
      runStart = i;
      continue;
    }
    ++i;
  }
  flush(text.size());
}

/// The name of a parameter piece: its span without the braces.
template <class Unit>
constexpr std::basic_string_view<Unit> ParameterName(std::basic_string_view<Unit> span) noexcept {
  return span.substr(1, span.size() - 2);
}

}  // namespace ic::internal
