#pragma once

#include <cstdint>

namespace conduit {

/// Maximum pixels of an image. A3 at 600 dpi has 70 million; a small file can decompress
/// to far more.
constexpr std::int64_t MostPixels = 100'000'000;

/// Maximum width and height in pixels.
constexpr std::int64_t LongestSide = 65'535;

/// Maximum bytes that decoding allocates at once. Only a progressive JPEG needs more than a
/// row or a strip besides the luminance: its decoder keeps all coefficients, 3 bytes per
/// pixel with 4:2:0 chroma subsampling and 6 without.
constexpr std::int64_t MostMemory = 4 * MostPixels;

/// Throws std::invalid_argument with the limit when an image of this size is refused.
void CheckSize(std::int64_t width, std::int64_t height);

}  // namespace conduit
