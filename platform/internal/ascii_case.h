// Case mapping of runs of ASCII in place: the step that decides how fast MakeUpper and MakeLower
// run on text that is mostly ASCII. On x86-64 processors with AVX2 the runs are mapped 32 bytes
// at a time (see vector_kernels.h); the portable loop gives the same result everywhere.
#pragma once

#include <cstddef>

#include <ic/platform/export.h>

namespace ic::platform::internal {

/// Maps, in place, the leading units of the `n` units at `p` that are ASCII and not zero: "a" to
/// "z" become upper case when `upper`, "A" to "Z" lower case otherwise. Returns how many units it
/// took: the offset of the first unit that is zero or from 128 up, or `n` (0 for `n` 0). Reads
/// and writes only those units.
IC_API size_t MapAsciiCaseRun(char* p, size_t n, bool upper) noexcept;
IC_API size_t MapAsciiCaseRun(char16_t* p, size_t n, bool upper) noexcept;

/// The AVX2 kernels (ascii_case_avx2.cpp): whole windows of 32 bytes or 16 wide units, up to the
/// first window that holds a unit that ends the run, which they leave as it is; they return the
/// offset where the portable loop must go on. Call only when UseVectorKernels() says so.
size_t MapAsciiCaseRunAvx2(char* p, size_t n, bool upper) noexcept;
size_t MapAsciiCaseRunAvx2(char16_t* p, size_t n, bool upper) noexcept;

}  // namespace ic::platform::internal
