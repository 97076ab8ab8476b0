#include <ic/platform/internal/vector_kernels.h>

#include <atomic>

namespace ic::platform::internal {
namespace {

bool ProcessorHasAvx2() noexcept {
#if defined(IC_HAVE_AVX2_KERNELS) && (defined(__GNUC__) || defined(__clang__))
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");
#else
  return false;
#endif
}

std::atomic<bool> g_enabled{true};

}  // namespace

bool UseVectorKernels() noexcept {
  static const bool available = ProcessorHasAvx2();
  return available && g_enabled.load(std::memory_order_relaxed);
}

void EnableVectorKernels(bool enable) noexcept {
  g_enabled.store(enable, std::memory_order_relaxed);
}

}  // namespace ic::platform::internal
