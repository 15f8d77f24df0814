#pragma once

#include <ctime>

namespace conduit {

/// Returns the current local date and time, with weekday and day of the year. [any thread]
std::tm LocalTime();

}  // namespace conduit
