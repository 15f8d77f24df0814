#include "virtual_reader/session/StepBuilder.h"

#include <iterator>

#include "virtual_reader/records/AamvaReading.h"
#include "virtual_reader/records/RecordBytes.h"

namespace conduit {

void StepBuilder::WriteToLog(ReaderLogKind kind, std::string text) {
  notes.emplace_back(std::in_place_type<WriteLine>, WriteLine{std::move(text), kind});
}

void StepBuilder::AddDocument(const std::string& name) {
  WriteToLog(ReaderLogKind::Document, name);
}

void StepBuilder::Note(const std::string& place, const std::string& text) {
  WriteToLog(ReaderLogKind::Note, std::string(place).append(": ").append(text));
}

void StepBuilder::Warn(const std::string& place, const std::string& warning) {
  WriteToLog(ReaderLogKind::Warning, std::string(place).append(": ").append(warning));
}

void StepBuilder::WarnAll(const std::string& place, const std::vector<std::string>& warnings) {
  for (const std::string& warning : warnings) {
    Warn(place, warning);
  }
}

void StepBuilder::AddPassingError(const std::string& text) {
  Add(RaiseError{text});
  AddEvent(ReaderEventCode::ReaderErrorResolved);
}

void StepBuilder::AddCodeline(const std::string& place, const CodelineReading& codeline,
                              ReaderDataType textType, ReaderDataType recordType) {
  WarnAll(place, codeline.warnings);
  Add(SendItem{textType, codeline.record.codeline});
  Add(SendItem{recordType, BytesOf(codeline.record)});
}

void StepBuilder::AddAamva(const std::string& place, std::string_view text) {
  const AamvaReading reading = ReadAamva(text);
  WarnAll(place, reading.warnings);
  Add(SendItem{ReaderDataType::AamvaBarcodeRecord, BytesOf(reading.record)});
}

Step StepBuilder::Take() {
  Step step = std::move(notes);
  step.insert(step.end(), std::make_move_iterator(actions.begin()),
              std::make_move_iterator(actions.end()));
  notes.clear();
  actions.clear();
  return step;
}

}  // namespace conduit
