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
  std::optional<ReaderState> state = {};  ///< the reader enters; absent: the event implies it
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

/// The reader plays a step in one piece.
using Step = std::vector<StepAction>;

/// Made in place: GCC takes a moved StepAction for one that may be uninitialised.
template <typename ActionType>
void Add(Step* step, ActionType action) {
  step->emplace_back(std::in_place_type<ActionType>, std::move(action));
}

/// Adds an error that is over at once: the rest goes on as if it had not been.
void AddPassingError(Step* step, std::string text);

/// @param place  the file or the field that the note is about
void AddNote(Step* step, std::string_view place, std::string_view text);
void AddWarning(Step* step, std::string_view place, std::string_view text);
void AddWarnings(Step* step, std::string_view place, const std::vector<std::string>& texts);

/// Adds a codeline as plain text and as a record.
void AddCodeline(Step* step, std::string_view place, const CodelineReading& codeline,
                 ReaderDataType textType, ReaderDataType recordType);

/// Adds the record of a driving licence's barcode. Throws std::invalid_argument when the text is
/// none.
void AddAamva(Step* step, std::string_view place, std::string_view text);

}  // namespace conduit
