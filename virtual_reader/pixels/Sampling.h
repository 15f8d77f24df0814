#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

#include "virtual_reader/pixels/Geometry.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Returns the bilinear mean of a pixel, the next in its row and the two below them.
/// @param right, down  how far the place is from the pixel's centre: 0 to 1
inline float Interpolated(const PageImage& image, int column, int row, float right, float down) {
  const std::uint8_t* const above = image.Row(row) + column;
  const std::uint8_t* const below = above + image.width;
  const float upper =
      static_cast<float>(above[0]) + static_cast<float>(above[1] - above[0]) * right;
  const float lower =
      static_cast<float>(below[0]) + static_cast<float>(below[1] - below[0]) * right;
  return upper + (lower - upper) * down;
}

/// Returns the luminance between pixels, whose centres are at whole numbers; beyond the
/// image, that of its rim. Requires two pixels each way.
inline float LuminanceAt(const PageImage& image, float x, float y) {
  constexpr float shortOfTheRim = 1.01F;
  x = std::clamp(x, 0.F, static_cast<float>(image.width) - shortOfTheRim);
  y = std::clamp(y, 0.F, static_cast<float>(image.height) - shortOfTheRim);
  const auto column = static_cast<int>(x);
  const auto row = static_cast<int>(y);
  return Interpolated(image, column, row, x - static_cast<float>(column),
                      y - static_cast<float>(row));
}

/// Returns the luminance of the pixel around a point; nothing beyond the image.
inline std::optional<int> PixelAt(const PageImage& image, Point point) {
  if (point.x < 0 || point.y < 0 || point.x >= image.width || point.y >= image.height) {
    return {};
  }
  return image.Row(static_cast<int>(point.y))[static_cast<int>(point.x)];
}

/// Returns the mean of three by three pixels, weighted 1 2 1 each way: finer grain of a scan
/// vanishes. Requires that the image has them all.
inline int SmoothedAt(const PageImage& image, int x, int y) {
  const auto threeOf = [x](const std::uint8_t* row) {
    return row[x - 1] + 2 * row[x] + row[x + 1];
  };
  return (threeOf(image.Row(y - 1)) + 2 * threeOf(image.Row(y)) + threeOf(image.Row(y + 1))) / 16;
}

/// Returns the image at a whole fraction of its size, each pixel the mean of those that it
/// replaces.
/// @param factor  at least 1
PageImage Reduced(const PageImage& page, int factor);

/// A region of a page, rotated level and dark on light.
class RectifiedRegion {
 public:
  /// @param inverted  the region is light on dark
  RectifiedRegion(const PageImage& page, const RotatedRectangle& region, bool inverted);

  const PageImage& Image() const { return image; }

  /// Returns the bounds on the page of a rectangle of the rectified image.
  Rectangle OnPage(const Rectangle& area) const;

 private:
  PageImage image;
  RotatedAxes axes;
};

}  // namespace conduit
