#include "virtual_reader/search/PageAreas.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace conduit {
namespace {

/// The image in square cells, each marked where anything in it is dark.
struct Cells {
  int size;  ///< of a cell, in pixels
  int columns;
  int rows;
  std::vector<bool> dark;

  std::size_t At(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
           static_cast<std::size_t>(column);
  }
};

Cells CellsOf(const PageImage& image) {
  // A gap wider than two cells parts what stands beside it: some 2 mm on a page.
  constexpr int cellsAcross = 128;
  const int size = std::max(4, std::min(image.width, image.height) / cellsAcross);
  Cells cells = {size, (image.width + size - 1) / size, (image.height + size - 1) / size, {}};
  cells.dark.resize(static_cast<std::size_t>(cells.columns) * static_cast<std::size_t>(cells.rows));
  const auto [darkest, lightest] = std::minmax_element(image.light.begin(), image.light.end());
  const int threshold = (*darkest + *lightest) / 2;
  for (std::size_t i = 0; i < image.light.size(); ++i) {
    if (image.light[i] < threshold) {
      const int x = static_cast<int>(i % static_cast<std::size_t>(image.width));
      const int y = static_cast<int>(i / static_cast<std::size_t>(image.width));
      cells.dark[cells.At(x / size, y / size)] = true;
    }
  }
  return cells;
}

/// Takes a cell and all dark ones that it touches, corners included, out of the
/// cells. The area of cells that they cover.
PageArea TakeConnected(int column, int row, Cells* cells) {
  int left = column;
  int right = column;
  int top = row;
  int bottom = row;
  std::vector<std::pair<int, int>> open = {{column, row}};
  while (!open.empty()) {
    const auto [x, y] = open.back();
    open.pop_back();
    const bool inside = x >= 0 && y >= 0 && x < cells->columns && y < cells->rows;
    if (!inside || !cells->dark[cells->At(x, y)]) {
      continue;
    }
    cells->dark[cells->At(x, y)] = false;
    left = std::min(left, x);
    right = std::max(right, x);
    top = std::min(top, y);
    bottom = std::max(bottom, y);
    for (int dy = -1; dy <= 1; ++dy) {
      for (int dx = -1; dx <= 1; ++dx) {
        open.emplace_back(x + dx, y + dy);
      }
    }
  }
  return {left, top, right - left + 1, bottom - top + 1};
}

}  // namespace

bool Overlap(const PageArea& a, const PageArea& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

std::vector<PageArea> PrintedAreas(const PageImage& image) {
  constexpr int fewestCells = 3;
  constexpr int flattest = 5;  // a Data Matrix is up to four times as wide as high
  Cells cells = CellsOf(image);
  std::vector<PageArea> areas;
  for (int row = 0; row < cells.rows; ++row) {
    for (int column = 0; column < cells.columns; ++column) {
      if (!cells.dark[cells.At(column, row)]) {
        continue;
      }
      const PageArea area = TakeConnected(column, row, &cells);
      const auto [shorter, longer] = std::minmax(area.width, area.height);
      if (shorter >= fewestCells && longer <= shorter * flattest) {
        const int left = std::max(0, (area.left - 1) * cells.size);
        const int top = std::max(0, (area.top - 1) * cells.size);
        areas.push_back({left, top,
                         std::min(image.width, (area.left + area.width + 1) * cells.size) - left,
                         std::min(image.height, (area.top + area.height + 1) * cells.size) - top});
      }
    }
  }
  return areas;
}

}  // namespace conduit
