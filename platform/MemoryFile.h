#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace conduit {

/// A file in memory, which any code of this process opens by a path as it opens others.
class MemoryFile {
 public:
  /// @returns null where the system has no such files.
  static std::unique_ptr<MemoryFile> Create();

  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  /// Good for this process, for as long as this lives.
  const std::filesystem::path path;

  /// Gives the memory of the bytes before `end` back. They read as zeros from now on, and
  /// the file keeps its size.
  void Release(std::uint64_t end);

 private:
  MemoryFile(std::filesystem::path path, int descriptor);

  const int descriptor;
  std::uint64_t released = 0;
};

}  // namespace conduit
