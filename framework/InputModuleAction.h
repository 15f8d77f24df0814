#pragma once

#include "framework/Action.h"

namespace conduit {

class BaseInputModule;

/// An action that works on a module.
class InputModuleAction : public Action {
 protected:
  /// @param module  outlives the action
  InputModuleAction(BaseInputModule* module, UnaryCondition* condition, const char* name)
      : Action(condition, name), module(module) {}

  BaseInputModule* module;
};

}  // namespace conduit
