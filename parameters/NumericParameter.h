#pragma once

#include <concepts>
#include <cstdint>

#include "parameters/Parameter.h"
#include "runtime/Log.h"
#include <conduit/ResultCode.h>

namespace conduit {

/// A number, checked against the enabled rules in the order of their declaration. The
/// derived class parses the text.
template <class Number>
class NumericParameter : public Parameter {
  static_assert(std::same_as<Number, std::int32_t>, "the log tags say <int>");

 public:
  /// @param target  the variable to write; not null, outlives the parameter
  NumericParameter(const char* name, const char* qualifiedName, IModuleLogger* logger,
                   Number* target)
      : Parameter(name, qualifiedName, logger), target(target) {}

  std::int32_t SetValue(const char* text) override {
    const Number number = ParseValue(text);
    if (const std::int32_t result = Validate(number); result != ResultSuccess) {
      return result;
    }
    BaseString<char> given(text);
    valueText.Swap(given);
    *target = number;
    Log(logger, MessageConfiguration, "NumericParameter<int>::SetValue", qualifiedName, " = ",
        *target);
    return ResultSuccess;
  }

  std::int32_t ValidateCurrent() override { return Validate(*target); }

  /// Parses a text, which may be null.
  virtual Number ParseValue(const char* text) = 0;

  /// Checks a candidate against the rules and logs the first that it breaks.
  /// @returns 0 or ResultInvalidValue.
  virtual std::int32_t Validate(Number v) {
    if (mustEqual && v != equalValue) {
      return Refuse(" - value must be equal to ", equalValue, ", got ", v);
    }
    if (mustNotEqual && v == notEqualValue) {
      return Refuse(" - value must be not equal to ", notEqualValue, ", got ", v);
    }
    if (mustBeLess && (v > lessValue || (v == lessValue && !lessCanBeEqual))) {
      return Refuse(" - value must be less than ", lessValue, " (Can be equal: ", lessCanBeEqual,
                    "), got ", v);
    }
    if (mustBeGreater && (v < greaterValue || (v == greaterValue && !greaterCanBeEqual))) {
      return Refuse(" - value must be greater than ", greaterValue,
                    " (Can be equal: ", greaterCanBeEqual, "), got ", v);
    }
    if (mustBeInRange && (v < rangeLow || v > rangeHigh)) {
      return Refuse(" - value ", v, " is not between the range ", rangeLow, " and ", rangeHigh);
    }
    return ResultSuccess;
  }

  Number* target;
  Number fallback = 0;  ///< the value of a text that is not a number
  bool mustEqual = false;
  Number equalValue = 0;
  bool mustNotEqual = false;
  Number notEqualValue = 0;
  bool mustBeLess = false;
  Number lessValue = 0;
  bool lessCanBeEqual = false;
  bool mustBeGreater = false;
  Number greaterValue = 0;
  bool greaterCanBeEqual = false;
  bool mustBeInRange = false;
  Number rangeLow = 0;   ///< inclusive
  Number rangeHigh = 0;  ///< inclusive

 private:
  template <class... Pieces>
  std::int32_t Refuse(const Pieces&... pieces) {
    Log(logger, MessageFailure, "NumericParameter<int>::Validate", "Invalid value for ",
        qualifiedName, pieces...);
    return ResultInvalidValue;
  }
};

}  // namespace conduit
