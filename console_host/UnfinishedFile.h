#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/OutputFile.h"

namespace conduit {

/// A file that takes its place when it is complete. Until then it stands beside the place,
/// as "people.csv.1f3a60c2b7d94e58.part": no other program knows the name beforehand. It
/// goes with this object unless it has taken its place or is kept. Each operation throws a
/// std::system_error with the reason.
class UnfinishedFile {
 public:
  explicit UnfinishedFile(const std::filesystem::path& place);
  ~UnfinishedFile();
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  void Write(std::string_view bytes);

  /// Closes the file and gives it its place. Nothing is written after it.
  /// @param expected  what it replaces; see StateOf
  /// @returns false when another file has come to be there: that one stays.
  bool TakePlace(const FileState& expected);

  /// From now on it is not removed.
  void Keep() { kept = true; }
  bool IsKept() const { return kept; }

  const std::filesystem::path& Path() const { return path; }

 private:
  const std::filesystem::path place;
  const std::filesystem::path path;
  OutputFile file;
  bool kept = false;
};

/// The system's reason in the words that are the same on every system.
std::string ReasonOf(const std::error_code& problem);

}  // namespace conduit
