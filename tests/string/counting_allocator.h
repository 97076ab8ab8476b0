// A replacement of the global allocation functions for the test binary: counts allocations
// and frees while a scope is active, and can make the nothrow allocation answer null.
#pragma once

#include <cstddef>

namespace ic::test {

struct AllocationStats {
  long allocations = 0;
  long frees = 0;
};

/// Counts every allocation and free made while the object lives (not nestable).
class AllocationScope {
 public:
  AllocationScope();
  ~AllocationScope();
  AllocationScope(const AllocationScope&) = delete;
  AllocationScope& operator=(const AllocationScope&) = delete;

  long Allocations() const;
  long Frees() const;
};

/// While alive, every nothrow allocation after the first `passing` ones answers null (the
/// throwing forms are unaffected).
class FailNothrowAllocations {
 public:
  explicit FailNothrowAllocations(long passing = 0);
  ~FailNothrowAllocations();
};

/// While alive, the throwing allocation functions succeed `allowed` more times and then throw
/// std::bad_alloc on every call (the nothrow forms are unaffected).
class FailThrowingAllocationsAfter {
 public:
  explicit FailThrowingAllocationsAfter(long allowed);
  ~FailThrowingAllocationsAfter();
  FailThrowingAllocationsAfter(const FailThrowingAllocationsAfter&) = delete;
  FailThrowingAllocationsAfter& operator=(const FailThrowingAllocationsAfter&) = delete;
};

}  // namespace ic::test
