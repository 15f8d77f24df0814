#pragma once

#include <cstdint>

namespace conduit {

/// Heap use of the whole process, libraries included, while counting is on.
struct AllocationCount {
  std::int64_t calls;  ///< successful allocations
  std::int64_t bytes;  ///< requested bytes
  std::int64_t live;   ///< allocated minus freed bytes; may be negative
};

/// Turns counting on or off. A call links the counting allocator into the program. Off at
/// first, because counting slows timed code.
/// @returns false when a sanitizer's own allocator prevents counting.
bool CountAllocations(bool on);
AllocationCount Allocations();

}  // namespace conduit
