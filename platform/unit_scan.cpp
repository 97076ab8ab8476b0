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

// Fills the masks from unit `from` (a multiple of 64) on.
template <class Unit>
void FillStopMasksPortable(const Unit* p, size_t from, size_t n, const UnitStopSet& set,
                           uint64_t* masks) noexcept {
  using U = std::make_unsigned_t<Unit>;
  for (size_t i = from; i < n; i += 64) {
    const size_t count = n - i < 64 ? n - i : 64;
    uint64_t mask = 0;
    for (size_t k = 0; k < count; ++k)
      if (set.Holds(static_cast<U>(p[i + k]))) mask |= uint64_t{1} << k;
    masks[i / 64] = mask;
  }
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

// The unit's ASCII upper-case form; units from 128 up stay as they are.
inline uint32_t FoldAscii(uint32_t u) noexcept {
  return u - 'a' < 26u ? u - 32 : u;
}

template <class Unit>
size_t FindFoldedPairPortable(const Unit* p, size_t from, size_t n, uint32_t first,
                              uint32_t second) noexcept {
  using U = std::make_unsigned_t<Unit>;
  for (size_t i = from; i < n; ++i) {
    const uint32_t u = static_cast<U>(p[i]);
    if (u >= 128) return i;
    if (FoldAscii(u) != first) continue;
    if (i + 1 == n) return i;
    const uint32_t next = static_cast<U>(p[i + 1]);
    if (next >= 128 || FoldAscii(next) == second) return i;
  }
  return n;
}

template <class Unit>
size_t FindFolded(const Unit* p, size_t n, uint32_t first, uint32_t second) noexcept {
  size_t from = 0;
#ifdef IC_HAVE_AVX2_KERNELS
  if (n >= 33 && UseVectorKernels()) from = FindFoldedPairAvx2(p, n, first, second);
#endif
  return FindFoldedPairPortable(p, from, n, first, second);
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
void FillMasks(const Unit* p, size_t n, const UnitStopSet& set, uint64_t* masks) noexcept {
  size_t from = 0;
#ifdef IC_HAVE_AVX2_KERNELS
  if (n >= 64 && UseVectorKernels()) from = FillStopMasksAvx2(p, n, set, masks);
#endif
  FillStopMasksPortable(p, from, n, set, masks);
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

size_t FindFoldedPair(const char* p, size_t n, uint32_t first, uint32_t second) noexcept {
  return FindFolded(p, n, first, second);
}
size_t FindFoldedPair(const char16_t* p, size_t n, uint32_t first, uint32_t second) noexcept {
  return FindFolded(p, n, first, second);
}

size_t FindFirstInSet(const char* p, size_t n, const UnitStopSet& set) noexcept {
  return FindFirst(p, n, set);
}
size_t FindFirstInSet(const char16_t* p, size_t n, const UnitStopSet& set) noexcept {
  return FindFirst(p, n, set);
}
void FillStopMasks(const char* p, size_t n, const UnitStopSet& set, uint64_t* masks) noexcept {
  FillMasks(p, n, set, masks);
}
void FillStopMasks(const char16_t* p, size_t n, const UnitStopSet& set, uint64_t* masks) noexcept {
  FillMasks(p, n, set, masks);
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
