// Helpers shared by the tests of assignment, appending, chains and editing.
#pragma once

#include <string>

#include <ic/string/ic_string.h>

#include "block_probe.h"

namespace ic::test {

/// The text of a string as a standard string of its width.
template <class S>
std::basic_string<typename S::UnitType> TextOf(const S& s) {
  return std::basic_string<typename S::UnitType>(s.GetText(), static_cast<size_t>(s.GetLength()));
}

/// An ASCII text in the units of a width.
template <class Unit>
std::basic_string<Unit> Units(const char* ascii) {
  return std::basic_string<Unit>(ascii, ascii + std::char_traits<char>::length(ascii));
}

/// A string of type S that owns a copy of the ASCII text (a view too, so that it never views a
/// temporary).
template <class S>
S Own(const char* ascii) {
  const auto units = Units<typename S::UnitType>(ascii);
  return S(units.c_str(), static_cast<int32_t>(units.size()));
}

}  // namespace ic::test
