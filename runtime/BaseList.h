#pragma once

#include <cstdint>
#include <utility>

#include "runtime/ComparePointers.h"
#include "runtime/ListStorage.h"
#include "runtime/VirtualBaseList.h"

namespace conduit {

/// An ordered list in one array; PtrList allocates the array.
///
/// No operation checks an index. One thread at a time.
/// @tparam Stored    the type of an array slot
/// @tparam Given     the type of an element argument
/// @tparam Returned  the type of an element result
template <class Stored, class Given, class Returned>
class BaseList : public VirtualBaseList {
 public:
  /// Compares the list's element (first) to the argument (second): returns a negative
  /// number, 0 or a positive one. Null means ComparePointers.
  using Comparison = std::int32_t (*)(Given, Given);

  // Read-only for callers.
  Stored* items = nullptr;  ///< null until the first growth
  std::int32_t capacity = 0;
  std::int32_t count = 0;

  std::int32_t Count() const { return count; }

  BaseList() = default;
  BaseList(const BaseList&) = delete;
  BaseList& operator=(const BaseList&) = delete;
  /// Frees the array, not the elements.
  ~BaseList() override { delete[] items; }

  virtual void Grow() { SetCapacity(NextCapacity(capacity)); }
  /// Moves the elements to an array of n slots and drops the surplus. Does nothing
  /// when n is below 1 or equals the current capacity.
  virtual void SetCapacity(std::int32_t n) = 0;

  /// The next four REQUIRE an index from 0 to count - 1; First and Last REQUIRE a
  /// non-empty list.
  virtual Returned GetAt(std::int32_t index) { return items[index]; }
  virtual void SetAt(std::int32_t index, Given element) { items[index] = element; }
  virtual Returned First() { return items[0]; }
  virtual Returned Last() { return items[count - 1]; }

  /// Appends the element and returns its index. A failed allocation leaves the
  /// list unchanged.
  virtual std::int32_t Add(Given element) {
    if (capacity <= count) {
      Grow();
    }
    items[count] = element;
    return count++;
  }

  /// REQUIRES: an index from 0 to count.
  virtual void InsertAt(std::int32_t index, Given element) {
    if (capacity <= count) {
      Grow();
    }
    std::copy_backward(items + index, items + count, items + count + 1);
    items[index] = element;
    ++count;
  }

  /// Removes the element and returns it. REQUIRES: an index from 0 to count - 1.
  virtual Returned RemoveAt(std::int32_t index) {
    Returned removed = items[index];
    std::copy(items + index + 1, items + count, items + index);
    --count;
    return removed;
  }

  /// Removes the first equal element; returns false when there is none.
  virtual bool Remove(Given element, Comparison comparison) {
    const std::int32_t index = IndexOf(element, 0, comparison);
    if (index < 0) {
      return false;
    }
    RemoveAt(index);
    return true;
  }

  /// Returns the index of the first equal element at or after `start`, or -1.
  /// REQUIRES: start is not negative.
  virtual std::int32_t IndexOf(Given element, std::int32_t start, Comparison comparison) {
    for (std::int32_t index = start; index < count; ++index) {
      if (Compare(items[index], element, comparison) == 0) {
        return index;
      }
    }
    return -1;
  }

  /// REQUIRES: both indexes from 0 to count - 1.
  virtual void Swap(std::int32_t i, std::int32_t j) { std::swap(items[i], items[j]); }

  /// Sorts in ascending order; not stable.
  virtual void Sort(Comparison comparison) { SortRange(0, count - 1, comparison); }

 private:
  static std::int32_t Compare(Given left, Given right, Comparison comparison) {
    return comparison != nullptr ? comparison(left, right) : ComparePointers(left, right);
  }

  /// Quicksort with the first element of the range as its pivot.
  void SortRange(std::int32_t first, std::int32_t last, Comparison comparison) {
    while (first < last) {
      std::int32_t boundary = first;
      for (std::int32_t index = first + 1; index <= last; ++index) {
        if (Compare(items[index], items[first], comparison) < 0) {
          std::swap(items[++boundary], items[index]);
        }
      }
      std::swap(items[first], items[boundary]);
      SortRange(first, boundary - 1, comparison);
      first = boundary + 1;
    }
  }
};

}  // namespace conduit
