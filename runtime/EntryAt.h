#pragma once

#include <cstddef>
#include <cstdint>

namespace conduit {

/// Returns the table's entry for a code from outside, or `otherwise` for a code outside
/// the table.
template <class Entry, std::size_t Size>
constexpr Entry EntryAt(const Entry (&table)[Size], std::int32_t code, Entry otherwise) {
  return code >= 0 && static_cast<std::size_t>(code) < Size ? table[code] : otherwise;
}

}  // namespace conduit
