#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "virtual_reader/records/CodelineReading.h"
#include "virtual_reader/session/Session.h"

namespace conduit {

/// Puts a step together. Whatever is noted for the log comes before the first
/// action: who reads the log beside the callbacks knows what they are about.
class StepBuilder {
 public:
  /// Begins what one document does. Its name heads the notes.
  void AddDocument(const std::string& name);

  /// @param place  the file or the field that the note is about
  void Note(const std::string& place, const std::string& text);
  void Warn(const std::string& place, const std::string& warning);
  void WarnAll(const std::string& place, const std::vector<std::string>& warnings);

  void AddEvent(ReaderEventCode code) { Add(SendEvent{code, {}}); }
  /// An error that is over at once: the rest goes on as if it had not been.
  void AddPassingError(const std::string& text);

  /// Adds a codeline as plain text and as a record.
  void AddCodeline(const std::string& place, const CodelineReading& codeline,
                   ReaderDataType textType, ReaderDataType recordType);
  /// Adds the record of a driving licence's barcode. Throws std::invalid_argument
  /// when the text is none.
  void AddAamva(const std::string& place, std::string_view text);

  /// Made in place: GCC takes a moved StepAction for one that may be uninitialised.
  template <typename ActionType>
  void Add(ActionType action) {
    actions.emplace_back(std::in_place_type<ActionType>, std::move(action));
  }

  Step Take();

 private:
  void WriteToLog(ReaderLogKind kind, std::string text);

  Step notes;
  Step actions;
};

}  // namespace conduit
