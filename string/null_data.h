// The empty data: one shared, zero-filled block per width.
//
// Every string that holds no block points at the text of its width's TNullData: a short header
// of three zero words and a zero terminator. Nothing constructs these blocks; they live in
// zero-initialised, writable storage and so are valid before any start-up code runs. The only
// value ever stored in them is the UnknownLength mark, which the next GetLength turns back into
// 0 (so no reader may take their LengthWord for granted).
#pragma once

#include <cstdint>

#include <ic/platform/export.h>

namespace ic {

/// Layout of an empty block: the short header and a terminator.
template <class Unit>
struct NullBlock {
  int16_t LengthWord;
  int16_t CapacityWord;
  uint16_t ShareWord;
  Unit text[1];
};

static_assert(sizeof(NullBlock<char>) == 8 && sizeof(NullBlock<char16_t>) == 8);

/// Holder of the two empty blocks, TNullData of char (7 meaningful bytes) and of char16_t (8).
template <class Unit>
struct ICStringNullData {
  IC_API static NullBlock<Unit> TNullData;
};

template <>
IC_API NullBlock<char> ICStringNullData<char>::TNullData;
template <>
IC_API NullBlock<char16_t> ICStringNullData<char16_t>::TNullData;

/// Text pointer of the empty data of a width. Comparing a string's text pointer with it is the
/// test for a handle without a block of its own.
template <class Unit>
inline Unit* EmptyText() {
  Unit* text = ICStringNullData<Unit>::TNullData.text;
#if defined(__GNUC__)
  // The header words are reached by stepping back from the text pointer; hide the pointer's
  // origin so that the compiler's bounds tracking does not take the Text member for the object.
  asm("" : "+r"(text));
#endif
  return text;
}

/// Throws std::logic_error("ICString::TNullData has not been zero initialized!") if the empty
/// block of the width holds anything but zeros: narrow is tested byte by byte over its 7 bytes,
/// wide word by word over its four words. Run among the static initialisers of the library and
/// of the language module.
template <class Unit>
IC_API void CheckNullData();

template <>
IC_API void CheckNullData<char>();
template <>
IC_API void CheckNullData<char16_t>();

}  // namespace ic
