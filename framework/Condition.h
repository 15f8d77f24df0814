#pragma once

#include <cstdint>
#include <memory>

#include "framework/Action.h"
#include "runtime/BaseString.h"
#include "runtime/PtrList.h"

namespace conduit {

/// A condition that a module waits for, with the actions that it runs then.
class Condition {
 public:
  Condition(const Condition&) = delete;
  Condition& operator=(const Condition&) = delete;
  virtual ~Condition();

  const BaseString<char>& GetName() const { return name; }

  /// Appends an action and takes ownership of it.
  void AddAction(std::unique_ptr<Action> action);

  /// Runs the actions attached when it is called, in order, and stops at the first
  /// that fails. [reader thread]
  /// @returns the failed action's result; 0 when none failed.
  std::int32_t ExecuteActions();

 protected:
  /// @param name  the condition's kind
  explicit Condition(const char* name);

 private:
  BaseString<char> name;
  PtrList<Action> actions;
};

}  // namespace conduit
