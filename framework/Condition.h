#pragma once

#include <cstdint>
#include <memory>

#include "framework/Action.h"
#include "runtime/BaseString.h"
#include "runtime/PtrList.h"

namespace conduit {

/// Something that a module waits for, and what it does then.
class Condition {
 public:
  Condition(const Condition&) = delete;
  Condition& operator=(const Condition&) = delete;
  virtual ~Condition();

  const BaseString<char>& GetName() const { return name; }

  /// Attaches an action behind the earlier ones and owns it from here on.
  void AddAction(std::unique_ptr<Action> action);

  /// Runs the actions attached at this moment, in order, up to the first that
  /// fails. [reader thread]
  /// @returns the failed action's result; 0 when there was none.
  std::int32_t ExecuteActions();

 protected:
  /// @param name  the condition's kind
  explicit Condition(const char* name);

 private:
  BaseString<char> name;
  PtrList<Action> actions;
};

}  // namespace conduit
