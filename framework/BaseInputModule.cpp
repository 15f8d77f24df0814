#include "framework/BaseInputModule.h"

#include <utility>

#include "framework/ReaderNames.h"
#include "framework/SetActiveScriptAction.h"
#include "runtime/Log.h"
#include <conduit/Reaction.h>
#include <conduit/ResultCode.h>

namespace conduit {

BaseInputModule::BaseInputModule(IModuleLogger* logger) : BaseInputModule(logger, "FullPage") {}

BaseInputModule::BaseInputModule(IModuleLogger* logger, const char* moduleName)
    : logger(logger), moduleName(moduleName), parameters(logger, moduleName) {}

BaseInputModule::~BaseInputModule() { conditions.DeleteAll(); }

std::int32_t BaseInputModule::SetParameter(const char* name, const char* value) {
  return parameters.SetValue(name, value);
}

std::int32_t BaseInputModule::GetParameter(const char* name, const char** value) {
  return parameters.GetValue(name, value);
}

void BaseInputModule::SetHost(IInputModuleHost* newHost) { host = newHost; }

std::int32_t BaseInputModule::AddCondition(const char* name, const char* value) {
  std::unique_ptr<UnaryCondition> condition = CreateCondition(name, value);
  if (condition == nullptr) {
    Log(logger, MessageFailure, "BaseInputModule::AddCondition", "Unknown condition name: ", name);
    return ResultUnknownCondition;
  }
  conditions.Add(condition.get());
  condition.release();
  return ResultSuccess;
}

std::int32_t BaseInputModule::AddAction(const char* conditionName, const char* conditionValue,
                                        const char* actionName, const char* actionValue) {
  UnaryCondition* const condition = FindCondition(conditionName, conditionValue);
  if (condition == nullptr) {
    Log(logger, MessageFailure, "BaseInputModule::AddAction",
        "Unknown condition name: ", conditionName);
    return ResultUnknownCondition;
  }
  std::unique_ptr<Action> action = CreateAction(condition, actionName, actionValue);
  if (action == nullptr) {
    Log(logger, MessageFailure, "BaseInputModule::AddAction", "Unknown action name: ", actionName);
    return ResultUnknownAction;
  }
  condition->AddAction(std::move(action));
  return ResultSuccess;
}

std::int32_t BaseInputModule::GetParameterCount() { return parameters.Count(); }

void BaseInputModule::GetParameterAt(std::int32_t index, const char** name, const char** value) {
  parameters.GetParameterAt(index, name, value);
}

std::int32_t BaseInputModule::GetConditionCount() { return conditions.Count(); }

void BaseInputModule::GetConditionAt(std::int32_t index, const char** name, const char** value) {
  if (name == nullptr || value == nullptr || index < 0 || index >= conditions.Count()) {
    return;
  }
  const UnaryCondition* const condition = conditions.GetAt(index);
  *name = condition->GetName().buffer;
  *value = condition->GetValue().buffer;
}

std::int32_t BaseInputModule::ReceiveEvent(const char* eventName) {
  UnaryCondition* const condition = FindCondition(ConditionKind::ReceiveEvent, eventName);
  return condition != nullptr ? condition->ExecuteActions() : ResultSuccess;
}

void BaseInputModule::DeliverEvent(ReaderEventCode code, const char* tag) {
  host->ReportError("");
  const char* const name = GetEventName(code);
  Log(logger, MessageTrace, tag, "Event: ", name);
  ReceiveEvent(name);
  switch (code) {
    case ReaderEventCode::StartOfDocumentData:
    case ReaderEventCode::StartOfSwipeData:
      host->BeginData();
      break;
    case ReaderEventCode::EndOfDocumentData:
    case ReaderEventCode::EndOfSwipeData:
      host->EndData();
      break;
    case ReaderEventCode::ReaderErrorResolved:
      host->ReportError("");
      break;
    default:
      break;
  }
  if (*name != '\0') {
    host->SendEvent(name);
  }
}

void BaseInputModule::ReportReaderState(ReaderState state) {
  host->ReportState(GetStateText(state));
}

UnaryCondition* BaseInputModule::FindCondition(const BaseString<char>& name,
                                               const BaseString<char>& value) const {
  const std::int32_t count = conditions.Count();
  for (std::int32_t index = 0; index < count; ++index) {
    UnaryCondition* const condition = conditions.items[index];
    // Compares the value first: most conditions have the same name.
    if (condition->GetValue() == value && condition->GetName() == name) {
      return condition;
    }
  }
  return nullptr;
}

std::unique_ptr<UnaryCondition> BaseInputModule::CreateCondition(const BaseString<char>& name,
                                                                 const BaseString<char>& value) {
  if (name != ConditionKind::ReceiveEvent) {
    return nullptr;
  }
  auto condition = std::make_unique<UnaryCondition>(ConditionKind::ReceiveEvent, value);
  Log(logger, MessageConfiguration, "BaseInputModule::CreateCondition", "Created Condition \"",
      name, ", Value: ", value);
  return condition;
}

std::unique_ptr<Action> BaseInputModule::CreateAction(UnaryCondition* condition,
                                                      const BaseString<char>& name,
                                                      const BaseString<char>& value) {
  if (name != ActionKind::SetActiveScript) {
    return nullptr;
  }
  auto action = std::make_unique<SetActiveScriptAction>(this, condition, value);
  Log(logger, MessageConfiguration, "BaseInputModule::CreateAction", "Created Action \"", name,
      ", Value: ", value);
  return action;
}

}  // namespace conduit
