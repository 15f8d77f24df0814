#pragma once

#include <cstddef>

namespace conduit {

/// Returns the bytes that this process has allocated and not freed. The count differs
/// between systems; compare two counts only.
std::size_t MemoryInUse();

}  // namespace conduit
