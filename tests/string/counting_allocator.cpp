#include "counting_allocator.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<bool> g_counting{false};
std::atomic<bool> g_failNothrow{false};
std::atomic<long> g_nothrowPassing{0};
std::atomic<long> g_allocations{0};
std::atomic<long> g_frees{0};
std::atomic<bool> g_failThrowing{false};
std::atomic<long> g_throwingAllowed{0};

void* Allocate(std::size_t size) {
  if (g_counting) ++g_allocations;
  return std::malloc(size ? size : 1);
}
void Free(void* p) {
  if (p == nullptr) return;
  if (g_counting) ++g_frees;
  std::free(p);
}
}  // namespace

namespace ic::test {
AllocationScope::AllocationScope() {
  g_allocations = 0;
  g_frees = 0;
  g_counting = true;
}
AllocationScope::~AllocationScope() {
  g_counting = false;
}
long AllocationScope::Allocations() const {
  return g_allocations;
}
long AllocationScope::Frees() const {
  return g_frees;
}

FailNothrowAllocations::FailNothrowAllocations(long passing) {
  g_nothrowPassing = passing;
  g_failNothrow = true;
}
FailNothrowAllocations::~FailNothrowAllocations() {
  g_failNothrow = false;
}

FailThrowingAllocationsAfter::FailThrowingAllocationsAfter(long allowed) {
  g_throwingAllowed = allowed;
  g_failThrowing = true;
}
FailThrowingAllocationsAfter::~FailThrowingAllocationsAfter() {
  g_failThrowing = false;
}
}  // namespace ic::test

void* operator new(std::size_t size) {
  if (g_failThrowing && g_throwingAllowed-- <= 0) throw std::bad_alloc();
  void* p = Allocate(size);
  if (p == nullptr) throw std::bad_alloc();
  return p;
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (g_failNothrow && g_nothrowPassing-- <= 0) return nullptr;
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
void operator delete(void* p) noexcept {
  Free(p);
}
void operator delete[](void* p) noexcept {
  Free(p);
}
void operator delete(void* p, std::size_t) noexcept {
  Free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
  Free(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept {
  Free(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept {
  Free(p);
}
