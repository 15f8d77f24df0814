#pragma once

#include <cstdint>
#include <utility>

#include "runtime/ComparePointers.h"
#include "runtime/ListStorage.h"
#include "runtime/VirtualBaseList.h"

namespace conduit {

/// An ordered list in one array; how the array is made is left to PtrList.
///
/// No operation checks an index. One thread at a time.
/// @tparam Stored    what the array holds
/// @tparam Given     what operations take
/// @tparam Returned  what operations answer
template <class Stored, class Given, class Returned>
class BaseList : public VirtualBaseList {
 public:
  /// Orders the list's element (first) against the given one (second): negative,
  /// 0 or positive. A null function stands for ComparePointers.
  using Comparison = std::int32_t (*)(Given, Given);

  // For reading; written by the lists alone.
  Stored* items = nullptr;  ///< null until the first growth
  std::int32_t capacity = 0;
  std::int32_t count = 0;

  std::int32_t Count() const { return count; }

  BaseList() = default;
  BaseList(const BaseList&) = delete;
  BaseList& operator=(const BaseList&) = delete;
  /// Releases the array, and no element.
  ~BaseList() override { delete[] items; }

  virtual void Grow() { SetCapacity(NextCapacity(capacity)); }
  /// Moves the elements to an array of that many slots; surplus ones drop out.
  /// Nothing happens when n is below 1 or the present capacity.
  virtual void SetCapacity(std::int32_t n) = 0;

  /// REQUIRES of the next four: an index from 0 to count - 1, which First and
  /// Last imply.
  virtual Returned GetAt(std::int32_t index) { return items[index]; }
  virtual void SetAt(std::int32_t index, Given element) { items[index] = element; }
  virtual Returned First() { return items[0]; }
  virtual Returned Last() { return items[count - 1]; }

  /// Appends the element and answers its index. A failed allocation leaves the
  /// list as it was.
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

  /// Takes the element out and answers it. REQUIRES: an index from 0 to count - 1.
  virtual Returned RemoveAt(std::int32_t index) {
    Returned removed = items[index];
    std::copy(items + index + 1, items + count, items + index);
    --count;
    return removed;
  }

  /// Takes the first equal element out; false when there is none.
  virtual bool Remove(Given element, Comparison comparison) {
    const std::int32_t index = IndexOf(element, 0, comparison);
    if (index < 0) {
      return false;
    }
    RemoveAt(index);
    return true;
  }

  /// The first index from `start` of an element equal to the given one, or -1.
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

  /// Sorts in ascending order; equal elements may change places.
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
