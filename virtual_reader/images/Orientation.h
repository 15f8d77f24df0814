#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// The order in which stored pixels are visited to get the upright page. In pixels.
struct UprightWalk {
  int width;             ///< of the upright page
  int height;            ///< of the upright page
  std::ptrdiff_t start;  ///< offset of its top left pixel
  std::ptrdiff_t right;  ///< step to its next pixel in a row
  std::ptrdiff_t down;   ///< step to its next row
  bool onItsSide;        ///< rotated by 90 degrees: stored rows become columns

  /// Returns whether the page is stored upright.
  bool Stays() const { return !onItsSide && start == 0 && right == 1; }
};

/// @param orientation  1 to 8, as in EXIF and TIFF; any other counts as 1, upright
UprightWalk WalkUpright(int width, int height, int orientation);

/// Returns the upright page; the same pixels when it is stored upright.
PageImage Upright(PageImage stored, int orientation);

/// Returns the orientation of EXIF data, or 1.
/// @param exif  a JPEG file, or EXIF data that begins with "Exif\0\0"
int ExifOrientation(std::string_view exif);

/// Returns the luminance of a colour by the weights of ITU-R BT.601, as JPEG uses them.
constexpr std::uint8_t LuminanceOf(int red, int green, int blue) {
  return static_cast<std::uint8_t>((299 * red + 587 * green + 114 * blue + 500) / 1000);
}

}  // namespace conduit
