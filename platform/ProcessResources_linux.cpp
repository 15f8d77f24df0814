#include <sys/prctl.h>
#include <sys/uio.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "platform/ProcessResources.h"

namespace conduit {
namespace {

std::filesystem::directory_iterator EntriesOf(const char* folder) {
  std::error_code problem;
  std::filesystem::directory_iterator entries(folder, problem);
  if (problem) {
    throw std::runtime_error(std::string("cannot read ") + folder + ": " + problem.message());
  }
  return entries;
}

std::size_t Count(const char* folder) {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : EntriesOf(folder)) {
    ++count;
  }
  return count;
}

}  // namespace

ProcessResources ResourcesInUse() { return {Count("/proc/self/task"), Count("/proc/self/fd")}; }

std::vector<int> ChildProcesses() {
  std::vector<int> children;
  for (const auto& thread : EntriesOf("/proc/self/task")) {
    std::ifstream stream(thread.path() / "children");
    for (int child = 0; stream >> child;) {
      children.push_back(child);
    }
  }
  return children;
}

void AdoptOrphans() { prctl(PR_SET_CHILD_SUBREAPER, 1); }

/// Reads one byte of each memory page by a system call, which returns an error where a
/// direct read would crash.
bool IsReadable(const void* data, std::size_t size) {
  constexpr std::size_t page = 4096;
  const char* const first = static_cast<const char*>(data);
  const auto canRead = [first](std::size_t at) {
    char byte = 0;
    const iovec here = {&byte, 1};
    const iovec there = {const_cast<char*>(first) + at, 1};
    return process_vm_readv(getpid(), &here, 1, &there, 1, 0) == 1;
  };
  for (std::size_t at = 0; at < size; at += page) {
    if (!canRead(at)) {
      return false;
    }
  }
  return size == 0 || canRead(size - 1);
}

}  // namespace conduit
