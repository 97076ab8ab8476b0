// Test helpers: a narrow text as the units of either width, a string of any shape owning a
// copy of it, the text of a string back, and code points as UTF-8.
#pragma once

#include <cstdint>
#include <string>

#include <ic/string/ic_string.h>
#include <ic/string/utf8.h>

namespace ic::test {

/// The units of a narrow text in the width of Unit (UTF-8 bytes, or each byte as one unit).
template <class Unit>
std::basic_string<Unit> Units(const std::string& text) {
  std::basic_string<Unit> units;
  for (char c : text)
    units += static_cast<Unit>(static_cast<unsigned char>(c));
  return units;
}

/// A string of type S holding a copy of the text (a view gets a block of its own).
template <class S>
S Owned(const std::string& text) {
  const auto units = Units<typename S::UnitType>(text);
  return S(units.data(), static_cast<int32_t>(units.size()));
}

/// The text of the string, each unit as one byte (units above 255 are cut).
template <class S>
std::string TextOf(const S& s) {
  std::string out;
  for (int32_t i = 0; i < s.GetLength(); ++i)
    out += static_cast<char>(s.GetText()[i]);
  return out;
}

/// Code points as UTF-8 (values UTF-8 cannot hold are left out).
inline std::string Utf8(const std::u32string& text) {
  std::string out;
  for (char32_t c : text) {
    char buffer[4];
    char* cursor = buffer;
    EncodeCodePoint(cursor, c);
    out.append(buffer, cursor);
  }
  return out;
}

}  // namespace ic::test
