// The library's own UTF-8 / UTF-16 converter, with the contract of code_page.h. Off Windows the
// public MultiByteToWideChar and WideCharToMultiByte are this converter; on Windows they are the
// system's, and this one is still built so that the tests can compare the two.
#pragma once

#include <cstdint>

namespace ic::platform::internal {

int PortableMultiByteToWideChar(uint32_t codePage, uint32_t flags, const char* src, int srcLength,
                                char16_t* dst, int dstSize) noexcept;

int PortableWideCharToMultiByte(uint32_t codePage, uint32_t flags, const char16_t* src,
                                int srcLength, char* dst, int dstSize,
                                const char* defaultChar = nullptr,
                                int* usedDefaultChar = nullptr) noexcept;

}  // namespace ic::platform::internal
