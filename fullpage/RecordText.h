#pragma once

#include <cstddef>
#include <string_view>

namespace conduit {

/// A text field of a record: its item name and its offset.
struct RecordText {
  std::string_view itemName;  ///< NUL-terminated
  std::size_t offset;
};

/// Returns the text at an offset of a record. By address rather than by field: a text
/// ends at its NUL, which may lie beyond the field's array.
template <class Record>
const char* TextAt(const Record& record, std::size_t offset) {
  return reinterpret_cast<const char*>(&record) + offset;
}

}  // namespace conduit
