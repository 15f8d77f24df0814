#include <sys/stat.h>

#include "platform/Process.h"

namespace conduit {

std::vector<std::string> ProgramArguments(int count, const char* const* arguments) {
  return count > 1 ? std::vector<std::string>(arguments + 1, arguments + count)
                   : std::vector<std::string>();
}

void KeepFilesPrivate() { umask(S_IRWXG | S_IRWXO); }

// It does from the start.
void EndAtOnceOnCrash() {}

}  // namespace conduit
