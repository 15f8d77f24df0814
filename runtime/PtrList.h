#pragma once

#include <algorithm>
#include <cstdint>

#include "runtime/BaseList.h"
#include "runtime/EnumerablePtrRefList.h"

namespace conduit {

/// A list of objects. Its destructor frees the array only: the owner of the objects
/// calls DeleteAll in its own destructor.
template <class T>
class PtrList : public BaseList<T*, T*, T*> {
 public:
  void RemoveAll() override {
    delete[] this->items;
    this->items = nullptr;
    this->capacity = 0;
    this->count = 0;
  }

  void DeleteAll() override {
    for (std::int32_t index = 0; index < this->count; ++index) {
      delete this->items[index];
    }
    RemoveAll();
  }

  void SetCapacity(std::int32_t n) override {
    if (n <= 0 || n == this->capacity) {
      return;
    }
    const std::int32_t kept = std::min(n, this->count);
    T** const moved = CopyItems(this->items, kept, n);
    RemoveAll();
    this->items = moved;
    this->count = kept;
    this->capacity = n;
  }

  /// Returns a snapshot of the elements, in list order.
  virtual EnumerablePtrRefList<T> GetEnumerator() {
    EnumerablePtrRefList<T> snapshot;
    for (std::int32_t index = 0; index < this->count; ++index) {
      snapshot.Add(this->items[index]);
    }
    return snapshot;
  }
};

}  // namespace conduit
