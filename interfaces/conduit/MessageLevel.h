#pragma once  // stands alone in C++17

#include <cstdint>

namespace conduit {

/// How much a message matters, as IModuleLogger::Log receives it.
enum MessageLevel : std::int32_t {
  MessageFailure = 0,        ///< a failure or a refusal
  MessageUnknownName = 1,    ///< a request that names no known parameter
  MessageTrace = 2,          ///< items and events, before they are delivered
  MessageConfiguration = 3,  ///< values accepted, conditions and actions created
};

}  // namespace conduit
