// Parameter substitution: one scanner walks the text, and both the listing and the
// substitution are built on it.
#include "substitute.h"

#include <algorithm>

namespace ic::icres {

namespace {

bool IsNameChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '.';
}

// Length of the parameter that opens at text[at] ("{name}"), or 0 if none opens there.
size_t ParameterLength(std::string_view text, size_t at) {
  if (text[at] != '{') return 0;
  size_t end = at + 1;
  while (end < text.size() && IsNameChar(text[end]))
    ++end;
  if (end == at + 1 || end >= text.size() || text[end] != '}') return 0;
  return end + 1 - at;
}

// Calls literal(piece) for runs of literal text and parameter(name) for each parameter.
template <class Literal, class Parameter>
void Scan(std::string_view text, Literal literal, Parameter parameter) {
  size_t runStart = 0;
  size_t i = 0;
  while (i < text.size()) {
    if (text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == '{' || text[i + 1] == '}')) {
      literal(text.substr(runStart, i - runStart));
      runStart = i + 1;  // the brace itself starts the next run
      i += 2;
      continue;
    }
    if (const size_t length = ParameterLength(text, i)) {
      literal(text.substr(runStart, i - runStart));
      parameter(text.substr(i + 1, length - 2));
      i += length;
      runStart = i;
      continue;
    }
    ++i;
  }
  literal(text.substr(runStart));
}

}  // namespace

std::vector<std::string> ListParameters(std::string_view text) {
  std::vector<std::string> names;
  Scan(
      text, [](std::string_view) {},
      [&names](std::string_view name) {
        if (std::find(names.begin(), names.end(), name) == names.end()) names.emplace_back(name);
      });
  return names;
}

SubstitutionResult Substitute(std::string_view text,
                              const std::map<std::string, std::string>& values) {
  SubstitutionResult result;
  const std::vector<std::string> names = ListParameters(text);
  for (const auto& [name, value] : values) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      result.Fault = SubstitutionFault::UnknownParameter;
      result.Name = name;
      return result;
    }
  }
  for (const std::string& name : names) {
    if (!values.count(name)) {
      result.Fault = SubstitutionFault::MissingValue;
      result.Name = name;
      return result;
    }
  }
  Scan(
      text, [&result](std::string_view piece) { result.Text += piece; },
      [&result, &values](std::string_view name) { result.Text += values.at(std::string(name)); });
  return result;
}

}  // namespace ic::icres
