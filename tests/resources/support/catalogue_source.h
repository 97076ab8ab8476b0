// A plain reader of the catalogue sources, independent of the resource string compiler, so that
// the tests can hold what reaches the module against what the translators wrote.
//
// It knows the shape the sources have: an XML prolog, comments, a <resources> root with
// <module name="..."> elements holding <string name="...">text</string> (or an empty
// <string name="..."/>). Text takes the five predefined entities and character references,
// and the escapes \n, \r, \t and \\; \{ and \} stay as they are (literal braces of a message).
#pragma once

#include <string>
#include <vector>

namespace ic::test {

struct SourceString {
  std::string key;
  std::string text;  ///< UTF-8, escapes resolved
};

struct SourceModule {
  std::string name;
  std::vector<SourceString> strings;  ///< in source order
};

/// Reads the modules of a catalogue source. Throws std::runtime_error for a file that cannot
/// be read or that has anything this reader does not know.
std::vector<SourceModule> ReadCatalogueSource(const std::string& path);

}  // namespace ic::test
