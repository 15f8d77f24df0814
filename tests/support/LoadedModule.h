#pragma once

#include <filesystem>

#include "interfaces/ModuleEntry.h"

namespace conduit {

/// A module as a host has it: its library loaded at run time, the two functions
/// found by name. Fails by an exception that says why.
class LoadedModule {
 public:
  LoadedModule(const std::filesystem::path& file, IModuleLogger* logger);
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;
  ~LoadedModule();

  IInputModule* operator->() const { return module; }
  IInputModule* Get() const { return module; }

  GetInputModuleFunction getInputModule;
  DestroyFunction destroy;

 private:
  void* library;
  IInputModule* module = nullptr;
};

}  // namespace conduit
