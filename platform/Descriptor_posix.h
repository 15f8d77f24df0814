#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace conduit {

/// Moves a new descriptor out of the numbers of the standard streams, which are free when the
/// host has closed those: what anybody then writes to a stream would reach it. Returns -1
/// when there is no descriptor.
inline int AboveStandardStreams(int descriptor) {
  if (descriptor < 0 || descriptor > STDERR_FILENO) {
    return descriptor;
  }
  const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  close(descriptor);
  return moved;
}

}  // namespace conduit
