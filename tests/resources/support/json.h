// A strict little JSON reader for checking the output of icres dump --json.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ic::test {

struct JsonValue {
  enum class Kind { Null, Boolean, Number, String, Array, Object };
  Kind type = Kind::Null;
  bool boolean = false;
  double number = 0;
  std::string string;  ///< UTF-8, escapes resolved
  std::vector<JsonValue> array;
  std::vector<std::pair<std::string, JsonValue>> object;  ///< members in document order

  /// The member of an object with that name; throws std::runtime_error if absent.
  const JsonValue& operator[](const std::string& name) const;
};

/// Parses one JSON document (RFC 8259: surrounding white space allowed, nothing else after the
/// value; control characters in strings refused). Throws std::runtime_error with the offset of
/// the fault.
JsonValue ParseJson(const std::string& text);

}  // namespace ic::test
