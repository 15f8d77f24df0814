#pragma once

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace conduit {

/// Writes a text and its NUL into a record's field of the given size. Throws
/// std::invalid_argument rather than cut a text that is too long.
inline void PutText(char* field, std::size_t size, std::string_view text, std::string_view name) {
  if (text.size() >= size) {
    throw std::invalid_argument(std::string(name) + " has " + std::to_string(text.size()) +
                                " bytes, the record holds " + std::to_string(size - 1));
  }
  std::memset(field, 0, size);
  std::memcpy(field, text.data(), text.size());
}

template <std::size_t Size>
void PutText(char (&field)[Size], std::string_view text, std::string_view name) {
  PutText(field, Size, text, name);
}

/// The bytes of a record, as they are handed to the data callback.
template <typename Record>
std::string BytesOf(const Record& record) {
  std::string bytes(sizeof record, '\0');
  std::memcpy(bytes.data(), &record, sizeof record);
  return bytes;
}

}  // namespace conduit
