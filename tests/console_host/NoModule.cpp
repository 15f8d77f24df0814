#include <conduit/ModuleEntry.h>

/// A library that has one of the two functions of a module.
std::int32_t CIM_Destroy(conduit::IInputModule* /*module*/) { return 0; }
