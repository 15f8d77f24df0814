#pragma once

#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

#include "virtual_reader/session/FieldReader.h"
#include "virtual_reader/session/Session.h"

namespace conduit {

/// Reads the steps of a session file. Each is checked whole, with what its files
/// hold but for images: those are read when the step is made.
class StepReading {
 public:
  /// @param folder   where the file names of the session start from
  /// @param readers  for the images of the steps
  StepReading(std::filesystem::path folder, std::shared_ptr<PageReaders> readers)
      : folder(std::move(folder)), readers(std::move(readers)) {}

  /// Throws a SessionError that names the place.
  StepWork ReadStep(const SessionField& step);

  /// Whether a step so far has a page image.
  bool HasImages() const { return hasImages; }

 private:
  static const std::vector<FieldReader<StepReading>> Fields;

  StepPart ReadEvent(const SessionField& field);
  StepPart ReadError(const SessionField& field);
  StepPart ReadState(const SessionField& field);
  StepPart ReadPause(const SessionField& field);
  StepPart ReadSwipe(const SessionField& field);
  StepPart ReadDocument(const SessionField& field);

  std::filesystem::path folder;
  std::shared_ptr<PageReaders> readers;
  bool hasImages = false;
};

}  // namespace conduit
