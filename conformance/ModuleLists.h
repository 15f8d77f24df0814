#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hosting/LoadedModule.h"

namespace conduit {

/// What one of the module's lists gives for an index; the pointers stay null
/// where it writes nothing.
struct ListEntry {
  const char* name = nullptr;
  const char* value = nullptr;
};

using ListReader = void (IInputModule::*)(std::int32_t index, const char** name,
                                          const char** value);

/// Fails the check when the list writes anything for an index out of range or a
/// null pointer.
void RequireNothingWritten(const LoadedModule& module, ListReader read, std::int32_t count,
                           const std::string& operation);

/// The parameters' names; a name that is null is left out.
std::vector<std::string> ParameterNames(const LoadedModule& module);

}  // namespace conduit
