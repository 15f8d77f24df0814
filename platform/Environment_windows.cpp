#include <cstdlib>

#include "platform/Environment.h"

namespace conduit {

void SetEnvironment(const char* name, const std::filesystem::path& value) {
  // Unlike SetEnvironmentVariable, also visible to the C library's getenv.
  _wputenv_s(std::filesystem::path(name).c_str(), value.c_str());
}

}  // namespace conduit
