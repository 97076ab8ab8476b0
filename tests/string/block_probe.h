// Test helpers that read the header words in front of a string's text.
#pragma once

#include <cstdint>
#include <cstring>

namespace ic::test {

inline uint16_t WordAt(const void* text, int bytesBefore) {
  uint16_t v;
  std::memcpy(&v, static_cast<const char*>(text) - bytesBefore, 2);
  return v;
}
inline uint16_t LengthWord(const void* t) {
  return WordAt(t, 6);
}
inline uint16_t CapacityWord(const void* t) {
  return WordAt(t, 4);
}
inline uint16_t ShareWord(const void* t) {
  return WordAt(t, 2);
}
inline uint16_t LengthLow(const void* t) {
  return WordAt(t, 10);
}
inline uint16_t CapacityLow(const void* t) {
  return WordAt(t, 8);
}
inline void SetLengthWord(void* t, uint16_t v) {
  std::memcpy(static_cast<char*>(t) - 6, &v, 2);
}

}  // namespace ic::test

#include <string>

#include <gtest/gtest.h>

#include <ic/string/ic_string.h>

namespace ic::test {
/// The six strings, for typed tests over every shape and width.
using AllStringShapes = ::testing::Types<ICStringUnique, ICStringUniqueW, ICStringShared,
                                         ICStringSharedW, ICStringView, ICStringViewW>;

/// A string of type S holding the ASCII text, whatever its width.
template <class S>
S Make(const char* ascii) {
  std::basic_string<typename S::UnitType> units(ascii,
                                                ascii + std::char_traits<char>::length(ascii));
  return S(units.c_str());
}
}  // namespace ic::test
