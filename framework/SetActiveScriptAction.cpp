#include "framework/SetActiveScriptAction.h"

#include "framework/BaseInputModule.h"
#include <conduit/Reaction.h>
#include <conduit/ResultCode.h>

namespace conduit {

SetActiveScriptAction::SetActiveScriptAction(BaseInputModule* module, UnaryCondition* condition,
                                             const BaseString<char>& scriptName)
    : InputModuleAction(module, condition, ActionKind::SetActiveScript), scriptName(scriptName) {}

std::int32_t SetActiveScriptAction::Execute() {
  IInputModuleHost* const host = module->GetHost();
  return host != nullptr ? host->SetActiveScript(scriptName.buffer) : ResultNoHost;
}

}  // namespace conduit
