#pragma once

#include <cstddef>
#include <vector>

namespace conduit {

/// The system resources of this process; compare two counts only.
struct ProcessResources {
  std::size_t threads;
  std::size_t files;  ///< open files; on Windows every kind of handle
};

ProcessResources ResourcesInUse();

/// Returns the process ids of this process's children, including zombies.
std::vector<int> ChildProcesses();

/// Makes descendants whose parent ends children of this process, where the system can.
void AdoptOrphans();

/// Returns whether every byte of a range is readable.
bool IsReadable(const void* data, std::size_t size);

}  // namespace conduit
