#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosting/RunListener.h"

namespace conduit {

/// Follows the log file that a reader library writes meanwhile.
class ReaderLogFile {
 public:
  /// Begins where the file ends now; it need not exist yet. What is no regular file is not
  /// followed, for reading it might wait or never end; nor is the file that this process
  /// writes its own output into. A line among the first says so.
  explicit ReaderLogFile(const std::filesystem::path& file);

  /// Makes a log for this host alone, which goes with it: in memory, where the system has
  /// files there, and what was read is given back; else in a folder for temporary files.
  /// Throws a std::runtime_error when there is room for neither.
  ReaderLogFile();

  const std::filesystem::path& File() const { return file; }
  bool IsOwn() const { return own != nullptr; }

  /// The lines that were completed since the last call.
  std::vector<ReaderLine> NewLines();

 private:
  struct Own;

  /// Whether there is a file to read; adds a line to `lines` when it is not to be.
  bool Open(std::vector<ReaderLine>& lines);

  std::shared_ptr<Own> own;
  std::filesystem::path file;
  bool refused = false;
  std::ifstream stream;
  std::streamoff position = 0;
};

}  // namespace conduit
