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

/// The parameters of a module, by name; owns every one of them. One thread at a
/// time.
class ParameterMap {
 public:
  /// @param logger  borrowed for the map's life; null for no log
  /// @param prefix  the module's name, with which every qualified name begins
  ParameterMap(IModuleLogger* logger, const char* prefix);
  ParameterMap(const ParameterMap&) = delete;
  ParameterMap& operator=(const ParameterMap&) = delete;
  ~ParameterMap();

  /// Registers a parameter without rules, for the caller to switch on. Under a
  /// name already taken the earlier one stays in the table; the new one lives as
  /// long as the map all the same.
  /// @param target  not null, outlives the map
  StringParameter* AddStringParameter(const char* name, BaseString<char>* target);
  IntParameter* AddIntParameter(const char* name, std::int32_t* target);
  /// The same by the name "LogLevel".
  IntParameter* AddLogLevelParameter(std::int32_t* target);

  /// @returns the parameter's own result, or ResultUnknownParameter.
  std::int32_t SetValue(const char* name, const char* value);

  /// @param value  not null; not written when no parameter has the name
  /// @returns 0 or ResultUnknownParameter.
  std::int32_t GetValue(const char* name, const char** value);

  /// Name and value text of the parameter at a position in the order of names;
  /// writes nothing when the index is out of range or a pointer is null.
  void GetParameterAt(std::int32_t index, const char** name, const char** value);

  std::int32_t Count() { return table.Count(); }

 private:
  /// The parameter of that name, found without a copy of the name; or null.
  Parameter* FindParameter(const char* name) const;
  /// Enters a new parameter and owns it from here on.
  template <class Typed, class Target>
  Typed* Register(const char* name, Target* target);

  IModuleLogger* logger;
  BaseString<char> prefix;
  PtrTable<BaseString<char>, Parameter> table;
  std::vector<std::unique_ptr<Parameter>> nameTaken;  ///< registered, but not in the table
};

}  // namespace conduit
