// The AVX2 kernels of the ASCII case runs. This file is compiled with -mavx2 and runs only on
// processors that have it; it includes nothing that defines shared inline code, so that no AVX2
// instruction can leak into a function that other files use.
//
// A letter of the case that changes is found by two signed compares (units from 128 up are
// negative bytes, or wide units that end the run anyway) and its case bit is flipped.
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include <ic/platform/internal/ascii_case.h>

namespace ic::platform::internal {

size_t MapAsciiCaseRunAvx2(char* p, size_t n, bool upper) noexcept {
  const __m256i before = _mm256_set1_epi8(static_cast<char>(upper ? 'a' - 1 : 'A' - 1));
  const __m256i after = _mm256_set1_epi8(static_cast<char>(upper ? 'z' + 1 : 'Z' + 1));
  const __m256i caseBit = _mm256_set1_epi8(0x20);
  const __m256i zero = _mm256_setzero_si256();
  size_t i = 0;
  for (; i + 32 <= n; i += 32) {
    auto* at = reinterpret_cast<__m256i*>(p + i);
    const __m256i v = _mm256_loadu_si256(at);
    // Bytes from 128 up have the sign bit; zero bytes are found by the compare.
    if (_mm256_movemask_epi8(_mm256_or_si256(v, _mm256_cmpeq_epi8(v, zero))) != 0) break;
    const __m256i letters =
        _mm256_and_si256(_mm256_cmpgt_epi8(v, before), _mm256_cmpgt_epi8(after, v));
    _mm256_storeu_si256(at, _mm256_xor_si256(v, _mm256_and_si256(letters, caseBit)));
  }
  return i;
}

size_t MapAsciiCaseRunAvx2(char16_t* p, size_t n, bool upper) noexcept {
  const __m256i before = _mm256_set1_epi16(static_cast<short>(upper ? 'a' - 1 : 'A' - 1));
  const __m256i after = _mm256_set1_epi16(static_cast<short>(upper ? 'z' + 1 : 'Z' + 1));
  const __m256i caseBit = _mm256_set1_epi16(0x20);
  const __m256i highBits = _mm256_set1_epi16(static_cast<short>(0xFF80));
  const __m256i zero = _mm256_setzero_si256();
  size_t i = 0;
  for (; i + 16 <= n; i += 16) {
    auto* at = reinterpret_cast<__m256i*>(p + i);
    const __m256i v = _mm256_loadu_si256(at);
    const __m256i ends =
        _mm256_or_si256(_mm256_cmpeq_epi16(v, zero),
                        _mm256_xor_si256(_mm256_cmpeq_epi16(_mm256_and_si256(v, highBits), zero),
                                         _mm256_set1_epi16(-1)));
    if (!_mm256_testz_si256(ends, ends)) break;
    const __m256i letters =
        _mm256_and_si256(_mm256_cmpgt_epi16(v, before), _mm256_cmpgt_epi16(after, v));
    _mm256_storeu_si256(at, _mm256_xor_si256(v, _mm256_and_si256(letters, caseBit)));
  }
  return i;
}

}  // namespace ic::platform::internal
