// The naming rules of catalogue sources: resource names, module names and parameter names.
#pragma once

#include <string_view>

namespace ic::rescomp {

// True for a C identifier: a letter or '_' first, then letters, digits and '_' (ASCII only).
// The empty name is not one.
bool IsResourceName(std::string_view name);

// True for a name that can stand as a C++ namespace in the generated code: a C identifier
// that is neither a C++ keyword nor an identifier reserved to the implementation (one that
// contains "__" or starts with '_' and an upper-case letter).
bool IsModuleName(std::string_view name);

// True for a C++20 keyword or alternative operator token ("class", "and", "co_await").
bool IsCppKeyword(std::string_view name);

// True for a {name} parameter name: one or more ASCII letters, digits, '_' and '.'.
bool IsParameterName(std::u32string_view name);

}  // namespace ic::rescomp
