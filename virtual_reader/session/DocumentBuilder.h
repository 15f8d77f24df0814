#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "virtual_reader/session/DocumentImages.h"
#include "virtual_reader/session/FieldReader.h"

namespace conduit {

/// Reads what a session says of one document. It is checked whole, with what its files
/// hold but for images: those are read when the step is made.
class DocumentBuilder {
 public:
  /// @param folder    where the file names of the session start from
  /// @param document  outlives this
  /// @param readers   for its images
  DocumentBuilder(const std::filesystem::path& folder, const SessionField& document,
                  std::shared_ptr<PageReaders> readers);

  /// Called once. Throws a SessionError that names the place.
  StepPart Build();

  /// Whether it has a page image.
  bool HasImages() const { return !imageNames.empty(); }

 private:
  static const std::vector<FieldReader<DocumentBuilder>> Fields;

  StepPart ReadPageCodeline(const SessionField& field);
  StepPart ReadImages(const SessionField& field);
  StepPart ReadBarcodes(const SessionField& field);
  StepPart ReadAamvaText(const SessionField& field);
  StepPart ReadChip(const SessionField& field);
  StepPart ReadDataGroup1(const SessionField& field);
  StepPart ReadChipPhoto(const SessionField& field);
  StepPart ReadError(const SessionField& field);

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
                            PageReaders* readers, StepBuilder* step);

  /// The bytes of the file that a field names.
  std::string FileOf(const SessionField& field) const;

  const std::filesystem::path& folder;
  const SessionField& document;
  const std::shared_ptr<PageReaders> readers;
  const PagesWanted wanted;  ///< what it does not give itself
  std::string imageNames;    ///< of its files
};

}  // namespace conduit
