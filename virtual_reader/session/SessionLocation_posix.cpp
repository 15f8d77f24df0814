#include <cstdlib>

#include "virtual_reader/session/SessionLocation.h"

namespace conduit {

std::filesystem::path SessionLocation() {
  const char* const name = std::getenv(SessionVariable);
  return name != nullptr ? name : "";
}

}  // namespace conduit
