#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace conduit {

/// Moves a new descriptor above the numbers of the standard streams. Those are free when the
/// host has closed its streams, and output to a stream would then reach the descriptor.
/// Returns -1 when there is no free descriptor.
inline int AboveStandardStreams(int descriptor) {
  if (descriptor < 0 || descriptor > STDERR_FILENO) {
    return descriptor;
  }
  const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  close(descriptor);
  return moved;
}

}  // namespace conduit
