// AVX2 kernels of the unit-set scans (unit_scan_avx2.cpp, built for x86-64 only).
//
// Each kernel scans whole windows of 32 units and stops at the first window that holds a unit
// it looks for, or when fewer than a window (FindFirstRun and FindFoldedPair: a window and one
// unit) remain. It
// returns the offset where the portable scan must go on; everything before it was found clear.
// Call only when platform::internal::UseVectorKernels() says so.
#pragma once

#include <cstddef>
#include <cstdint>

#include <ic/platform/internal/unit_scan.h>

namespace ic::platform::internal {

size_t FindFirstInSetAvx2(const char* p, size_t n, const UnitStopSet& set) noexcept;
size_t FindFirstInSetAvx2(const char16_t* p, size_t n, const UnitStopSet& set) noexcept;
// Fills the masks of the whole groups of 64 units and returns the units done (a multiple of 64).
size_t FillStopMasksAvx2(const char* p, size_t n, const UnitStopSet& set, uint64_t* masks) noexcept;
size_t FillStopMasksAvx2(const char16_t* p, size_t n, const UnitStopSet& set,
                         uint64_t* masks) noexcept;
size_t FindFirstRunInSetAvx2(const char* p, size_t n, const UnitStopSet& set,
                             uint32_t single) noexcept;
size_t FindFirstRunInSetAvx2(const char16_t* p, size_t n, const UnitStopSet& set,
                             uint32_t single) noexcept;

size_t FindFoldedPairAvx2(const char* p, size_t n, uint32_t first, uint32_t second) noexcept;
size_t FindFoldedPairAvx2(const char16_t* p, size_t n, uint32_t first, uint32_t second) noexcept;

}  // namespace ic::platform::internal
