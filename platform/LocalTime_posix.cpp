#include <ctime>

#include "platform/LocalTime.h"

namespace conduit {

std::tm LocalTime() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  return local;
}

}  // namespace conduit
