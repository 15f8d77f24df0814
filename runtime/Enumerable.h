#pragma once

namespace conduit {

/// Iterates over elements, from the first to the last.
template <class Element>
class Enumerable {
 public:
  virtual ~Enumerable() = default;

  /// Goes back to the first element.
  virtual void Reset() = 0;
  virtual void MoveNext() = 0;
  virtual bool HasMore() = 0;
  /// REQUIRES: HasMore() is true.
  virtual Element Current() = 0;
};

}  // namespace conduit
