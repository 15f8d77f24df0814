#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "hosting/RunListener.h"

namespace conduit {

/// Follows the log file that a reader library writes meanwhile.
class ReaderLogFile {
 public:
  /// Begins where the file ends now; it need not exist yet.
  explicit ReaderLogFile(const std::filesystem::path& file);

  /// The lines that were completed since the last call.
  std::vector<ReaderLine> NewLines();

 private:
  const std::filesystem::path file;
  std::ifstream stream;
  std::streamoff position = 0;
};

}  // namespace conduit
