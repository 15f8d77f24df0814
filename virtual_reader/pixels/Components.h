#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "virtual_reader/pixels/Geometry.h"

namespace conduit {

/// Pixels that touch each other, corners included.
struct Component {
  Rectangle bounds;
  int pixels;
};

/// Labels the components of a binary image, which is handed over row by row. Keeps runs of
/// pixels, not the image.
class ComponentLabelling {
 public:
  /// @param set  of each pixel of the next row whether it belongs to a component: 0 or not
  void AddRow(const std::uint8_t* set, int width);

  /// Returns the components in the order of their first pixels.
  std::vector<Component> Take();

 private:
  struct Run {
    int y;
    int from;
    int to;
    std::size_t parent;
  };

  std::size_t RootOf(std::size_t run);
  void Join(std::size_t a, std::size_t b);

  std::vector<Run> runs;
  std::size_t aboveBegin = 0;  ///< of the row above
  int rows = 0;
};

}  // namespace conduit
