#pragma once

#include <cstdint>

#include "runtime/BaseString.h"
#include <conduit/IModuleLogger.h>

namespace conduit {

/// A setting that the host writes and reads as text, by name.
///
/// This base only keeps the text. The typed ones convert it, hold it to rules and
/// write it to their target, a variable of the module, which the module reads
/// directly. A refused value changes nothing and is logged. One thread at a time,
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

  /// Points `value` at the text last accepted, empty before the first. It stays
  /// good until the next accepted SetValue, or until the parameter goes.
  /// REQUIRES: value is not null.
  /// @returns 0 always.
  virtual std::int32_t GetValue(const char** value);

  /// Holds what the target holds now to the rules.
  /// @returns as SetValue.
  virtual std::int32_t ValidateCurrent();

  BaseString<char> name;
  BaseString<char> valueText;  ///< as it was passed, whatever it was converted to
  BaseString<char> qualifiedName;
  IModuleLogger* logger;
};

}  // namespace conduit
