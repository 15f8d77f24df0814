#pragma once

#include <cstdint>

#include <conduit/IInputModule.h>
#include <conduit/IModuleLogger.h>
#include <conduit/Implements.h>
#include <conduit/ResultCode.h>

namespace conduit {

// The bodies of a module's two exported functions; ModuleEntry.h is their contract.

/// Implements CIM_GetInputModule for a module class.
template <class Module>
std::int32_t CreateModule(IModuleLogger* logger, IInputModule** module) {
  if (module == nullptr) {
    return ResultNullPointer;
  }
  *module = new Module(logger);
  return ResultSuccess;
}

/// Implements CIM_Destroy.
inline std::int32_t DestroyModule(IInputModule* module) {
  if (module == nullptr) {
    return ResultNullPointer;
  }
  Destroy(module);
  return ResultSuccess;
}

}  // namespace conduit
