#include "virtual_reader/mrz/LineStrip.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "virtual_reader/pixels/Sampling.h"

namespace conduit {
namespace {

constexpr int Pitch = 24;  // of a strip, in pixels: a little finer than the grid of glyphs
constexpr int StripHeight = 3 * Pitch;
constexpr double MostSamplesEachWay = 4;

/// Samples of the page whose mean is a pixel of the strip, each way.
int SamplesEachWay(const TextLine& line) {
  const double pitch = line.course.PitchAt(line.Centre());
  return static_cast<int>(std::clamp(std::ceil(pitch / Pitch), 1.0, MostSamplesEachWay));
}

}  // namespace

LineStrip Rectify(const PageImage& page, const TextLine& line, int columns, double skew) {
  LineStrip strip = {{(columns + 2 * StripMargin) * Pitch, StripHeight, {}}, {}};
  const auto width = static_cast<std::size_t>(strip.image.width);
  const int samples = SamplesEachWay(line);
  std::vector<float> sums(width * StripHeight);
  for (int i = 0; i < strip.image.width * samples; ++i) {
    const double column = (i + 0.5) / samples / Pitch - StripMargin - 0.5;
    const Point centre = line.course.At(column);
    const Point step = line.course.StepAt(column);
    const double alongX = step.x / Pitch;
    const double alongY = step.y / Pitch;
    const double downX = skew * alongX - alongY;
    const double downY = skew * alongY + alongX;
    for (int j = 0; j < StripHeight * samples; ++j) {
      const double down = (j + 0.5) / samples - StripHeight / 2.0;
      sums[static_cast<std::size_t>(j / samples) * width + static_cast<std::size_t>(i / samples)] +=
          LuminanceAt(page, static_cast<float>(centre.x + downX * down),
                      static_cast<float>(centre.y + downY * down));
    }
  }
  strip.image.luminance.reserve(sums.size());
  for (const float sum : sums) {
    strip.image.luminance.push_back(
        static_cast<std::uint8_t>(std::lround(sum / static_cast<float>(samples * samples))));
  }
  strip.course.x.factors = {(StripMargin + 0.5) * Pitch - 0.5, Pitch, 0};
  strip.course.y.factors = {StripHeight / 2.0 - 0.5, 0, 0};
  return strip;
}

LineStrip UpsideDown(LineStrip strip) {
  std::reverse(strip.image.luminance.begin(), strip.image.luminance.end());
  return strip;
}

CellInk InkAt(const LineStrip& strip, double column, const PrintShape& shape) {
  const Point step = strip.course.StepAt(column);
  const Point centre = strip.course.At(column);
  const auto alongX = static_cast<float>(step.x / GlyphWidth);
  const auto alongY = static_cast<float>(step.y / GlyphWidth);
  const auto centreX = static_cast<float>(centre.x);
  const auto centreY = static_cast<float>(centre.y);
  const auto width = static_cast<float>(shape.width);
  const auto height = static_cast<float>(shape.height);
  const auto slant = static_cast<float>(shape.slant);
  CellInk ink;
  for (int j = 0; j < CellHeight; ++j) {
    const float down = (static_cast<float>(j) + 0.5F - CellHeight / 2.F) * height;
    const float rowX = centreX - down * (alongY + slant * alongX);
    const float rowY = centreY + down * (alongX - slant * alongY);
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
