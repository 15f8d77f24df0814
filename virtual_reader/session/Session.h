#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "interfaces/ReaderDataType.h"
#include "interfaces/ReaderEventCode.h"
#include "interfaces/ReaderState.h"

namespace conduit {

struct SendEvent {
  ReaderEventCode code;
  std::optional<ReaderState> state;  ///< what the reader becomes; absent: what the event implies
};

struct RaiseError {
  std::string text;
};

struct Pause {
  std::chrono::milliseconds time;
};

struct SendItem {
  ReaderDataType type;
  std::string bytes;  ///< of the text, image or record
};

struct SendBarcode {
  ReaderDataType type;
  std::int32_t index;
  std::int32_t count;
  std::int32_t format;
  std::string data;
};

using Action = std::variant<SendEvent, RaiseError, Pause, SendItem, SendBarcode>;

/// What the reader is to do between its connection and its disconnection, with
/// everything read and checked beforehand: playing it cannot fail.
struct Session {
  std::vector<Action> actions;
  std::vector<std::string> warnings;  ///< doubts that do not keep it from being played
  std::vector<std::string> findings;  ///< what was found on page images
};

/// Reads a session file and the files that it names, or a folder whose images
/// are the documents. Throws SessionError.
Session ReadSession(const std::filesystem::path& file);

}  // namespace conduit
