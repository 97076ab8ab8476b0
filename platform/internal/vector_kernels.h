// Whether the library's AVX2 text kernels run.
//
// The conversions between UTF-8 and UTF-16 carry, beside their portable code, kernels that use
// AVX2 (compiled separately, x86-64 only). They run when the processor has AVX2, unless switched
// off; switching them off lets the tests compare both paths on the same machine. The kernels take
// only input on which they and the portable code agree, so the switch never changes a result.
#pragma once

#include <ic/platform/export.h>

namespace ic::platform::internal {

/// True if the AVX2 kernels are built in, the processor runs them (AVX2 and POPCNT) and they
/// are switched on.
IC_API bool UseVectorKernels() noexcept;

/// Switches the AVX2 kernels on (the default, where available) or off.
IC_API void EnableVectorKernels(bool enable) noexcept;

}  // namespace ic::platform::internal
