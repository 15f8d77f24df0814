#pragma once  // stands alone in C++17

#include "Compiler.h"

namespace conduit {

#if defined(CONDUIT_DESTRUCTOR_IS_OPERATION)

/// What a class derives from to implement an interface whose destructor stands in its
/// table: `class Properties : public Implements<IStringMap>`. It is the interface
/// itself where the compiler's virtual destructor has one slot; where not, it supplies
/// the operation that stands for it. The class and those derived from it have a
/// virtual destructor like any other.
template <typename Interface>
class Implements : public Interface {
 public:
  virtual ~Implements() = default;

  void* DestroyObject(unsigned flags) final {
    void* const object = this;
    if ((flags & 1U) != 0) {
      delete this;
    } else {
      this->~Implements();
    }
    return object;
  }

 protected:
  Implements() = default;
  Implements(const Implements&) = default;
  Implements& operator=(const Implements&) = default;
};

/// Destroys an object of the interface and frees its memory, in the library that it
/// came from. Does nothing to null, as delete.
template <typename Interface>
void Destroy(Interface* object) {
  if (object != nullptr) {
    object->DestroyObject(1U);
  }
}

#else

template <typename Interface>
using Implements = Interface;

template <typename Interface>
void Destroy(Interface* object) {
  delete object;
}

#endif

}  // namespace conduit
