// Scans for the first unit of a small set: the step that decides how fast the text members run
// on text that needs nothing (XML escaping, squeezing runs of blanks), where the answer is
// usually "none".
//
// The set holds units below 128 one by one and the units from 128 up as one block. Both widths
// are scanned: wide units are compared by value, so a wide unit from 128 up is in the set exactly
// when the block is. On x86-64 processors with AVX2 the scans run 32 units at a time (see
// vector_kernels.h); the portable loop gives the same answer everywhere.
#pragma once

#include <cstddef>
#include <cstdint>

#include <ic/platform/export.h>

namespace ic::platform::internal {

/// A set of units: those below 128 one by one, and whether every unit from 128 up belongs.
/// Unit u below 128 is bit u / 16 of byte u % 16 of `low`, the layout the vector scans look up
/// directly.
struct UnitStopSet {
  uint8_t low[16] = {};
  bool high = false;

  /// Adds unit `u` (below 128; nothing happens for a larger value).
  constexpr void Add(uint32_t u) noexcept {
    if (u < 128) low[u & 15] = static_cast<uint8_t>(low[u & 15] | (1u << (u >> 4)));
  }
  /// True if unit `u` belongs to the set.
  constexpr bool Holds(uint32_t u) const noexcept {
    return u < 128 ? ((low[u & 15] >> (u >> 4)) & 1) != 0 : high;
  }
};

/// The offset of the first of the `n` units at `p` that belongs to `set`, or `n` when none does
/// (0 for `n` 0). Reads only the `n` units.
IC_API size_t FindFirstInSet(const char* p, size_t n, const UnitStopSet& set) noexcept;
IC_API size_t FindFirstInSet(const char16_t* p, size_t n, const UnitStopSet& set) noexcept;

/// Marks the members of `set` among the `n` units at `p` in `masks`: bit k of masks[j] is set
/// when unit 64 * j + k belongs, and the bits from unit `n` on are clear. Writes (n + 63) / 64
/// masks and reads only the `n` units. For callers that act on most members (escapers): one
/// pass marks them all, instead of one scan per member.
IC_API void FillStopMasks(const char* p, size_t n, const UnitStopSet& set,
                          uint64_t* masks) noexcept;
IC_API void FillStopMasks(const char16_t* p, size_t n, const UnitStopSet& set,
                          uint64_t* masks) noexcept;

/// As FindFirstInSet, except that a unit equal to `single` whose next unit (within the `n`)
/// does not belong to `set` is passed over: the first member of `set` that is not a lone
/// `single`. A `single` from 128 up is never passed over. Reads only the `n` units.
IC_API size_t FindFirstRunInSet(const char* p, size_t n, const UnitStopSet& set,
                                uint32_t single) noexcept;
IC_API size_t FindFirstRunInSet(const char16_t* p, size_t n, const UnitStopSet& set,
                                uint32_t single) noexcept;

/// For a case-insensitive search whose needle's first two codes, in upper case, are `first`
/// (below 128) and `second`: the offset of the first of the `n` units at `p` where a match may
/// begin, or `n` when there is none. A match may begin at a unit from 128 up, and at a unit whose
/// ASCII upper-case form (a-z become A-Z) is `first` when it is the last of the `n` units or the
/// unit behind it is from 128 up or has `second` as its ASCII upper-case form. Reads only the `n`
/// units.
IC_API size_t FindFoldedPair(const char* p, size_t n, uint32_t first, uint32_t second) noexcept;
IC_API size_t FindFoldedPair(const char16_t* p, size_t n, uint32_t first, uint32_t second) noexcept;

}  // namespace ic::platform::internal
