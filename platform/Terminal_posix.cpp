#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "platform/Terminal.h"

namespace conduit {

bool PrepareTerminal() {
  const char* terminal = std::getenv("TERM");
  return isatty(STDOUT_FILENO) != 0 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

bool TroubleShowsBesideOutput() { return isatty(STDOUT_FILENO) != 0 && isatty(STDERR_FILENO) != 0; }

}  // namespace conduit
