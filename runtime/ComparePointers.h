#pragma once

#include <cstdint>

namespace conduit {

/// The order of two addresses: -1, 0 or 1. The comparison of a list that is given
/// none.
inline std::int32_t ComparePointers(const void* left, const void* right) {
  const auto leftAddress = reinterpret_cast<std::uintptr_t>(left);
  const auto rightAddress = reinterpret_cast<std::uintptr_t>(right);
  if (leftAddress == rightAddress) {
    return 0;
  }
  return leftAddress < rightAddress ? -1 : 1;
}

}  // namespace conduit
