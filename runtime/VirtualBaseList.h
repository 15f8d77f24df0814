#pragma once

namespace conduit {

/// What every list can do whatever its elements are.
class VirtualBaseList {
 public:
  VirtualBaseList() = default;
  VirtualBaseList(const VirtualBaseList&) = delete;
  VirtualBaseList& operator=(const VirtualBaseList&) = delete;
  virtual ~VirtualBaseList() = default;

  /// Empties the list; the elements stay alive.
  virtual void RemoveAll() = 0;
  /// Destroys the elements in order, then empties the list.
  virtual void DeleteAll() = 0;
};

}  // namespace conduit
