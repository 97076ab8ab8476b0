#include <ic/platform/internal/unit_scan.h>

#include <type_traits>

#include <ic/platform/internal/vector_kernels.h>

#include <ic/platform/internal/unit_scan_kernels.h>

namespace ic::platform::internal {
namespace {

template <class Unit>
size_t FindFirstPortable(const Unit* p, size_t from, size_t n, const UnitStopSet& set) noexcept {
  using U = std::make_unsigned_t<Unit>;
  for (size_t i = from; i < n; ++i)
    if (set.Holds(static_cast<U>(p[i]))) return i;
  return n;
}

template <class Unit>
size_t FindFirstRunPortable(const Unit* p, size_t from, size_t n, const UnitStopSet& set,
                            uint32_t single) noexcept {
  using U = std::make_unsigned_t<Unit>;
  for (size_t i = from; i < n; ++i) {
    const uint32_t u = static_cast<U>(p[i]);
    if (!set.Holds(u)) continue;
    if (u == single && u < 128 && i + 1 < n && !set.Holds(static_cast<U>(p[i + 1]))) continue;
    return i;
  }
  return n;
}

template <class Unit>
size_t FindFirst(const Unit* p, size_t n, const UnitStopSet& set) noexcept {
  size_t from = 0;
#ifdef IC_HAVE_AVX2_KERNELS
  if (n >= 32 && UseVectorKernels()) from = FindFirstInSetAvx2(p, n, set);
#endif
  return FindFirstPortable(p, from, n, set);
}

template <class Unit>
size_t FindFirstRun(const Unit* p, size_t n, const UnitStopSet& set, uint32_t single) noexcept {
  size_t from = 0;
#ifdef IC_HAVE_AVX2_KERNELS
  if (n >= 33 && UseVectorKernels()) from = FindFirstRunInSetAvx2(p, n, set, single);
#endif
  return FindFirstRunPortable(p, from, n, set, single);
}

}  // namespace

size_t FindFirstInSet(const char* p, size_t n, const UnitStopSet& set) noexcept {
  return FindFirst(p, n, set);
}
size_t FindFirstInSet(const char16_t* p, size_t n, const UnitStopSet& set) noexcept {
  return FindFirst(p, n, set);
}
size_t FindFirstRunInSet(const char* p, size_t n, const UnitStopSet& set,
                         uint32_t single) noexcept {
  return FindFirstRun(p, n, set, single);
}
size_t FindFirstRunInSet(const char16_t* p, size_t n, const UnitStopSet& set,
                         uint32_t single) noexcept {
  return FindFirstRun(p, n, set, single);
}

}  // namespace ic::platform::internal
