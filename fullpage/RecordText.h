#pragma once

#include <cstddef>
#include <string_view>

namespace conduit {

/// A text field of a record: the item that it is delivered as, and where it
/// stands.
struct RecordText {
  std::string_view itemName;  ///< NUL-terminated
  std::size_t offset;
};

/// The text at an offset of a record. By address rather than by field: a text
/// ends at its NUL, wherever the reader puts it, not at the end of an array.
template <class Record>
const char* TextAt(const Record& record, std::size_t offset) {
  return reinterpret_cast<const char*>(&record) + offset;
}

}  // namespace conduit
