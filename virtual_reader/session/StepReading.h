#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "virtual_reader/records/CodelineReading.h"
#include "virtual_reader/session/PagesReading.h"
#include "virtual_reader/session/Session.h"
#include "virtual_reader/session/SessionField.h"

namespace conduit {

/// Turns the steps of a session file into the actions that play them.
class StepReading {
 public:
  /// @param folder  where the file names of the session start from
  explicit StepReading(std::filesystem::path folder) : folder(std::move(folder)) {}

  void ReadStep(const SessionField& step);

  /// A document that is a page image, and a text file with its codeline where
  /// that is named.
  void ReadScan(const std::string& image, const std::string& codeline);

  void Warn(const std::string& warning) { session.warnings.push_back(warning); }

  Session TakeSession() { return std::move(session); }

 private:
  using Reader = void (StepReading::*)(const SessionField&);

  /// What each field that an object may have is read by.
  struct FieldReader {
    const char* name;
    Reader read;
  };
  static const std::vector<FieldReader> StepFields;
  static const std::vector<FieldReader> DocumentFields;

  void ReadFields(const SessionField& object, const std::vector<FieldReader>& readers);

  void ReadEvent(const SessionField& field);
  void ReadError(const SessionField& field);
  void ReadState(const SessionField& field);
  void ReadPause(const SessionField& field);
  void ReadSwipe(const SessionField& field);
  void ReadDocument(const SessionField& field);

  void ReadPageCodeline(const SessionField& field);
  void ReadImages(const SessionField& field);
  void ReadBarcodes(const SessionField& field);
  void ReadAamvaText(const SessionField& field);
  void ReadChip(const SessionField& field);

  /// Adds a codeline as plain text and as a record.
  void AddCodeline(const std::string& place, const CodelineReading& codeline,
                   ReaderDataType textType, ReaderDataType recordType);
  void AddImages(const std::string& place, std::vector<PageFile> files);
  /// Adds the barcodes found on page images, and the records of driving licences.
  void AddBarcodes(const std::string& place, const PagesReading& reading);
  /// Adds the record of a driving licence's barcode. Throws std::invalid_argument.
  void AddAamva(const std::string& place, std::string_view text);
  void AddEvent(ReaderEventCode code) { Add(SendEvent{code, {}}); }
  /// Made in place: GCC takes a moved Action for one that may be uninitialised.
  template <typename ActionType>
  void Add(ActionType action) {
    session.actions.emplace_back(std::in_place_type<ActionType>, std::move(action));
  }
  void WarnAt(const std::string& place, const std::vector<std::string>& warnings);

  /// The bytes of the file that a field names.
  std::string FileOf(const SessionField& field) const;
  ImageFile ImageOf(const SessionField& field) const;
  template <typename Content>
  Content Read(const SessionField& field,
               Content (*read)(const std::filesystem::path&, std::uintmax_t)) const;

  std::filesystem::path folder;
  Session session;
  /// What the document under way says itself, instead of its pages.
  bool givesBarcodes = false;
  bool givesAamva = false;
  bool toldThatPagesAreNotSearched = false;
};

}  // namespace conduit
