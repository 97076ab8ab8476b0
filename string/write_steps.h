// Helpers of the writing members shared by the mixins, the builder and the concatenation: the
// write-in-place test, the builder's growth and the overlap test. The write preparations that
// need the low-level layer are in string/internal/string_access.h.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <ic/string/header.h>
#include <ic/string/range.h>

namespace ic::internal {

/// True if the string may be written in place as it stands: a unique string always, a shared
/// one while no other handle holds its block, a view once it owns its block.
template <class Str>
inline bool IsWritableInPlace(const Str& s) {
  if constexpr (Str::IsShared)
    return GetShareWord(s.GetText()) == 0;
  else if constexpr (Str::IsView)
    return s.OwnsBlock();
  else
    return true;
}

/// The builder's growth: needed plus the hint, or with hint 0 the larger of 1024 and twice
/// needed; never above EndOfText.
inline int32_t GrowthCapacity(int32_t needed, int32_t reserveHint) {
  const int64_t wanted = reserveHint != 0 ? int64_t{needed} + reserveHint
                                          : std::max<int64_t>(1024, int64_t{needed} * 2);
  return static_cast<int32_t>(std::min<int64_t>(std::max<int64_t>(wanted, needed), EndOfText));
}

/// True if `p` lies within [begin, begin + count] (compared as addresses).
template <class Unit>
inline bool PointsInto(const Unit* p, const Unit* begin, int64_t count) {
  const auto a = reinterpret_cast<uintptr_t>(p);
  const auto b = reinterpret_cast<uintptr_t>(begin);
  return a >= b && a <= b + static_cast<uintptr_t>(count) * sizeof(Unit);
}

}  // namespace ic::internal
