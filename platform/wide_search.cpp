#include <ic/platform/wide_search.h>

#include <cstdint>
#include <memory>

#include <ic/platform/internal/vector_kernels.h>
#include <ic/platform/internal/wide_search_kernels.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ic::platform {
namespace {

constexpr size_t NotFound = static_cast<size_t>(-1);

// The first start i in [from, to) where the needle's first unit is, and its last unit
// `lastOffset` units further on, or `to`. Reads text[from .. to - 1 + lastOffset] only. With AVX2
// (see vector_kernels.h) 16 starts are tested at a time; SSE2 tests 8 and is the baseline on
// x86-64; elsewhere the loop goes unit by unit. All give the same answer.
size_t ScanForPair(const char16_t* text, size_t from, size_t to, char16_t first, char16_t last,
                   size_t lastOffset) noexcept {
  size_t i = from;
#ifdef IC_HAVE_AVX2_KERNELS
  if (to - from >= 16 && internal::UseVectorKernels())
    i = internal::ScanForPairAvx2(text, i, to, first, last, lastOffset);
#endif
#if defined(__SSE2__)
  const __m128i firsts = _mm_set1_epi16(static_cast<short>(first));
  const __m128i lasts = _mm_set1_epi16(static_cast<short>(last));
  for (; i + 8 <= to; i += 8) {
    const __m128i here = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    const __m128i there = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i + lastOffset));
    const int mask = _mm_movemask_epi8(
        _mm_and_si128(_mm_cmpeq_epi16(here, firsts), _mm_cmpeq_epi16(there, lasts)));
    if (mask != 0) return i + static_cast<size_t>(__builtin_ctz(static_cast<unsigned>(mask))) / 2;
  }
#endif
  for (; i < to; ++i)
    if (text[i] == first && text[i + lastOffset] == last) return i;
  return to;
}

// Knuth-Morris-Pratt over [from, length): O(length - from + needleLength).
size_t FindKmp(const char16_t* text, size_t from, size_t length, const char16_t* needle,
               size_t needleLength) noexcept {
  constexpr size_t InlineSize = 256;
  size_t inlineBorders[InlineSize];
  std::unique_ptr<size_t[]> heapBorders;
  size_t* border = inlineBorders;
  if (needleLength > InlineSize) {
    heapBorders.reset(new (std::nothrow) size_t[needleLength]);
    if (!heapBorders) {
      // Without memory for the table, fall back on the quadratic comparison.
      for (size_t i = from; i + needleLength <= length; ++i) {
        size_t j = 0;
        while (j < needleLength && text[i + j] == needle[j])
          ++j;
        if (j == needleLength) return i;
      }
      return NotFound;
    }
    border = heapBorders.get();
  }
  // border[j]: length of the longest proper border of needle[0..j].
  border[0] = 0;
  for (size_t j = 1, k = 0; j < needleLength; ++j) {
    while (k > 0 && needle[j] != needle[k])
      k = border[k - 1];
    if (needle[j] == needle[k]) ++k;
    border[j] = k;
  }
  for (size_t i = from, matched = 0; i < length; ++i) {
    while (matched > 0 && text[i] != needle[matched])
      matched = border[matched - 1];
    if (text[i] == needle[matched] && ++matched == needleLength) return i + 1 - needleLength;
  }
  return NotFound;
}

}  // namespace

size_t FindUnits(const char16_t* text, size_t length, const char16_t* needle,
                 size_t needleLength) noexcept {
  if (needleLength == 0 || needleLength > length) return needleLength == 0 ? 0 : NotFound;
  const size_t lastStart = length - needleLength;
  const char16_t first = needle[0];
  const char16_t last = needle[needleLength - 1];
  // Candidates are found by scanning for the first and the last unit together; their
  // verification is paid from a budget that grows with the text passed, and when it runs out the
  // search goes on with KMP.
  size_t work = 0;
  for (size_t i = 0; i <= lastStart; ++i) {
    i = ScanForPair(text, i, lastStart + 1, first, last, needleLength - 1);
    if (i > lastStart) return NotFound;
    size_t j = 1;
    while (j < needleLength && text[i + j] == needle[j])
      ++j;
    if (j >= needleLength) return i;
    work += j;
    if (work > 2 * i + 256) return FindKmp(text, i + 1, length, needle, needleLength);
  }
  return NotFound;
}

size_t wcslen(const char16_t* text) noexcept {
  const char16_t* p = text;
  while (*p != 0)
    ++p;
  return static_cast<size_t>(p - text);
}

const char16_t* wcsstr(const char16_t* text, const char16_t* needle) noexcept {
  const size_t needleLength = wcslen(needle);
  if (needleLength == 0) return text;
  const size_t found = FindUnits(text, wcslen(text), needle, needleLength);
  return found == NotFound ? nullptr : text + found;
}

const char16_t* wcschr(const char16_t* text, char16_t unit) noexcept {
  for (;; ++text) {
    if (*text == unit) return text;
    if (*text == 0) return nullptr;
  }
}

const char16_t* wcsrchr(const char16_t* text, char16_t unit) noexcept {
  const char16_t* found = nullptr;
  for (;; ++text) {
    if (*text == unit) found = text;
    if (*text == 0) return found;
  }
}

int wcsncmp(const char16_t* a, const char16_t* b, size_t count) noexcept {
  for (size_t i = 0; i < count; ++i) {
    if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
    if (a[i] == 0) return 0;
  }
  return 0;
}

size_t wcscspn(const char16_t* text, const char16_t* set) noexcept {
  size_t i = 0;
  for (; text[i] != 0; ++i)
    for (const char16_t* s = set; *s != 0; ++s)
      if (*s == text[i]) return i;
  return i;
}

size_t wcsspn(const char16_t* text, const char16_t* set) noexcept {
  size_t i = 0;
  for (; text[i] != 0; ++i) {
    const char16_t* s = set;
    while (*s != 0 && *s != text[i])
      ++s;
    if (*s == 0) return i;
  }
  return i;
}

}  // namespace ic::platform
