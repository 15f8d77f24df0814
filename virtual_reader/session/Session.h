#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "virtual_reader/pages/PageReaders.h"
#include <conduit/ReaderDataType.h>
#include <conduit/ReaderEventCode.h>
#include <conduit/ReaderLogLine.h>
#include <conduit/ReaderState.h>

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

/// A line for the reader's log, among what it is about.
struct WriteLine {
  std::string text;
  ReaderLogKind kind = ReaderLogKind::Note;
};

using StepAction = std::variant<SendEvent, RaiseError, Pause, SendItem, SendBarcode, WriteLine>;

/// What is played in one piece: a step of a session file, or a page of a folder.
using Step = std::vector<StepAction>;

/// Makes a step: whatever takes long, as decoding and searching its pages, is
/// done in here. Called once, on any thread, and beside the work on other steps.
using StepWork = std::function<Step()>;

/// The steps of a session, one after the other, made as they are asked for.
/// [one thread at a time]
class StepSource {
 public:
  StepSource() = default;
  StepSource(const StepSource&) = delete;
  StepSource& operator=(const StepSource&) = delete;
  virtual ~StepSource() = default;

  /// The work on the next step. An empty function when there is none yet, and the
  /// source is to be asked again later; nothing at the end of the session.
  virtual std::optional<StepWork> Next() = 0;
};

/// What the reader is to do between its connection and its disconnection.
struct Session {
  std::shared_ptr<PageReaders> readers;  ///< of the steps
  std::unique_ptr<StepSource> steps;
  std::vector<std::string> remarks;  ///< notes for the log, before anything is played
};

/// Reads and checks what the location names: a session file, a folder whose
/// images are the documents, or, behind "watch:", such a folder as it fills.
/// Throws SessionError.
Session ReadSession(const std::filesystem::path& location);

}  // namespace conduit
