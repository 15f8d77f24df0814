#pragma once  // stands alone in C++17

#include <cstdint>

#include "Compiler.h"

namespace conduit {

/// What every module can do: be configured by named parameters and destroyed.
///
/// A host destroys a module through CIM_Destroy, never with delete: the module
/// lives in the heap of the library it came from.
class IModule {
 public:
  CONDUIT_DESTRUCTOR_SLOT(IModule);

  /// Sets a parameter from text. [host thread & reader stopped]
  /// @param name   the parameter's name, case-sensitive
  /// @param value  the text; copied
  /// @returns 0; ResultUnknownParameter; or the parameter's refusal:
  ///          ResultValueMissing, ResultInvalidValue. A refused value changes
  ///          nothing.
  virtual std::int32_t SetParameter(const char* name, const char* value) = 0;

  /// Reads back the text that a parameter was last set to; empty until it has
  /// been set, whatever its default. [host thread]
  /// @param value  not null; receives text that the module owns, good until
  ///               the parameter is next set or the module is destroyed; not
  ///               written on failure
  /// @returns 0 or ResultUnknownParameter.
  virtual std::int32_t GetParameter(const char* name, const char** value) = 0;
};

}  // namespace conduit
