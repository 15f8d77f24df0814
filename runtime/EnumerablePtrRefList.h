#pragma once

#include "runtime/EnumerableList.h"

namespace conduit {

/// The snapshot that a PtrList hands out.
template <class T>
class EnumerablePtrRefList : public EnumerableList<T*, T*, T*> {};

}  // namespace conduit
