#pragma once

#include "runtime/TextBuilder.h"
#include <conduit/Compiler.h>
#include <conduit/IModuleLogger.h>
#include <conduit/MessageLevel.h>

namespace conduit {

/// Logs the concatenated pieces.
template <class... Pieces>
CONDUIT_APART void LogPieces(IModuleLogger& logger, MessageLevel level, const char* tag,
                             const Pieces&... pieces) {
  TextBuilder message;
  (message << ... << pieces);
  logger.Log(level, tag, message.Text());
}

/// Logs the concatenated pieces. Builds no text when `logger` is null.
/// @param tag     the operation that logs, "Class::Operation"
/// @param pieces  any types that TextBuilder accepts
template <class... Pieces>
void Log(IModuleLogger* logger, MessageLevel level, const char* tag, const Pieces&... pieces) {
  if (logger != nullptr) {
    LogPieces(*logger, level, tag, pieces...);
  }
}

}  // namespace conduit
