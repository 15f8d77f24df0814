#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <utility>

#include "platform/Descriptor_posix.h"
#include "platform/MemoryFile.h"

namespace conduit {
namespace {

/// Bytes below which Release does nothing: the system frees whole memory pages only.
constexpr std::uint64_t WorthReleasing = 64 << 10;

}  // namespace

std::unique_ptr<MemoryFile> MemoryFile::Create() {
  const int descriptor = AboveStandardStreams(memfd_create("conduit", MFD_CLOEXEC));
  if (descriptor < 0) {
    return nullptr;
  }
  std::unique_ptr<MemoryFile> file(
      new MemoryFile("/proc/self/fd/" + std::to_string(descriptor), descriptor));
  // Without /proc the file has no path.
  const bool reachable = access(file->path.c_str(), R_OK | W_OK) == 0;
  return reachable ? std::move(file) : nullptr;
}

MemoryFile::MemoryFile(std::filesystem::path path, int descriptor)
    : path(std::move(path)), descriptor(descriptor) {}

MemoryFile::~MemoryFile() { close(descriptor); }

void MemoryFile::Release(std::uint64_t end) {
  if (end < released + WorthReleasing) {
    return;
  }
  fallocate(descriptor, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, static_cast<off_t>(released),
            static_cast<off_t>(end - released));
  // A partly released memory page is freed by a later call.
  constexpr std::uint64_t page = 4096;
  released = end / page * page;
}

}  // namespace conduit
