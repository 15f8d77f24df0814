#pragma once

#include <filesystem>
#include <stdexcept>

#include "interfaces/ModuleEntry.h"
#include "platform/SharedLibrary.h"

namespace conduit {

/// A module in its library, loaded as a host loads it; both functions at hand.
class TestedModule {
 public:
  TestedModule(const std::filesystem::path& file, IModuleLogger* logger) : library(file) {
    if (getInputModule(logger, &module) != 0) {
      throw std::runtime_error("CIM_GetInputModule failed");
    }
  }
  TestedModule(const TestedModule&) = delete;
  TestedModule& operator=(const TestedModule&) = delete;
  ~TestedModule() { destroy(module); }

  IInputModule* operator->() const { return module; }

 private:
  SharedLibrary library;

 public:
  const GetInputModuleFunction getInputModule =
      library.Find<GetInputModuleFunction>("CIM_GetInputModule");
  const DestroyFunction destroy = library.Find<DestroyFunction>("CIM_Destroy");

 private:
  IInputModule* module = nullptr;
};

}  // namespace conduit
