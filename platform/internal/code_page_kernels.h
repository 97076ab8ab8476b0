// AVX2 kernels of the UTF-8 to UTF-16 converter (code_page_avx2.cpp, built for x86-64 only).
//
// A kernel converts from `s` as long as the input consists of complete, valid sequences, and stops
// before anything ill-formed and when fewer than 35 bytes of input or, when writing, fewer than 33
// units of room remain. It moves `s`
// behind what it took and returns the units that this gives. The caller goes on from `s` with the
// exact conversion. Call only when platform::internal::UseVectorKernels() says so.
#pragma once

#include <cstddef>

namespace ic::platform::internal {

size_t Utf8ToUtf16Avx2(const unsigned char*& s, const unsigned char* end, char16_t* dst,
                       size_t room) noexcept;
size_t CountUtf16Avx2(const unsigned char*& s, const unsigned char* end) noexcept;

}  // namespace ic::platform::internal
