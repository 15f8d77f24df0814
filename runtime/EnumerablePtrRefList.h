#pragma once

#include "runtime/EnumerableList.h"

namespace conduit {

/// The snapshot type of PtrList::GetEnumerator.
template <class T>
class EnumerablePtrRefList : public EnumerableList<T*, T*, T*> {};

}  // namespace conduit
