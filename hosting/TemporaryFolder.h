#pragma once

#include <filesystem>

namespace conduit {

/// A new folder for as long as this lives; goes with everything in it.
class TemporaryFolder {
 public:
  /// Throws a std::runtime_error that names the folder when it cannot be made.
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path path;
};

}  // namespace conduit
