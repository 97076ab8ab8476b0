// The AVX2 kernel of the wide substring search (wide_search_avx2.cpp, built for x86-64 only).
//
// Call only when platform::internal::UseVectorKernels() says so.
#pragma once

#include <cstddef>

namespace ic::platform::internal {

/// Looks for the first start i in [from, to) with text[i] == first and
/// text[i + lastOffset] == last, 16 starts at a time, reading only text[from .. to - 1 +
/// lastOffset]. Returns that start, or the start from which fewer than 16 remain: everything
/// before the returned start was found not to be a candidate.
size_t ScanForPairAvx2(const char16_t* text, size_t from, size_t to, char16_t first, char16_t last,
                       size_t lastOffset) noexcept;

}  // namespace ic::platform::internal
