#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace conduit {

/// The first character of a text.
struct Utf8Character {
  char32_t codePoint;
  std::size_t length;  ///< bytes; 1 when they are no character
  bool valid;
};

/// REQUIRES: the text is not empty.
Utf8Character FirstCharacter(std::string_view text);

bool IsUtf8(std::string_view text);

/// The text on one line, fit for a terminal: whatever would move the cursor,
/// change colours, reorder or hide text is written out (\n, \x1b, \u{202e}), and
/// so is each byte that belongs to no character (\xff). A backslash is doubled,
/// so the original bytes can be told from the outcome.
std::string Escaped(std::string_view text);

/// The same for a text that names files: where a backslash separates folders, it stays
/// as it is.
std::string EscapedPaths(std::string_view text);

}  // namespace conduit
