#include <cstdlib>

#include "platform/Environment.h"

namespace conduit {

void SetEnvironment(const char* name, const std::filesystem::path& value) {
  setenv(name, value.c_str(), 1);
}

}  // namespace conduit
