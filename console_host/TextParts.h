#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace conduit {

/// @param textOf  what gives the text of an element
template <typename Texts, typename TextOf = std::identity>
std::string Joined(const Texts& texts, std::string_view separator, const TextOf& textOf = {}) {
  std::string joined;
  for (const auto& text : texts) {
    joined.append(joined.empty() ? "" : separator).append(std::invoke(textOf, text));
  }
  return joined;
}

inline std::string Padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

/// "1 item", "2 items"
inline std::string Counted(int count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

/// Two lower-case digits for each byte.
inline std::string Hexadecimal(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    text += digits[value >> 4U];
    text += digits[value & 0xFU];
  }
  return text;
}

}  // namespace conduit
