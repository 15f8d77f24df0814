#pragma once

#include <cstdint>

#include "runtime/BaseString.h"

namespace conduit {

class UnaryCondition;

/// Something that a module does when a condition fires.
class Action {
 public:
  Action(const Action&) = delete;
  Action& operator=(const Action&) = delete;
  virtual ~Action() = default;

  /// @returns 0 for success; anything else keeps the condition's later actions
  ///          from running.
  virtual std::int32_t Execute() = 0;

 protected:
  /// @param condition  the condition that the action is attached to and that owns
  ///                   it
  /// @param name       the action's kind
  Action(UnaryCondition* condition, const char* name);

  UnaryCondition* condition;
  BaseString<char> name;
};

}  // namespace conduit
