#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "virtual_reader/pixels/Geometry.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// A page divided into square cells, with a value for each.
template <typename Value>
struct Grid {
  int size;  ///< of a cell, in pixels
  int columns;
  int rows;
  std::vector<Value> values;

  Grid(const PageImage& image, int cellSize)
      : size(cellSize),
        columns((image.width + cellSize - 1) / cellSize),
        rows((image.height + cellSize - 1) / cellSize),
        values(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)) {}

  bool Has(int column, int row) const {
    return column >= 0 && row >= 0 && column < columns && row < rows;
  }
  Value& At(int column, int row) { return values[Index(column, row)]; }
  const Value& At(int column, int row) const { return values[Index(column, row)]; }

  /// Calls the operation with each cell of three by three around one, which is among them.
  template <typename Visit>
  void EachNeighbour(int column, int row, Visit&& visit) const {
    for (int y = row - 1; y <= row + 1; ++y) {
      for (int x = column - 1; x <= column + 1; ++x) {
        if (Has(x, y)) {
          visit(x, y);
        }
      }
    }
  }

  /// Returns the pixels of a rectangle of cells and of `margin` cells on each side.
  Rectangle Pixels(const Rectangle& cells, const PageImage& image, int margin) const {
    const int left = std::max(0, (cells.left - margin) * size);
    const int top = std::max(0, (cells.top - margin) * size);
    return {left, top, std::min(image.width, (cells.Right() + margin) * size) - left,
            std::min(image.height, (cells.Bottom() + margin) * size) - top};
  }

 private:
  std::size_t Index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
           static_cast<std::size_t>(column);
  }
};

}  // namespace conduit
