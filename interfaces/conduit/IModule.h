#pragma once  // self-contained; C++17

#include <cstdint>

#include "Compiler.h"

namespace conduit {

/// The base of every module: named parameters and destruction.
///
/// A host destroys a module through CIM_Destroy, never with delete: the module
/// lives in the heap of its own library.
class IModule {
 public:
  CONDUIT_DESTRUCTOR_SLOT(IModule);

  /// Sets a parameter from text. [host thread & reader stopped]
  /// @param name   the parameter's name, case-sensitive
  /// @param value  the text; copied
  /// @returns 0, ResultUnknownParameter, ResultValueMissing or
  ///          ResultInvalidValue. A refused value changes nothing.
  virtual std::int32_t SetParameter(const char* name, const char* value) = 0;

  /// Gets the text that a parameter was last set to; empty until it is first
  /// set, whatever its default. [host thread]
  /// @param value  not null; receives text that the module owns, valid until
  ///               the parameter is next set or the module is destroyed; not
  ///               written on failure
  /// @returns 0 or ResultUnknownParameter.
  virtual std::int32_t GetParameter(const char* name, const char** value) = 0;
};

}  // namespace conduit
