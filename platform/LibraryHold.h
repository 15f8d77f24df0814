#pragma once

#include <memory>

namespace conduit {

/// A library that stays loaded for as long as this lives.
using LibraryHold = std::shared_ptr<void>;

/// Holds the library that an address stands in, where a library's threads cannot be waited
/// for while it is unloaded: there a host that unloads it too early leaves it behind, which
/// is better than a thread in code that is gone. Elsewhere it holds nothing.
LibraryHold HoldLibrary(const void* address);

}  // namespace conduit
