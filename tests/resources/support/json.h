// A strict little JSON reader for checking the output of icres dump --json.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ic::test {

struct JsonValue {
  enum class Kind { Null, Boolean, Number, String, Array, Object };
  Kind Type = Kind::Null;
  bool Boolean = false;
  double Number = 0;
  std::string String;  ///< UTF-8, escapes resolved
  std::vector<JsonValue> Array;
  std::vector<std::pair<std::string, JsonValue>> Object;  ///< members in document order

  /// The member of an object with that name; throws std::runtime_error if absent.
  const JsonValue& operator[](const std::string& name) const;
};

/// Parses one JSON document (RFC 8259: surrounding white space allowed, nothing else after the
/// value; control characters in strings refused). Throws std::runtime_error with the offset of
/// the fault.
JsonValue ParseJson(const std::string& text);

}  // namespace ic::test
