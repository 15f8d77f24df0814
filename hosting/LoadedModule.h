#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "hosting/ModuleLibrary.h"

namespace conduit {

/// A parameter as a module lists it.
struct ListedParameter {
  std::string name;
  std::string value;
};

/// A module and the library that it came from: created when this is, destroyed
/// with it.
///
/// REQUIRES: the module's reader is stopped before this goes.
class LoadedModule {
 public:
  /// Throws a ModuleError when there is no module to be had from the library.
  /// @param logger  outlives the module; null for none
  LoadedModule(const ModuleLibrary& library, IModuleLogger* logger);
  LoadedModule(const std::filesystem::path& file, IModuleLogger* logger);
  ~LoadedModule();
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  IInputModule* operator->() const { return module; }
  IInputModule& operator*() const { return *module; }
  const ModuleLibrary& Library() const { return library; }

  /// In the module's order. One without a name is left out, and a value that is null
  /// counts as empty: a module may still be being written.
  std::vector<ListedParameter> Parameters() const;

 private:
  const ModuleLibrary library;
  IInputModule* module = nullptr;
};

}  // namespace conduit
