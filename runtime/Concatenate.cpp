#include "runtime/Concatenate.h"

#include "runtime/Text.h"

namespace conduit {

TextPiece::TextPiece(std::int32_t number) : text(nullptr), length(0), decimal(number) {
  text = decimal.text;
  length = TextLength(text);
}

BaseString<char> Concatenate(std::initializer_list<TextPiece> pieces) {
  std::size_t total = 0;
  for (const TextPiece& piece : pieces) {
    total += static_cast<std::size_t>(piece.length);
  }
  BaseString<char> joined = BaseString<char>::OfLength(total);
  char* end = joined.buffer;
  for (const TextPiece& piece : pieces) {
    end = piece.WriteTo(end);
  }
  return joined;
}

}  // namespace conduit
