#include "text_checks.h"

#include <algorithm>

#include "names.h"
#include "utf8.h"

namespace ic::rescomp {

namespace {

std::string AtPosition(std::size_t position) {
  return " at position " + std::to_string(position) + " " + std::string(kPositionNote);
}

// How an escaped character is shown in a message: printable ASCII as it is, anything else
// as U+XXXX so that a control character cannot break the one-line message.
std::string ShowCharacter(char32_t c) {
  if (c >= 0x21 && c < 0x7F) return std::string(1, static_cast<char>(c));
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out = "U+";
  int digits = c > 0xFFFF ? 6 : 4;
  for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4)
    out.push_back(kHex[(c >> shift) & 0xF]);
  return out;
}

// How a parameter is shown in a message. The braces' content has no line break (those are
// rejected before), but it may hold other control characters, shown as U+XXXX.
std::string ShowParameter(std::u32string_view name) {
  std::string out = "{";
  for (char32_t c : name) {
    if (c < 0x20 || (c >= 0x7F && c <= 0x9F)) {
      out += ShowCharacter(c);
    } else {
      AppendUtf8(out, c);
    }
  }
  out += "}";
  return out;
}

}  // namespace

DecodedText DecodeEscapes(std::u32string_view source) {
  DecodedText result;
  result.text.reserve(source.size());
  for (std::size_t i = 0; i < source.size(); ++i) {
    const char32_t c = source[i];
    if (c != U'\\') {
      result.text.push_back(c);
      continue;
    }
    if (i + 1 == source.size()) {
      result.faults.push_back("incomplete escape sequence: a backslash ends the text" +
                              AtPosition(result.text.size()));
      result.text.push_back(c);
      continue;
    }
    const char32_t next = source[++i];
    switch (next) {
      case U'n':
        result.text.push_back(U'\n');
        break;
      case U'r':
        result.text.push_back(U'\r');
        break;
      case U't':
        result.text.push_back(U'\t');
        break;
      case U'\\':
        result.text.push_back(U'\\');
        break;
      case U'{':
      case U'}':
        result.text.push_back(U'\\');
        result.text.push_back(next);
        break;
      default:
        result.faults.push_back("unknown escape sequence '\\" + ShowCharacter(next) + "'" +
                                AtPosition(result.text.size()));
        result.text.push_back(U'\\');
        result.text.push_back(next);
        break;
    }
  }
  return result;
}

std::vector<std::string> CheckParameters(std::u32string_view decoded,
                                         const std::set<std::string>* params,
                                         std::string_view moduleName) {
  std::vector<std::string> faults;
  constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::size_t open = kNone;
  for (std::size_t i = 0; i < decoded.size(); ++i) {
    const char32_t c = decoded[i];
    if (c == U'\\' && i + 1 < decoded.size() &&
        (decoded[i + 1] == U'{' || decoded[i + 1] == U'}')) {
      ++i;  // a literal brace
      continue;
    }
    if (c == U'{') {
      if (open != kNone) faults.push_back("nested opening brace '{'" + AtPosition(i));
      open = i;  // the parameter starts anew at the inner brace
    } else if (c == U'}') {
      if (open == kNone) {
        faults.push_back("closing brace '}' without an opening brace" + AtPosition(i));
        continue;
      }
      const std::u32string_view name = decoded.substr(open + 1, i - open - 1);
      if (!IsParameterName(name)) {
        faults.push_back("invalid parameter name " + ShowParameter(name) + AtPosition(open) +
                         "; a parameter name is made of letters, digits, '_' and '.'");
      } else if (params != nullptr && params->count(ToUtf8(name)) == 0) {
        faults.push_back("parameter " + ShowParameter(name) + AtPosition(open) +
                         " is not a parameter of module '" + std::string(moduleName) + "'");
      }
      open = kNone;
    }
  }
  if (open != kNone) faults.push_back("unmatched opening brace '{'" + AtPosition(open));
  return faults;
}

bool LooksEmpty(std::u32string_view decoded) {
  return std::all_of(decoded.begin(), decoded.end(), [](char32_t c) {
    return c == U' ' || c == U'\t' || c == U'\n' || c == U'\r' || c == 0xA0 || c == 0x3000;
  });
}

}  // namespace ic::rescomp
