#pragma once

#include <memory>

namespace conduit {

/// Keeps a library loaded.
using LibraryHold = std::shared_ptr<void>;

/// Keeps the library that contains an address loaded. Windows cannot wait for a library's
/// threads while it unloads the library: one that a host unloads too early then stays loaded,
/// so that no thread runs in unmapped code. On other systems returns null.
LibraryHold HoldLibrary(const void* address);

}  // namespace conduit
