#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "conformance/Check.h"

namespace conduit {

/// A module under check. Its creation fails the check unless it succeeds.
class ModuleInstance {
 public:
  ModuleInstance(const CheckContext& context, IModuleLogger* logger);
  ~ModuleInstance();
  ModuleInstance(const ModuleInstance&) = delete;
  ModuleInstance& operator=(const ModuleInstance&) = delete;

  IInputModule* operator->() const { return module; }

 private:
  const ModuleLibrary& library;
  IInputModule* module = nullptr;
};

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
void RequireNothingWritten(const ModuleInstance& module, ListReader read, std::int32_t count,
                           const std::string& operation);

/// The parameters' names; a name that is null is left out.
std::vector<std::string> ParameterNames(const ModuleInstance& module);

}  // namespace conduit
