#pragma once

#include <filesystem>

#include "interfaces/ModuleEntry.h"
#include "platform/SharedLibrary.h"

namespace conduit {

/// A module's library and its two functions.
class ModuleLibrary {
  SharedLibrary library;

 public:
  /// Throws a std::runtime_error that names the file and the reason when it is
  /// no module's library.
  explicit ModuleLibrary(const std::filesystem::path& file);

  const GetInputModuleFunction create;
  const DestroyFunction destroy;
};

}  // namespace conduit
