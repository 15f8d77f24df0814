#include <cstdlib>

#include "platform/Environment.h"

namespace conduit {

void SetEnvironment(const char* name, const std::filesystem::path& value) {
  // Unlike SetEnvironmentVariable this also reaches getenv of the C library.
  _wputenv_s(std::filesystem::path(name).c_str(), value.c_str());
}

}  // namespace conduit
