#include "virtual_reader/session/Step.h"

#include "virtual_reader/records/AamvaReading.h"
#include "virtual_reader/records/RecordBytes.h"

namespace conduit {
namespace {

void AddLine(Step* step, std::string_view place, std::string_view text, ReaderLogKind kind) {
  Add(step, WriteLine{std::string(place).append(": ").append(text), kind});
}

}  // namespace

void AddPassingError(Step* step, std::string text) {
  Add(step, RaiseError{std::move(text)});
  Add(step, SendEvent{ReaderEventCode::ReaderErrorResolved});
}

void AddNote(Step* step, std::string_view place, std::string_view text) {
  AddLine(step, place, text, ReaderLogKind::Note);
}

void AddWarning(Step* step, std::string_view place, std::string_view text) {
  AddLine(step, place, text, ReaderLogKind::Warning);
}

void AddWarnings(Step* step, std::string_view place, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    AddWarning(step, place, text);
  }
}

void AddCodeline(Step* step, std::string_view place, const CodelineReading& codeline,
                 ReaderDataType textType, ReaderDataType recordType) {
  AddWarnings(step, place, codeline.warnings);
  Add(step, SendItem{textType, codeline.record.codeline});
  Add(step, SendItem{recordType, BytesOf(codeline.record)});
}

void AddAamva(Step* step, std::string_view place, std::string_view text) {
  const AamvaReading reading = ReadAamva(text);
  AddWarnings(step, place, reading.warnings);
  Add(step, SendItem{ReaderDataType::AamvaBarcodeRecord, BytesOf(reading.record)});
}

}  // namespace conduit
