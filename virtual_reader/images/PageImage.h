#pragma once

#include <cstdint>
#include <vector>

namespace conduit {

/// A greyscale image: one luminance value (grey value) per pixel, row by row, 0 black to
/// 255 white.
struct PageImage {
  int width;
  int height;
  std::vector<std::uint8_t> light;
};

}  // namespace conduit
