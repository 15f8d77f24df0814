#pragma once

#include <cstdint>
#include <cstring>
#include <limits>

namespace conduit {

/// Returns the text, or the empty text for null: the interface treats them alike.
inline const char* OrEmpty(const char* text) { return text != nullptr ? text : ""; }

/// Returns the length that a host receives for a text: its bytes up to the NUL, at most
/// the largest int32.
inline std::int32_t TextLength(const char* text) {
  constexpr std::size_t longest = std::numeric_limits<std::int32_t>::max();
  const std::size_t length = std::strlen(text);
  return static_cast<std::int32_t>(length < longest ? length : longest);
}

}  // namespace conduit
