#pragma once

#include <filesystem>

namespace conduit {

/// Loads a shared library and unloads it when destroyed.
class SharedLibrary {
 public:
  /// Throws std::runtime_error with the system's reason when the file cannot be
  /// loaded. Searches its dependencies beside it where the system supports that.
  /// REQUIRES: an absolute path.
  explicit SharedLibrary(const std::filesystem::path& file);
  ~SharedLibrary();
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;

  /// Returns the exported function, or null.
  template <typename Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(FindAddress(name));
  }

 private:
  void* FindAddress(const char* name) const;

  void* handle;
};

}  // namespace conduit
