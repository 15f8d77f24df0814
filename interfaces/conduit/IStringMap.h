#pragma once  // self-contained; C++17

#include <cstdint>

#include "Compiler.h"

namespace conduit {

/// Properties of an item: a small map from text to text.
///
/// Keys match whole and case-sensitively. Texts are NUL-terminated bytes; a null
/// text counts as the empty text. The map copies its arguments. A host uses a map
/// only during the call that passes it, on that thread, and never destroys it.
class IStringMap {
 public:
  CONDUIT_DESTRUCTOR_SLOT(IStringMap);

  /// Returns the number of entries.
  virtual std::int32_t Count() = 0;

  /// Stores a copy of the value under a copy of the key; replaces an earlier
  /// value.
  virtual void Set(const char* key, const char* value) = 0;

  /// Returns the value stored under the key, or null when there is none. The map
  /// owns it; it is valid until the entry is set again or removed, or the map is
  /// destroyed.
  virtual const char* Get(const char* key) = 0;

  /// Removes every entry.
  virtual void RemoveAll() = 0;

  /// Removes the key's entry, if there is one.
  virtual void Remove(const char* key) = 0;
};

}  // namespace conduit
