#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "platform/SharedLibrary.h"
#include <conduit/ModuleEntry.h>

namespace conduit {

/// There is no module to be had from a file.
class ModuleError : public std::runtime_error {
 public:
  /// The text names the file as well.
  ModuleError(const std::filesystem::path& file, const std::string& reason);

  const std::string reason;
};

/// A module's library and its two functions. Stays loaded for as long as this or a
/// copy of it lives.
class ModuleLibrary {
 public:
  /// Throws a ModuleError when the file is no module's library.
  explicit ModuleLibrary(const std::filesystem::path& file);

  const std::filesystem::path& File() const { return file; }

 private:
  std::filesystem::path file;
  std::shared_ptr<const SharedLibrary> library;

 public:
  GetInputModuleFunction create;
  DestroyFunction destroy;
};

}  // namespace conduit
