#include "virtual_reader/pixels/Contrast.h"

#include <cstdint>

namespace conduit {

Contrast ContrastOf(const PageImage& image) {
  constexpr int outlyingPart = 500;  // a small symbol covers a fraction of the page
  constexpr int everyRow = 3;
  constexpr int everyColumn = 5;
  std::array<int, 256> counts{};
  int total = 0;
  for (int y = 0; y < image.height; y += everyRow) {
    const std::uint8_t* const row = image.Row(y);
    for (int x = y % everyColumn; x < image.width; x += everyColumn) {
      ++counts[row[x]];
      ++total;
    }
  }
  const int least = total / outlyingPart;
  Contrast contrast = {0, 255};
  for (int seen = 0; contrast.darkest < 255; ++contrast.darkest) {
    seen += counts[static_cast<std::size_t>(contrast.darkest)];
    if (seen > least) {
      break;
    }
  }
  for (int seen = 0; contrast.lightest > contrast.darkest; --contrast.lightest) {
    seen += counts[static_cast<std::size_t>(contrast.lightest)];
    if (seen > least) {
      break;
    }
  }
  return contrast;
}

}  // namespace conduit
