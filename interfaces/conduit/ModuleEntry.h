#pragma once  // stands alone in C++17

#include <cstdint>

#include "Compiler.h"
#include "IInputModule.h"
#include "IModuleLogger.h"

/// The two functions that a module's library exports, by exactly these names.
/// A host that loads the library at run time finds them by name and casts them
/// to the types below.

extern "C" {

/// Creates a module. [host thread]
/// @param logger  where the module writes its log, borrowed for the module's
///                life; null for no log
/// @param module  receives the new module, which the caller gives back with
///                CIM_Destroy
/// @returns 0, or ResultNullPointer when `module` is null. An allocation that
///          fails passes the allocator's exception on.
CONDUIT_EXPORT std::int32_t CIM_GetInputModule(conduit::IModuleLogger* logger,
                                               conduit::IInputModule** module);

/// Destroys a module. Does not stop the reader: REQUIRES that the host called
/// Shutdown after the last successful Initialise. [host thread]
/// @returns 0, or ResultNullPointer when `module` is null.
CONDUIT_EXPORT std::int32_t CIM_Destroy(conduit::IInputModule* module);

}  // extern "C"

namespace conduit {

using GetInputModuleFunction = std::int32_t (*)(IModuleLogger* logger, IInputModule** module);
using DestroyFunction = std::int32_t (*)(IInputModule* module);

}  // namespace conduit
