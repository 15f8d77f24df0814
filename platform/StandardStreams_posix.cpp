#include <sys/stat.h>
#include <unistd.h>

#include "platform/StandardStreams.h"

namespace conduit {

bool IsStandardStream(const std::filesystem::path& file) {
  struct stat wanted = {};
  if (stat(file.c_str(), &wanted) != 0) {
    return false;
  }
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    struct stat own = {};
    if (fstat(stream, &own) == 0 && own.st_dev == wanted.st_dev && own.st_ino == wanted.st_ino) {
      return true;
    }
  }
  return false;
}

}  // namespace conduit
