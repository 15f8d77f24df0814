#pragma once

#include <cstddef>

namespace conduit {

/// The bytes that this process has allocated and not given back. What the count
/// includes differs between systems; only differences mean something.
std::size_t MemoryInUse();

}  // namespace conduit
