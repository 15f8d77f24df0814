#include "platform/LibraryHold.h"

namespace conduit {

// The destructors that run during dlclose wait for the library's threads.
LibraryHold HoldLibrary(const void* /*address*/) { return nullptr; }

}  // namespace conduit
