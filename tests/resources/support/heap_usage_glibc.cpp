// The allocator's own count of bytes in use (glibc).
#include "heap_usage.h"

#include <malloc.h>

namespace ic::test {

size_t BytesInUse() {
  return mallinfo2().uordblks;
}

}  // namespace ic::test
