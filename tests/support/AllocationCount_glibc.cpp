#include <malloc.h>

#include <atomic>
#include <cstdlib>

#include "tests/support/AllocationCount.h"

// A sanitizer has its own allocator.
#ifdef CONDUIT_FOREIGN_ALLOCATOR
namespace conduit {

AllocationCount Allocations() { return {}; }

bool CountAllocations(bool /*on*/) { return false; }

}  // namespace conduit
#else
namespace conduit {
namespace {

std::atomic<bool> counting;
std::atomic<std::int64_t> calls;
std::atomic<std::int64_t> bytes;
std::atomic<std::int64_t> live;

bool IsCounting() { return counting.load(std::memory_order_relaxed); }

std::int64_t SizeOf(void* block) { return static_cast<std::int64_t>(malloc_usable_size(block)); }

void* Counted(void* block, std::size_t size) {
  if (block != nullptr && IsCounting()) {
    calls.fetch_add(1, std::memory_order_relaxed);
    bytes.fetch_add(static_cast<std::int64_t>(size), std::memory_order_relaxed);
    live.fetch_add(SizeOf(block), std::memory_order_relaxed);
  }
  return block;
}

}  // namespace

AllocationCount Allocations() { return {calls, bytes, live}; }

bool CountAllocations(bool on) {
  counting = on;
  return true;
}

}  // namespace conduit

// Replaces malloc and its family for every library of the process, operator new included.
// The replacements call glibc's functions by their alternative names.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) { return conduit::Counted(__libc_malloc(size), size); }

void* calloc(std::size_t count, std::size_t size) {
  return conduit::Counted(__libc_calloc(count, size), count * size);
}

void* realloc(void* block, std::size_t size) {
  const std::int64_t before =
      block != nullptr && conduit::IsCounting() ? conduit::SizeOf(block) : 0;
  void* const moved = __libc_realloc(block, size);
  if (moved != nullptr || size == 0) {
    conduit::live.fetch_sub(before, std::memory_order_relaxed);
  }
  return conduit::Counted(moved, size);
}

void free(void* block) {
  if (block != nullptr && conduit::IsCounting()) {
    conduit::live.fetch_sub(conduit::SizeOf(block), std::memory_order_relaxed);
  }
  __libc_free(block);
}

}  // extern "C"
#endif
