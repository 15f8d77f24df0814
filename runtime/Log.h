#pragma once

#include "runtime/TextBuilder.h"
#include <conduit/Compiler.h>
#include <conduit/IModuleLogger.h>
#include <conduit/MessageLevel.h>

namespace conduit {

/// Logs the pieces joined.
template <class... Pieces>
CONDUIT_APART void LogPieces(IModuleLogger& logger, MessageLevel level, const char* tag,
                             const Pieces&... pieces) {
  TextBuilder message;
  (message << ... << pieces);
  logger.Log(level, tag, message.Text());
}

/// Logs the pieces joined, when there is a logger; without one nothing is built.
/// @param tag     the operation that speaks, "Class::Operation"
/// @param pieces  whatever a TextBuilder takes
template <class... Pieces>
void Log(IModuleLogger* logger, MessageLevel level, const char* tag, const Pieces&... pieces) {
  if (logger != nullptr) {
    LogPieces(*logger, level, tag, pieces...);
  }
}

}  // namespace conduit
