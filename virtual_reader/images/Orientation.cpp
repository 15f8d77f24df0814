#include "virtual_reader/images/Orientation.h"

#include <utility>

namespace conduit {

UprightWalk WalkUpright(int width, int height, int orientation) {
  const std::ptrdiff_t row = width;
  const std::ptrdiff_t lastInRow = row - 1;
  const std::ptrdiff_t lastRow = row * (height - 1);
  switch (orientation) {
    case 2:
      return {width, height, lastInRow, -1, row, false};
    case 3:
      return {width, height, lastRow + lastInRow, -1, -row, false};
    case 4:
      return {width, height, lastRow, 1, -row, false};
    case 5:
      return {height, width, 0, row, 1, true};
    case 6:
      return {height, width, lastRow, -row, 1, true};
    case 7:
      return {height, width, lastRow + lastInRow, -row, -1, true};
    case 8:
      return {height, width, lastInRow, row, -1, true};
    default:
      return {width, height, 0, 1, row, false};
  }
}

PageImage Upright(PageImage stored, int orientation) {
  const UprightWalk walk = WalkUpright(stored.width, stored.height, orientation);
  if (walk.Stays()) {
    return stored;
  }
  PageImage upright = {walk.width, walk.height, std::vector<std::uint8_t>(stored.luminance.size())};
  auto* to = upright.luminance.data();
  for (int y = 0; y < walk.height; ++y) {
    const std::uint8_t* from = stored.luminance.data() + walk.start + y * walk.down;
    for (int x = 0; x < walk.width; ++x) {
      *to++ = from[x * walk.right];
    }
  }
  return upright;
}

}  // namespace conduit
