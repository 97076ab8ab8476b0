// A read-only text argument: a pointer and a signed length.
#pragma once

#include <cstdint>

namespace ic {

/// The position that stands for the end of the text, as a length "the whole text". It is taken
/// as it stands, never converted between code points and units.
inline constexpr int32_t EndOfText = 0x7FFFFFFF;

/// A pointer to code units and a length; a negative length means "up to the terminator".
/// Used only as an argument, never stored.
template <class Unit>
struct ICStringRangeT {
  const Unit* Text = nullptr;
  int32_t Length = 0;
};

using ICStringRange = ICStringRangeT<char>;       ///< UTF-8 text
using ICStringRangeW = ICStringRangeT<char16_t>;  ///< UTF-16 text

}  // namespace ic
