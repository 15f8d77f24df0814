#pragma once

#include <cstdint>

#include "runtime/BaseString.h"
#include <conduit/IModuleLogger.h>

namespace conduit {

/// A setting that the host sets and gets as text, by name.
///
/// This base only stores the text. A derived class parses it, checks it against
/// rules and writes the value to its target, a variable that the module reads
/// directly. A refused value is logged and changes nothing. One thread at a time,
/// and never while the module reads its variables.
class Parameter {
 public:
  /// @param qualifiedName  names the parameter in messages: "FullPage:LogLevel"
  /// @param logger         borrowed for the parameter's life; null for no log
  Parameter(const char* name, const char* qualifiedName, IModuleLogger* logger);
  Parameter(const Parameter&) = delete;
  Parameter& operator=(const Parameter&) = delete;
  virtual ~Parameter() = default;

  /// @returns 0, ResultValueMissing or ResultInvalidValue.
  virtual std::int32_t SetValue(const char* text);

  /// Points `value` at the text last accepted, empty before the first. The text is
  /// valid until the next accepted SetValue, or until the parameter is destroyed.
  /// REQUIRES: value is not null.
  /// @returns 0 always.
  virtual std::int32_t GetValue(const char** value);

  /// Checks the target's current value against the rules.
  /// @returns as SetValue.
  virtual std::int32_t ValidateCurrent();

  BaseString<char> name;
  BaseString<char> valueText;  ///< as passed, before conversion
  BaseString<char> qualifiedName;
  IModuleLogger* logger;
};

}  // namespace conduit
