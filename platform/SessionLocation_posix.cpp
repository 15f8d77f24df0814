#include <cstdlib>

#include "platform/SessionLocation.h"

namespace conduit {

std::filesystem::path SessionLocation() {
  const char* const name = std::getenv(SessionVariable);
  return name != nullptr ? name : "";
}

}  // namespace conduit
