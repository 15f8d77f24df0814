#pragma once

#include <cstddef>
#include <vector>

namespace conduit {

/// What this process holds of the system; only differences mean something.
struct ProcessResources {
  std::size_t threads;
  std::size_t files;  ///< open ones; on Windows every kind of handle
};

ProcessResources ResourcesInUse();

/// The process numbers of this process's children, those included that have ended
/// and were not waited for.
std::vector<int> ChildProcesses();

/// From now on a process whose parent ends becomes a child of this one, if it
/// descends from it and the system can do so.
void AdoptOrphans();

/// Whether all bytes of a range can be read.
bool IsReadable(const void* data, std::size_t size);

}  // namespace conduit
