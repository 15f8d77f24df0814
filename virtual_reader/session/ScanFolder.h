#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace conduit {

/// The names of files that are taken for page images, for a user.
inline constexpr std::string_view ImageNames = ".png, .jpg, .jpeg, .tif, .tiff, .bmp";

/// A folder in the place of a session: every image is a document, of a TIFF every
/// page, and a text file of the same stem its codeline. All names in UTF-8,
/// within the folder.
struct ScanFolder {
  struct Scan {
    std::string image;
    std::string text;  ///< empty where there is none
  };
  struct Unread {
    std::string name;
    std::string reason;
  };
  std::vector<Scan> scans;     ///< in the order of their bytes
  std::vector<Unread> unread;  ///< all else, but for names that begin with a dot
};

/// Throws a SessionError when the folder cannot be read.
ScanFolder ListScans(const std::filesystem::path& folder);

}  // namespace conduit
