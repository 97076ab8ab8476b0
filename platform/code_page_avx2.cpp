// The AVX2 kernels of the UTF-8 to UTF-16 converter. This file is compiled with -mavx2 and runs
// only on processors that have it; it includes nothing that defines shared inline code, so that no
// AVX2 instruction can leak into a function that other files use.
//
// The kernel walks the input in fixed windows of 32 bytes. A window is taken when every sequence
// that starts in it is complete and valid; such a sequence may end in the next window, whose first
// one to three bytes are then expected to be its continuation bytes (the carry). All 32 positions
// are decoded at once: a character of one to three bytes gives its unit at its lead byte, and one
// of four bytes gives the high surrogate at its lead byte and the low surrogate at the byte after
// it (which, with the two behind it, holds the bits of the low half). The positions that give a
// unit are then packed together by a shuffle. At the first window that does not pass, the kernel
// stops at the first character boundary in it and leaves the rest to the exact code.
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include <ic/platform/internal/code_page_kernels.h>

namespace ic::platform::internal {
namespace {

// Shuffles that move the chosen 16-bit lanes of eight to the front, by the mask of lanes to keep.
struct CompressTable {
  alignas(16) uint8_t shuffle[256][16];
  uint8_t count[256];
};

constexpr CompressTable MakeCompressTable() {
  CompressTable table{};
  for (int mask = 0; mask < 256; ++mask) {
    int taken = 0;
    for (int lane = 0; lane < 8; ++lane) {
      if ((mask >> lane) & 1) {
        table.shuffle[mask][2 * taken] = static_cast<uint8_t>(2 * lane);
        table.shuffle[mask][2 * taken + 1] = static_cast<uint8_t>(2 * lane + 1);
        ++taken;
      }
    }
    for (int i = 2 * taken; i < 16; ++i)
      table.shuffle[mask][i] = 0x80;
    table.count[mask] = static_cast<uint8_t>(taken);
  }
  return table;
}

constexpr CompressTable kCompress = MakeCompressTable();

inline __m256i Bytes(int8_t value) {
  return _mm256_set1_epi8(static_cast<char>(value));
}

inline unsigned Mask(__m256i v) {
  return static_cast<unsigned>(_mm256_movemask_epi8(v));
}

// Decodes 16 positions and writes the units of the chosen ones at dst; returns their number.
// `lead4` marks the leads of four-byte sequences, `second4` the bytes right behind them.
template <bool kFourByte, bool kTwoByte = true>
inline size_t DecodeSixteen(__m128i b0, __m128i b1, __m128i b2, __m128i lead2, __m128i lead3,
                            __m128i lead4, __m128i second4, unsigned keep, char16_t* dst) noexcept {
  const __m256i w0 = _mm256_cvtepu8_epi16(b0);
  const __m256i raw1 = _mm256_cvtepu8_epi16(b1);
  const __m256i raw2 = _mm256_cvtepu8_epi16(b2);
  const __m256i low6 = _mm256_set1_epi16(0x3f);
  const __m256i w1 = _mm256_and_si256(raw1, low6);
  const __m256i w2 = _mm256_and_si256(raw2, low6);
  const __m256i three =
      _mm256_or_si256(_mm256_or_si256(_mm256_slli_epi16(w0, 12), _mm256_slli_epi16(w1, 6)), w2);
  __m256i units = w0;
  if constexpr (kTwoByte) {
    const __m256i two =
        _mm256_or_si256(_mm256_slli_epi16(_mm256_and_si256(w0, _mm256_set1_epi16(0x1f)), 6), w1);
    units = _mm256_blendv_epi8(units, two, _mm256_cvtepi8_epi16(lead2));
  }
  units = _mm256_blendv_epi8(units, three, _mm256_cvtepi8_epi16(lead3));
  if (kFourByte && (!_mm_testz_si128(lead4, lead4) || !_mm_testz_si128(second4, second4))) {
    // High half: 0xd800 + (code point - 0x10000) >> 10; low half: 0xdc00 + the low 10 bits.
    const __m256i high = _mm256_add_epi16(
        _mm256_set1_epi16(static_cast<short>(0xd7c0)),
        _mm256_or_si256(
            _mm256_or_si256(_mm256_slli_epi16(_mm256_and_si256(w0, _mm256_set1_epi16(7)), 8),
                            _mm256_slli_epi16(w1, 2)),
            _mm256_and_si256(_mm256_srli_epi16(w2, 4), _mm256_set1_epi16(3))));
    const __m256i low = _mm256_or_si256(
        _mm256_set1_epi16(static_cast<short>(0xdc00)),
        _mm256_or_si256(_mm256_slli_epi16(_mm256_and_si256(raw1, _mm256_set1_epi16(0xf)), 6), w2));
    units = _mm256_blendv_epi8(units, high, _mm256_cvtepi8_epi16(lead4));
    units = _mm256_blendv_epi8(units, low, _mm256_cvtepi8_epi16(second4));
  }
  const unsigned keepLow = keep & 0xff, keepHigh = (keep >> 8) & 0xff;
  const __m256i shuffle = _mm256_inserti128_si256(
      _mm256_castsi128_si256(
          _mm_load_si128(reinterpret_cast<const __m128i*>(kCompress.shuffle[keepLow]))),
      _mm_load_si128(reinterpret_cast<const __m128i*>(kCompress.shuffle[keepHigh])), 1);
  const __m256i packed = _mm256_shuffle_epi8(units, shuffle);
  const size_t countLow = kCompress.count[keepLow];
  _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), _mm256_castsi256_si128(packed));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + countLow), _mm256_extracti128_si256(packed, 1));
  return countLow + kCompress.count[keepHigh];
}

template <bool kWrite>
size_t Convert(const unsigned char*& sRef, const unsigned char* end, char16_t* dst,
               size_t room) noexcept {
  const unsigned char* s = sRef;
  size_t n = 0;
  unsigned carry = 0;   // bits 0 to 2: bytes 0 to 2 continue a sequence of the last window
  unsigned carry4 = 0;  // 1: byte 0 is the second byte of a four-byte sequence
  // Input for a window and the three bytes behind it; room for all 32 units it can give and for
  // the low half of a four-byte sequence that it may leave to be finished.
  while (end - s >= 35 && (!kWrite || room - n >= 33)) {
    const __m256i b0 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s));
    const unsigned high = Mask(b0);
    if (high == 0) {  // ASCII (never after a spill, whose continuation bytes were checked)
      if constexpr (kWrite) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + n),
                            _mm256_cvtepu8_epi16(_mm256_castsi256_si128(b0)));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + n + 16),
                            _mm256_cvtepu8_epi16(_mm256_extracti128_si256(b0, 1)));
      }
      s += 32;
      n += 32;
      continue;
    }
    const __m256i b1 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 1));
    const __m256i b2 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 2));
    const unsigned mc = Mask(_mm256_cmpgt_epi8(Bytes(-64), b0));  // 80-BF
    const __m256i lead2 =
        _mm256_and_si256(_mm256_cmpgt_epi8(b0, Bytes(-63)), _mm256_cmpgt_epi8(Bytes(-32), b0));
    const __m256i lead3 =
        _mm256_and_si256(_mm256_cmpgt_epi8(b0, Bytes(-33)), _mm256_cmpgt_epi8(Bytes(-16), b0));
    const unsigned m2 = Mask(lead2), m3 = Mask(lead3);
    if ((high & ~(mc | m2 | m3)) == 0 && (carry & 4) == 0 && carry4 == 0) {
      // Sequences of one to three bytes only, the common case: the same checks without those of
      // the four-byte leads.
      const __m256i flawed = _mm256_or_si256(
          _mm256_and_si256(_mm256_cmpeq_epi8(b0, Bytes(-32)), _mm256_cmpgt_epi8(Bytes(-96), b1)),
          _mm256_and_si256(_mm256_cmpeq_epi8(b0, Bytes(-19)), _mm256_cmpgt_epi8(b1, Bytes(-97))));
      const uint64_t expected = carry | (uint64_t{m2 | m3} << 1) | (uint64_t{m3} << 2);
      const unsigned spill = static_cast<unsigned>(expected >> 32);
      const unsigned behind = (Mask(_mm256_cmpgt_epi8(Bytes(-64), b1)) >> 31) |
                              ((Mask(_mm256_cmpgt_epi8(Bytes(-64), b2)) >> 31) << 1);
      if ((Mask(flawed) | (static_cast<unsigned>(expected) ^ mc) | (spill & ~behind)) != 0) break;
      const unsigned keep = ~mc;
      if constexpr (kWrite) {
        const __m128i none = _mm_setzero_si128();
        if (m2 == 0) {  // ASCII and three-byte sequences only (CJK and the like)
          n += DecodeSixteen<false, false>(
              _mm256_castsi256_si128(b0), _mm256_castsi256_si128(b1), _mm256_castsi256_si128(b2),
              none, _mm256_castsi256_si128(lead3), none, none, keep & 0xffff, dst + n);
          n += DecodeSixteen<false, false>(
              _mm256_extracti128_si256(b0, 1), _mm256_extracti128_si256(b1, 1),
              _mm256_extracti128_si256(b2, 1), none, _mm256_extracti128_si256(lead3, 1), none, none,
              keep >> 16, dst + n);
          carry = spill;
          s += 32;
          continue;
        }
        n +=
            DecodeSixteen<false>(_mm256_castsi256_si128(b0), _mm256_castsi256_si128(b1),
                                 _mm256_castsi256_si128(b2), _mm256_castsi256_si128(lead2),
                                 _mm256_castsi256_si128(lead3), none, none, keep & 0xffff, dst + n);
        n += DecodeSixteen<false>(
            _mm256_extracti128_si256(b0, 1), _mm256_extracti128_si256(b1, 1),
            _mm256_extracti128_si256(b2, 1), _mm256_extracti128_si256(lead2, 1),
            _mm256_extracti128_si256(lead3, 1), none, none, keep >> 16, dst + n);
      } else {
        n += static_cast<size_t>(_mm_popcnt_u32(keep));
      }
      carry = spill;
      s += 32;
      continue;
    }
    const __m256i b3 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 3));
    const __m256i lead4 =
        _mm256_and_si256(_mm256_cmpgt_epi8(b0, Bytes(-17)), _mm256_cmpgt_epi8(Bytes(-11), b0));
    const unsigned m4 = Mask(lead4);
    // By the byte behind the lead: E0 with 80-9F and F0 with 80-8F (overlong), ED with A0-BF
    // (surrogates), F4 with 90-BF (beyond U+10FFFF).
    const __m256i flawed = _mm256_or_si256(
        _mm256_or_si256(
            _mm256_and_si256(_mm256_cmpeq_epi8(b0, Bytes(-32)), _mm256_cmpgt_epi8(Bytes(-96), b1)),
            _mm256_and_si256(_mm256_cmpeq_epi8(b0, Bytes(-19)), _mm256_cmpgt_epi8(b1, Bytes(-97)))),
        _mm256_or_si256(
            _mm256_and_si256(_mm256_cmpeq_epi8(b0, Bytes(-16)), _mm256_cmpgt_epi8(Bytes(-112), b1)),
            _mm256_and_si256(_mm256_cmpeq_epi8(b0, Bytes(-12)),
                             _mm256_cmpgt_epi8(b1, Bytes(-113)))));
    // The continuation bytes that the leads (and the last window) call for, three beyond.
    const uint64_t expected =
        carry | (uint64_t{m2 | m3 | m4} << 1) | (uint64_t{m3 | m4} << 2) | (uint64_t{m4} << 3);
    const unsigned spill = static_cast<unsigned>(expected >> 32);
    const unsigned behind = (Mask(_mm256_cmpgt_epi8(Bytes(-64), b1)) >> 31) |
                            ((Mask(_mm256_cmpgt_epi8(Bytes(-64), b2)) >> 31) << 1) |
                            ((Mask(_mm256_cmpgt_epi8(Bytes(-64), b3)) >> 31) << 2);
    const unsigned other = high & ~(mc | m2 | m3 | m4);  // C0, C1, F5-FF
    if ((other | Mask(flawed) | (static_cast<unsigned>(expected) ^ mc) | (spill & ~behind)) != 0)
      break;
    // A unit at every lead and at the byte behind a four-byte lead.
    const unsigned keep = ~mc | (m4 << 1) | carry4;
    if constexpr (kWrite) {
      // The bytes right behind four-byte leads: the leads moved on by one, with the carry.
      __m256i second4 =
          _mm256_alignr_epi8(lead4, _mm256_permute2x128_si256(lead4, lead4, 0x08), 15);
      second4 = _mm256_or_si256(second4, _mm256_setr_epi32(carry4 ? 0xff : 0, 0, 0, 0, 0, 0, 0, 0));
      n += DecodeSixteen<true>(_mm256_castsi256_si128(b0), _mm256_castsi256_si128(b1),
                               _mm256_castsi256_si128(b2), _mm256_castsi256_si128(lead2),
                               _mm256_castsi256_si128(lead3), _mm256_castsi256_si128(lead4),
                               _mm256_castsi256_si128(second4), keep & 0xffff, dst + n);
      n += DecodeSixteen<true>(_mm256_extracti128_si256(b0, 1), _mm256_extracti128_si256(b1, 1),
                               _mm256_extracti128_si256(b2, 1), _mm256_extracti128_si256(lead2, 1),
                               _mm256_extracti128_si256(lead3, 1),
                               _mm256_extracti128_si256(lead4, 1),
                               _mm256_extracti128_si256(second4, 1), keep >> 16, dst + n);
    } else {
      n += static_cast<size_t>(_mm_popcnt_u32(keep));
    }
    carry = spill;
    carry4 = m4 >> 31;
    s += 32;
  }
  if (carry4 != 0) {
    // The last window ended on a four-byte lead whose high half was written: its low half, from
    // the three bytes behind (checked above), and then past the sequence.
    if constexpr (kWrite)
      dst[n] = static_cast<char16_t>(0xdc00 | ((s[1] & 0xf) << 6) | (s[2] & 0x3f));
    ++n;
    sRef = s + 3;
    return n;
  }
  // Stop at the first character boundary: behind the bytes that finish the last sequence taken.
  sRef = s + ((carry & 4) != 0 ? 3 : (carry & 2) != 0 ? 2 : carry);
  return n;
}

}  // namespace

size_t Utf8ToUtf16Avx2(const unsigned char*& s, const unsigned char* end, char16_t* dst,
                       size_t room) noexcept {
  return Convert<true>(s, end, dst, room);
}

size_t CountUtf16Avx2(const unsigned char*& s, const unsigned char* end) noexcept {
  return Convert<false>(s, end, nullptr, 0);
}

}  // namespace ic::platform::internal
