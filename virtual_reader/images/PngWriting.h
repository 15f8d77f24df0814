#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "virtual_reader/images/Orientation.h"

namespace conduit {

/// Pixels as a PNG is written from them.
struct PngContent {
  UprightWalk walk;                          ///< through `samples`
  int channels;                              ///< 1 grey, 3 red, green, blue
  bool blackAndWhite;                        ///< a bit a pixel is enough; grey only
  const std::vector<std::uint8_t>& samples;  ///< `channels` bytes for each stored pixel
  std::uint32_t pixelsPerMetreAcross;        ///< of the upright page; 0 when not known
  std::uint32_t pixelsPerMetreDown;
};

/// Throws std::runtime_error when it cannot be written: memory is short.
std::string WritePng(const PngContent& content);

}  // namespace conduit
