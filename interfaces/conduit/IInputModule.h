#pragma once  // stands alone in C++17

#include <cstdint>

#include "Compiler.h"
#include "IInputModuleHost.h"
#include "IModule.h"

namespace conduit {

/// A module that receives data from a device and delivers it to a host.
///
/// The life of one: CIM_GetInputModule, SetHost, any number of SetParameter,
/// AddCondition and AddAction, Initialise, then the deliveries on the reader's
/// threads, Shutdown, CIM_Destroy. The module takes no lock: the host keeps
/// every configuration call apart from a running reader. Null text arguments
/// count as the empty text.
class IInputModule : public IModule {
 public:
  CONDUIT_DESTRUCTOR_SLOT(IInputModule);

  /// Says where to deliver. [host thread & reader stopped]
  ///
  /// REQUIRES: called before Initialise, with a host that outlives the reader's
  /// run. The module borrows it and never releases it; a null pointer is
  /// stored like any other.
  virtual void SetHost(IInputModuleHost* host) = 0;

  /// Starts the reader and reports its state. [host thread]
  /// @returns 0, or ResultReaderNotStarted, after which it may be called again.
  virtual std::int32_t Initialise() = 0;

  /// Stops the reader. When it returns, no callback is under way, except the
  /// one that called it, if one did. [any thread]
  /// @returns 0 always.
  virtual std::int32_t Shutdown() = 0;

  /// Adds a condition to react to. [host thread & reader stopped]
  /// @param name   the condition's kind: "ReceiveEvent"
  /// @param value  its operand: the event name, "DOC_ON_WINDOW"
  /// @returns 0 or ResultUnknownCondition.
  virtual std::int32_t AddCondition(const char* name, const char* value) = 0;

  /// Attaches an action to the first condition of that name and value; its
  /// actions run in the order in which they were attached, up to the first that
  /// fails. [host thread & reader stopped]
  /// @param actionName   the action's kind: "SetActiveScript"
  /// @param actionValue  its operand: the name of one of the host's scripts
  /// @returns 0, ResultUnknownCondition when no such condition was added, or
  ///          ResultUnknownAction.
  virtual std::int32_t AddAction(const char* conditionName, const char* conditionValue,
                                 const char* actionName, const char* actionValue) = 0;

  /// The number of parameters. [host thread]
  virtual std::int32_t GetParameterCount() = 0;

  /// The name and value text of the parameter at a 0-based position in the
  /// byte order of the names. Writes nothing when the index is out of range or
  /// either pointer is null. [host thread]
  ///
  /// The texts are the module's: the name stays good until it is destroyed,
  /// the value until the parameter is next set.
  virtual void GetParameterAt(std::int32_t index, const char** name, const char** value) = 0;

  /// The number of conditions. [host thread]
  virtual std::int32_t GetConditionCount() = 0;

  /// The name and value of the condition at a 0-based position in the order in
  /// which they were added. Writes nothing when the index is out of range or
  /// either pointer is null. [host thread]
  ///
  /// The texts are the module's and stay good until it is destroyed.
  virtual void GetConditionAt(std::int32_t index, const char** name, const char** value) = 0;
};

}  // namespace conduit
