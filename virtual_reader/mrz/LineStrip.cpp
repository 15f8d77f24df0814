#include "virtual_reader/mrz/LineStrip.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "virtual_reader/pixels/Sampling.h"

namespace conduit {
namespace {

constexpr int Pitch = 24;  // of a strip, in pixels
constexpr int StripHeight = 3 * Pitch;

/// So many samples of the page are the mean of a strip's pixel, each way.
int SamplesEachWay(const TextRow& row) {
  constexpr double most = 4;
  const double middle = row.columns / 2.0;
  const double pitch = std::hypot(row.x.SlopeAt(middle), row.y.SlopeAt(middle));
  return static_cast<int>(std::clamp(std::ceil(pitch / Pitch), 1.0, most));
}

}  // namespace

LineStrip Straighten(const PageImage& page, const TextRow& row, int columns, double slant) {
  LineStrip strip = {{(columns + 2 * StripBefore) * Pitch, StripHeight, {}}, {}};
  const auto width = static_cast<std::size_t>(strip.image.width);
  const int samples = SamplesEachWay(row);
  std::vector<float> sums(width * StripHeight);
  for (int i = 0; i < strip.image.width * samples; ++i) {
    const double column = (i + 0.5) / samples / Pitch - StripBefore - 0.5;
    const double alongX = row.x.SlopeAt(column) / Pitch;
    const double alongY = row.y.SlopeAt(column) / Pitch;
    const double downX = slant * alongX - alongY;
    const double downY = slant * alongY + alongX;
    const double middleX = row.x.At(column);
    const double middleY = row.y.At(column);
    for (int j = 0; j < StripHeight * samples; ++j) {
      const double down = (j + 0.5) / samples - StripHeight / 2.0;
      sums[static_cast<std::size_t>(j / samples) * width + static_cast<std::size_t>(i / samples)] +=
          LuminanceAt(page, static_cast<float>(middleX + downX * down),
                      static_cast<float>(middleY + downY * down));
    }
  }
  strip.image.luminance.reserve(sums.size());
  for (const float sum : sums) {
    strip.image.luminance.push_back(
        static_cast<std::uint8_t>(sum / static_cast<float>(samples * samples) + 0.5F));
  }
  strip.course.x.factors = {(StripBefore + 0.5) * Pitch - 0.5, Pitch, 0};
  strip.course.y.factors = {StripHeight / 2.0 - 0.5, 0, 0};
  return strip;
}

LineStrip UpsideDown(LineStrip strip) {
  std::reverse(strip.image.luminance.begin(), strip.image.luminance.end());
  return strip;
}

CellInk InkAt(const LineStrip& strip, double column, const PrintLook& look) {
  const LineCourse& course = strip.course;
  const auto alongX = static_cast<float>(course.x.SlopeAt(column) / GlyphWidth);
  const auto alongY = static_cast<float>(course.y.SlopeAt(column) / GlyphWidth);
  const auto middleX = static_cast<float>(course.x.At(column));
  const auto middleY = static_cast<float>(course.y.At(column));
  const auto width = static_cast<float>(look.width);
  const auto height = static_cast<float>(look.height);
  const auto lean = static_cast<float>(look.lean);
  CellInk ink;
  for (int j = 0; j < CellHeight; ++j) {
    const float down = (static_cast<float>(j) + 0.5F - CellHeight / 2.F) * height;
    const float rowX = middleX - down * (alongY + lean * alongX);
    const float rowY = middleY + down * (alongX - lean * alongY);
    for (int i = 0; i < CellWidth; ++i) {
      const float along = (static_cast<float>(i) + 0.5F - CellWidth / 2.F) * width;
      constexpr float white = 255.5F;
      ink.rows[static_cast<std::size_t>(j)][static_cast<std::size_t>(i)] =
          static_cast<std::int16_t>(
              white - LuminanceAt(strip.image, rowX + along * alongX, rowY + along * alongY));
    }
  }
  return ink;
}

}  // namespace conduit
