#pragma once

#include <span>

namespace conduit {

/// A set of conversion characters; a table, because every date checks its format.
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

/// The conversions allowed after a per cent sign and the modifier.
struct TimeConversions {
  char modifier;  ///< NUL for the plain conversions
  ConversionSet conversions;
};

extern const std::span<const TimeConversions> AcceptedTimeConversions;

}  // namespace conduit
