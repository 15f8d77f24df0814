#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// How stored pixels are walked so that the page stands upright. Counted in pixels.
struct UprightWalk {
  int width;             ///< of the upright page
  int height;            ///< of the upright page
  std::ptrdiff_t start;  ///< where its upper left corner is stored
  std::ptrdiff_t right;  ///< to its next pixel in a row
  std::ptrdiff_t down;   ///< to its next row
  bool onItsSide;        ///< rows become columns

  /// Whether the page is stored upright.
  bool Stays() const { return !onItsSide && start == 0 && right == 1; }
};

/// @param orientation  1 to 8, as EXIF and TIFF number them; any other is 1, upright
UprightWalk WalkUpright(int width, int height, int orientation);

/// The page turned upright; stored as it is when it stands so already.
PageImage Upright(PageImage stored, int orientation);

/// The orientation that EXIF data asks for, or 1.
/// @param exif  a JPEG file, or EXIF data that begins with "Exif\0\0"
int ExifOrientation(std::string_view exif);

/// The luminance of a colour, weighted as ITU-R BT.601 does, which JPEG keeps.
constexpr std::uint8_t LuminanceOf(int red, int green, int blue) {
  return static_cast<std::uint8_t>((299 * red + 587 * green + 114 * blue + 500) / 1000);
}

}  // namespace conduit
