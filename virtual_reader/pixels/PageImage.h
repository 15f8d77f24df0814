#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace conduit {

/// A grey image: the luminance of its pixels, row by row; 0 is black, 255 is white.
struct PageImage {
  int width;
  int height;
  std::vector<std::uint8_t> luminance;

  bool Contains(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }

  /// Requires that the image has the row.
  const std::uint8_t* Row(int y) const {
    return luminance.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
  }
};

}  // namespace conduit
