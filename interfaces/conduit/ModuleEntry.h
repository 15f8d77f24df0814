#pragma once  // self-contained; C++17

#include <cstdint>

#include "Compiler.h"
#include "IInputModule.h"
#include "IModuleLogger.h"

/// The two functions that a module's library exports, by exactly these names.
/// A host loads the library at run time, finds them by name and casts them to
/// the types below.

extern "C" {

/// Creates a module. [host thread]
/// @param logger  receives the module's log; borrowed for the module's life; null
///                for no log
/// @param module  receives the new module; the caller owns it and destroys it
///                with CIM_Destroy
/// @returns 0, or ResultNullPointer when `module` is null. Throws the allocator's
///          exception when an allocation fails.
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
