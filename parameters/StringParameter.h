#pragma once

#include <cstdint>

#include "parameters/Parameter.h"

namespace conduit {

/// A text, held to the rules that are switched on, in the order in which they
/// stand here.
class StringParameter : public Parameter {
 public:
  /// @param target  the variable to write; not null, outlives the parameter
  StringParameter(const char* name, const char* qualifiedName, IModuleLogger* logger,
                  BaseString<char>* target);

  std::int32_t SetValue(const char* text) override;
  std::int32_t ValidateCurrent() override;

  /// Holds a candidate to the rules, and logs the first that it breaks.
  virtual std::int32_t Validate(const BaseString<char>& candidate);

  BaseString<char>* target;
  bool required = false;  ///< refuses the empty text
  bool mustStartWith = false;
  BaseString<char> startText;
  bool variableSyntax = false;  ///< wants a "$" in front, except of the empty text
  bool variableSyntaxExempt = false;
  bool dateTimeFormat = false;  ///< wants a format that FormatTime accepts

 private:
  template <class... Pieces>
  std::int32_t Refuse(std::int32_t result, const Pieces&... pieces);
};

}  // namespace conduit
