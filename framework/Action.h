#pragma once

#include <cstdint>

#include "runtime/BaseString.h"

namespace conduit {

class UnaryCondition;

/// An operation that a module performs when a condition fires.
class Action {
 public:
  Action(const Action&) = delete;
  Action& operator=(const Action&) = delete;
  virtual ~Action() = default;

  /// @returns 0 for success; anything else skips the condition's later actions.
  virtual std::int32_t Execute() = 0;

 protected:
  /// @param condition  the condition that owns the action
  /// @param name       the action's kind
  Action(UnaryCondition* condition, const char* name);

  UnaryCondition* condition;
  BaseString<char> name;
};

}  // namespace conduit
