#pragma once

#include <cstdint>

#include "parameters/NumericParameter.h"

namespace conduit {

/// A signed 32-bit number written in decimal.
class IntParameter : public NumericParameter<std::int32_t> {
 public:
  using NumericParameter::NumericParameter;

  /// Leading blanks, a sign and digits; `fallback` for anything else. A number
  /// beyond 32 bits becomes what the C library's atoi makes of it, which differs
  /// between systems.
  std::int32_t ParseValue(const char* text) override;
};

}  // namespace conduit
