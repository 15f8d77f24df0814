#pragma once

#include <cstdint>

#include <conduit/IInputModule.h>
#include <conduit/IModuleLogger.h>
#include <conduit/Implements.h>
#include <conduit/ResultCode.h>

namespace conduit {

// What the two exported functions of a module do; ModuleEntry.h says what hosts are told
// of them.

/// CIM_GetInputModule of a library whose module is of that class.
template <class Module>
std::int32_t CreateModule(IModuleLogger* logger, IInputModule** module) {
  if (module == nullptr) {
    return ResultNullPointer;
  }
  *module = new Module(logger);
  return ResultSuccess;
}

/// CIM_Destroy.
inline std::int32_t DestroyModule(IInputModule* module) {
  if (module == nullptr) {
    return ResultNullPointer;
  }
  Destroy(module);
  return ResultSuccess;
}

}  // namespace conduit
