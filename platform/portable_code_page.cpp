// The library's own UTF-8 / UTF-16 converter: what MultiByteToWideChar and WideCharToMultiByte
// are off Windows. It is built on every platform, so that on Windows the tests can hold it
// against the system's converter.
#include <ic/platform/internal/portable_code_page.h>

#include <climits>
#include <cstddef>
#include <cstring>

#include <ic/platform/code_page.h>
#include <ic/platform/internal/vector_kernels.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#define IC_CODE_PAGE_SSE2 1
#endif

#if defined(IC_HAVE_AVX2_KERNELS)
#include <ic/platform/internal/code_page_kernels.h>
#endif

namespace ic::platform::internal {
namespace {

constexpr char32_t kReplacement = 0xfffd;

// Both converters run in two gears. The bulk gear works while enough input and output room
// remain for a whole step without any bounds check: ASCII 16 bytes (or 8 UTF-16 units) at a time,
// and complete, valid multi-byte sequences by one 32-bit read. Everything else, invalid input and
// the last few units included, goes through the exact gear, one sequence at a time, which is the
// definition of the conversion. The bulk gear only ever takes input on which both agree. Where
// the processor has AVX2, a kernel (code_page_avx2.cpp) goes first, 32 bytes at a time, and takes
// everything that is well-formed; the gears here go on where it stops.

// ---------------------------------------------------------------------------------------------
// UTF-8 to UTF-16

// Continuation bytes expected behind a lead byte, or -1 for a byte that cannot lead.
inline int ExpectedContinuations(unsigned lead) noexcept {
  if (lead >= 0xc2 && lead <= 0xdf) return 1;
  if (lead >= 0xe0 && lead <= 0xef) return 2;
  if (lead >= 0xf0 && lead <= 0xf4) return 3;
  return -1;
}

struct DecodedSequence {
  const unsigned char* next;  // first byte behind the consumed ones
  char32_t codePoint;         // the code point, or U+FFFD
};

// The exact gear: decodes the sequence that starts at the non-ASCII byte `s`.
inline DecodedSequence DecodeSequence(const unsigned char* s, const unsigned char* end) noexcept {
  const unsigned lead = *s;
  const int need = ExpectedContinuations(lead);
  if (need < 0) return {s + 1, kReplacement};
  // Too few bytes left: the lead and all that follows it are one replacement.
  if (end - (s + 1) < need) return {end, kReplacement};
  char32_t codePoint = lead & (0x7fu >> (need + 1));
  const unsigned char* p = s + 1;
  for (int k = 0; k < need; ++k, ++p) {
    const unsigned c = *p;
    // A byte that is no continuation ends the sequence; it is decoded afresh.
    if ((c & 0xc0) != 0x80) return {p, kReplacement};
    // Overlong forms, surrogates and values above U+10FFFF show in the first continuation byte;
    // it goes with the lead into one replacement.
    if (k == 0 && ((lead == 0xe0 && c < 0xa0) || (lead == 0xed && c > 0x9f) ||
                   (lead == 0xf0 && c < 0x90) || (lead == 0xf4 && c > 0x8f)))
      return {p + 1, kReplacement};
    codePoint = (codePoint << 6) | (c & 0x3f);
  }
  return {p, codePoint};
}

inline uint32_t Load32(const unsigned char* s) noexcept {
  return uint32_t{s[0]} | (uint32_t{s[1]} << 8) | (uint32_t{s[2]} << 16) | (uint32_t{s[3]} << 24);
}

// Converts [s, end). With kWrite the units go to dst, which holds `room` units, and the result
// is -1 if they do not fit; without, the units are only counted.
template <bool kWrite>
int64_t Utf8ToUtf16(const unsigned char* s, const unsigned char* const end, char16_t* dst,
                    size_t room) noexcept {
  size_t n = 0;
  auto put1 = [&](char32_t unit) {
    if constexpr (kWrite) dst[n] = static_cast<char16_t>(unit);
    ++n;
  };
  auto putCodePoint = [&](char32_t codePoint) {
    if (codePoint < 0x10000) {
      put1(codePoint);
    } else {
      codePoint -= 0x10000;
      put1(0xd800 | (codePoint >> 10));
      put1(0xdc00 | (codePoint & 0x3ff));
    }
  };

#if defined(IC_HAVE_AVX2_KERNELS)
  // The kernel may leave up to 8 units of scratch behind the count it returns (its packing
  // stores write whole halves). The input left behind it must then give at least that many
  // units, which overwrite them: every sequence of up to 3 bytes gives at least one unit, so 3 * 8
  // bytes beyond the kernel's window, and the 3 bytes of a sequence it started, are kept back.
  constexpr ptrdiff_t kKernelTail = 3 * 8 + 3;
  if (internal::UseVectorKernels() && end - s > kKernelTail) {
    for (;;) {
      if constexpr (kWrite)
        n += internal::Utf8ToUtf16Avx2(s, end - kKernelTail, dst + n, room - n);
      else
        n += internal::CountUtf16Avx2(s, end);
      if (end - s < 16 + kKernelTail || (kWrite && room - n < 32)) break;
      // The kernel stopped before something it does not take: the exact gear for the next 16
      // bytes (and the sequence that straddles their end), with room for all they can give.
      const unsigned char* const stop = s + 16;
      while (s < stop) {
        if (*s < 0x80) {
          put1(*s++);
        } else {
          const DecodedSequence decoded = DecodeSequence(s, end);
          putCodePoint(decoded.codePoint);
          s = decoded.next;
        }
      }
    }
  }
#endif

  // Bulk gear: 16 bytes of input and (when writing) room for 16 units.
  while (end - s >= 16 && (!kWrite || room - n >= 16)) {
    unsigned asciiPrefix;
#if defined(IC_CODE_PAGE_SSE2)
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
    const unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(bytes));
    asciiPrefix = mask == 0 ? 16u : static_cast<unsigned>(__builtin_ctz(mask));
    if constexpr (kWrite) {
      // Only the ASCII prefix is written: a unit behind it might not be overwritten before the
      // end, and nothing may be written past the count returned. Whole halves go at once.
      const __m128i zero = _mm_setzero_si128();
      unsigned done = 0;
      if (asciiPrefix >= 8) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + n), _mm_unpacklo_epi8(bytes, zero));
        done = 8;
      }
      if (asciiPrefix == 16) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + n + 8), _mm_unpackhi_epi8(bytes, zero));
        done = 16;
      }
      for (; done < asciiPrefix; ++done)
        dst[n + done] = s[done];
    }
#else
    asciiPrefix = 0;
    while (asciiPrefix < 16 && s[asciiPrefix] < 0x80) {
      if constexpr (kWrite) dst[n + asciiPrefix] = s[asciiPrefix];
      ++asciiPrefix;
    }
#endif
    s += asciiPrefix;
    n += asciiPrefix;
    if (asciiPrefix == 16) continue;

    // A run of multi-byte sequences, each read at once while 4 bytes and 2 units are at hand.
    while (end - s >= 4 && (!kWrite || room - n >= 2)) {
      const unsigned lead = *s;
      if (lead < 0x80) break;
      const uint32_t w = Load32(s);
      if ((w & 0xc0e0u) == 0x80c0u) {
        const char32_t cp = ((lead & 0x1fu) << 6) | ((w >> 8) & 0x3fu);
        if (cp >= 0x80) {  // C0 and C1 are overlong leads
          put1(cp);
          s += 2;
          continue;
        }
      } else if ((w & 0xc0c0f0u) == 0x8080e0u) {
        const char32_t cp =
            ((lead & 0x0fu) << 12) | (((w >> 8) & 0x3fu) << 6) | ((w >> 16) & 0x3fu);
        if (cp >= 0x800 && (cp & 0xf800u) != 0xd800u) {  // not overlong, not a surrogate
          put1(cp);
          s += 3;
          continue;
        }
      } else if ((w & 0xc0c0c0f8u) == 0x808080f0u) {
        const char32_t cp = ((lead & 0x07u) << 18) | (((w >> 8) & 0x3fu) << 12) |
                            (((w >> 16) & 0x3fu) << 6) | ((w >> 24) & 0x3fu);
        if (cp - 0x10000u < 0x100000u) {  // not overlong, not above U+10FFFF
          putCodePoint(cp);
          s += 4;
          continue;
        }
      }
      // Invalid or otherwise unusual: the exact gear decides (room for 2 units is at hand).
      const DecodedSequence decoded = DecodeSequence(s, end);
      putCodePoint(decoded.codePoint);
      s = decoded.next;
    }
  }

  // Exact gear for the rest.
  while (s < end) {
    const unsigned byte = *s;
    if (byte < 0x80) {
      if constexpr (kWrite)
        if (n == room) return -1;
      put1(byte);
      ++s;
      continue;
    }
    const DecodedSequence decoded = DecodeSequence(s, end);
    if constexpr (kWrite)
      if (room - n < (decoded.codePoint > 0xffff ? 2u : 1u)) return -1;
    putCodePoint(decoded.codePoint);
    s = decoded.next;
  }
  return static_cast<int64_t>(n);
}

// ---------------------------------------------------------------------------------------------
// UTF-16 to UTF-8

template <bool kWrite>
int64_t Utf16ToUtf8(const char16_t* s, const char16_t* const end, unsigned char* dst,
                    size_t room) noexcept {
  size_t n = 0;
  auto put = [&](uint32_t byte) {
    if constexpr (kWrite) dst[n] = static_cast<unsigned char>(byte);
    ++n;
  };
  // Encodes the unit (or pair) at s and returns the units consumed.
  auto encode = [&](const char16_t* p) -> int {
    const uint32_t u = *p;
    if (u < 0x80) {
      put(u);
      return 1;
    }
    if (u < 0x800) {
      put(0xc0 | (u >> 6));
      put(0x80 | (u & 0x3f));
      return 1;
    }
    if ((u & 0xf800) != 0xd800) {
      put(0xe0 | (u >> 12));
      put(0x80 | ((u >> 6) & 0x3f));
      put(0x80 | (u & 0x3f));
      return 1;
    }
    if (u <= 0xdbff && end - p >= 2 && (p[1] & 0xfc00) == 0xdc00) {
      const uint32_t cp = 0x10000 + (((u & 0x3ff) << 10) | (p[1] & 0x3ff));
      put(0xf0 | (cp >> 18));
      put(0x80 | ((cp >> 12) & 0x3f));
      put(0x80 | ((cp >> 6) & 0x3f));
      put(0x80 | (cp & 0x3f));
      return 2;
    }
    put(0xef);  // a lone surrogate: U+FFFD
    put(0xbf);
    put(0xbd);
    return 1;
  };
  auto bytesOf = [&](const char16_t* p) -> size_t {
    const uint32_t u = *p;
    if (u < 0x80) return 1;
    if (u < 0x800) return 2;
    if ((u & 0xf800) != 0xd800) return 3;
    if (u <= 0xdbff && end - p >= 2 && (p[1] & 0xfc00) == 0xdc00) return 4;
    return 3;
  };

  // Bulk gear: 8 units of input and (when writing) room for the most that 8 units can give,
  // a pair straddling the end of the eight included.
  while (end - s >= 8 && (!kWrite || room - n >= 32)) {
#if defined(IC_CODE_PAGE_SSE2)
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
    const __m128i high = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xff80)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) == 0xffff) {
      if constexpr (kWrite)
        _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + n), _mm_packus_epi16(units, units));
      s += 8;
      n += 8;
      continue;
    }
#endif
    const char16_t* const stop = s + 8;
    while (s < stop)
      s += encode(s);
  }

  // Exact gear.
  while (s < end) {
    if constexpr (kWrite)
      if (room - n < bytesOf(s)) return -1;
    s += encode(s);
  }
  return static_cast<int64_t>(n);
}

inline int ToResult(int64_t count) noexcept {
  return count < 0 || count > INT_MAX ? 0 : static_cast<int>(count);
}

}  // namespace

int PortableMultiByteToWideChar(uint32_t codePage, uint32_t flags, const char* src, int srcLength,
                                char16_t* dst, int dstSize) noexcept {
  if (codePage != CodePageUTF8 || flags != 0 || src == nullptr || srcLength == 0 ||
      srcLength < -1 || dstSize < 0 || (dst == nullptr && dstSize != 0))
    return 0;
  const size_t length = srcLength < 0 ? std::strlen(src) + 1 : static_cast<size_t>(srcLength);
  const auto* s = reinterpret_cast<const unsigned char*>(src);
  if (dstSize == 0) return ToResult(Utf8ToUtf16<false>(s, s + length, nullptr, 0));
  return ToResult(Utf8ToUtf16<true>(s, s + length, dst, static_cast<size_t>(dstSize)));
}

int PortableWideCharToMultiByte(uint32_t codePage, uint32_t flags, const char16_t* src,
                                int srcLength, char* dst, int dstSize, const char* defaultChar,
                                int* usedDefaultChar) noexcept {
  if (codePage != CodePageUTF8 || flags != 0 || src == nullptr || srcLength == 0 ||
      srcLength < -1 || dstSize < 0 || (dst == nullptr && dstSize != 0) || defaultChar != nullptr ||
      usedDefaultChar != nullptr)
    return 0;
  size_t length;
  if (srcLength < 0) {
    const char16_t* p = src;
    while (*p)
      ++p;
    length = static_cast<size_t>(p - src) + 1;
  } else {
    length = static_cast<size_t>(srcLength);
  }
  if (dstSize == 0) return ToResult(Utf16ToUtf8<false>(src, src + length, nullptr, 0));
  return ToResult(Utf16ToUtf8<true>(src, src + length, reinterpret_cast<unsigned char*>(dst),
                                    static_cast<size_t>(dstSize)));
}

}  // namespace ic::platform::internal
