#pragma once

#include <cstdint>
#include <string>

namespace conduit {

/// Work on one image file, as the reader hands it to the process that does it.
struct PageRequest {
  enum class Task : std::uint8_t {
    ReadPage,
    CountPages,     ///< of a TIFF file
    CheckImage,     ///< whether the image can be decoded; of a TIFF file, whether it has a page
    DescribeLimits  ///< what is not looked for, for the log
  };

  Task task = Task::ReadPage;
  bool barcodes = false;   ///< to be looked for
  bool codeline = false;   ///< to be looked for
  std::uint32_t page = 0;  ///< of a TIFF, from 0
  std::string file;        ///< a TIFF file, in UTF-8, which that process opens itself
  std::string bytes;       ///< of the image; empty where `file` names it
};

}  // namespace conduit
