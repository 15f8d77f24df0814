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

/// The base of every input module: named parameters, the host, conditions and their
/// actions.
///
/// A derived module registers its parameters, drives its device in Initialise and
/// Shutdown, and delivers the device's events and states. No operation takes a lock:
/// IInputModule says which calls must not overlap.
class BaseInputModule : public Implements<IInputModule> {
 public:
  /// Creates a module named "FullPage".
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

  /// Runs the actions of the first condition for the event. Null counts as the empty
  /// name. [reader thread]
  /// @returns the result of the last action that ran; 0 when none did.
  std::int32_t ReceiveEvent(const char* eventName);

  IInputModuleHost* GetHost() const { return host; }

 protected:
  /// @param logger      borrowed for the module's life; null for no log
  /// @param moduleName  the prefix of its parameters' qualified names: "FullPage"
  BaseInputModule(IModuleLogger* logger, const char* moduleName);

  /// Delivers an event of the device: clears the host's error, runs the event's actions,
  /// calls BeginData or EndData for the events that start or end data, and sends the
  /// name, if it has one. The caller then reports the device's state. [reader thread]
  /// REQUIRES: SetHost was called.
  /// @param tag  the operation that logs, "Class::Operation"
  void DeliverEvent(ReaderEventCode code, const char* tag);

  /// Reports the state's text to the host; empty for a state without a name.
  /// [reader thread; Initialise] REQUIRES: SetHost was called.
  void ReportReaderState(ReaderState state);

  /// Returns the first condition with that name and value, or null.
  UnaryCondition* FindCondition(const BaseString<char>& name, const BaseString<char>& value) const;
  /// Returns a new condition, or null for an unknown kind.
  std::unique_ptr<UnaryCondition> CreateCondition(const BaseString<char>& name,
                                                  const BaseString<char>& value);
  /// Returns a new action for the condition, or null for an unknown kind.
  std::unique_ptr<Action> CreateAction(UnaryCondition* condition, const BaseString<char>& name,
                                       const BaseString<char>& value);

  IModuleLogger* logger;
  BaseString<char> moduleName;
  IInputModuleHost* host = nullptr;
  ParameterMap parameters;
  PtrList<UnaryCondition> conditions;  ///< append-only
};

}  // namespace conduit
