#pragma once

#include <cstdint>
#include <memory>

#include "framework/Action.h"
#include "framework/UnaryCondition.h"
#include "parameters/ParameterMap.h"
#include "runtime/BaseString.h"
#include "runtime/PtrList.h"
#include <conduit/IInputModule.h>
#include <conduit/IInputModuleHost.h>
#include <conduit/IModuleLogger.h>
#include <conduit/Implements.h>
#include <conduit/ReaderEventCode.h>
#include <conduit/ReaderState.h>

namespace conduit {

/// What every input module has in common: parameters by name, the binding to the
/// host, conditions and their actions.
///
/// A module derives from it, registers its parameters, drives its device in
/// Initialise and Shutdown, and delivers the device's events and states. No operation
/// takes a lock: see IInputModule for which calls must keep apart.
class BaseInputModule : public Implements<IInputModule> {
 public:
  /// A module by the name "FullPage".
  /// @param logger  borrowed for the module's life; null for no log
  explicit BaseInputModule(IModuleLogger* logger);
  BaseInputModule(const BaseInputModule&) = delete;
  BaseInputModule& operator=(const BaseInputModule&) = delete;
  ~BaseInputModule() override;

  std::int32_t SetParameter(const char* name, const char* value) override;
  std::int32_t GetParameter(const char* name, const char** value) override;
  void SetHost(IInputModuleHost* newHost) override;
  std::int32_t AddCondition(const char* name, const char* value) override;
  std::int32_t AddAction(const char* conditionName, const char* conditionValue,
                         const char* actionName, const char* actionValue) override;
  std::int32_t GetParameterCount() override;
  void GetParameterAt(std::int32_t index, const char** name, const char** value) override;
  std::int32_t GetConditionCount() override;
  void GetConditionAt(std::int32_t index, const char** name, const char** value) override;

  /// Runs the actions of the condition that waits for an event, of the first
  /// where there are several. Null counts as the empty name. [reader thread]
  /// @returns the result of the last action that ran; 0 when none did.
  std::int32_t ReceiveEvent(const char* eventName);

  IInputModuleHost* GetHost() const { return host; }

 protected:
  /// @param logger      borrowed for the module's life; null for no log
  /// @param moduleName  what its parameters' qualified names begin with: "FullPage"
  BaseInputModule(IModuleLogger* logger, const char* moduleName);

  /// Delivers an event of the device: takes back the host's error, runs the event's
  /// actions, opens or closes the data's brackets where the event says so, and sends the
  /// name, if it has one. The device's state is to be reported next. [reader thread]
  /// REQUIRES: SetHost was called.
  /// @param tag  the operation that speaks, for the log
  void DeliverEvent(ReaderEventCode code, const char* tag);

  /// Passes the state's text to the host, the empty one for a state without a name.
  /// [reader thread; Initialise] REQUIRES: SetHost was called.
  void ReportReaderState(ReaderState state);

  /// The first condition with that name and value, or null.
  UnaryCondition* FindCondition(const BaseString<char>& name, const BaseString<char>& value) const;
  /// A new condition, or null for a kind that no module knows.
  std::unique_ptr<UnaryCondition> CreateCondition(const BaseString<char>& name,
                                                  const BaseString<char>& value);
  /// A new action for the condition, or null for a kind that no module knows.
  std::unique_ptr<Action> CreateAction(UnaryCondition* condition, const BaseString<char>& name,
                                       const BaseString<char>& value);

  IModuleLogger* logger;
  BaseString<char> moduleName;
  IInputModuleHost* host = nullptr;
  ParameterMap parameters;
  PtrList<UnaryCondition> conditions;  ///< only ever appended to
};

}  // namespace conduit
