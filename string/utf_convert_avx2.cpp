// The AVX2 kernels of ConvertToUTF8. This file is compiled with -mavx2 and runs only on processors
// that have it; it includes nothing that defines shared inline code, so that no AVX2 instruction
// can leak into a function that other files use.
//
// Every unit of a block gives one to three bytes: below 0x80 one, below 0x800 two, other units
// outside the surrogate range three, and each half of a surrogate pair two (the high half the
// first two bytes of the pair's four, the low half the last two). So the bytes of a block follow
// from a few comparisons per unit, and the bytes of four units are laid out by shuffles from a
// table. A pair may straddle two blocks: the high half in the last unit of one is checked against
// the first unit of the next (the carry).
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include <ic/string/internal/utf_convert_kernels.h>

namespace ic::internal {
namespace {

// Shuffles that lay out four units (16-bit lanes 0 to 3 of a register) of 1 to 3 bytes each, by
// the key (m2 | m3 << 4): bit i of m2 says that unit i takes 2 bytes or more, bit i of m3 that it
// takes 3. The first two bytes of unit i are bytes 2i and 2i + 1 of one register, the third is
// byte 2i of another; `firstTwo` picks from the one and `third` from the other.
struct LayoutTable {
  alignas(16) uint8_t firstTwo[256][16];
  alignas(16) uint8_t third[256][16];
  uint8_t length[256];
};

constexpr LayoutTable MakeLayoutTable() {
  LayoutTable table{};
  for (int key = 0; key < 256; ++key) {
    for (int i = 0; i < 16; ++i)
      table.firstTwo[key][i] = table.third[key][i] = 0x80;
    int out = 0;
    for (int unit = 0; unit < 4; ++unit) {
      const int bytes = 1 + ((key >> unit) & 1) + ((key >> (unit + 4)) & 1);
      for (int b = 0; b < bytes; ++b, ++out) {
        if (b < 2)
          table.firstTwo[key][out] = static_cast<uint8_t>(2 * unit + b);
        else
          table.third[key][out] = static_cast<uint8_t>(2 * unit);
      }
    }
    table.length[key] = static_cast<uint8_t>(out);
  }
  return table;
}

constexpr LayoutTable kLayout = MakeLayoutTable();

// Shuffles that pack eight 16-bit lanes of 1 or 2 bytes each, by the mask of two-byte lanes.
struct PairTable {
  alignas(16) uint8_t shuffle[256][16];
  uint8_t length[256];
};

constexpr PairTable MakePairTable() {
  PairTable table{};
  for (int mask = 0; mask < 256; ++mask) {
    int out = 0;
    for (int lane = 0; lane < 8; ++lane) {
      table.shuffle[mask][out++] = static_cast<uint8_t>(2 * lane);
      if ((mask >> lane) & 1) table.shuffle[mask][out++] = static_cast<uint8_t>(2 * lane + 1);
    }
    for (int i = out; i < 16; ++i)
      table.shuffle[mask][i] = 0x80;
    table.length[mask] = static_cast<uint8_t>(out);
  }
  return table;
}

constexpr PairTable kPairs = MakePairTable();

// Eight three-byte units: the first two bytes of each come from one register of 16-bit lanes,
// the third from another; these shuffles lay them out as 24 bytes, 16 and then 8.
struct ThreeByteShuffles {
  alignas(16) uint8_t firstTwo[2][16];
  alignas(16) uint8_t third[2][16];
};

constexpr ThreeByteShuffles MakeThreeByteShuffles() {
  ThreeByteShuffles t{};
  for (int at = 0; at < 32; ++at) {
    const int unit = at / 3, k = at % 3;
    const bool inside = at < 24;
    t.firstTwo[at / 16][at % 16] = inside && k < 2 ? static_cast<uint8_t>(2 * unit + k) : 0x80;
    t.third[at / 16][at % 16] = inside && k == 2 ? static_cast<uint8_t>(2 * unit) : 0x80;
  }
  return t;
}

constexpr ThreeByteShuffles kThree = MakeThreeByteShuffles();

inline __m128i Load(const uint8_t* table) {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(table));
}

// Eight 16-bit lanes that hold one byte (where `ascii` is set) or two; returns the bytes.
inline size_t PackOneOrTwo(__m128i lanes, __m128i ascii, unsigned char* out) noexcept {
  const auto mask = static_cast<unsigned>(_mm_movemask_epi8(
      _mm_packs_epi16(_mm_xor_si128(ascii, _mm_set1_epi8(-1)), _mm_setzero_si128())));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out),
                   _mm_shuffle_epi8(lanes, Load(kPairs.shuffle[mask])));
  return kPairs.length[mask];
}

// Eight units of one or two bytes each (`ascii` marks the one-byte lanes); returns the bytes.
inline size_t WriteOneOrTwo(__m128i units, __m128i ascii, unsigned char* out) noexcept {
  const __m128i lead = _mm_or_si128(_mm_set1_epi16(0xc0), _mm_srli_epi16(units, 6));
  const __m128i tail =
      _mm_or_si128(_mm_set1_epi16(0x80), _mm_and_si128(units, _mm_set1_epi16(0x3f)));
  const __m128i lanes = _mm_blendv_epi8(_mm_or_si128(lead, _mm_slli_epi16(tail, 8)), units, ascii);
  return PackOneOrTwo(lanes, ascii, out);
}

// Eight units of three bytes each: 24 bytes.
inline void WriteThree(__m128i units, unsigned char* out) noexcept {
  const __m128i low6 = _mm_set1_epi16(0x3f), mark = _mm_set1_epi16(0x80);
  const __m128i first = _mm_or_si128(_mm_set1_epi16(0xe0), _mm_srli_epi16(units, 12));
  const __m128i second = _mm_or_si128(mark, _mm_and_si128(_mm_srli_epi16(units, 6), low6));
  const __m128i third = _mm_or_si128(mark, _mm_and_si128(units, low6));
  const __m128i firstTwo = _mm_or_si128(first, _mm_slli_epi16(second, 8));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out),
                   _mm_or_si128(_mm_shuffle_epi8(firstTwo, Load(kThree.firstTwo[0])),
                                _mm_shuffle_epi8(third, Load(kThree.third[0]))));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out + 16),
                   _mm_or_si128(_mm_shuffle_epi8(firstTwo, Load(kThree.firstTwo[1])),
                                _mm_shuffle_epi8(third, Load(kThree.third[1]))));
}

inline __m256i Units16(int value) {
  return _mm256_set1_epi16(static_cast<short>(value));
}
inline __m256i Lanes32(int value) {
  return _mm256_set1_epi32(value);
}

#if defined(__GNUC__) || defined(__clang__)
#define IC_NO_ADDRESS_CHECK __attribute__((no_sanitize_address))
#else
#define IC_NO_ADDRESS_CHECK
#endif

// The 32-byte aligned block at p. The block that holds the terminator of a zero-terminated text
// may reach behind it, but an aligned block never crosses into another page, so the read is safe;
// it is the one read that the address sanitizer must not check.
IC_NO_ADDRESS_CHECK inline __m256i LoadAlignedBlock(const char16_t* p) noexcept {
  return _mm256_load_si256(reinterpret_cast<const __m256i*>(p));
}

// Sums, lane by lane, how much less than three bytes each unit takes (a comparison gives -1 per
// lane); each block of 16 units takes 48 bytes less that sum.
struct ByteCounter {
  __m256i negated = _mm256_setzero_si256();
  size_t blocks = 0;
  size_t total = 0;

  void Add(__m256i less1, __m256i less2) noexcept {
    negated = _mm256_add_epi16(negated, _mm256_add_epi16(less1, less2));
    if (++blocks == 8192) Flush();  // each lane falls by 2 a block at most
  }
  void Flush() noexcept {
    const __m256i sums = _mm256_madd_epi16(negated, Units16(1));
    const __m128i half =
        _mm_add_epi32(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
    const __m128i pairs = _mm_add_epi32(half, _mm_shuffle_epi32(half, 0x4e));
    const __m128i all = _mm_add_epi32(pairs, _mm_shuffle_epi32(pairs, 0xb1));
    total += blocks * 48 - static_cast<size_t>(-_mm_cvtsi128_si32(all));
    negated = _mm256_setzero_si256();
    blocks = 0;
  }
};

template <bool kText>
size_t Measure(const char16_t*& pRef, const char16_t* end) noexcept {
  const char16_t* p = pRef;
  ByteCounter counter;
  unsigned carry = 0;  // 3: the last unit of the block before was a high surrogate
  for (;;) {
    __m256i units;
    if constexpr (kText) {
      units = LoadAlignedBlock(p);
      if (_mm256_movemask_epi8(_mm256_cmpeq_epi16(units, _mm256_setzero_si256())) != 0) break;
    } else {
      if (end - p < 16) break;
      units = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
    }
    if (carry == 0 && _mm256_testz_si256(units, Units16(0xff80))) {  // ASCII: a byte each
      counter.total += 16;
      p += 16;
      continue;
    }
    const __m256i top = _mm256_and_si256(units, Units16(0xf800));
    const __m256i surrogate = _mm256_cmpeq_epi16(top, Units16(0xd800));
    const auto mSurrogate = static_cast<unsigned>(_mm256_movemask_epi8(surrogate));
    if ((mSurrogate | carry) != 0) {
      const auto mHigh = static_cast<unsigned>(_mm256_movemask_epi8(
          _mm256_cmpeq_epi16(_mm256_and_si256(units, Units16(0xfc00)), Units16(0xd800))));
      // Every low half right behind a high half, and only there.
      if (((mHigh << 2) | carry) != (mSurrogate & ~mHigh)) break;
      carry = mHigh >> 30;
    }
    const __m256i less1 =
        _mm256_cmpeq_epi16(_mm256_and_si256(units, Units16(0xff80)), _mm256_setzero_si256());
    const __m256i less2 =
        _mm256_or_si256(_mm256_cmpeq_epi16(top, _mm256_setzero_si256()), surrogate);
    counter.Add(less1, less2);
    p += 16;
  }
  counter.Flush();
  size_t bytes = counter.total;
  if (carry != 0) {  // the low half of a pair that straddles the stop: whatever the unit is
    bytes += 2;
    p += 1;
  }
  pRef = p;
  return bytes;
}

// The last two bytes of the pair whose first unit is `high`, for any second unit.
inline void WriteSecondHalf(uint32_t high, uint32_t second, unsigned char* out) noexcept {
  const uint32_t hv = (high & 0x3ff) + 0x40;
  out[0] = static_cast<unsigned char>(0x80 | ((hv & 3) << 4) | ((second & 0x3ff) >> 6));
  out[1] = static_cast<unsigned char>(0x80 | (second & 0x3f));
}

}  // namespace

size_t MeasureUTF8TextAvx2(const char16_t*& p) noexcept {
  return Measure<true>(p, nullptr);
}

size_t MeasureUTF8RangeAvx2(const char16_t*& p, const char16_t* end) noexcept {
  return Measure<false>(p, end);
}

void WriteUTF8Avx2(const char16_t*& pRef, const char16_t* end, unsigned char*& outRef,
                   const unsigned char* outEnd) noexcept {
  const char16_t* p = pRef;
  unsigned char* out = outRef;
  unsigned carry = 0;  // 3: the last unit of the block before was a high surrogate
  __m256i before = _mm256_setzero_si256();
  // Sixteen units give 48 bytes at most, laid out four units at a time with 16-byte stores.
  while (end - p >= 16 && outEnd - out >= 64) {
    const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
    if (carry == 0 && _mm256_testz_si256(units, Units16(0xff80))) {  // ASCII
      const __m256i bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(units, units), 0x08);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(bytes));
      out += 16;
      p += 16;
      before = units;
      continue;
    }
    const __m256i ascii =
        _mm256_cmpeq_epi16(_mm256_and_si256(units, Units16(0xff80)), _mm256_setzero_si256());
    const __m256i top = _mm256_and_si256(units, Units16(0xf800));
    const __m256i surrogate = _mm256_cmpeq_epi16(top, Units16(0xd800));
    if (carry == 0 && _mm256_testz_si256(surrogate, surrogate)) {
      // The two common kinds of block without pairs get shorter ways.
      const int below800 = _mm256_movemask_epi8(_mm256_cmpeq_epi16(top, _mm256_setzero_si256()));
      if (below800 == -1) {  // one or two bytes each
        out += WriteOneOrTwo(_mm256_castsi256_si128(units), _mm256_castsi256_si128(ascii), out);
        out += WriteOneOrTwo(_mm256_extracti128_si256(units, 1), _mm256_extracti128_si256(ascii, 1),
                             out);
        p += 16;
        before = units;
        continue;
      }
      if (below800 == 0) {  // three bytes each
        WriteThree(_mm256_castsi256_si128(units), out);
        WriteThree(_mm256_extracti128_si256(units, 1), out + 24);
        out += 48;
        p += 16;
        before = units;
        continue;
      }
    }
    const __m256i high =
        _mm256_cmpeq_epi16(_mm256_and_si256(units, Units16(0xfc00)), Units16(0xd800));
    const __m256i low = _mm256_andnot_si256(high, surrogate);
    const auto mHigh = static_cast<unsigned>(_mm256_movemask_epi8(high));
    if (((mHigh << 2) | carry) != static_cast<unsigned>(_mm256_movemask_epi8(low))) break;
    const __m256i previous =
        _mm256_alignr_epi8(units, _mm256_permute2x128_si256(before, units, 0x21), 14);
    const __m256i otherBmp = _mm256_andnot_si256(_mm256_or_si256(ascii, surrogate), Units16(-1));
    if (_mm256_testz_si256(otherBmp, otherBmp)) {
      // ASCII and pairs only (emoji among plain text): one or two bytes each. The high half
      // gives 0xf0 | hv >> 8 and 0x80 | (hv >> 2) & 63 with hv = (unit + 0x40) & 0x7ff, the low
      // half 0x80 | (previous & 3) << 4 | (unit & 0x3ff) >> 6 and 0x80 | unit & 63.
      const __m256i hv = _mm256_and_si256(_mm256_add_epi16(units, Units16(0x40)), Units16(0x7ff));
      const __m256i highLanes = _mm256_or_si256(
          _mm256_or_si256(Units16(0x80f0), _mm256_srli_epi16(hv, 8)),
          _mm256_slli_epi16(_mm256_and_si256(_mm256_srli_epi16(hv, 2), Units16(0x3f)), 8));
      const __m256i lowLanes = _mm256_or_si256(
          _mm256_or_si256(Units16(0x8080),
                          _mm256_slli_epi16(_mm256_and_si256(previous, Units16(3)), 4)),
          _mm256_or_si256(_mm256_srli_epi16(_mm256_and_si256(units, Units16(0x3ff)), 6),
                          _mm256_slli_epi16(_mm256_and_si256(units, Units16(0x3f)), 8)));
      __m256i lanes = _mm256_blendv_epi8(lowLanes, highLanes, high);
      lanes = _mm256_blendv_epi8(lanes, units, ascii);
      out += PackOneOrTwo(_mm256_castsi256_si128(lanes), _mm256_castsi256_si128(ascii), out);
      out +=
          PackOneOrTwo(_mm256_extracti128_si256(lanes, 1), _mm256_extracti128_si256(ascii, 1), out);
      carry = mHigh >> 30;
      before = units;
      p += 16;
      continue;
    }

    // Two forms remain. The two-byte form (lead | v >> 6, 0x80 | v & 63) serves U+0080 to U+07FF
    // (lead 0xc0, v the unit) and the low half of a pair (lead 0x80, v the unit's 10 bits below
    // two bits of the high half). The three-byte form (lead | v >> 12, 0x80 | (v >> 6) & 63,
    // 0x80 | v & 63) serves U+0800 to U+FFFF (lead 0xe0) and the high half of a pair (lead 0xf0,
    // v = ((unit + 0x40) & 0x7ff) << 4, of which two bytes are taken).
    const __m256i threeForm = _mm256_andnot_si256(
        low, _mm256_xor_si256(_mm256_cmpeq_epi16(top, _mm256_setzero_si256()), Units16(-1)));
    const __m256i twoForm = _mm256_andnot_si256(_mm256_or_si256(ascii, threeForm), Units16(-1));
    const __m256i highValue = _mm256_slli_epi16(
        _mm256_and_si256(_mm256_add_epi16(units, Units16(0x40)), Units16(0x7ff)), 4);
    const __m256i lowValue =
        _mm256_or_si256(_mm256_slli_epi16(_mm256_and_si256(previous, Units16(3)), 10),
                        _mm256_and_si256(units, Units16(0x3ff)));
    __m256i v = _mm256_blendv_epi8(units, highValue, high);
    v = _mm256_blendv_epi8(v, lowValue, low);
    __m256i lead = _mm256_or_si256(_mm256_and_si256(twoForm, Units16(0xc0)),
                                   _mm256_and_si256(threeForm, Units16(0xe0)));
    lead = _mm256_xor_si256(lead, _mm256_and_si256(low, Units16(0x40)));  // 0xc0 -> 0x80
    lead = _mm256_or_si256(lead, _mm256_and_si256(high, Units16(0x10)));  // 0xe0 -> 0xf0
    const __m256i v6 = _mm256_srli_epi16(v, 6);
    __m256i shifted = _mm256_blendv_epi8(v, v6, twoForm);
    shifted = _mm256_blendv_epi8(shifted, _mm256_srli_epi16(v, 12), threeForm);
    const __m256i first = _mm256_or_si256(lead, shifted);
    const __m256i second = _mm256_or_si256(
        Units16(0x80), _mm256_and_si256(_mm256_blendv_epi8(v, v6, threeForm), Units16(0x3f)));
    const __m256i third = _mm256_or_si256(Units16(0x80), _mm256_and_si256(v, Units16(0x3f)));
    const __m256i firstTwo = _mm256_or_si256(first, _mm256_slli_epi16(second, 8));

    // One bit a unit: two bytes or more; three bytes (the high half of a pair takes two).
    const __m256i takesThree = _mm256_andnot_si256(high, threeForm);
    const auto bits = static_cast<unsigned>(
        _mm256_movemask_epi8(_mm256_packs_epi16(_mm256_xor_si256(ascii, Units16(-1)), takesThree)));
    const unsigned key0 = (bits & 15) | ((bits >> 8) & 15) << 4;
    const unsigned key1 = ((bits >> 4) & 15) | ((bits >> 12) & 15) << 4;
    const unsigned key2 = ((bits >> 16) & 15) | ((bits >> 24) & 15) << 4;
    const unsigned key3 = ((bits >> 20) & 15) | ((bits >> 28) & 15) << 4;
    auto pair = [](const uint8_t* lowLane, const uint8_t* highLane) {
      return _mm256_inserti128_si256(
          _mm256_castsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(lowLane))),
          _mm_load_si128(reinterpret_cast<const __m128i*>(highLane)), 1);
    };
    // Units 0-3 and 8-11 as they stand, units 4-7 and 12-15 moved down by four lanes.
    const __m256i even = _mm256_or_si256(
        _mm256_shuffle_epi8(firstTwo, pair(kLayout.firstTwo[key0], kLayout.firstTwo[key2])),
        _mm256_shuffle_epi8(third, pair(kLayout.third[key0], kLayout.third[key2])));
    const __m256i odd =
        _mm256_or_si256(_mm256_shuffle_epi8(_mm256_srli_si256(firstTwo, 8),
                                            pair(kLayout.firstTwo[key1], kLayout.firstTwo[key3])),
                        _mm256_shuffle_epi8(_mm256_srli_si256(third, 8),
                                            pair(kLayout.third[key1], kLayout.third[key3])));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(even));
    out += kLayout.length[key0];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(odd));
    out += kLayout.length[key1];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_extracti128_si256(even, 1));
    out += kLayout.length[key2];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_extracti128_si256(odd, 1));
    out += kLayout.length[key3];
    carry = mHigh >> 30;
    before = units;
    p += 16;
  }
  if (carry != 0) {  // finish the pair that straddles the stop, whatever its second unit is
    WriteSecondHalf(p[-1], p[0], out);
    out += 2;
    p += 1;
  }
  pRef = p;
  outRef = out;
}

}  // namespace ic::internal
