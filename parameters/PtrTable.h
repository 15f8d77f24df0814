#pragma once

#include <cstdint>
#include <functional>
#include <map>

namespace conduit {

/// An ordered table from a key to an object.
///
/// The destructor and RemoveAll do not destroy the objects; DeleteAll does.
template <class K, class T>
class PtrTable : public std::map<K, T*, std::less<>> {
 public:
  PtrTable() = default;
  PtrTable(const PtrTable&) = delete;
  PtrTable& operator=(const PtrTable&) = delete;
  virtual ~PtrTable() = default;

  virtual void RemoveAll() { this->clear(); }

  /// Destroys the objects in the order of their keys, then removes the entries.
  virtual void DeleteAll() {
    for (const auto& entry : *this) {
      delete entry.second;
    }
    RemoveAll();
  }

  virtual std::int32_t Count() { return static_cast<std::int32_t>(this->size()); }

  /// Adds the pair, unless the key is taken.
  virtual void Add(const K& key, T* object) { this->emplace(key, object); }

  /// Returns the object of the key, or null.
  virtual T* Find(const K& key) {
    const auto entry = this->find(key);
    return entry != this->end() ? entry->second : nullptr;
  }
};

}  // namespace conduit
