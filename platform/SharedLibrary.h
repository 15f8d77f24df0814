#pragma once

#include <filesystem>

namespace conduit {

/// A shared library, loaded for as long as this lives.
class SharedLibrary {
 public:
  /// Throws a std::runtime_error with the system's reason when the file cannot
  /// be loaded. REQUIRES: an absolute path; the libraries that it depends on
  /// are found beside it where the system can look there.
  explicit SharedLibrary(const std::filesystem::path& file);
  ~SharedLibrary();
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;

  /// The exported function of that name, or null.
  template <typename Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(FindAddress(name));
  }

 private:
  void* FindAddress(const char* name) const;

  void* handle;
};

}  // namespace conduit
