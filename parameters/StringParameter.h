#pragma once

#include <cstdint>

#include "parameters/Parameter.h"

namespace conduit {

/// A text, checked against the enabled rules in the order of their declaration.
class StringParameter : public Parameter {
 public:
  /// @param target  the variable to write; not null, outlives the parameter
  StringParameter(const char* name, const char* qualifiedName, IModuleLogger* logger,
                  BaseString<char>* target);

  std::int32_t SetValue(const char* text) override;
  std::int32_t ValidateCurrent() override;

  /// Checks a candidate against the rules and logs the first that it breaks.
  /// @returns 0, ResultValueMissing or ResultInvalidValue.
  virtual std::int32_t Validate(const BaseString<char>& candidate);

  BaseString<char>* target;
  bool required = false;  ///< refuses the empty text
  bool mustStartWith = false;
  BaseString<char> startText;
  bool variableSyntax = false;  ///< requires a leading "$", unless the text is empty
  bool variableSyntaxExempt = false;
  bool dateTimeFormat = false;  ///< requires a format that FormatTime accepts

 private:
  template <class... Pieces>
  std::int32_t Refuse(std::int32_t result, const Pieces&... pieces);
};

}  // namespace conduit
