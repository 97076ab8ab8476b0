// Bytes that the C run-time's allocator holds for the program, for tests that check that loading
// and unloading the module leaves nothing behind. The build picks the source for the run-time:
// heap_usage_glibc.cpp (mallinfo2) or heap_usage_windows.cpp (a walk of the CRT heap).
#pragma once

#include <cstddef>

namespace ic::test {

/// Bytes in blocks that are allocated and not yet freed.
size_t BytesInUse();

}  // namespace ic::test
