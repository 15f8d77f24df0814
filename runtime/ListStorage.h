#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace conduit {

/// The capacity that follows `capacity` when a list or an enumerator grows: the
/// small ones stay small, and long ones do not grow at every other element.
constexpr std::int32_t NextCapacity(std::int32_t capacity) {
  if (capacity <= 4) {
    return capacity + 4;
  }
  return capacity <= 8 ? capacity + 8 : capacity + 16;
}

/// A new array of `capacity` slots that begins with the first `kept` items.
template <class Item>
Item* CopyItems(const Item* items, std::int32_t kept, std::int32_t capacity) {
  Item* const copy = new Item[static_cast<std::size_t>(capacity)];
  std::copy_n(items, kept, copy);
  return copy;
}

}  // namespace conduit
