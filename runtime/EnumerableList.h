#pragma once

#include <cstdint>

#include "runtime/Enumerable.h"
#include "runtime/ListStorage.h"

namespace conduit {

/// An enumerator over its own array: later changes of the source list do not affect
/// it. Does not own the elements.
template <class Stored, class Given, class Returned>
class EnumerableList : public Enumerable<Returned> {
 public:
  // Read-only for callers.
  Stored* items = new Stored[4];
  std::int32_t capacity = 4;
  std::int32_t count = 0;
  std::int32_t position = 0;

  EnumerableList() = default;
  EnumerableList(const EnumerableList& other)
      : Enumerable<Returned>(other),
        items(CopyItems(other.items, other.count, other.capacity)),
        capacity(other.capacity),
        count(other.count),
        position(other.position) {}
  EnumerableList& operator=(const EnumerableList&) = delete;
  ~EnumerableList() override { delete[] items; }

  void Reset() override { position = 0; }
  void MoveNext() override { ++position; }
  bool HasMore() override { return position < count; }
  Returned Current() override { return items[position]; }

  virtual EnumerableList& Add(Given element) {
    if (capacity <= count) {
      Grow();
    }
    items[count++] = element;
    return *this;
  }

  /// Resets `other` and adds every element of it.
  virtual EnumerableList& AddAll(Enumerable<Returned>& other) {
    for (other.Reset(); other.HasMore(); other.MoveNext()) {
      Add(other.Current());
    }
    return *this;
  }

  /// Adds n entries of the array; none when n is below 1.
  virtual EnumerableList& AddArray(Stored array[], std::int32_t n) {
    for (std::int32_t index = 0; index < n; ++index) {
      Add(array[index]);
    }
    return *this;
  }

  virtual void Grow() {
    const std::int32_t larger = NextCapacity(capacity);
    Stored* const copy = CopyItems(items, count, larger);
    delete[] items;
    items = copy;
    capacity = larger;
  }
};

}  // namespace conduit
