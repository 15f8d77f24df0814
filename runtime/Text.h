#pragma once

#include <cstdint>
#include <cstring>
#include <limits>

namespace conduit {

/// A text argument as the boundary means it: null counts as the empty text.
inline const char* OrEmpty(const char* text) { return text != nullptr ? text : ""; }

/// The bytes of a text up to its NUL, as a host is told them. A text beyond the range of
/// a length counts as the longest there is: the host is lent all of it.
inline std::int32_t TextLength(const char* text) {
  constexpr std::size_t longest = std::numeric_limits<std::int32_t>::max();
  const std::size_t length = std::strlen(text);
  return static_cast<std::int32_t>(length < longest ? length : longest);
}

}  // namespace conduit
