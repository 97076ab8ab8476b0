// MoveUnits: a copy of code units tuned for the short pieces that concatenations and builders
// add one after another (names, separators, numbers: a few to a few dozen bytes). Up to 32 bytes
// it loads everything before it stores, with overlapping word moves and no call; longer runs go
// to memmove. Overlapping ranges are allowed at every size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ic {

// The word moves below run only for sizes that fit the range; GCC cannot always see that when
// a short fixed buffer is passed with a computed count, and warns about the branches it cannot
// rule out.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"
#pragma GCC diagnostic ignored "-Wstringop-overflow"
#pragma GCC diagnostic ignored "-Wstringop-overread"
#endif

namespace internal {
struct Bytes16 {
  uint64_t low, high;
};
/// Reads a word from an address of any alignment.
template <class Word>
inline Word LoadUnaligned(const unsigned char* p) noexcept {
  Word w;
  std::memcpy(&w, p, sizeof w);
  return w;
}
/// Writes a word to an address of any alignment.
template <class Word>
inline void StoreUnaligned(unsigned char* p, Word w) noexcept {
  std::memcpy(p, &w, sizeof w);
}
/// Moves n bytes from `from` to `to`: the first and last word of the run, which overlap when n
/// is less than two words, both loaded before either is stored.
template <class Word>
inline void MoveEnds(unsigned char* to, const unsigned char* from, size_t n) noexcept {
  const Word head = LoadUnaligned<Word>(from);
  const Word tail = LoadUnaligned<Word>(from + n - sizeof(Word));
  StoreUnaligned(to, head);
  StoreUnaligned(to + n - sizeof(Word), tail);
}
}  // namespace internal

/// Copies n code units from `from` to `to`; the ranges may overlap.
template <class Unit>
inline void MoveUnits(Unit* to, const Unit* from, size_t n) noexcept {
  using namespace internal;
  const size_t bytes = n * sizeof(Unit);
  auto* const d = reinterpret_cast<unsigned char*>(to);
  const auto* const s = reinterpret_cast<const unsigned char*>(from);
  if (bytes > 32) {
    std::memmove(d, s, bytes);
  } else if (bytes > 16) {
    MoveEnds<Bytes16>(d, s, bytes);
  } else if (bytes >= 8) {
    MoveEnds<uint64_t>(d, s, bytes);
  } else if (bytes >= 4) {
    MoveEnds<uint32_t>(d, s, bytes);
  } else if (bytes >= 2) {
    MoveEnds<uint16_t>(d, s, bytes);
  } else if (bytes == 1) {
    *d = *s;
  }
}

}  // namespace ic

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
