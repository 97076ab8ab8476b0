// Parameter substitution: the message scanner that hosts use walks the text, and both the
// listing and the substitution are built on it.
#include "substitute.h"

#include <algorithm>

#include <ic/resources/internal/message_scan.h>

namespace ic::icres {

namespace {

using ic::internal::MessagePiece;

// Calls literal(piece) for the text to show as it stands and parameter(name) for each parameter.
template <class Literal, class Parameter>
void Scan(std::string_view text, Literal literal, Parameter parameter) {
  ic::internal::ScanMessage(text, [&](MessagePiece kind, std::string_view span) {
    if (kind == MessagePiece::Parameter) {
      parameter(ic::internal::ParameterName(span));
    } else {
      literal(kind == MessagePiece::EscapedBrace ? span.substr(1) : span);
    }
  });
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
      result.fault = SubstitutionFault::UnknownParameter;
      result.name = name;
      return result;
    }
  }
  for (const std::string& name : names) {
    if (!values.count(name)) {
      result.fault = SubstitutionFault::MissingValue;
      result.name = name;
      return result;
    }
  }
  Scan(
      text, [&result](std::string_view piece) { result.text += piece; },
      [&result, &values](std::string_view name) { result.text += values.at(std::string(name)); });
  return result;
}

}  // namespace ic::icres
