#include <ic/string/utf_convert.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <ic/platform/code_page.h>
#include <ic/platform/internal/vector_kernels.h>
#include <ic/string/internal/string_access.h>

#if defined(IC_HAVE_AVX2_KERNELS)
#include <ic/string/internal/utf_convert_kernels.h>
#endif

#if defined(__SSE2__)
#include <emmintrin.h>
#define IC_UTF_CONVERT_SSE2 1
#endif

namespace ic {
namespace {

// Every walk steps the same way: a unit in the surrogate range starts a pair of two units (four
// bytes), any other unit stands alone (one to three bytes). The bulk gear looks at eight units at
// once and takes them whole when none is a surrogate; a block with a surrogate (or, in the
// zero-terminated walk, a zero) is walked unit by unit, and a pair may then end one unit behind
// the block. Where the processor has AVX2, its kernels (utf_convert_avx2.cpp) go first and take
// whole blocks of well-formed text; the walks here go on where they stop.

inline bool IsSurrogate(uint32_t unit) noexcept {
  return unit - 0xd800u < 0x800u;
}

inline size_t UnitBytes(uint32_t unit) noexcept {
  return unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
}

// One step of the zero-terminated walk; false at a zero code point.
inline bool StepText(const char16_t*& p, size_t& bytes) noexcept {
  const uint32_t unit = *p;
  if (IsSurrogate(unit)) {
    bytes += 4;
    p += 2;
    return true;
  }
  if (unit == 0) return false;
  bytes += UnitBytes(unit);
  ++p;
  return true;
}

// One step of the walk over a range, where a zero unit is a character like any other.
inline void StepRange(const char16_t*& p, size_t& bytes) noexcept {
  const uint32_t unit = *p;
  if (IsSurrogate(unit)) {
    bytes += 4;
    p += 2;
  } else {
    bytes += UnitBytes(unit);
    ++p;
  }
}

#if defined(IC_UTF_CONVERT_SSE2)

// Counts, lane by lane, what eight units without surrogates take beyond one byte each: one more
// from 0x80 and one more again from 0x800. The counts are held negated (a comparison gives -1 per
// lane), so that a block costs two comparisons and two additions.
struct ExtraBytes {
  __m128i negated = _mm_setzero_si128();
  size_t blocks = 0;  // blocks added since the last flush
  size_t total = 0;

  void Add(__m128i units) noexcept {
    const __m128i zero = _mm_setzero_si128();
    const __m128i below80 =
        _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xff80))), zero);
    const __m128i below800 =
        _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xf800))), zero);
    negated = _mm_add_epi16(negated, _mm_add_epi16(below80, below800));
    // Each lane goes down by at most 2 a block: flush long before 16 bits run out.
    if (++blocks == 8192) Flush();
  }
  // Bytes of all the blocks added: 3 per unit, less what the comparisons found smaller.
  void Flush() noexcept {
    const __m128i sums = _mm_madd_epi16(negated, _mm_set1_epi16(1));
    const __m128i pairs = _mm_add_epi32(sums, _mm_shuffle_epi32(sums, 0x4e));
    const __m128i all = _mm_add_epi32(pairs, _mm_shuffle_epi32(pairs, 0xb1));
    total += blocks * 24 - static_cast<size_t>(-_mm_cvtsi128_si32(all));
    negated = _mm_setzero_si128();
    blocks = 0;
  }
};

// Movemask of the lanes that hold a surrogate.
inline unsigned SurrogateLanes(__m128i units) noexcept {
  const __m128i top = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xf800)));
  return static_cast<unsigned>(
      _mm_movemask_epi8(_mm_cmpeq_epi16(top, _mm_set1_epi16(static_cast<short>(0xd800)))));
}

#if defined(__GNUC__) || defined(__clang__)
#define IC_NO_ADDRESS_CHECK __attribute__((no_sanitize_address))
#else
#define IC_NO_ADDRESS_CHECK
#endif

// The 16-byte aligned block at p. In a zero-terminated text of unknown length the block that
// holds the terminator may reach behind it, but an aligned block never crosses into another
// page, so the read is safe; it is the one read that the address sanitizer must not check.
IC_NO_ADDRESS_CHECK inline __m128i LoadAlignedBlock(const char16_t* p) noexcept {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(p));
}

#endif

// Writes the character that starts at p, if its bytes fit before outEnd, and steps over it.
inline void EncodeChecked(const char16_t*& p, unsigned char*& out, unsigned char* outEnd) noexcept {
  const uint32_t unit = *p;
  if (IsSurrogate(unit)) {
    const uint32_t cp = (((unit & 0x3ff) << 10) | (p[1] & 0x3ffu)) + 0x10000;
    p += 2;
    if (outEnd - out < 4) return;
    out[0] = static_cast<unsigned char>(0xf0 | (cp >> 18));
    out[1] = static_cast<unsigned char>(0x80 | ((cp >> 12) & 63));
    out[2] = static_cast<unsigned char>(0x80 | ((cp >> 6) & 63));
    out[3] = static_cast<unsigned char>(0x80 | (cp & 63));
    out += 4;
    return;
  }
  ++p;
  if (unit < 0x80) {
    if (outEnd - out < 1) return;
    *out++ = static_cast<unsigned char>(unit);
  } else if (unit < 0x800) {
    if (outEnd - out < 2) return;
    out[0] = static_cast<unsigned char>(0xc0 | (unit >> 6));
    out[1] = static_cast<unsigned char>(0x80 | (unit & 63));
    out += 2;
  } else {
    if (outEnd - out < 3) return;
    out[0] = static_cast<unsigned char>(0xe0 | (unit >> 12));
    out[1] = static_cast<unsigned char>(0x80 | ((unit >> 6) & 63));
    out[2] = static_cast<unsigned char>(0x80 | (unit & 63));
    out += 3;
  }
}

// The same without the room checks, for the bulk gear, which has made sure of the room.
inline void EncodeUnchecked(const char16_t*& p, unsigned char*& out) noexcept {
  const uint32_t unit = *p;
  if (unit < 0x80) {
    *out++ = static_cast<unsigned char>(unit);
    ++p;
  } else if (unit < 0x800) {
    out[0] = static_cast<unsigned char>(0xc0 | (unit >> 6));
    out[1] = static_cast<unsigned char>(0x80 | (unit & 63));
    out += 2;
    ++p;
  } else if (!IsSurrogate(unit)) {
    out[0] = static_cast<unsigned char>(0xe0 | (unit >> 12));
    out[1] = static_cast<unsigned char>(0x80 | ((unit >> 6) & 63));
    out[2] = static_cast<unsigned char>(0x80 | (unit & 63));
    out += 3;
    ++p;
  } else {
    const uint32_t cp = (((unit & 0x3ff) << 10) | (p[1] & 0x3ffu)) + 0x10000;
    out[0] = static_cast<unsigned char>(0xf0 | (cp >> 18));
    out[1] = static_cast<unsigned char>(0x80 | ((cp >> 12) & 63));
    out[2] = static_cast<unsigned char>(0x80 | ((cp >> 6) & 63));
    out[3] = static_cast<unsigned char>(0x80 | (cp & 63));
    out += 4;
    p += 2;
  }
}

// Allocates the exact block and writes the text into it.
void BuildUTF8(ICStringUnique& result, const char16_t* text, internal::Utf8Measure measure) {
  if (measure.bytes == 0) return;  // the empty data
  const auto size = static_cast<int32_t>(measure.bytes);
  internal::StringAccess::_AllocateStorage(result, static_cast<uint32_t>(size));
  result.ClearText();
  char* out = internal::StringAccess::_GetBuffer(result);
  internal::WriteUTF8(text, measure.end, out, out + size);
  internal::StringAccess::_SetStringEnd(result, size);
}

}  // namespace

namespace internal {

Utf8Measure MeasureUTF8(const char16_t* text) noexcept {
  const char16_t* p = text;
  size_t bytes = 0;
#if defined(IC_HAVE_AVX2_KERNELS)
  if ((reinterpret_cast<uintptr_t>(p) & 1) == 0 && platform::internal::UseVectorKernels()) {
    for (;;) {
      while ((reinterpret_cast<uintptr_t>(p) & 31) != 0)
        if (!StepText(p, bytes)) return {p, bytes};
      bytes += MeasureUTF8TextAvx2(p);
      const char16_t* const stop = p + 16;  // the block that the kernel left, unit by unit
      while (p < stop)
        if (!StepText(p, bytes)) return {p, bytes};
    }
  }
#endif
#if defined(IC_UTF_CONVERT_SSE2)
  if ((reinterpret_cast<uintptr_t>(p) & 1) == 0) {
    for (;;) {
      while ((reinterpret_cast<uintptr_t>(p) & 15) != 0)
        if (!StepText(p, bytes)) return {p, bytes};
      ExtraBytes blocks;
      for (;;) {
        const __m128i units = LoadAlignedBlock(p);
        const unsigned zeros =
            static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(units, _mm_setzero_si128())));
        if ((zeros | SurrogateLanes(units)) != 0) break;
        blocks.Add(units);
        p += 8;
      }
      blocks.Flush();
      bytes += blocks.total;
      const char16_t* const stop = p + 8;
      while (p < stop)
        if (!StepText(p, bytes)) return {p, bytes};
    }
  }
#endif
  while (StepText(p, bytes)) {
  }
  return {p, bytes};
}

Utf8Measure MeasureUTF8(const char16_t* text, int32_t length) noexcept {
  const char16_t* p = text;
  const char16_t* const end = text + length;
  size_t bytes = 0;
#if defined(IC_HAVE_AVX2_KERNELS)
  if (platform::internal::UseVectorKernels()) {
    for (;;) {
      bytes += MeasureUTF8RangeAvx2(p, end);
      if (end - p < 16) break;
      const char16_t* const stop = p + 16;  // the block that the kernel left, unit by unit
      while (p < stop)
        StepRange(p, bytes);
    }
  }
#endif
#if defined(IC_UTF_CONVERT_SSE2)
  ExtraBytes blocks;
  while (end - p >= 8) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    if (SurrogateLanes(units) == 0) {
      blocks.Add(units);
      p += 8;
      continue;
    }
    const char16_t* const stop = p + 8;
    while (p < stop)
      StepRange(p, bytes);
  }
  blocks.Flush();
  bytes += blocks.total;
#endif
  while (p < end)
    StepRange(p, bytes);
  return {p, bytes};
}

char* WriteUTF8(const char16_t* text, const char16_t* end, char* out, char* outEnd) noexcept {
  const char16_t* p = text;
  auto* o = reinterpret_cast<unsigned char*>(out);
  auto* const oEnd = reinterpret_cast<unsigned char*>(outEnd);
  // Eight units give at most 7 x 3 + 4 bytes (a pair may end behind the block). The walk ends
  // where a measuring walk ended, so a pair never starts in the last unit before `end`.
#if defined(IC_HAVE_AVX2_KERNELS)
  if (platform::internal::UseVectorKernels()) {
    for (;;) {
      WriteUTF8Avx2(p, end, o, oEnd);
      if (end - p < 16) break;
      if (oEnd - o < 64) {
        // Near the end of the output the kernel writes into room of its own, and what it made is
        // copied: the units it takes end on a character boundary, and their bytes, counted by
        // the measuring walk, fit before outEnd.
        unsigned char room[128];
        unsigned char* r = room;
        const char16_t* const from = p;
        WriteUTF8Avx2(p, end, r, room + sizeof room);
        std::memcpy(o, room, static_cast<size_t>(r - room));
        o += r - room;
        if (p != from) continue;
        break;
      }
      const char16_t* const stop = p + 16;  // the block that the kernel left, unit by unit
      while (p < stop)
        EncodeUnchecked(p, o);  // 16 units (and a pair's end) need 49 bytes
    }
  }
#endif
  while (end - p >= 8 && oEnd - o >= 32) {
#if defined(IC_UTF_CONVERT_SSE2)
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const __m128i high = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xff80)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) == 0xffff) {
      _mm_storel_epi64(reinterpret_cast<__m128i*>(o), _mm_packus_epi16(units, units));
      p += 8;
      o += 8;
      continue;
    }
#endif
    const char16_t* const stop = p + 8;
    while (p < stop)
      EncodeUnchecked(p, o);
  }
  while (p < end)
    EncodeChecked(p, o, oEnd);
  return reinterpret_cast<char*>(o);
}

}  // namespace internal

ICStringUnique ConvertToUTF8(const char16_t* text) {
  ICStringUnique result;
  if (text != nullptr) BuildUTF8(result, text, internal::MeasureUTF8(text));
  return result;
}

ICStringUnique ConvertToUTF8(ICStringRangeW range) {
  ICStringUnique result;
  if (range.Text != nullptr && range.Length > 0)
    BuildUTF8(result, range.Text, internal::MeasureUTF8(range.Text, range.Length));
  return result;
}

ICStringUnique ConvertToUTF8(const char* text) {
  return ICStringUnique(text);
}

Utf8TextBuffer::Utf8TextBuffer(const char16_t* text) {
  using platform::CodePageUTF8;
  const int size = platform::WideCharToMultiByte(CodePageUTF8, 0, text, -1, nullptr, 0);
  if (size <= 0) return;
  Text.reset(new char[static_cast<size_t>(size)]);
  if (platform::WideCharToMultiByte(CodePageUTF8, 0, text, -1, Text.get(), size) != size) {
    Text.reset();
    return;
  }
  Size = size;
}

}  // namespace ic
