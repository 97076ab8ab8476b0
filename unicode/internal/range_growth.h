// The growth rule of CodePointRangeSet, on its own so that the tests can reach the size cap
// without allocating gigabytes.
#pragma once

#include <cstddef>

#include <ic/platform/export.h>

namespace ic::internal {

/// The capacity for a set that holds `capacity` ranges and needs room for `needed`: 1.5 times
/// the capacity, or `needed` if that is more, never above CodePointRangeSet::MaxSize. Throws
/// std::length_error("vector too long") when `needed` is above MaxSize.
IC_API size_t GrowRangeCapacity(size_t capacity, size_t needed);

}  // namespace ic::internal
