#pragma once

#include <cstdint>

#include "parameters/NumericParameter.h"

namespace conduit {

/// A signed 32-bit decimal number.
class IntParameter : public NumericParameter<std::int32_t> {
 public:
  using NumericParameter::NumericParameter;

  /// Parses leading blanks, a sign and digits; returns `fallback` for any other text.
  /// The result for a number beyond 32 bits is the C library's atoi, which differs
  /// between systems.
  std::int32_t ParseValue(const char* text) override;
};

}  // namespace conduit
