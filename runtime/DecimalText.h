#pragma once

#include <charconv>
#include <cstdint>

namespace conduit {

/// A number in signed decimal, NUL-terminated; without an allocation.
struct DecimalText {
  char text[12] = {};  // the longest 32-bit number has a sign and ten digits

  DecimalText() = default;
  explicit DecimalText(std::int32_t number) {
    // The last byte is kept for the NUL.
    std::to_chars(text, text + sizeof text - 1, number);
  }
};

}  // namespace conduit
