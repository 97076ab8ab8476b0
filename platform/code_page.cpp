#include <ic/platform/code_page.h>

#if defined(_WIN32)

#include <ic/platform/internal/windows_api.h>

namespace ic::platform {

int MultiByteToWideChar(uint32_t codePage, uint32_t flags, const char* src, int srcLength,
                        char16_t* dst, int dstSize) noexcept {
  return ::MultiByteToWideChar(codePage, flags, src, srcLength, reinterpret_cast<wchar_t*>(dst),
                               dstSize);
}

int WideCharToMultiByte(uint32_t codePage, uint32_t flags, const char16_t* src, int srcLength,
                        char* dst, int dstSize, const char* defaultChar,
                        int* usedDefaultChar) noexcept {
  return ::WideCharToMultiByte(codePage, flags, reinterpret_cast<const wchar_t*>(src), srcLength,
                               dst, dstSize, defaultChar, reinterpret_cast<BOOL*>(usedDefaultChar));
}

}  // namespace ic::platform

#else

#include <ic/platform/internal/portable_code_page.h>

namespace ic::platform {

int MultiByteToWideChar(uint32_t codePage, uint32_t flags, const char* src, int srcLength,
                        char16_t* dst, int dstSize) noexcept {
  return internal::PortableMultiByteToWideChar(codePage, flags, src, srcLength, dst, dstSize);
}

int WideCharToMultiByte(uint32_t codePage, uint32_t flags, const char16_t* src, int srcLength,
                        char* dst, int dstSize, const char* defaultChar,
                        int* usedDefaultChar) noexcept {
  return internal::PortableWideCharToMultiByte(codePage, flags, src, srcLength, dst, dstSize,
                                               defaultChar, usedDefaultChar);
}

}  // namespace ic::platform

#endif
