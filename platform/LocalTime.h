#pragma once

#include <ctime>

namespace conduit {

/// The current local date and time as the operating system tells it, weekday and
/// day of the year included. [any thread]
std::tm LocalTime();

}  // namespace conduit
