#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "virtual_reader/session/DocumentImages.h"
#include "virtual_reader/session/Session.h"
#include "virtual_reader/session/SessionField.h"
#include "virtual_reader/session/StepBuilder.h"

namespace conduit {

/// Reads the steps of a session file. Each is checked whole, with what its files
/// hold but for images: those are read when the step is made.
class StepReading {
 public:
  /// @param folder  where the file names of the session start from
  explicit StepReading(std::filesystem::path folder) : folder(std::move(folder)) {}

  /// Throws a SessionError that names the place.
  StepWork ReadStep(const SessionField& step);

  /// Whether a step so far has a page image.
  bool HasImages() const { return hasImages; }

 private:
  /// What a field adds to the step that it stands in.
  using Part = std::function<void(StepBuilder*)>;
  using Reader = Part (StepReading::*)(const SessionField&);

  /// What each field that an object may have is read by.
  struct FieldReader {
    const char* name;
    Reader read;
  };
  static const std::vector<FieldReader> StepFields;
  static const std::vector<FieldReader> DocumentFields;

  /// The parts of an object's fields, in their order.
  Part ReadFields(const SessionField& object, const std::vector<FieldReader>& readers);

  Part ReadEvent(const SessionField& field);
  Part ReadError(const SessionField& field);
  Part ReadState(const SessionField& field);
  Part ReadPause(const SessionField& field);
  Part ReadSwipe(const SessionField& field);
  Part ReadDocument(const SessionField& field);

  Part ReadPageCodeline(const SessionField& field);
  Part ReadImages(const SessionField& field);
  Part ReadBarcodes(const SessionField& field);
  Part ReadAamvaText(const SessionField& field);
  Part ReadChip(const SessionField& field);
  Part ReadDataGroup1(const SessionField& field);
  Part ReadChipPhoto(const SessionField& field);

  /// Where an image's file is; it is there, and not too large.
  struct ImageFile {
    ReaderDataType type;
    std::string name;
    std::string place;
    std::filesystem::path path;
  };
  ImageFile CheckImage(ReaderDataType type, const SessionField& field) const;
  /// Adds the images, and an error in place of those that cannot be read any more.
  static void AddImageFiles(const std::vector<ImageFile>& files, const PagesWanted& wanted,
                            StepBuilder* step);

  /// The bytes of the file that a field names.
  std::string FileOf(const SessionField& field) const;

  std::filesystem::path folder;
  bool hasImages = false;
  // Of the document under way:
  PagesWanted wanted;      ///< what it does not give itself
  std::string imageNames;  ///< of its files
};

}  // namespace conduit
