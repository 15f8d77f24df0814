#pragma once

#include <algorithm>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "runtime/BaseString.h"
#include "runtime/Text.h"
#include <conduit/Compiler.h>

namespace conduit {

/// Concatenates a text: on the stack while it is short, as most are, then on the heap.
/// Throws the allocator's exception when an allocation fails.
class TextBuilder {
 public:
  TextBuilder() = default;
  TextBuilder(const TextBuilder&) = delete;
  TextBuilder& operator=(const TextBuilder&) = delete;
  ~TextBuilder() = default;

  TextBuilder& operator<<(std::string_view piece) {
    std::memcpy(RoomFor(piece.size()), piece.data(), piece.size());
    length += piece.size();
    return *this;
  }
  /// Null counts as the empty text.
  TextBuilder& operator<<(const char* piece) { return *this << std::string_view(OrEmpty(piece)); }
  TextBuilder& operator<<(const BaseString<char>& piece) {
    return *this << std::string_view(piece.buffer, static_cast<std::size_t>(piece.length));
  }
  /// In signed decimal.
  TextBuilder& operator<<(std::int32_t number) {
    char* const start = RoomFor(LongestDecimal);
    length +=
        static_cast<std::size_t>(std::to_chars(start, start + LongestDecimal, number).ptr - start);
    return *this;
  }
  /// "True" or "False".
  TextBuilder& operator<<(std::same_as<bool> auto value) {
    return *this << std::string_view(value ? "True" : "False");
  }

  /// Appends a number as "%.2d" does: with at least two digits.
  TextBuilder& AppendTwoDigits(std::int32_t number) {
    if (number <= -10 || number >= 100) {
      return *this << number;
    }
    char* end = RoomFor(3);
    if (number < 0) {
      *end++ = '-';
      number = -number;
    }
    *end++ = static_cast<char>('0' + number / 10);
    *end++ = static_cast<char>('0' + number % 10);
    length = static_cast<std::size_t>(end - text);
    return *this;
  }

  /// Returns the text, NUL-terminated; valid until the next piece is appended.
  const char* Text() {
    *RoomFor(0) = '\0';
    return text;
  }
  std::size_t Length() const { return length; }

 private:
  /// A sign and ten digits.
  static constexpr std::size_t LongestDecimal = 11;

  /// Returns the end of the text, with room for `size` bytes and a NUL.
  char* RoomFor(std::size_t size) {
    if (size >= capacity - length) {
      Grow(size);
    }
    return text + length;
  }

  CONDUIT_APART void Grow(std::size_t size) {
    capacity = std::max(2 * capacity, length + size + 1);
    std::unique_ptr<char[]> larger(new char[capacity]);
    std::memcpy(larger.get(), text, length);
    heap = std::move(larger);
    text = heap.get();
  }

  static constexpr std::size_t StackRoom = 512;

  std::size_t length = 0;
  std::size_t capacity = StackRoom;
  char stack[StackRoom];
  std::unique_ptr<char[]> heap;
  char* text = stack;
};

}  // namespace conduit
