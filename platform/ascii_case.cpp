#include <ic/platform/internal/ascii_case.h>

#include <type_traits>

#include <ic/platform/internal/vector_kernels.h>

namespace ic::platform::internal {
namespace {

template <class Unit>
size_t MapRunPortable(Unit* p, size_t from, size_t n, bool upper) noexcept {
  using U = std::make_unsigned_t<Unit>;
  const unsigned from_letter = upper ? 'a' : 'A';
  for (size_t i = from; i < n; ++i) {
    const unsigned u = static_cast<U>(p[i]);
    if (u == 0 || u >= 128) return i;
    if (u - from_letter < 26u) p[i] = static_cast<Unit>(u ^ 0x20);
  }
  return n;
}

template <class Unit>
size_t MapRun(Unit* p, size_t n, bool upper) noexcept {
  size_t from = 0;
#ifdef IC_HAVE_AVX2_KERNELS
  if (n >= 32 && UseVectorKernels()) from = MapAsciiCaseRunAvx2(p, n, upper);
#endif
  return MapRunPortable(p, from, n, upper);
}

}  // namespace

size_t MapAsciiCaseRun(char* p, size_t n, bool upper) noexcept {
  return MapRun(p, n, upper);
}
size_t MapAsciiCaseRun(char16_t* p, size_t n, bool upper) noexcept {
  return MapRun(p, n, upper);
}

}  // namespace ic::platform::internal
