#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "virtual_reader/pixels/Median.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// The range of luminance of some pixels.
struct Contrast {
  int darkest = 255;
  int lightest = 0;

  void Add(int luminance) {
    darkest = std::min(darkest, luminance);
    lightest = std::max(lightest, luminance);
  }
  int Range() const { return lightest - darkest; }
  int Threshold() const { return (darkest + lightest) / 2; }
};

/// Returns the luminances between which all of a page lies but a five-hundredth at
/// either end. Looks at every fifteenth pixel.
Contrast ContrastOf(const PageImage& image);

/// Finds the edges between dark and light along a line, with hysteresis: blur and noise
/// cross the band around the threshold at will.
class EdgeCounter {
 public:
  /// @param band  to either side of the threshold, in levels of luminance
  EdgeCounter(int threshold, int band, bool dark) : threshold(threshold), band(band), dark(dark) {}

  /// Returns whether an edge lies between this pixel and those before it.
  bool IsEdge(int luminance) {
    const bool changes = dark ? luminance > threshold + band : luminance < threshold - band;
    dark = dark != changes;
    return changes;
  }
  bool IsDark() const { return dark; }

 private:
  int threshold;
  int band;
  bool dark;
};

/// Returns the median of the numbers of edges on `Lines` lines, which begin light.
/// @param eachPixel  calls its argument with the index of a line and the luminance of its
///                   next pixel, for all pixels of all lines
template <int Lines, typename EachPixel>
int MedianEdgeCount(const Contrast& contrast, EachPixel&& eachPixel) {
  constexpr int bandsInRange = 10;
  std::array<int, std::size_t{Lines}> counts{};
  std::array<bool, std::size_t{Lines}> dark{};
  const int threshold = contrast.Threshold();
  const int band = contrast.Range() / bandsInRange;
  eachPixel([&](int line, int luminance) {
    const auto at = static_cast<std::size_t>(line);
    EdgeCounter counter(threshold, band, dark[at]);
    counts[at] += counter.IsEdge(luminance) ? 1 : 0;
    dark[at] = counter.IsDark();
  });
  return Median(counts);
}

}  // namespace conduit
