#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>

namespace conduit {

/// The longest 32-bit number has a sign and ten digits.
inline constexpr std::size_t LongestDecimal = 11;

/// A number in signed decimal, NUL-terminated; without an allocation.
struct DecimalText {
  char text[LongestDecimal + 1];

  /// The empty text.
  DecimalText() { text[0] = '\0'; }
  explicit DecimalText(std::int32_t number) {
    *std::to_chars(text, text + LongestDecimal, number).ptr = '\0';
  }
};

/// Writes a number as "%.2d" prints it: with two digits at least.
/// @param room  for LongestDecimal bytes
/// @returns the end of what was written; no NUL stands there.
inline char* WriteTwoDigits(std::int32_t number, char* room) {
  if (number <= -10 || number >= 100) {
    return std::to_chars(room, room + LongestDecimal, number).ptr;
  }
  if (number < 0) {
    *room++ = '-';
    number = -number;
  }
  *room++ = static_cast<char>('0' + number / 10);
  *room++ = static_cast<char>('0' + number % 10);
  return room;
}

}  // namespace conduit
