#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "virtual_reader/records/CodelineReading.h"
#include <conduit/ReaderDataType.h>
#include <conduit/ReaderEventCode.h>
#include <conduit/ReaderLogLine.h>
#include <conduit/ReaderState.h>

namespace conduit {

struct SendEvent {
  ReaderEventCode code;
  std::optional<ReaderState> state = {};  ///< that the reader enters; absent: the event implies it
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

/// Writes a line to the reader's log, among the actions that it is about.
struct WriteLine {
  std::string text;
  ReaderLogKind kind = ReaderLogKind::Note;
};

using StepAction = std::variant<SendEvent, RaiseError, Pause, SendItem, SendBarcode, WriteLine>;

/// The reader plays a step in one piece.
using Step = std::vector<StepAction>;

/// Constructs the action in place: GCC warns that a moved StepAction may be uninitialised.
template <typename ActionType>
void Add(Step* step, ActionType action) {
  step->emplace_back(std::in_place_type<ActionType>, std::move(action));
}

/// Adds an error and its end: the rest of the step goes on.
void AddPassingError(Step* step, std::string text);

/// @param place  the file or the field that the note is about
void AddNote(Step* step, std::string_view place, std::string_view text);
void AddWarning(Step* step, std::string_view place, std::string_view text);
void AddWarnings(Step* step, std::string_view place, const std::vector<std::string>& texts);

/// Adds a codeline as plain text and as a record.
void AddCodeline(Step* step, std::string_view place, const CodelineReading& codeline,
                 ReaderDataType textType, ReaderDataType recordType);

/// Adds the record of a driving licence's barcode. Throws std::invalid_argument when `text` is not
/// one.
void AddAamva(Step* step, std::string_view place, std::string_view text);

}  // namespace conduit
