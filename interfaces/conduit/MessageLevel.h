#pragma once  // self-contained; C++17

#include <cstdint>

namespace conduit {

/// The level of a log message, as IModuleLogger::Log receives it.
enum MessageLevel : std::int32_t {
  MessageFailure = 0,        ///< a failure or a refusal
  MessageUnknownName = 1,    ///< a request that names no known parameter
  MessageTrace = 2,          ///< items and events, before they are delivered
  MessageConfiguration = 3,  ///< values accepted, conditions and actions created
};

}  // namespace conduit
