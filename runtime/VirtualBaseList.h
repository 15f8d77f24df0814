#pragma once

namespace conduit {

/// The operations of a list that do not depend on the element type.
class VirtualBaseList {
 public:
  VirtualBaseList() = default;
  VirtualBaseList(const VirtualBaseList&) = delete;
  VirtualBaseList& operator=(const VirtualBaseList&) = delete;
  virtual ~VirtualBaseList() = default;

  /// Empties the list without destroying the elements.
  virtual void RemoveAll() = 0;
  /// Destroys the elements in order, then empties the list.
  virtual void DeleteAll() = 0;
};

}  // namespace conduit
