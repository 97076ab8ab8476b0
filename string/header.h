// The header words that stand in front of every string text.
//
// A string handle holds a pointer to its first code unit. Directly before it lie 16-bit
// words: LengthWord (6 bytes before the text), CapacityWord (4) and ShareWord (2). Blocks with
// a capacity above 0x7fff use a long form with two more words, LengthLow (10) and CapacityLow
// (8); the long form stores the 32-bit negation of length and capacity split into halves, so a
// negative CapacityWord marks it. These helpers read and write the words of any block, in either
// width, without caring which shape owns it.
#pragma once

#include <cstdint>
#include <cstring>

namespace ic {

/// LengthWord value meaning "not measured yet": the next GetLength scans for the terminator.
inline constexpr int16_t UnknownLength = static_cast<int16_t>(0x8000);

/// ShareWord flag bits of unique strings (a shared string keeps an owner count there instead).
inline constexpr uint16_t InlineCapable = 1;  ///< the owning object has a buffer of its own
inline constexpr uint16_t InlineBlock = 2;    ///< this block is that buffer: never freed

/// Options of _Reserve.
inline constexpr unsigned ReserveExact = 1;      ///< give exactly this capacity, even if smaller
inline constexpr unsigned ReserveTerminate = 2;  ///< write a terminator at the new capacity
inline constexpr unsigned ReserveKeepText = 4;   ///< carry the old text over

/// Largest capacity that still uses the three-word short header.
inline constexpr int32_t ShortFormLimit = 0x7fff;

/// Sizes of the two header forms, in bytes.
inline constexpr int ShortHeaderBytes = 6;
inline constexpr int LongHeaderBytes = 10;

namespace internal {

/// Word offsets, in bytes before the text pointer.
enum HeaderOffset : int {
  kLengthLow = 10,
  kCapacityLow = 8,
  kLengthWord = 6,
  kCapacityWord = 4,
  kShareWord = 2,
};

inline uint16_t LoadWord(const void* text, int offset) {
  uint16_t v;
  std::memcpy(&v, static_cast<const char*>(text) - offset, sizeof v);
  return v;
}

inline void StoreWord(void* text, int offset, uint16_t v) {
  std::memcpy(static_cast<char*>(text) - offset, &v, sizeof v);
}

inline int16_t GetLengthWord(const void* text) {
  return static_cast<int16_t>(LoadWord(text, kLengthWord));
}
inline int16_t GetCapacityWord(const void* text) {
  return static_cast<int16_t>(LoadWord(text, kCapacityWord));
}
inline uint16_t GetShareWord(const void* text) {
  return LoadWord(text, kShareWord);
}
inline void SetShareWord(void* text, uint16_t v) {
  StoreWord(text, kShareWord, v);
}
inline void SetLengthWord(void* text, int16_t v) {
  StoreWord(text, kLengthWord, static_cast<uint16_t>(v));
}

/// True if the block uses the five-word long form.
inline bool IsLongForm(const void* text) {
  return GetCapacityWord(text) < 0;
}

/// Joins a negated high half and its low half back into a value.
inline int32_t JoinNegated(int16_t high, uint16_t low) {
  const uint32_t negated = (static_cast<uint32_t>(static_cast<uint16_t>(high)) << 16) | low;
  return static_cast<int32_t>(0u - negated);
}

/// The capacity recorded in a block's header.
inline int32_t ReadCapacity(const void* text) {
  const int16_t word = GetCapacityWord(text);
  if (word >= 0) return word;
  return JoinNegated(word, LoadWord(text, kCapacityLow));
}

/// The length recorded in a block's header, or -1 if it is not known (UnknownLength, or a
/// long-form value that comes out negative). Never scans.
inline int32_t ReadStoredLength(const void* text) {
  const int16_t word = GetLengthWord(text);
  if (word >= 0) return word;
  if (word == UnknownLength) return -1;
  const int32_t length = JoinNegated(word, LoadWord(text, kLengthLow));
  return length >= 0 ? length : -1;
}

/// Stores a length in the form that the block's capacity dictates; writes no terminator.
inline void WriteStoredLength(void* text, int32_t length) {
  if (GetCapacityWord(text) < 0) {
    const uint32_t negated = 0u - static_cast<uint32_t>(length);
    StoreWord(text, kLengthLow, static_cast<uint16_t>(negated));
    StoreWord(text, kLengthWord, static_cast<uint16_t>(negated >> 16));
  } else {
    StoreWord(text, kLengthWord, static_cast<uint16_t>(length));
  }
}

/// Number of code units before the first zero unit.
template <class Unit>
inline int32_t MeasureText(const Unit* text) {
  if constexpr (sizeof(Unit) == 1) {
    return static_cast<int32_t>(std::strlen(reinterpret_cast<const char*>(text)));
  } else {
    const Unit* p = text;
    while (*p)
      ++p;
    return static_cast<int32_t>(p - text);
  }
}

}  // namespace internal
}  // namespace ic
