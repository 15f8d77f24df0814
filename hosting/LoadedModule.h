#pragma once

#include <filesystem>

#include "hosting/ModuleLibrary.h"

namespace conduit {

/// A module and the library that it came from: created when this is, destroyed
/// with it.
///
/// REQUIRES: the module's reader is stopped before this goes.
class LoadedModule {
 public:
  /// Throws a std::runtime_error that names the file and the reason when there
  /// is no module to be had from it.
  LoadedModule(const std::filesystem::path& file, IModuleLogger& logger);
  ~LoadedModule();
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  IInputModule* operator->() const { return module; }

 private:
  ModuleLibrary library;
  IInputModule* module = nullptr;
};

}  // namespace conduit
