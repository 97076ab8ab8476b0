// AVX2 kernels of ConvertToUTF8 (utf_convert_avx2.cpp, built for x86-64 only).
//
// The kernels take whole blocks of units that hold no zero (in the zero-terminated walk) and whose
// surrogates, if any, form proper pairs (a high surrogate followed by a low one); on such text the
// pairing rule of ConvertToUTF8 is the ordinary one. They stop before the first block that is not
// so, and leave it to the exact walk; a pair that straddles that point is finished first, so that
// they always stop on a character boundary. Call only when
// platform::internal::UseVectorKernels() says so.
#pragma once

#include <cstddef>

namespace ic::internal {

/// The measuring walk of a zero-terminated text, from `p`, which must be 32-byte aligned. Reads
/// whole aligned blocks of 16 units only. Returns the bytes of what it took; moves `p` behind it.
size_t MeasureUTF8TextAvx2(const char16_t*& p) noexcept;

/// The measuring walk over units before `end`, 16 at a time.
size_t MeasureUTF8RangeAvx2(const char16_t*& p, const char16_t* end) noexcept;

/// The writing walk over units before `end`, 16 at a time, while room for 64 bytes remains.
void WriteUTF8Avx2(const char16_t*& p, const char16_t* end, unsigned char*& out,
                   const unsigned char* outEnd) noexcept;

}  // namespace ic::internal
