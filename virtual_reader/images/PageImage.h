#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "virtual_reader/images/ImageFormat.h"

namespace conduit {

/// A picture as its light values, row by row: 0 black to 255 white.
struct PageImage {
  int width;
  int height;
  std::vector<std::uint8_t> light;
};

/// An image file as it is sent, and what it shows.
struct ImageFile {
  std::string bytes;
  std::optional<PageImage> image;  ///< absent: neither named nor begun as an image
};

/// Throws std::invalid_argument with the reason when the file cannot be read, or
/// claims to be an image and is none.
ImageFile ReadImageFile(const std::filesystem::path& file, std::uintmax_t limit);

}  // namespace conduit
