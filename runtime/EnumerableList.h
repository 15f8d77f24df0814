#pragma once

#include <cstdint>

#include "runtime/Enumerable.h"
#include "runtime/ListStorage.h"

namespace conduit {

/// An enumerator that walks over an array of its own: changes of the list that it
/// was taken from do not reach it. Refers to elements and owns none.
template <class Stored, class Given, class Returned>
class EnumerableList : public Enumerable<Returned> {
 public:
  // For reading; written by the enumerator alone.
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

  /// Adds every element of the other, which is reset first and walked to its end.
  virtual EnumerableList& AddAll(Enumerable<Returned>& other) {
    for (other.Reset(); other.HasMore(); other.MoveNext()) {
      Add(other.Current());
    }
    return *this;
  }

  /// Adds the n entries of the array; none when n is below 1.
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
