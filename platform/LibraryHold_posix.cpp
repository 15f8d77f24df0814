#include "platform/LibraryHold.h"

namespace conduit {

// The destructors of a library that is unloaded wait for its threads.
LibraryHold::LibraryHold(const void* /*address*/) {}
LibraryHold::~LibraryHold() = default;

}  // namespace conduit
