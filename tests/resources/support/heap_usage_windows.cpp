// The bytes of every used entry of the C run-time's heap (Windows), summed over a heap walk.
#include "heap_usage.h"

#include <malloc.h>

namespace ic::test {

size_t BytesInUse() {
  _HEAPINFO entry{};
  size_t total = 0;
  while (_heapwalk(&entry) == _HEAPOK) {
    if (entry._useflag == _USEDENTRY) total += entry._size;
  }
  return total;
}

}  // namespace ic::test
