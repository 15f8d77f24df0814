#pragma once

#include <concepts>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>

#include "runtime/BaseString.h"
#include "runtime/DecimalText.h"
#include "runtime/Text.h"

namespace conduit {

/// One piece of a text that is being put together: lent text, or a number or a
/// truth value as BaseString spells them. Lives as long as the expression in
/// which it is written.
class TextPiece {
 public:
  // Implicit, all of them: a message is written as the row of its pieces.
  TextPiece(const char* lent) : text(OrEmpty(lent)), length(TextLength(text)) {}
  TextPiece(const BaseString<char>& lent) : text(lent.buffer), length(lent.length) {}
  /// A text whose length is known. REQUIRES: it is in the range of a length.
  TextPiece(std::string_view lent)
      : text(lent.data()), length(static_cast<std::int32_t>(lent.size())) {}
  TextPiece(std::int32_t number);
  TextPiece(std::same_as<bool> auto value) : TextPiece(value ? "True" : "False") {}
  TextPiece(const TextPiece&) = delete;
  TextPiece& operator=(const TextPiece&) = delete;
  ~TextPiece() = default;

  /// @returns the end of what was written; no NUL stands there.
  char* WriteTo(char* room) const {
    const auto size = static_cast<std::size_t>(length);
    std::memcpy(room, text, size);
    return room + size;
  }

  const char* text;
  std::int32_t length;

 private:
  DecimalText decimal;
};

/// The pieces joined, in a string that is sized once and written once.
BaseString<char> Concatenate(std::initializer_list<TextPiece> pieces);

}  // namespace conduit
