#include "virtual_reader/search/PageAreas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <numbers>
#include <utility>

namespace conduit {
namespace {

/// A page in square cells of equal size, with a value for each.
template <typename Value>
struct Cells {
  int size;  ///< of a cell, in pixels
  int columns;
  int rows;
  std::vector<Value> values;

  Cells(const PageImage& image, int cellSize)
      : size(cellSize),
        columns((image.width + cellSize - 1) / cellSize),
        rows((image.height + cellSize - 1) / cellSize),
        values(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)) {}

  bool Has(int column, int row) const {
    return column >= 0 && row >= 0 && column < columns && row < rows;
  }
  Value& At(int column, int row) { return values[Index(column, row)]; }
  const Value& At(int column, int row) const { return values[Index(column, row)]; }

  /// The pixels of these cells, and of one more to each side.
  PageArea Pixels(const PageArea& cells, const PageImage& image) const {
    const int left = std::max(0, (cells.left - 1) * size);
    const int top = std::max(0, (cells.top - 1) * size);
    return {left, top, std::min(image.width, (cells.left + cells.width + 1) * size) - left,
            std::min(image.height, (cells.top + cells.height + 1) * size) - top};
  }

 private:
  std::size_t Index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
           static_cast<std::size_t>(column);
  }
};

/// Grows with the cells that are put into it.
struct Extent {
  int left;
  int top;
  int right;
  int bottom;

  explicit Extent(int column, int row) : left(column), top(row), right(column), bottom(row) {}

  void Add(int column, int row) {
    left = std::min(left, column);
    right = std::max(right, column);
    top = std::min(top, row);
    bottom = std::max(bottom, row);
  }
  PageArea Area() const { return {left, top, right - left + 1, bottom - top + 1}; }
};

const std::uint8_t* Row(const PageImage& image, int y) {
  return image.light.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width);
}

/// The light values between which nearly all of a page lies.
struct Contrast {
  int dark;
  int light;

  int Range() const { return light - dark; }
};

Contrast ContrastOf(const PageImage& image) {
  std::array<int, 256> counts{};
  int total = 0;
  for (int y = 0; y < image.height; y += 3) {
    const std::uint8_t* const row = Row(image, y);
    for (int x = y % 5; x < image.width; x += 5) {
      ++counts[row[x]];
      ++total;
    }
  }
  const int least = total / 500;  // a small symbol covers a fraction of the page
  Contrast contrast = {0, 255};
  for (int seen = 0; contrast.dark < 255; ++contrast.dark) {
    seen += counts[static_cast<std::size_t>(contrast.dark)];
    if (seen > least) {
      break;
    }
  }
  for (int seen = 0; contrast.light > contrast.dark; --contrast.light) {
    seen += counts[static_cast<std::size_t>(contrast.light)];
    if (seen > least) {
      break;
    }
  }
  return contrast;
}

/// Marks the cells that an edge between dark and light runs through. Of two by two
/// pixels the mean counts, which keeps the grain of a scan from being an edge.
Cells<std::uint8_t> FindEdges(const PageImage& image, int cellSize, int leastStep) {
  Cells<std::uint8_t> edges(image, cellSize);
  const int halves = cellSize / 2;
  const int width = image.width / 2;
  std::vector<std::uint8_t> low(static_cast<std::size_t>(width));
  std::vector<std::uint8_t> high(low.size());
  for (int row = 0; row < edges.rows; ++row) {
    std::fill(low.begin(), low.end(), std::uint8_t{255});
    std::fill(high.begin(), high.end(), std::uint8_t{0});
    // One more line than the cell has, for an edge between it and the next.
    for (int line = 0; line <= halves; ++line) {
      const int y = row * cellSize + 2 * line;
      if (y + 1 >= image.height) {
        break;
      }
      const std::uint8_t* const upper = Row(image, y);
      const std::uint8_t* const lower = Row(image, y + 1);
      for (int x = 0; x < width; ++x) {
        const auto at = static_cast<std::size_t>(x);
        const auto mean = static_cast<std::uint8_t>(
            (upper[2 * at] + upper[2 * at + 1] + lower[2 * at] + lower[2 * at + 1]) / 4);
        low[at] = std::min(low[at], mean);
        high[at] = std::max(high[at], mean);
      }
    }
    for (int column = 0; column < edges.columns; ++column) {
      int lowest = 255;
      int highest = 0;
      const int end = std::min(width, column * halves + halves + 1);
      for (int x = column * halves; x < end; ++x) {
        lowest = std::min<int>(lowest, low[static_cast<std::size_t>(x)]);
        highest = std::max<int>(highest, high[static_cast<std::size_t>(x)]);
      }
      edges.At(column, row) = highest - lowest >= leastStep ? 1 : 0;
    }
  }
  return edges;
}

/// Takes a cell and all marked ones that it touches, corners included, out of the
/// cells. The area of cells that they cover.
PageArea TakeConnected(int column, int row, Cells<std::uint8_t>* cells) {
  Extent extent(column, row);
  std::vector<std::pair<int, int>> open = {{column, row}};
  cells->At(column, row) = 0;
  while (!open.empty()) {
    const auto [x, y] = open.back();
    open.pop_back();
    extent.Add(x, y);
    for (int dy = -1; dy <= 1; ++dy) {
      for (int dx = -1; dx <= 1; ++dx) {
        if (cells->Has(x + dx, y + dy) && cells->At(x + dx, y + dy) != 0) {
          cells->At(x + dx, y + dy) = 0;
          open.emplace_back(x + dx, y + dy);
        }
      }
    }
  }
  return extent.Area();
}

PageArea ExtentOfMarked(const Cells<std::uint8_t>& cells, const PageImage& image) {
  Extent extent(cells.columns, cells.rows);
  extent.right = -1;
  extent.bottom = -1;
  for (int row = 0; row < cells.rows; ++row) {
    for (int column = 0; column < cells.columns; ++column) {
      if (cells.At(column, row) != 0) {
        extent.Add(column, row);
      }
    }
  }
  return extent.right < 0 ? PageArea{} : cells.Pixels(extent.Area(), image);
}

/// What an area shows on lines through it.
struct Look {
  int crossings;      ///< between dark and light, along a line in the middle of all
  int crossingsDown;  ///< the same for lines from top to bottom
  bool inverted;      ///< its outermost pixels are rather dark
};

Look LookAt(const PageImage& image, const PageArea& area) {
  constexpr int lines = 9;
  const auto light = [&](int x, int y) { return int{Row(image, area.top + y)[area.left + x]}; };
  int lowest = 255;
  int highest = 0;
  const auto eachLine = [&](int length, int across, auto&& see) {
    for (int line = 0; line < lines; ++line) {
      const int at = (line + 1) * across / (lines + 1);
      for (int i = 0; i < length; ++i) {
        see(line, i, at);
      }
    }
  };
  eachLine(area.width, area.height, [&](int /*line*/, int x, int y) {
    lowest = std::min(lowest, light(x, y));
    highest = std::max(highest, light(x, y));
  });
  // A band in the middle counts for neither side: blur and noise cross it at will.
  const int threshold = (lowest + highest) / 2;
  const int band = (highest - lowest) / 10;
  const auto median = [&](int length, int across, auto&& at) {
    std::array<int, lines> counts{};
    std::array<bool, lines> dark{};
    eachLine(length, across, [&](int line, int i, int other) {
      const auto index = static_cast<std::size_t>(line);
      const int value = at(i, other);
      if (dark[index] ? value > threshold + band : value < threshold - band) {
        dark[index] = !dark[index];
        ++counts[index];
      }
    });
    std::nth_element(counts.begin(), counts.begin() + lines / 2, counts.end());
    return counts[lines / 2];
  };
  std::int64_t border = 0;
  for (int x = 0; x < area.width; ++x) {
    border += light(x, 0) + light(x, area.height - 1) - 2 * threshold;
  }
  for (int y = 0; y < area.height; ++y) {
    border += light(0, y) + light(area.width - 1, y) - 2 * threshold;
  }
  return {median(area.width, area.height, light),
          median(area.height, area.width, [&](int y, int x) { return light(x, y); }), border < 0};
}

std::vector<SymbolArea> FindIsolated(const PageImage& image, Cells<std::uint8_t> edges) {
  // The smallest symbol has eight modules of two pixels; letters cross a line less often.
  constexpr int fewestPixels = 18;
  constexpr int fewestCrossings = 4;
  constexpr int fewestOfBoth = 10;
  constexpr int flattest = 5;  // a Data Matrix is up to four times as wide as high
  std::vector<SymbolArea> areas;
  for (int row = 0; row < edges.rows; ++row) {
    for (int column = 0; column < edges.columns; ++column) {
      if (edges.At(column, row) == 0) {
        continue;
      }
      const PageArea cells = TakeConnected(column, row, &edges);
      const auto [shorter, longer] = std::minmax(cells.width, cells.height);
      if (shorter * edges.size < fewestPixels || longer > shorter * flattest) {
        continue;
      }
      const PageArea area = edges.Pixels(cells, image);
      const Look look = LookAt(image, area);
      if (std::min(look.crossings, look.crossingsDown) >= fewestCrossings &&
          look.crossings + look.crossingsDown >= fewestOfBoth) {
        areas.push_back({area, look.inverted});
      }
    }
  }
  return areas;
}

/// The sums over some pixels of the products of the gradient's parts, which tell the
/// direction that edges there have in common (the structure tensor).
struct Gradients {
  float xx = 0;
  float yy = 0;
  float xy = 0;

  void Add(const Gradients& other) {
    xx += other.xx;
    yy += other.yy;
    xy += other.xy;
  }
  float Energy() const { return xx + yy; }

  /// From 0, edges in all directions, to 1, in one.
  float Coherence() const { return Energy() > 0 ? std::hypot(xx - yy, 2 * xy) / Energy() : 0; }
  float Angle() const { return std::atan2(2 * xy, xx - yy) / 2; }
};

Gradients GradientsIn(const PageImage& image, int left, int top, int size) {
  std::int32_t xx = 0;
  std::int32_t yy = 0;
  std::int32_t xy = 0;
  const int right = std::min(left + size, image.width - 1);
  const int bottom = std::min(top + size, image.height - 1);
  for (int y = std::max(1, top); y < bottom; ++y) {
    const std::uint8_t* const above = Row(image, y - 1);
    const std::uint8_t* const here = Row(image, y);
    const std::uint8_t* const below = Row(image, y + 1);
    for (int x = std::max(1, left); x < right; ++x) {
      const int dx = here[x + 1] - here[x - 1];
      const int dy = below[x] - above[x];
      xx += dx * dx;
      yy += dy * dy;
      xy += dx * dy;
    }
  }
  return {static_cast<float>(xx), static_cast<float>(yy), static_cast<float>(xy)};
}

/// Of each cell and those around it; nothing where no edge is.
Cells<Gradients> FindGradients(const PageImage& image, const Cells<std::uint8_t>& edges) {
  constexpr int edgeCells = 2;
  Cells<Gradients> alone(image, edges.size * edgeCells);
  for (int row = 0; row < alone.rows; ++row) {
    for (int column = 0; column < alone.columns; ++column) {
      bool any = false;
      for (int i = 0; i < edgeCells * edgeCells; ++i) {
        const int x = column * edgeCells + i % edgeCells;
        const int y = row * edgeCells + i / edgeCells;
        any = any || (edges.Has(x, y) && edges.At(x, y) != 0);
      }
      if (any) {
        alone.At(column, row) =
            GradientsIn(image, column * alone.size, row * alone.size, alone.size);
      }
    }
  }
  return alone;
}

/// Takes what has the direction of its neighbour, step by step from the given cell.
struct BarCells {
  Extent extent;
  int count = 0;
  Gradients sum;
};

float TurnBetween(float a, float b) {
  const float turn = std::abs(a - b);
  return std::min(turn, std::numbers::pi_v<float> - turn);
}

BarCells TakeParallel(int column, int row, const Cells<Gradients>& gradients,
                      Cells<std::uint8_t>* barred) {
  constexpr float mostTurn = 0.2F;
  BarCells bars = {Extent(column, row), 0, {}};
  std::vector<std::pair<int, int>> open = {{column, row}};
  barred->At(column, row) = 0;
  while (!open.empty()) {
    const auto [x, y] = open.back();
    open.pop_back();
    bars.extent.Add(x, y);
    bars.sum.Add(gradients.At(x, y));
    ++bars.count;
    for (int dy = -1; dy <= 1; ++dy) {
      for (int dx = -1; dx <= 1; ++dx) {
        if (barred->Has(x + dx, y + dy) && barred->At(x + dx, y + dy) != 0 &&
            TurnBetween(gradients.At(x + dx, y + dy).Angle(), bars.sum.Angle()) < mostTurn) {
          barred->At(x + dx, y + dy) = 0;
          open.emplace_back(x + dx, y + dy);
        }
      }
    }
  }
  return bars;
}

std::vector<BarArea> FindBars(const PageImage& image, const Cells<std::uint8_t>& edges,
                              int contrast) {
  constexpr float leastCoherence = 0.3F;
  constexpr int fewestCells = 12;
  const Cells<Gradients> alone = FindGradients(image, edges);
  Cells<Gradients> gradients = alone;
  Cells<std::uint8_t> barred(image, alone.size);
  // Many edges in a cell, not the one at the rim of something.
  const float step = static_cast<float>(contrast) / 4;
  const float leastEnergy = step * step * static_cast<float>(alone.size * alone.size) * 9;
  for (int row = 0; row < alone.rows; ++row) {
    for (int column = 0; column < alone.columns; ++column) {
      Gradients around;
      for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
          if (alone.Has(column + dx, row + dy)) {
            around.Add(alone.At(column + dx, row + dy));
          }
        }
      }
      gradients.At(column, row) = around;
      barred.At(column, row) =
          around.Energy() >= leastEnergy && around.Coherence() >= leastCoherence ? 1 : 0;
    }
  }
  std::vector<BarArea> areas;
  for (int row = 0; row < barred.rows; ++row) {
    for (int column = 0; column < barred.columns; ++column) {
      if (barred.At(column, row) == 0) {
        continue;
      }
      const BarCells bars = TakeParallel(column, row, gradients, &barred);
      if (bars.count >= fewestCells) {
        const PageArea area = barred.Pixels(bars.extent.Area(), image);
        areas.push_back({area, LookAt(image, area).inverted, bars.sum.Angle()});
      }
    }
  }
  return areas;
}

}  // namespace

bool Overlap(const PageArea& a, const PageArea& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

PageAreas FindAreas(const PageImage& image) {
  // A page of more pixels is not one of more symbols: it has larger ones.
  constexpr int largePage = 3000;
  const int cellSize = std::min(image.width, image.height) < largePage ? 4 : 8;
  constexpr int leastContrast = 16;
  const int contrast = ContrastOf(image).Range();
  if (contrast < leastContrast) {
    return {};
  }
  const Cells<std::uint8_t> edges = FindEdges(image, cellSize, contrast / 4);
  return {ExtentOfMarked(edges, image), FindIsolated(image, edges),
          FindBars(image, edges, contrast)};
}

}  // namespace conduit
