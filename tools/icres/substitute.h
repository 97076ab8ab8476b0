// Substitution of {name} parameters in a message text.
//
// A parameter is written {name}, the name made of ASCII letters, digits, '_' and '.'. In the
// text, \{ and \} stand for literal braces. A brace that does not open such a parameter, and
// any other backslash, stand for themselves.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ic::icres {

/// Names of the parameters of `text`, each once, in order of first appearance.
std::vector<std::string> ListParameters(std::string_view text);

/// What went wrong in a substitution.
enum class SubstitutionFault {
  None,
  UnknownParameter,  ///< a value was given for a name that the text has no parameter of
  MissingValue,      ///< a parameter of the text has no value
};

struct SubstitutionResult {
  SubstitutionFault fault = SubstitutionFault::None;
  std::string name;  ///< the parameter concerned, if fault is not None
  std::string text;  ///< the substituted text, if fault is None
};

/// Replaces every parameter of `text` by its value and the escaped braces by braces. Every
/// value must belong to a parameter of the text, and every parameter must have a value; the
/// first fault found (values checked first, in name order) is reported instead of a text.
SubstitutionResult Substitute(std::string_view text,
                              const std::map<std::string, std::string>& values);

}  // namespace ic::icres
