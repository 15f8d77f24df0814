#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "parameters/IntParameter.h"
#include "parameters/PtrTable.h"
#include "parameters/StringParameter.h"
#include "runtime/BaseString.h"
#include <conduit/IModuleLogger.h>

namespace conduit {

/// Owns the parameters of a module and finds them by name. One thread at a time.
class ParameterMap {
 public:
  /// @param logger  borrowed for the map's life; null for no log
  /// @param prefix  the module's name, the prefix of every qualified name
  ParameterMap(IModuleLogger* logger, const char* prefix);
  ParameterMap(const ParameterMap&) = delete;
  ParameterMap& operator=(const ParameterMap&) = delete;
  ~ParameterMap();

  /// Registers a parameter with no rule enabled; the caller enables rules. When the
  /// name is taken, the earlier parameter stays in the table.
  /// @param target  not null, outlives the map
  /// @returns the new parameter, in either case; the map owns it.
  StringParameter* AddStringParameter(const char* name, BaseString<char>* target);
  IntParameter* AddIntParameter(const char* name, std::int32_t* target);
  /// Registers an integer parameter named "LogLevel".
  IntParameter* AddLogLevelParameter(std::int32_t* target);

  /// @returns the parameter's own result, or ResultUnknownParameter.
  std::int32_t SetValue(const char* name, const char* value);

  /// @param value  not null; not written when no parameter has the name
  /// @returns 0 or ResultUnknownParameter.
  std::int32_t GetValue(const char* name, const char** value);

  /// Gets name and value text of the parameter at a 0-based position in the order of
  /// names. Writes nothing when the index is out of range or a pointer is null.
  void GetParameterAt(std::int32_t index, const char** name, const char** value);

  std::int32_t Count() { return table.Count(); }

 private:
  /// Returns the parameter, or null. Does not copy the name.
  Parameter* FindParameter(const char* name) const;
  /// Creates a parameter and adds it; the map owns it.
  template <class Typed, class Target>
  Typed* Register(const char* name, Target* target);

  IModuleLogger* logger;
  BaseString<char> prefix;
  PtrTable<BaseString<char>, Parameter> table;
  std::vector<std::unique_ptr<Parameter>> nameTaken;  ///< registered, but not in the table
};

}  // namespace conduit
