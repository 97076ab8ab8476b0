// The AVX2 kernels of the unit-set scans. This file is compiled with -mavx2 and runs only on
// processors that have it; it includes nothing that defines shared inline code, so that no AVX2
// instruction can leak into a function that other files use.
//
// A window of 32 units becomes 32 bytes (wide units above 127 are clamped to 128 first, then
// packed), and each byte is classified by its two halves: the set's table, indexed by the low
// four bits, holds a bit for each value of the high three bits, and a second table turns the
// high bits into that bit; a byte is in the set when the two share a bit. Bytes from 128 up
// belong when the set's high block does.
#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <ic/platform/internal/unit_scan_kernels.h>

namespace ic::platform::internal {
namespace {

struct Classifier {
  __m256i lowTable;
  __m256i highTable;
  __m256i nibble;
  bool signTest;  // bytes from 128 up belong and the tables do not say so
};

Classifier MakeClassifier(const UnitStopSet& set) noexcept {
  // When every entry of the set's table has a bit (each low four bits start some member below
  // 128), entries 8 to 15 of the high table can hold every bit, and the tables alone put the
  // bytes from 128 up in the set; otherwise a signed compare picks them out.
  bool everyEntry = true;
  for (const uint8_t entry : set.low)
    everyEntry = everyEntry && entry != 0;
  const bool fold = set.high && everyEntry;
  const char top = fold ? static_cast<char>(-1) : 0;
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(set.low));
  const __m128i high =
      _mm_setr_epi8(1, 2, 4, 8, 16, 32, 64, -128, top, top, top, top, top, top, top, top);
  return {_mm256_broadcastsi128_si256(low), _mm256_broadcastsi128_si256(high),
          _mm256_set1_epi8(0x0F), set.high && !fold};
}

// Nonzero in the bytes of `bytes` that belong to the set, zero elsewhere.
template <bool kSignTest>
inline __m256i MemberBytes(const Classifier& c, __m256i bytes) noexcept {
  const __m256i lowBits = _mm256_shuffle_epi8(c.lowTable, _mm256_and_si256(bytes, c.nibble));
  const __m256i highBits =
      _mm256_shuffle_epi8(c.highTable, _mm256_and_si256(_mm256_srli_epi16(bytes, 4), c.nibble));
  const __m256i members = _mm256_and_si256(lowBits, highBits);
  if constexpr (kSignTest)
    return _mm256_or_si256(members, _mm256_cmpgt_epi8(_mm256_setzero_si256(), bytes));
  else
    return members;
}

// Bit k set when byte k of `bytes` belongs to the set.
template <bool kSignTest>
inline uint32_t Members(const Classifier& c, __m256i bytes) noexcept {
  const __m256i none = _mm256_cmpeq_epi8(MemberBytes<kSignTest>(c, bytes), _mm256_setzero_si256());
  return ~static_cast<uint32_t>(_mm256_movemask_epi8(none));
}

inline __m256i Window(const char* p) noexcept {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}

inline __m256i Window(const char16_t* p) noexcept {
  const __m256i limit = _mm256_set1_epi16(0x80);
  const __m256i a =
      _mm256_min_epu16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)), limit);
  const __m256i b =
      _mm256_min_epu16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 16)), limit);
  // The pack interleaves the 128-bit lanes of a and b; the permutation restores unit order.
  return _mm256_permute4x64_epi64(_mm256_packus_epi16(a, b), 0xD8);
}

template <bool kSignTest, class Unit>
size_t FindFirstWindows(const Unit* p, size_t n, const Classifier& c) noexcept {
  size_t i = 0;
  // Two windows at a time, tested together; the window that holds a member is then looked at
  // one by one.
  for (; i + 64 <= n; i += 64) {
    const __m256i any = _mm256_or_si256(MemberBytes<kSignTest>(c, Window(p + i)),
                                        MemberBytes<kSignTest>(c, Window(p + i + 32)));
    if (!_mm256_testz_si256(any, any)) break;
  }
  for (; i + 32 <= n; i += 32) {
    const uint32_t m = Members<kSignTest>(c, Window(p + i));
    if (m != 0) return i + static_cast<size_t>(__builtin_ctz(m));
  }
  return i;
}

template <bool kSignTest, class Unit>
size_t FillMaskWindows(const Unit* p, size_t n, const Classifier& c, uint64_t* masks) noexcept {
  size_t i = 0;
  for (; i + 64 <= n; i += 64)
    masks[i / 64] = Members<kSignTest>(c, Window(p + i)) |
                    uint64_t{Members<kSignTest>(c, Window(p + i + 32))} << 32;
  return i;
}

// Each window of 32 units is classified together with the window one unit further on, so that
// whether the unit behind each one belongs is known without leaving the vector registers; two
// windows are tested at a time, and the exact place is worked out only in a window that has a
// stop.
template <bool kSignTest, class Unit>
size_t FindFirstRunWindows(const Unit* p, size_t n, const Classifier& c, uint32_t single) noexcept {
  const bool passSingle = single < 128;
  const __m256i singles = _mm256_set1_epi8(static_cast<char>(passSingle ? single : 0));
  const __m256i zero = _mm256_setzero_si256();
  // Nonzero in the bytes of the window at `at` that stop the scan.
  const auto stops = [&](size_t at) {
    const __m256i here = Window(p + at);
    const __m256i members = MemberBytes<kSignTest>(c, here);
    if (!passSingle) return members;
    const __m256i nextOut = _mm256_cmpeq_epi8(MemberBytes<kSignTest>(c, Window(p + at + 1)), zero);
    const __m256i lone = _mm256_and_si256(_mm256_cmpeq_epi8(here, singles), nextOut);
    return _mm256_andnot_si256(lone, members);
  };
  size_t i = 0;
  for (; i + 65 <= n; i += 64) {
    const __m256i any = _mm256_or_si256(stops(i), stops(i + 32));
    if (!_mm256_testz_si256(any, any)) break;
  }
  for (; i + 33 <= n; i += 32) {
    const auto m = ~static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(stops(i), zero)));
    if (m != 0) return i + static_cast<size_t>(__builtin_ctz(m));
  }
  return i;
}

// The bytes of `bytes` with a-z made A-Z.
inline __m256i FoldAscii(__m256i bytes) noexcept {
  const __m256i lower = _mm256_and_si256(_mm256_cmpgt_epi8(bytes, _mm256_set1_epi8('a' - 1)),
                                         _mm256_cmpgt_epi8(_mm256_set1_epi8('z' + 1), bytes));
  return _mm256_sub_epi8(bytes, _mm256_and_si256(lower, _mm256_set1_epi8(0x20)));
}

// Windows of 32 starts, each with the window one unit further on for the units behind them.
// Units from 128 up are bytes with the sign bit set (wide ones clamped by Window).
template <class Unit>
size_t FindFoldedPairWindows(const Unit* p, size_t n, uint32_t first, uint32_t second) noexcept {
  const __m256i firsts = _mm256_set1_epi8(static_cast<char>(first));
  // A second code from 128 up is matched by the sign test alone.
  const __m256i seconds = _mm256_set1_epi8(static_cast<char>(second < 128 ? second : 0x80));
  const __m256i zero = _mm256_setzero_si256();
  size_t i = 0;
  for (; i + 33 <= n; i += 32) {
    const __m256i here = Window(p + i);
    const __m256i next = Window(p + i + 1);
    const __m256i nextFits =
        _mm256_or_si256(_mm256_cmpeq_epi8(FoldAscii(next), seconds), _mm256_cmpgt_epi8(zero, next));
    const __m256i pairs = _mm256_and_si256(_mm256_cmpeq_epi8(FoldAscii(here), firsts), nextFits);
    const auto stops = static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_or_si256(pairs, here)));
    if (stops != 0) return i + static_cast<size_t>(__builtin_ctz(stops));
  }
  return i;
}

template <class Unit>
size_t FindFirst(const Unit* p, size_t n, const UnitStopSet& set) noexcept {
  const Classifier c = MakeClassifier(set);
  return c.signTest ? FindFirstWindows<true>(p, n, c) : FindFirstWindows<false>(p, n, c);
}

template <class Unit>
size_t FillMasks(const Unit* p, size_t n, const UnitStopSet& set, uint64_t* masks) noexcept {
  const Classifier c = MakeClassifier(set);
  return c.signTest ? FillMaskWindows<true>(p, n, c, masks)
                    : FillMaskWindows<false>(p, n, c, masks);
}

template <class Unit>
size_t FindFirstRun(const Unit* p, size_t n, const UnitStopSet& set, uint32_t single) noexcept {
  const Classifier c = MakeClassifier(set);
  return c.signTest ? FindFirstRunWindows<true>(p, n, c, single)
                    : FindFirstRunWindows<false>(p, n, c, single);
}

}  // namespace

size_t FindFoldedPairAvx2(const char* p, size_t n, uint32_t first, uint32_t second) noexcept {
  return FindFoldedPairWindows(p, n, first, second);
}
size_t FindFoldedPairAvx2(const char16_t* p, size_t n, uint32_t first, uint32_t second) noexcept {
  return FindFoldedPairWindows(p, n, first, second);
}

size_t FindFirstInSetAvx2(const char* p, size_t n, const UnitStopSet& set) noexcept {
  return FindFirst(p, n, set);
}
size_t FindFirstInSetAvx2(const char16_t* p, size_t n, const UnitStopSet& set) noexcept {
  return FindFirst(p, n, set);
}
size_t FillStopMasksAvx2(const char* p, size_t n, const UnitStopSet& set,
                         uint64_t* masks) noexcept {
  return FillMasks(p, n, set, masks);
}
size_t FillStopMasksAvx2(const char16_t* p, size_t n, const UnitStopSet& set,
                         uint64_t* masks) noexcept {
  return FillMasks(p, n, set, masks);
}
size_t FindFirstRunInSetAvx2(const char* p, size_t n, const UnitStopSet& set,
                             uint32_t single) noexcept {
  return FindFirstRun(p, n, set, single);
}
size_t FindFirstRunInSetAvx2(const char16_t* p, size_t n, const UnitStopSet& set,
                             uint32_t single) noexcept {
  return FindFirstRun(p, n, set, single);
}

}  // namespace ic::platform::internal
