#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace conduit {

/// A folder in the place of a session: every image is a document, and a text
/// file of the same stem its codeline. All names in UTF-8, within the folder.
struct ScanFolder {
  struct Scan {
    std::string image;
    std::string codeline;  ///< empty where there is none
  };
  std::vector<Scan> scans;              ///< in the order of their bytes
  std::vector<std::string> strayTexts;  ///< text files that no image goes with
};

/// Throws a SessionError when the folder cannot be read or has no image.
ScanFolder ListScans(const std::filesystem::path& folder);

}  // namespace conduit
