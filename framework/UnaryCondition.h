#pragma once

#include "framework/Condition.h"
#include "runtime/BaseString.h"

namespace conduit {

/// A condition with one operand.
class UnaryCondition : public Condition {
 public:
  UnaryCondition(const char* name, const BaseString<char>& value) : Condition(name), value(value) {}

  const BaseString<char>& GetValue() const { return value; }

 private:
  BaseString<char> value;
};

}  // namespace conduit
