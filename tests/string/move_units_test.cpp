// MoveUnits: every size from 0 to 80 bytes, both widths, at several alignments, into a separate
// buffer and over an overlapping range in both directions, against memmove; bytes around the
// destination stay untouched.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include <ic/string/move_units.h>

namespace ic {
namespace {

constexpr size_t kMaxBytes = 80;
constexpr size_t kArena = 3 * kMaxBytes;

template <class Unit>
std::vector<Unit> Pattern(size_t n) {
  std::vector<Unit> v(n);
  for (size_t i = 0; i < n; ++i)
    v[i] = static_cast<Unit>(0x41 + (i * 7 + 3) % 53 + (sizeof(Unit) == 2 ? (i % 5) * 0x100 : 0));
  return v;
}

template <class Unit>
void CheckSeparate() {
  for (size_t n = 0; n <= kMaxBytes / sizeof(Unit); ++n) {
    for (size_t from = 0; from < 4; ++from) {
      for (size_t to = 0; to < 4; ++to) {
        const std::vector<Unit> source = Pattern<Unit>(kMaxBytes + 4);
        std::vector<Unit> ours(kArena, Unit(0x5a));
        std::vector<Unit> expected = ours;
        MoveUnits(ours.data() + to + 8, source.data() + from, n);
        std::memmove(expected.data() + to + 8, source.data() + from, n * sizeof(Unit));
        ASSERT_EQ(ours, expected) << "units " << n << " from +" << from << " to +" << to;
      }
    }
  }
}

template <class Unit>
void CheckOverlap() {
  for (size_t n = 0; n <= kMaxBytes / sizeof(Unit); ++n) {
    for (size_t shift = 1; shift <= n + 1; ++shift) {
      for (int forward = 0; forward < 2; ++forward) {
        std::vector<Unit> ours = Pattern<Unit>(kArena);
        std::vector<Unit> expected = ours;
        const size_t from = forward ? 16 : 16 + shift;
        const size_t to = forward ? 16 + shift : 16;
        MoveUnits(ours.data() + to, ours.data() + from, n);
        std::memmove(expected.data() + to, expected.data() + from, n * sizeof(Unit));
        ASSERT_EQ(ours, expected) << "units " << n << " shift " << shift
                                  << (forward ? " forward" : " backward");
      }
    }
  }
}

TEST(MoveUnits, NarrowIntoASeparateBuffer) {
  CheckSeparate<char>();
}
TEST(MoveUnits, WideIntoASeparateBuffer) {
  CheckSeparate<char16_t>();
}
TEST(MoveUnits, NarrowOverlapping) {
  CheckOverlap<char>();
}
TEST(MoveUnits, WideOverlapping) {
  CheckOverlap<char16_t>();
}

TEST(MoveUnits, OntoItselfChangesNothing) {
  std::vector<char> v = Pattern<char>(64);
  const std::vector<char> before = v;
  for (size_t n = 0; n <= 64; ++n)
    MoveUnits(v.data(), v.data(), n);
  EXPECT_EQ(v, before);
}

}  // namespace
}  // namespace ic
