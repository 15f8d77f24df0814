#pragma once  // self-contained; C++17

#include "Compiler.h"

namespace conduit {

#if defined(CONDUIT_DESTRUCTOR_IS_OPERATION)

/// The base of a class that implements an interface with a destructor slot:
/// `class Properties : public Implements<IStringMap>`. Where CONDUIT_DESTRUCTOR_IS_OPERATION
/// is not defined it is the interface itself; otherwise it defines the function that
/// fills the slot. The class and those derived from it have an ordinary virtual
/// destructor.
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

/// Destroys an object of the interface and frees its memory, in the library that
/// created it. Ignores null, as delete does.
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
