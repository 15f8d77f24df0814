#include "fullpage/FullPageInputModule.h"
#include <conduit/Implements.h>
#include <conduit/ModuleEntry.h>
#include <conduit/ResultCode.h>

std::int32_t CIM_GetInputModule(conduit::IModuleLogger* logger, conduit::IInputModule** module) {
  if (module == nullptr) {
    return conduit::ResultNullPointer;
  }
  *module = new conduit::FullPageInputModule(logger);
  return conduit::ResultSuccess;
}

std::int32_t CIM_Destroy(conduit::IInputModule* module) {
  if (module == nullptr) {
    return conduit::ResultNullPointer;
  }
  conduit::Destroy(module);
  return conduit::ResultSuccess;
}
