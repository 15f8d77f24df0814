#pragma once

#include <cstdint>

namespace conduit {

/// A3 at 600 dpi has 70 million. A small file may unpack to far more.
constexpr std::int64_t MostPixels = 100'000'000;

/// Pixels along a side, so that no image consists of rows without end.
constexpr std::int64_t LongestSide = 65'535;

/// Bytes that decoding may hold at once. A progressive JPEG is the one format whose
/// decoder keeps more than a row or a strip beside the light: all coefficients, which
/// are 3 bytes a pixel with colour at half the resolution and 6 at full.
constexpr std::int64_t MostMemory = 4 * MostPixels;

/// Throws std::invalid_argument that names the limit when an image of this size is not
/// read.
void CheckSize(std::int64_t width, std::int64_t height);

}  // namespace conduit
