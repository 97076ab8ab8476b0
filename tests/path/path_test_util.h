// Helpers of the path and markup tests: owning strings of a shape, and ASCII text widened.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include <ic/string/ic_string.h>

namespace ic::pathtest {

/// The six strings: three shapes in two widths.
using AllStrings = ::testing::Types<ICStringUnique, ICStringShared, ICStringView, ICStringUniqueW,
                                    ICStringSharedW, ICStringViewW>;

/// An owning string of shape S with the text in a block of its own (a view gets one through the
/// pointer-and-length constructor).
template <class S>
S Owned(const typename S::UnitType* text) {
  return S(text, static_cast<int32_t>(std::char_traits<typename S::UnitType>::length(text)));
}

/// The UTF-16 form of a UTF-8 text, through the library's converter.
inline std::u16string Wide(const char* utf8) {
  ICStringUniqueW w;
  w.ConvertFromUTF8String(utf8);
  return std::u16string(w.GetText(), static_cast<size_t>(w.GetLength()));
}

/// The text of a string as a standard string of its width.
template <class S>
std::basic_string<typename S::UnitType> Str(const S& s) {
  return std::basic_string<typename S::UnitType>(s.GetText(), static_cast<size_t>(s.GetLength()));
}

/// The text of a narrow or wide string as UTF-8, for comparisons in either width.
template <class S>
std::string Utf8(const S& s) {
  if constexpr (sizeof(typename S::UnitType) == 1) {
    return Str(s);
  } else {
    ICStringUnique n = s.ConvertToUTF8();
    return std::string(n.GetText(), static_cast<size_t>(n.GetLength()));
  }
}

/// A string of shape S holding the UTF-8 `text` in its width.
template <class S>
S Make(const char* text) {
  if constexpr (sizeof(typename S::UnitType) == 1) {
    return Owned<S>(text);
  } else {
    const std::u16string w = Wide(text);
    return S(w.c_str(), static_cast<int32_t>(w.size()));
  }
}

}  // namespace ic::pathtest
