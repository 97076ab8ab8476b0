#include "names.h"

#include <algorithm>
#include <array>

namespace ic::rescomp {

namespace {

bool IsAsciiLetter(char32_t c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool IsAsciiDigit(char32_t c) {
  return c >= '0' && c <= '9';
}

// Sorted, so that a lookup can use binary search.
constexpr std::array<std::string_view, 92> kCppKeywords = {
    "alignas",       "alignof",     "and",
    "and_eq",        "asm",         "auto",
    "bitand",        "bitor",       "bool",
    "break",         "case",        "catch",
    "char",          "char16_t",    "char32_t",
    "char8_t",       "class",       "co_await",
    "co_return",     "co_yield",    "compl",
    "concept",       "const",       "const_cast",
    "consteval",     "constexpr",   "constinit",
    "continue",      "decltype",    "default",
    "delete",        "do",          "double",
    "dynamic_cast",  "else",        "enum",
    "explicit",      "export",      "extern",
    "false",         "float",       "for",
    "friend",        "goto",        "if",
    "inline",        "int",         "long",
    "mutable",       "namespace",   "new",
    "noexcept",      "not",         "not_eq",
    "nullptr",       "operator",    "or",
    "or_eq",         "private",     "protected",
    "public",        "register",    "reinterpret_cast",
    "requires",      "return",      "short",
    "signed",        "sizeof",      "static",
    "static_assert", "static_cast", "struct",
    "switch",        "template",    "this",
    "thread_local",  "throw",       "true",
    "try",           "typedef",     "typeid",
    "typename",      "union",       "unsigned",
    "using",         "virtual",     "void",
    "volatile",      "wchar_t",     "while",
    "xor",           "xor_eq",
};

}  // namespace

bool IsResourceName(std::string_view name) {
  if (name.empty()) return false;
  if (!IsAsciiLetter(static_cast<unsigned char>(name[0])) && name[0] != '_') return false;
  return std::all_of(name.begin() + 1, name.end(), [](char c) {
    const auto u = static_cast<unsigned char>(c);
    return IsAsciiLetter(u) || IsAsciiDigit(u) || c == '_';
  });
}

bool IsCppKeyword(std::string_view name) {
  return std::binary_search(kCppKeywords.begin(), kCppKeywords.end(), name);
}

bool IsModuleName(std::string_view name) {
  if (!IsResourceName(name) || IsCppKeyword(name)) return false;
  if (name.find("__") != std::string_view::npos) return false;
  if (name.size() >= 2 && name[0] == '_' && name[1] >= 'A' && name[1] <= 'Z') return false;
  return true;
}

bool IsParameterName(std::u32string_view name) {
  if (name.empty()) return false;
  return std::all_of(name.begin(), name.end(), [](char32_t c) {
    return IsAsciiLetter(c) || IsAsciiDigit(c) || c == '_' || c == '.';
  });
}

}  // namespace ic::rescomp
