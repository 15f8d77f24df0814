#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace conduit {

/// A file in memory that any code of this process can open by its path.
class MemoryFile {
 public:
  /// @returns null where the system has no such files.
  static std::unique_ptr<MemoryFile> Create();

  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  /// Valid in this process, for the life of this object.
  const std::filesystem::path path;

  /// Frees the memory of the bytes before `end`. They then read as zeros; the file keeps
  /// its size.
  void Release(std::uint64_t end);

 private:
  MemoryFile(std::filesystem::path path, int descriptor);

  const int descriptor;
  std::uint64_t released = 0;
};

}  // namespace conduit
