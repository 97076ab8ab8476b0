// A walk over the members of a unit set in a text, for the escapers and decoders that act on
// most members: each block of 1,024 units is marked in one pass (FillStopMasks), and the walk
// goes from mark to mark instead of scanning again behind every one.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include <ic/platform/internal/unit_scan.h>

namespace ic::platform::internal {

/// Calls `visit(at, mark)` for the members of `set` in [from, end) in order, where `at` is where
/// the walk stands (`from` at first) and `mark` the member, not before `at`. `visit` returns
/// where the walk goes on (behind `mark`; members it passes over are skipped), or null to stop.
/// Returns where the walk stands at the end, or null when `visit` stopped it.
template <class Unit, class Visit>
const Unit* WalkStops(const Unit* from, const Unit* end, const UnitStopSet& set, Visit visit) {
  constexpr ptrdiff_t kBlock = 1024;
  uint64_t masks[kBlock / 64];
  const Unit* at = from;
  for (const Unit* base = from; base < end; base += kBlock) {
    if (at >= base + kBlock) continue;  // a member taken earlier reached past this block
    const ptrdiff_t n = end - base < kBlock ? end - base : kBlock;
    FillStopMasks(base, static_cast<size_t>(n), set, masks);
    for (ptrdiff_t group = 0; group * 64 < n; ++group) {
      for (uint64_t mask = masks[group]; mask != 0; mask &= mask - 1) {
        const Unit* const mark = base + group * 64 + std::countr_zero(mask);
        if (mark < at) continue;
        at = visit(at, mark);
        if (at == nullptr) return nullptr;
      }
    }
  }
  return at;
}

}  // namespace ic::platform::internal
