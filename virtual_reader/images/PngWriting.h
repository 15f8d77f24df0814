#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "virtual_reader/images/Orientation.h"

namespace conduit {

/// The pixels and settings of a PNG to write.
struct PngContent {
  UprightWalk walk;                          ///< through `samples`
  int channels;                              ///< 1 grey, 3 red, green, blue
  bool blackAndWhite;                        ///< writes 1 bit per pixel; grey only
  const std::vector<std::uint8_t>& samples;  ///< `channels` bytes for each stored pixel
  std::uint32_t pixelsPerMetreAcross;        ///< of the upright page; 0 when unknown
  std::uint32_t pixelsPerMetreDown;
};

/// Returns the bytes of the PNG. Throws std::runtime_error when memory is exhausted.
std::string WritePng(const PngContent& content);

}  // namespace conduit
