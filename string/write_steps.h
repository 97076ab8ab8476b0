// Write preparations shared by the members of the append and edit mixins, built on the write
// steps of the shapes (_PrepareGrow and the view's _MakeOwned). Internal to the string sources.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <ic/string/header.h>
#include <ic/string/range.h>

namespace ic::internal {

/// Makes the block writable in place, keeping its capacity: a view becomes owning, a shared
/// block that others hold is detached (unique strings have nothing to do).
template <class Str>
inline void PrepareInPlace(Str& s) {
  if constexpr (Str::IsView) s._MakeOwned();
  s._PrepareGrow(s.GetCapacity());
}

/// True if the string may be written in place as it stands: a unique string always, a shared
/// one while no other handle holds its block, a view once it owns its block.
template <class Str>
inline bool IsWritableInPlace(const Str& s) {
  if constexpr (Str::IsShared)
    return s._GetShareWord() == 0;
  else if constexpr (Str::IsView)
    return s.OwnsBlock();
  else
    return true;
}

/// Makes the block writable with room for `needed` units, keeping the text; when it has to
/// grow, it grows to `growTo` (at least `needed`). A shared block grows straight into a block
/// of its own, without a detach first.
template <class Str>
inline void PrepareRoomKeep(Str& s, int32_t needed, int32_t growTo) {
  if constexpr (Str::IsView) s._MakeOwned();
  const int32_t capacity = s.GetCapacity();
  s._PrepareGrow(needed > capacity ? growTo : capacity);
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
