#pragma once  // self-contained; C++17

#include <cstdint>

namespace conduit {

/// The states of a reader. A reader may return other codes; they have no name.
enum class ReaderState : std::int32_t {
  NotInitialised = 0,
  Enabled = 1,
  Disabled = 2,
  Asleep = 3,
  Reading = 4,
  Error = 5,
  FatalError = 6,
  Terminated = 7,
  Suspended = 8,
};

/// The text reported to the host for each state, indexed by its code.
inline constexpr const char* ReaderStateNames[] = {
    "Not Initialised", "Enabled",     "Disabled",   "Asleep",    "Reading",
    "Error",           "Fatal Error", "Terminated", "Suspended",
};
static_assert(sizeof ReaderStateNames / sizeof *ReaderStateNames ==
              static_cast<std::int32_t>(ReaderState::Suspended) + 1);

}  // namespace conduit
