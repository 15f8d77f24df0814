#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>

#include "runtime/BaseString.h"
#include "runtime/DecimalText.h"

namespace conduit {

/// One piece of a text that is being put together: lent text, or a number or a
/// truth value as BaseString spells them. Lives as long as the expression in
/// which it is written.
class TextPiece {
 public:
  // Implicit, all of them: a message is written as the row of its pieces.
  TextPiece(const char* lent);
  TextPiece(const BaseString<char>& lent) : text(lent.buffer), length(lent.length) {}
  TextPiece(std::int32_t number);
  TextPiece(std::same_as<bool> auto value) : TextPiece(value ? "True" : "False") {}
  TextPiece(const TextPiece&) = delete;
  TextPiece& operator=(const TextPiece&) = delete;
  ~TextPiece() = default;

  const char* text;
  std::int32_t length;

 private:
  DecimalText decimal;
};

/// The pieces joined, in a string that is sized once and written once.
BaseString<char> Concatenate(std::initializer_list<TextPiece> pieces);

}  // namespace conduit
