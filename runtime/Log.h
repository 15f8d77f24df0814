#pragma once

#include <cstdint>

#include "interfaces/IModuleLogger.h"
#include "runtime/Concatenate.h"

namespace conduit {

/// How much a message matters, as IModuleLogger::Log receives it.
enum MessageLevel : std::int32_t {
  MessageFailure = 0,
  MessageUnknownName = 1,
  MessageTrace = 2,
  MessageConfiguration = 3,
};

/// Logs the pieces joined, when there is a logger; without one nothing is built.
/// @param tag  the operation that speaks, "Class::Operation"
template <class... Pieces>
void Log(IModuleLogger* logger, MessageLevel level, const char* tag, const Pieces&... pieces) {
  if (logger != nullptr) {
    logger->Log(level, tag, Concatenate({pieces...}).buffer);
  }
}

}  // namespace conduit
