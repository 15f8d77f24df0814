#pragma once

#include <cstdint>

namespace conduit {

/// Compares two addresses: returns -1, 0 or 1. A list's default comparison.
inline std::int32_t ComparePointers(const void* left, const void* right) {
  const auto leftAddress = reinterpret_cast<std::uintptr_t>(left);
  const auto rightAddress = reinterpret_cast<std::uintptr_t>(right);
  if (leftAddress == rightAddress) {
    return 0;
  }
  return leftAddress < rightAddress ? -1 : 1;
}

}  // namespace conduit
