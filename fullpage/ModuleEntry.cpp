#include "framework/CreateModule.h"
#include "fullpage/FullPageInputModule.h"
#include <conduit/ModuleEntry.h>

std::int32_t CIM_GetInputModule(conduit::IModuleLogger* logger, conduit::IInputModule** module) {
  return conduit::CreateModule<conduit::FullPageInputModule>(logger, module);
}

std::int32_t CIM_Destroy(conduit::IInputModule* module) { return conduit::DestroyModule(module); }
