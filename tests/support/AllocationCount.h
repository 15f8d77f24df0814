#pragma once

#include <cstdint>

namespace conduit {

/// What the whole process took from the heap, libraries included, while it was
/// being counted.
struct AllocationCount {
  std::int64_t calls;  ///< successful allocations
  std::int64_t bytes;  ///< asked for by them
  std::int64_t live;   ///< bytes taken and not given back; may be negative
};

/// Links the counting allocator into the program. Off until it is switched on, for
/// it slows what is timed.
/// @returns false where a sanitizer brings its own allocator: nothing is counted.
bool CountAllocations(bool on);
AllocationCount Allocations();

}  // namespace conduit
