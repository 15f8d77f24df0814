#pragma once

#include <span>

namespace conduit {

/// A set of conversion characters, by character: a format is held against it for
/// every date.
class ConversionSet {
 public:
  consteval explicit ConversionSet(const char* characters) {
    for (; *characters != '\0'; ++characters) {
      contained[static_cast<unsigned char>(*characters)] = true;
    }
  }
  bool Has(char character) const { return contained[static_cast<unsigned char>(character)]; }

 private:
  bool contained[256] = {};
};

/// The conversions that may follow a per cent sign, or a per cent sign and the
/// given modifier.
struct TimeConversions {
  char modifier;  ///< NUL for the plain conversions
  ConversionSet conversions;
};

extern const std::span<const TimeConversions> AcceptedTimeConversions;

}  // namespace conduit
