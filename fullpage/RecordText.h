#pragma once

#include <cstddef>

namespace conduit {

/// A text field of a record: the item that it is delivered as, and where it
/// stands.
struct RecordText {
  const char* itemName;
  std::size_t offset;
};

/// The text at an offset of a record. By address rather than by field: a text
/// ends at its NUL, wherever the reader puts it, not at the end of an array.
template <class Record>
const char* TextAt(const Record& record, std::size_t offset) {
  return reinterpret_cast<const char*>(&record) + offset;
}

}  // namespace conduit
