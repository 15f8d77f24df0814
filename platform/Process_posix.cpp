#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "platform/Process.h"

namespace conduit {

std::vector<std::string> ProgramArguments(int count, const char* const* arguments) {
  return count > 1 ? std::vector<std::string>(arguments + 1, arguments + count)
                   : std::vector<std::string>();
}

std::int64_t ProcessNumber() { return getpid(); }

void KeepFilesPrivate() { umask(S_IRWXG | S_IRWXO); }

void LetWritesFail() {
  signal(SIGXFSZ, SIG_IGN);
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) < 0) {
      open("/dev/null", O_RDONLY);  // gets the lowest free number, which is `stream`
    }
  }
}

// The default on POSIX systems.
void EndAtOnceOnCrash() {}

}  // namespace conduit
