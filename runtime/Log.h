#pragma once

#include <concepts>
#include <cstddef>
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

/// Logs the pieces joined. Inline, for most lengths are known where it is called.
template <std::same_as<TextPiece>... Pieces>
void LogPieces(IModuleLogger& logger, MessageLevel level, const char* tag,
               const Pieces&... pieces) {
  // A message is lent for the call, so the usual ones need no string.
  char room[512];
  const auto length = (static_cast<std::size_t>(pieces.length) + ...);
  if (length < sizeof room) {
    char* end = room;
    ((end = pieces.WriteTo(end)), ...);
    *end = '\0';
    logger.Log(level, tag, room);
  } else {
    const BaseString<char> message = BaseString<char>::OfLength(length);
    char* end = message.buffer;
    ((end = pieces.WriteTo(end)), ...);
    logger.Log(level, tag, message.buffer);
  }
}

/// Logs the pieces joined, when there is a logger; without one nothing is built.
/// @param tag  the operation that speaks, "Class::Operation"
template <class... Pieces>
void Log(IModuleLogger* logger, MessageLevel level, const char* tag, const Pieces&... pieces) {
  if (logger != nullptr) {
    LogPieces(*logger, level, tag, TextPiece(pieces)...);
  }
}

}  // namespace conduit
