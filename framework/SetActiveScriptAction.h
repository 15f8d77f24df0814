#pragma once

#include <cstdint>

#include "framework/InputModuleAction.h"
#include "runtime/BaseString.h"

namespace conduit {

/// Asks the module's host to make a script its active one.
class SetActiveScriptAction : public InputModuleAction {
 public:
  SetActiveScriptAction(BaseInputModule* module, UnaryCondition* condition,
                        const BaseString<char>& scriptName);

  /// Calls the module's current host. [reader thread]
  /// @returns the host's answer, or ResultNoHost.
  std::int32_t Execute() override;

 private:
  BaseString<char> scriptName;
};

}  // namespace conduit
