#pragma once

#include <filesystem>
#include <utility>
#include <vector>

#include "virtual_reader/session/FieldReader.h"
#include "virtual_reader/session/Session.h"

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
  static const std::vector<FieldReader<StepReading>> Fields;

  StepPart ReadEvent(const SessionField& field);
  StepPart ReadError(const SessionField& field);
  StepPart ReadState(const SessionField& field);
  StepPart ReadPause(const SessionField& field);
  StepPart ReadSwipe(const SessionField& field);
  StepPart ReadDocument(const SessionField& field);

  std::filesystem::path folder;
  bool hasImages = false;
};

}  // namespace conduit
