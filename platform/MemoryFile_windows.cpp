#include <utility>

#include "platform/MemoryFile.h"

namespace conduit {

// Windows has no path for memory.
std::unique_ptr<MemoryFile> MemoryFile::Create() { return nullptr; }

MemoryFile::MemoryFile(std::filesystem::path path, int descriptor)
    : path(std::move(path)), descriptor(descriptor) {}

MemoryFile::~MemoryFile() = default;

void MemoryFile::Release(std::uint64_t /*end*/) {}

}  // namespace conduit
