// The AVX2 kernel of the wide substring search. This file is compiled with -mavx2 and runs only
// on processors that have it; it includes nothing that defines shared inline code, so that no AVX2
// instruction can leak into a function that other files use.
//
// A start is a candidate when the needle's first unit is there and its last unit is where the
// needle would end: two compares per start, whose conjunction is rarely true in ordinary text,
// so that the search passes most of the text at the speed of the loads.
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include <ic/platform/internal/wide_search_kernels.h>

namespace ic::platform::internal {
namespace {

inline __m256i Load(const char16_t* p) noexcept {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}

// Nonzero 16-bit lanes where the 16 starts at `p` are candidates.
inline __m256i Candidates(const char16_t* p, size_t lastOffset, __m256i first,
                          __m256i last) noexcept {
  return _mm256_and_si256(_mm256_cmpeq_epi16(Load(p), first),
                          _mm256_cmpeq_epi16(Load(p + lastOffset), last));
}

}  // namespace

size_t ScanForPairAvx2(const char16_t* text, size_t from, size_t to, char16_t first, char16_t last,
                       size_t lastOffset) noexcept {
  const __m256i firsts = _mm256_set1_epi16(static_cast<short>(first));
  const __m256i lasts = _mm256_set1_epi16(static_cast<short>(last));
  size_t i = from;
  // Two windows at a time, tested together; the window with a candidate is then looked at alone.
  for (; i + 32 <= to; i += 32) {
    const __m256i any = _mm256_or_si256(Candidates(text + i, lastOffset, firsts, lasts),
                                        Candidates(text + i + 16, lastOffset, firsts, lasts));
    if (!_mm256_testz_si256(any, any)) break;
  }
  for (; i + 16 <= to; i += 16) {
    const auto mask = static_cast<uint32_t>(
        _mm256_movemask_epi8(Candidates(text + i, lastOffset, firsts, lasts)));
    if (mask != 0) return i + static_cast<size_t>(__builtin_ctz(mask)) / 2;
  }
  return i;
}

}  // namespace ic::platform::internal
