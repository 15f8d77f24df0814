#pragma once

namespace conduit {

/// The conversions that may follow a per cent sign, or a per cent sign and the
/// given modifier.
struct TimeConversions {
  char modifier;  ///< NUL for the plain conversions
  const char* conversions;
};

/// A table that ends with a row without conversions.
extern const TimeConversions AcceptedTimeConversions[];

}  // namespace conduit
