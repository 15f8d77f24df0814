#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace conduit {

/// Returns the next capacity of a list or an enumerator: small lists stay small, long
/// ones grow in larger steps.
constexpr std::int32_t NextCapacity(std::int32_t capacity) {
  if (capacity <= 4) {
    return capacity + 4;
  }
  return capacity <= 8 ? capacity + 8 : capacity + 16;
}

/// Returns a new array of `capacity` slots that starts with the first `kept` items. The
/// caller owns it.
template <class Item>
Item* CopyItems(const Item* items, std::int32_t kept, std::int32_t capacity) {
  Item* const copy = new Item[static_cast<std::size_t>(capacity)];
  std::copy_n(items, kept, copy);
  return copy;
}

}  // namespace conduit
