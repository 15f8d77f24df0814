#pragma once  // self-contained; C++17

#include <cstdint>

#include "Compiler.h"
#include "IInputModuleHost.h"
#include "IModule.h"

namespace conduit {

/// A module that receives data from a device and delivers it to a host.
///
/// Order of calls: CIM_GetInputModule, SetHost, any number of SetParameter,
/// AddCondition and AddAction, Initialise, then deliveries on the reader's
/// threads, Shutdown, CIM_Destroy. The module takes no lock: the host must not
/// configure it while the reader runs. A null text argument counts as the empty
/// text.
class IInputModule : public IModule {
 public:
  CONDUIT_DESTRUCTOR_SLOT(IInputModule);

  /// Sets the host that receives the deliveries. [host thread & reader stopped]
  ///
  /// REQUIRES: called before Initialise, with a host that outlives the reader's
  /// run. The module borrows the host and never destroys it; it stores a null
  /// pointer like any other.
  virtual void SetHost(IInputModuleHost* host) = 0;

  /// Starts the reader and reports its state. [host thread]
  /// @returns 0, or ResultReaderNotStarted; the host may then call it again.
  virtual std::int32_t Initialise() = 0;

  /// Stops the reader. When it returns, no callback is running, except the
  /// one that called it, if any. [any thread]
  /// @returns 0 always.
  virtual std::int32_t Shutdown() = 0;

  /// Adds a condition that actions can be attached to. [host thread & reader stopped]
  /// @param name   the condition's kind: "ReceiveEvent"
  /// @param value  its operand: the event name, "DOC_ON_WINDOW"
  /// @returns 0 or ResultUnknownCondition.
  virtual std::int32_t AddCondition(const char* name, const char* value) = 0;

  /// Attaches an action to the first condition with that name and value. The
  /// actions of a condition run in the order of attachment and stop at the first
  /// that fails. [host thread & reader stopped]
  /// @param actionName   the action's kind: "SetActiveScript"
  /// @param actionValue  its operand: the name of one of the host's scripts
  /// @returns 0, ResultUnknownCondition when no such condition was added, or
  ///          ResultUnknownAction.
  virtual std::int32_t AddAction(const char* conditionName, const char* conditionValue,
                                 const char* actionName, const char* actionValue) = 0;

  /// Returns the number of parameters. [host thread]
  virtual std::int32_t GetParameterCount() = 0;

  /// Gets the name and the value text of one parameter. Writes nothing when the
  /// index is out of range or either pointer is null. [host thread]
  ///
  /// The module owns the texts: the name is valid until the module is destroyed,
  /// the value until the parameter is next set.
  /// @param index  0-based, in the byte order of the names
  virtual void GetParameterAt(std::int32_t index, const char** name, const char** value) = 0;

  /// Returns the number of conditions. [host thread]
  virtual std::int32_t GetConditionCount() = 0;

  /// Gets the name and the value of one condition. Writes nothing when the index
  /// is out of range or either pointer is null. [host thread]
  ///
  /// The module owns the texts; they are valid until it is destroyed.
  /// @param index  0-based, in the order of addition
  virtual void GetConditionAt(std::int32_t index, const char** name, const char** value) = 0;
};

}  // namespace conduit
